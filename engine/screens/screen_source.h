// Reads pictures of a monitor or window from an X server, on a thread and over a connection of its own. One object for
// one capture of one source.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "capture/capture_source.h"
#include "capture/picture_queue.h"
#include "core/engine_context.h"
#include "screens/screen_settings.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

/// Pictures come as the source changes, at most 30 a second, and at least five while it is visible. Engine thread.
class ScreenSource {
 public:
  /// `listener` is called on the engine thread, not before this returns.
  ScreenSource(EngineContext& context, PictureQueue& queue, CaptureSource::Listener& listener, ScreenSourceId source,
               const ScreenSettings& settings);
  /// Nothing is delivered and the listener is not called afterwards. Does not wait for the server.
  ~ScreenSource();
  ScreenSource(const ScreenSource&) = delete;
  ScreenSource& operator=(const ScreenSource&) = delete;

  void set(const ScreenSettings& settings);

 private:
  void run(const std::stop_token& stop);
  void lend(const XConnection* connection);
  void readOn(const XConnection& x, const std::stop_token& stop);
  void deliver(CapturedPicture picture);
  void fail(CaptureFault fault);

  EngineContext& context_;
  PictureQueue& queue_;
  CaptureSource::Listener& listener_;
  const ScreenSourceId source_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  bool delivered_ = false;  // the thread's

  std::mutex mutex_;
  std::condition_variable_any changed_;
  ScreenSettings settings_;
  bool settings_changed_ = false;
  const XConnection* connection_ = nullptr;  // while the thread has one
  std::jthread thread_;                      // last: it ends before what it uses
};

}  // namespace corvane::rtc
