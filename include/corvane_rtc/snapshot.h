// Single pictures taken of local and remote streams.
#pragma once

#include "corvane_rtc/common.h"
#include "corvane_rtc/video_frame.h"

namespace corvane::rtc {

/// Receives the pictures asked for with takeLocalSnapshot() and takeRemoteSnapshot(), once for each task id.
///
/// Called on threads of the library. The picture belongs to the engine and is valid during the call only; the
/// receiver neither changes nor releases it. It has one plane of 32-bit pixels, ARGB or RGBA.
/// The object stays the caller's and lives until its last task has been answered or destroyRTCVideo() has returned.
class ISnapshotResultCallback {
 public:
  /// stream_index: StreamIndex. image may be null when error_code, a ReturnStatus, is not 0.
  virtual void onTakeLocalSnapshotResult([[maybe_unused]] int32_t task_id, [[maybe_unused]] int32_t stream_index,
                                         [[maybe_unused]] IVideoFrame* image, [[maybe_unused]] int32_t error_code) {}
  /// image may be null when error_code, a ReturnStatus, is not 0.
  virtual void onTakeRemoteSnapshotResult([[maybe_unused]] int32_t task_id,
                                          [[maybe_unused]] const StreamKey& stream_key,
                                          [[maybe_unused]] IVideoFrame* image, [[maybe_unused]] int32_t error_code) {}

 protected:
  ~ISnapshotResultCallback() = default;
};

}  // namespace corvane::rtc
