#include "screens/screen_source.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include "screens/screen_reader.h"

namespace corvane::rtc {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause(5);
constexpr std::chrono::nanoseconds kPeriod = std::chrono::nanoseconds(std::chrono::seconds(1)) / 30;

}  // namespace

ScreenSource::ScreenSource(EngineContext& context, PictureQueue& queue, CaptureSource::Listener& listener,
                           ScreenSourceId source, const ScreenSettings& settings)
    : context_(context),
      queue_(queue),
      listener_(listener),
      source_(std::move(source)),
      settings_(settings),
      thread_([this](const std::stop_token& stop) { run(stop); }) {}

ScreenSource::~ScreenSource() {
  thread_.request_stop();
  {
    const std::lock_guard lock(mutex_);
    // The thread may be waiting for a server that does not answer.
    if (connection_ != nullptr) connection_->abort();
  }
  thread_.join();
}

void ScreenSource::set(const ScreenSettings& settings) {
  {
    const std::lock_guard lock(mutex_);
    settings_ = settings;
    settings_changed_ = true;
  }
  changed_.notify_all();
}

void ScreenSource::run(const std::stop_token& stop) {
  nameThread("screen");
  CaptureFault fault;
  const std::unique_ptr<XConnection> x = XConnection::open(source_.display, fault);
  if (x == nullptr) return fail(std::move(fault));
  lend(x.get());
  readOn(*x, stop);
  lend(nullptr);
}

void ScreenSource::lend(const XConnection* connection) {
  const std::lock_guard lock(mutex_);
  connection_ = connection;
}

void ScreenSource::readOn(const XConnection& x, const std::stop_token& stop) {
  ScreenReader reader(x, source_.type, source_.id);
  Clock::time_point due = Clock::now();
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    settings_changed_ = false;
    const ScreenSettings settings = settings_;
    lock.unlock();
    CapturedPicture picture;
    std::optional<CaptureFault> end = reader.read(settings, picture);
    if (picture.buffer != nullptr) deliver(std::move(picture));
    if (end) return fail(std::move(*end));
    // A slow server is not asked again without a pause.
    due = std::max(due + kPeriod, Clock::now() + kPause);
    lock.lock();
    changed_.wait_until(lock, stop, due, [this] { return settings_changed_; });
  }
}

void ScreenSource::deliver(CapturedPicture picture) {
  if (!std::exchange(delivered_, true)) {
    context_.thread.post(alive_, [this] { listener_.onSourceDelivers(); });
  }
  queue_.pushNewest(std::move(picture));
}

void ScreenSource::fail(CaptureFault fault) {
  context_.thread.post(alive_, [this, fault = std::move(fault)] { listener_.onSourceFailed(fault); });
}

}  // namespace corvane::rtc
