// A picture on its way through a plug-in: the record that the plug-in sees, and the memory behind it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "corvane_plugin.h"
#include "corvane_rtc/video_frame.h"

namespace corvane {

/// The sizes of an I420 picture whose planes lie back to back without gaps.
struct PlanarSize {
  int32_t width = 0;
  int32_t height = 0;

  /// Nothing for frames that cannot be copied: not I420 in memory, planes missing, strides shorter than rows, or
  /// sizes that no picture has.
  static std::optional<PlanarSize> of(const rtc::IVideoFrame& frame);

  int32_t planeWidth(int32_t plane) const { return plane == 0 ? width : (width + 1) / 2; }
  int32_t planeHeight(int32_t plane) const { return plane == 0 ? height : (height + 1) / 2; }
  size_t bytes(int32_t plane) const {
    return static_cast<size_t>(planeWidth(plane)) * static_cast<size_t>(planeHeight(plane));
  }
  size_t bytes() const { return bytes(0) + bytes(1) + bytes(2); }

  bool operator==(const PlanarSize&) const = default;
};

/// One thread at a time.
class VideoRecord {
 public:
  /// False when there is no memory for the size.
  bool resize(const PlanarSize& size);

  void copyFrom(const rtc::IVideoFrame& frame, uint32_t index);
  /// Writes the pixels into the frame's planes; into a frame of another size nothing is written.
  void copyTo(rtc::IVideoFrame& frame) const;

  uint32_t index() const { return index_; }
  /// What the plug-in gets. It may write what it likes into its fields: they are set anew for each picture, and of what
  /// it left there only the size is looked at.
  plugin::VideoFrame* frame() { return &frame_; }

 private:
  uint8_t* plane(int32_t plane) const;

  plugin::VideoFrame frame_{};
  PlanarSize size_;
  std::unique_ptr<uint8_t[]> pixels_;
  uint32_t index_ = 0;
};

/// Records that are used again, so that a picture costs no allocation. Any thread.
class VideoRecords {
 public:
  /// A record for pictures of this size; null when there is no memory.
  std::unique_ptr<VideoRecord> take(const PlanarSize& size);
  void giveBack(std::unique_ptr<VideoRecord> record);
  /// Frees those that rest.
  void clear();

 private:
  std::mutex mutex_;
  std::vector<std::unique_ptr<VideoRecord>> resting_;
};

}  // namespace corvane
