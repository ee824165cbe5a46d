// Frames that applications build, in memory of their own.
#pragma once

#include <array>
#include <utility>

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/video_frame.h"
#include "media/pixel_blocks.h"
#include "media/plane_shapes.h"

namespace corvane::rtc {

/// An application's picture: its planes back to back in one block, without padding between rows.
class MemoryVideoFrame final : public IVideoFrame {
 public:
  using PlaneShapes = std::array<PlaneShape, kMaxPlanes>;

  /// Copies the builder's planes into `block`, which has just their size.
  MemoryVideoFrame(const VideoFrameBuilder& builder, const PlaneShapes& shapes, PixelBlock block);

  int32_t frameType() const override { return kVideoFrameRawMemory; }
  int32_t pixelFormat() const override { return pixel_format_; }
  int64_t timestampUs() const override { return timestamp_us_; }
  int32_t width() const override { return width_; }
  int32_t height() const override { return height_; }
  int32_t rotation() const override { return rotation_; }
  uint8_t* planeData(int32_t plane) const override { return hasPlane(plane) ? planes_[index(plane)].data : nullptr; }
  int32_t planeStride(int32_t plane) const override { return hasPlane(plane) ? planes_[index(plane)].stride : 0; }
  void release() override { delete this; }

  int32_t colorSpace() const { return color_space_; }  ///< as in VideoFrameBuilder
  size_t size() const { return block_.size; }          ///< bytes of all planes

  ~MemoryVideoFrame() { givePixels(std::move(block_)); }
  MemoryVideoFrame(const MemoryVideoFrame&) = delete;
  MemoryVideoFrame& operator=(const MemoryVideoFrame&) = delete;

 private:
  struct Plane {
    uint8_t* data = nullptr;
    int32_t stride = 0;
  };

  static size_t index(int32_t plane) { return static_cast<size_t>(plane); }
  static bool hasPlane(int32_t plane) { return plane >= 0 && index(plane) < kMaxPlanes; }

  const int32_t pixel_format_;
  const int32_t color_space_;
  const int32_t width_;
  const int32_t height_;
  const int32_t rotation_;
  const int64_t timestamp_us_;
  PixelBlock block_;
  std::array<Plane, kMaxPlanes> planes_;  // those that the format lacks stay null
};

/// Copies the builder's planes. Null for a builder that is not valid, or without memory.
IVideoFrame* makeMemoryVideoFrame(const VideoFrameBuilder& builder);

/// Null for a builder that is not valid.
IAudioFrame* makeMemoryAudioFrame(const AudioFrameBuilder& builder);

}  // namespace corvane::rtc
