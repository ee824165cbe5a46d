#include "frames/streams.h"

#include <algorithm>
#include <ctime>

#include "core/engine_threads.h"
#include "corvane_rtc/stream_mixing_events.h"

namespace corvane::scripted {

namespace {

constexpr std::string_view kMixing = "mixing:";
constexpr std::string_view kProcessor = "processor";

int64_t threadCpuNs() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

int64_t integerOr(const Value& request, const char* name, int64_t otherwise) {
  const Value* value = request.find(name);
  return value == nullptr ? otherwise : value->toInt64();
}

/// The sink's or, for "mixing:task", the observer's.
std::shared_ptr<Slot> findSlot(const std::string& sink) {
  if (sink.starts_with(kMixing)) {
    const std::string task = sink.substr(kMixing.size());
    return Attachments::instance().find("ITranscodingObserver", &task);
  }
  if (sink == kProcessor) {
    return Attachments::instance().find("IVideoProcessor", nullptr);
  }
  return Attachments::instance().find("IVideoSink", &sink);
}

/// What push() wrote into the first bytes of the pixels.
int64_t stampOf(const ScriptedVideoFrame& frame) {
  uint32_t stamp = 0;
  for (unsigned i = 0; i < 4; ++i) {
    stamp |= uint32_t{frame.firstByte()[i]} << (8 * i);
  }
  return stamp;
}

int64_t medianOf(std::vector<int64_t> values) {
  if (values.empty()) {
    return 0;
  }
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

bool give(const Slot& slot, const std::string& sink, rtc::IVideoFrame* frame) {
  if (sink.starts_with(kMixing)) {
    static_cast<rtc::ITranscodingObserver*>(slot.target())
        ->onMixingVideoFrame(sink.substr(kMixing.size()).c_str(), frame);
    return true;
  }
  return static_cast<rtc::IVideoSink*>(slot.target())->onFrame(frame);
}

}  // namespace

void FramePool::fill(const std::shared_ptr<FramePool>& pool) {
  const std::lock_guard lock(pool->mutex_);
  while (pool->made_ < pool->first_) {
    pool->resting_.push_back(pool->make(pool));
  }
}

std::unique_ptr<ScriptedVideoFrame> FramePool::make(const std::shared_ptr<FramePool>& pool) {
  ++made_;
  auto frame = std::make_unique<ScriptedVideoFrame>(spec_);
  frame->setHome(pool);
  return frame;
}

std::unique_ptr<ScriptedVideoFrame> FramePool::take(const std::shared_ptr<FramePool>& pool,
                                                    std::chrono::milliseconds wait) {
  std::unique_lock lock(mutex_);
  if (resting_.empty() && made_ < most_) {
    return make(pool);
  }
  if (!back_.wait_for(lock, wait, [&] { return !resting_.empty() || closed_; }) || closed_) {
    return nullptr;
  }
  auto frame = std::move(resting_.front());
  resting_.erase(resting_.begin());
  return frame;
}

void FramePool::comeHome(std::unique_ptr<ScriptedVideoFrame> frame) {
  {
    const std::lock_guard lock(mutex_);
    if (!closed_) {
      resting_.push_back(std::move(frame));
      back_.notify_one();
      return;
    }
  }
  ScriptedVideoFrame::retire(std::move(frame));
}

void FramePool::close() {
  std::vector<std::unique_ptr<ScriptedVideoFrame>> freed;
  const std::lock_guard lock(mutex_);
  closed_ = true;
  freed.swap(resting_);
  back_.notify_all();
}

Streams& Streams::instance() {
  static auto* streams = new Streams;
  return *streams;
}

void Streams::start(const Value& request) {
  stop();
  const Value* fps = request.find("fps");
  const double rate = fps == nullptr ? 30 : fps->toDouble();
  period_ = std::chrono::nanoseconds(rate > 0 ? static_cast<int64_t>(1e9 / rate) : 0);
  count_ = integerOr(request, "count", 0);
  const Value* stamp = request.find("stamp");
  stamp_ = stamp == nullptr || stamp->toBool();
  const auto buffers = static_cast<size_t>(integerOr(request, "buffers", 4));
  const auto most = static_cast<size_t>(integerOr(request, "maxBuffers", 64));

  streams_.clear();
  const Value* named = request.find("streams");
  const Value wanted = named == nullptr ? Value() : *named;
  for (const Value& item : wanted.toList()) {
    auto stream = std::make_unique<Stream>();
    const Value* sink = item.find("sink");
    const Value* frame = item.find("frame");
    stream->sink = sink == nullptr ? "local:0" : sink->toText();
    stream->pool = std::make_shared<FramePool>(readVideoFrameSpec(frame == nullptr ? Value() : *frame), buffers,
                                               std::max(buffers, most));
    FramePool::fill(stream->pool);
    streams_.push_back(std::move(stream));
  }
  if (streams_.empty()) {
    throw BadRequest("no streams to start");
  }
  const auto start = Clock::now();
  for (size_t i = 0; i < streams_.size(); ++i) {
    // Spread over one period, as streams that have nothing to do with each other are.
    streams_[i]->due = start + period_ * i / streams_.size();
  }
  const auto threads =
      std::min(streams_.size(), static_cast<size_t>(integerOr(request, "threads", int64_t(streams_.size()))));
  stop_ = false;
  busy_ = threads;
  for (size_t number = 0; number < threads; ++number) {
    threads_.emplace_back([this, number, threads] { run(number, threads); });
  }
}

void Streams::stop() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  ending_.notify_all();
  for (const auto& stream : streams_) {
    stream->pool->close();
  }
  for (std::thread& thread : threads_) {
    thread.join();
  }
  threads_.clear();
}

void Streams::run(size_t number, size_t threads) {
  nameThread(("scr-stream-" + std::to_string(number)).c_str());
  std::vector<Stream*> mine;
  for (size_t i = number; i < streams_.size(); i += threads) {
    mine.push_back(streams_[i].get());
  }
  while (true) {
    std::erase_if(mine, [&](const Stream* stream) { return count_ > 0 && stream->index >= count_; });
    if (mine.empty()) {
      break;
    }
    Stream& next = **std::min_element(mine.begin(), mine.end(), [](auto* a, auto* b) { return a->due < b->due; });
    if (!pauseUntil(next.due)) {
      break;
    }
    push(next);
    next.due += period_;
    ++next.index;
  }
  --busy_;
}

bool Streams::pauseUntil(Clock::time_point due) {
  std::unique_lock lock(mutex_);
  if (period_.count() > 0) {
    ending_.wait_until(lock, due, [&] { return stop_; });
  }
  return !stop_;
}

void Streams::push(Stream& stream) {
  if (period_.count() > 0) {
    const int64_t late = std::chrono::nanoseconds(Clock::now() - stream.due).count();
    stream.late_ns += late;
    stream.most_late_ns = std::max<int64_t>(stream.most_late_ns, late);
  }
  // Without a pace the consumer's speed is the pace: waits for a frame to come back.
  auto frame = stream.pool->take(stream.pool, std::chrono::milliseconds(period_.count() > 0 ? 0 : 10'000));
  if (frame == nullptr) {
    ++stream.without_frame;
    return;
  }
  frame->setTimestamp(stream.index * period_.count() / 1000);
  if (stamp_ && frame->firstByte() != nullptr) {
    for (unsigned i = 0; i < 4; ++i) {
      frame->firstByte()[i] = static_cast<uint8_t>(static_cast<uint64_t>(stream.index) >> (8 * i));
    }
  }
  std::shared_ptr<Slot> slot;
  try {
    slot = findSlot(stream.sink);
  } catch (const BadRequest&) {
  }
  if (slot == nullptr || !slot->enter()) {
    ++stream.unattached;
    stream.pool->comeHome(std::move(frame));
    return;
  }
  const int64_t before = threadCpuNs();
  bool accepted = false;
  if (stream.sink == kProcessor) {
    accepted = lend(stream, *slot, *frame);
  } else {
    frame->handOut(ScriptedVideoFrame::kGiven);
    accepted = give(*slot, stream.sink, frame.release());
  }
  stream.sink_cpu_ns += threadCpuNs() - before;
  slot->leave();
  if (frame != nullptr) {
    stream.pool->comeHome(std::move(frame));
  }
  ++stream.pushed;
  ++(accepted ? stream.accepted : stream.refused);
}

/// False when the processor drops the picture.
bool Streams::lend(Stream& stream, const Slot& slot, ScriptedVideoFrame& frame) const {
  frame.handOut(ScriptedVideoFrame::kLent);
  const auto start = Clock::now();
  const bool kept = static_cast<rtc::IVideoProcessor*>(slot.target())->processVideoFrame(&frame) == &frame;
  const int64_t taken = std::chrono::nanoseconds(Clock::now() - start).count();
  frame.takeBackForUse();
  const std::lock_guard lock(stream.times_mutex);
  stream.times_ns.push_back(taken);
  if (kept && stamp_ && frame.firstByte() != nullptr) {
    const int64_t stamp = stampOf(frame);
    stream.old_pixels += stamp != stream.index ? 1 : 0;
    stream.reordered += stamp <= stream.last_stamp ? 1 : 0;
    stream.last_stamp = stamp;
  }
  return kept;
}

Value Streams::report() const {
  Value::List list;
  for (const auto& stream : streams_) {
    const int64_t pushed = std::max<int64_t>(stream->pushed, 1);
    const std::lock_guard lock(stream->times_mutex);
    list.push_back(Value::Members{{"sink", stream->sink},
                                  {"pushed", Value(stream->pushed.load())},
                                  {"accepted", Value(stream->accepted.load())},
                                  {"refused", Value(stream->refused.load())},
                                  {"unattached", Value(stream->unattached.load())},
                                  {"withoutFrame", Value(stream->without_frame.load())},
                                  {"sinkCpuNs", Value(stream->sink_cpu_ns.load())},
                                  {"oldPixels", Value(stream->old_pixels.load())},
                                  {"reordered", Value(stream->reordered.load())},
                                  {"medianNs", Value(medianOf(stream->times_ns))},
                                  {"meanLateNs", Value(stream->late_ns / pushed)},
                                  {"mostLateNs", Value(stream->most_late_ns.load())}});
  }
  return list;
}

}  // namespace corvane::scripted
