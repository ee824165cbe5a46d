// One queued video frame and what JavaScript is told about it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "corvane_rtc/video_frame.h"

namespace corvane {

/// Where a frame comes from; the values travel through processVideoFrame().
enum FrameKind : int32_t {
  kFrameLocalVideo = 0,
  kFrameLocalScreen = 1,
  kFrameRemoteVideo = 2,
  kFrameRemoteScreen = 3,
  kFramePublicStream = 4,
  kFrameMixing = 5,
};

/// Gives an engine frame back.
struct ReleaseFrame {
  void operator()(rtc::IVideoFrame* frame) const { frame->release(); }
};
using FramePtr = std::unique_ptr<rtc::IVideoFrame, ReleaseFrame>;

struct FrameSlot {
  const char* event_name = "";
  FrameKind kind = kFrameLocalVideo;
  FramePtr frame;
  std::string channel_id;
  std::string user_id;
  std::string task_id;
  std::string public_stream_id;
  /// Deliveries that this slot sat out; beyond kMaxMissedRounds it is dropped.
  uint32_t missed_rounds = 0;
  /// A frame is waiting that no delivery has looked at yet.
  bool fresh = false;
  /// What JavaScript asked for: VideoPixelFormat, I420 or RGBA.
  int32_t format = 0;
};

inline constexpr uint32_t kMaxMissedRounds = 500;

}  // namespace corvane
