// What every part of one engine shares.
#pragma once

#include "core/engine_log.h"
#include "core/engine_thread.h"
#include "corvane_rtc/rtc_video_events.h"

namespace corvane::rtc {

struct EngineContext {
  EngineLog log;
  IRTCVideoEventHandler* events;  ///< the application's, or one that does nothing; called on `thread` only
  EngineThread thread;
};

}  // namespace corvane::rtc
