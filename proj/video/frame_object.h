// Builds what JavaScript gets of one video frame. JavaScript thread only.
#pragma once

#include <napi.h>

#include "corvane_rtc/rtc_video_events.h"
#include "video/frame_buffers.h"
#include "video/frame_slot.h"

namespace corvane {

struct FrameObjectContext {
  napi_env env;
  FrameBuffers& buffers;
  /// Told of sizes that no registered buffer has; null while there is no engine.
  rtc::IRTCVideoEventHandler* event_handler;
  bool apply_rotation;
};

/// {"Type": event, "Object": {...}} of the slot's frame, whose pixels were copied and which was released; or null:
/// nothing is new, there is no engine, no buffer of the frame's size is registered, or the frame has no pixels.
napi_value buildFrameObject(const FrameObjectContext& context, FrameSlot& slot);

}  // namespace corvane
