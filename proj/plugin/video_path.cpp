#include "plugin/video_path.h"

#include <utility>

#include "log/log.h"
#include "platform/platform.h"
#include "plugin/plugin_logs.h"

namespace corvane {

void VideoPath::createConsumerThread() {
  LogWrite(kLogInfo, "%s::%s(%d).", kPluginManagerName, __func__, __LINE__);
  // A frame that was under way when an earlier thread ended may have left a record behind.
  dropAll();
  stopped_ = false;
  consumer_ = std::thread([this] { consume(); });
}

void VideoPath::releaseConsumerThread() {
  LogWrite(kLogInfo, "%s::%s(%d) start.", kPluginManagerName, __func__, __LINE__);
  {
    // Under both locks, so that nobody is between the look at the flag and the wait.
    const std::scoped_lock lock(input_mutex_, output_mutex_);
    stopped_ = true;
  }
  input_ready_.notify_all();
  output_ready_.notify_all();
  if (consumer_.joinable()) consumer_.join();
  LogWrite(kLogInfo, "%s::%s(%d) end.", kPluginManagerName, __func__, __LINE__);
  dropAll();
}

void VideoPath::dropAll() {
  const std::scoped_lock lock(input_mutex_, output_mutex_);
  input_.reset();
  output_.reset();
  records_.clear();
}

rtc::IVideoFrame* VideoPath::process(rtc::IVideoFrame* frame) {
  if (stopped_ || !enabled_) {
    Record stale;
    {
      const std::lock_guard<std::mutex> lock(output_mutex_);
      stale = std::move(output_);
    }
    records_.giveBack(std::move(stale));
    return frame;
  }
  if (frame == nullptr || !copyIn(*frame)) return frame;
  Record processed = awaitOutput();
  if (processed == nullptr) return has_first_output_ && !stopped_ ? nullptr : frame;
  processed->copyTo(*frame);
  records_.giveBack(std::move(processed));
  return frame;
}

bool VideoPath::copyIn(const rtc::IVideoFrame& frame) {
  const std::optional<PlanarSize> size = PlanarSize::of(frame);
  if (!size.has_value()) return false;
  Record record = records_.take(*size);
  if (record == nullptr) return false;
  // The copy is made outside the lock: nobody waits for it there.
  record->copyFrom(frame, nextSequenceIndex());
  {
    const std::lock_guard<std::mutex> lock(input_mutex_);
    std::swap(input_, record);
  }
  input_ready_.notify_one();
  if (record != nullptr) {
    if (has_first_output_) indexLog(record->index());
    records_.giveBack(std::move(record));
  }
  return true;
}

VideoPath::Record VideoPath::awaitOutput() {
  std::unique_lock<std::mutex> lock(output_mutex_);
  output_ready_.wait_for(lock, kLongestWait, [this] { return output_ != nullptr || stopped_; });
  return std::move(output_);
}

void VideoPath::consume() {
  platform::nameCurrentThread("plug-in");
  while (Record record = awaitInput()) {
    if (runPlugin(*record)) {
      deliver(std::move(record));
    } else {
      records_.giveBack(std::move(record));
    }
  }
}

VideoPath::Record VideoPath::awaitInput() {
  std::unique_lock<std::mutex> lock(input_mutex_);
  input_ready_.wait(lock, [this] { return input_ != nullptr || stopped_; });
  return stopped_ ? nullptr : std::move(input_);
}

// True when the record is to be delivered.
bool VideoPath::runPlugin(VideoRecord& record) {
  using Clock = std::chrono::steady_clock;
  bool is_first = false;
  Clock::duration taken{};
  {
    const std::lock_guard<std::mutex> lock(plugin_.mutex);
    plugin::IPlugin* instance = plugin_.instance;
    if (!enabled_ || instance == nullptr) return false;
    const Clock::time_point start = Clock::now();
    instance->processVideoFrame(record.frame());
    taken = Clock::now() - start;
    is_first = !has_first_output_.exchange(true);
  }
  timeLog(std::chrono::duration_cast<std::chrono::milliseconds>(taken).count(), is_first);
  return !is_first;
}

void VideoPath::deliver(Record record) {
  {
    const std::lock_guard<std::mutex> lock(output_mutex_);
    if (stopped_ || !enabled_) {
      records_.giveBack(std::move(record));
      record = std::move(output_);
    } else {
      std::swap(output_, record);
    }
  }
  output_ready_.notify_one();
  records_.giveBack(std::move(record));
}

}  // namespace corvane
