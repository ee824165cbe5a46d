// What every part of one engine shares.
#pragma once

#include <cstdint>
#include <functional>

#include "core/engine_log.h"
#include "core/engine_thread.h"
#include "corvane_rtc/rtc_video_events.h"

namespace corvane::rtc {

struct EngineContext {
  EngineLog log;
  IRTCVideoEventHandler* events;  ///< the application's, or one that does nothing; called on `thread` only
  EngineThread thread;
  /// Told on `thread` when one of the local streams begins, or stops, to be captured: StreamIndex, MediaStreamType.
  std::function<void(int32_t, int32_t, bool)> on_capturing = [](int32_t, int32_t, bool) {};
};

}  // namespace corvane::rtc
