#include "media/memory_frames.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace corvane::rtc {

namespace {

// Larger than any picture that can be shown, small enough that no size below overflows.
constexpr int32_t kMaxSide = 16384;
constexpr size_t kMaxPlanes = 3;

struct PlaneShape {
  int32_t row_bytes = 0;
  int32_t rows = 0;
};

std::array<PlaneShape, kMaxPlanes> planeShapes(int32_t pixel_format, int32_t width, int32_t height) {
  if (pixel_format != kVideoPixelFormatI420) return {{{width * 4, height}}};
  const PlaneShape chroma = {(width + 1) / 2, (height + 1) / 2};
  return {{{width, height}, chroma, chroma}};
}

bool isRotation(int32_t degrees) {
  return degrees >= 0 && degrees < 360 && degrees % 90 == 0;
}

class MemoryVideoFrame final : public IVideoFrame {
 public:
  MemoryVideoFrame(const VideoFrameBuilder& builder, const std::array<PlaneShape, kMaxPlanes>& shapes)
      : pixel_format_(builder.pixel_format),
        width_(builder.width),
        height_(builder.height),
        rotation_(builder.rotation),
        timestamp_us_(builder.timestamp_us) {
    size_t size = 0;
    for (const PlaneShape& shape : shapes)
      size += static_cast<size_t>(shape.row_bytes) * static_cast<size_t>(shape.rows);
    pixels_.resize(size);
    uint8_t* target = pixels_.data();
    for (size_t plane = 0; plane < shapes.size() && shapes[plane].rows > 0; ++plane) {
      planes_[plane] = {target, shapes[plane].row_bytes};
      const auto row_bytes = static_cast<size_t>(shapes[plane].row_bytes);
      const uint8_t* source = builder.data[plane];
      for (int32_t row = 0; row < shapes[plane].rows; ++row) {
        memcpy(target, source + static_cast<ptrdiff_t>(row) * builder.linesize[plane], row_bytes);
        target += row_bytes;
      }
    }
  }

  int32_t frameType() const override { return kVideoFrameRawMemory; }
  int32_t pixelFormat() const override { return pixel_format_; }
  int64_t timestampUs() const override { return timestamp_us_; }
  int32_t width() const override { return width_; }
  int32_t height() const override { return height_; }
  int32_t rotation() const override { return rotation_; }
  uint8_t* planeData(int32_t plane) const override { return hasPlane(plane) ? planes_[index(plane)].data : nullptr; }
  int32_t planeStride(int32_t plane) const override { return hasPlane(plane) ? planes_[index(plane)].stride : 0; }
  void release() override { delete this; }

 private:
  struct Plane {
    uint8_t* data = nullptr;
    int32_t stride = 0;
  };

  static size_t index(int32_t plane) { return static_cast<size_t>(plane); }
  static bool hasPlane(int32_t plane) { return plane >= 0 && index(plane) < kMaxPlanes; }

  const int32_t pixel_format_;
  const int32_t width_;
  const int32_t height_;
  const int32_t rotation_;
  const int64_t timestamp_us_;
  std::vector<uint8_t> pixels_;
  std::array<Plane, kMaxPlanes> planes_;  // those that the format lacks stay null
};

class MemoryAudioFrame final : public IAudioFrame {
 public:
  explicit MemoryAudioFrame(const AudioFrameBuilder& builder)
      : sample_rate_(builder.sample_rate),
        channels_(builder.channels),
        timestamp_us_(builder.timestamp_us),
        size_(static_cast<int32_t>(builder.data_size)) {
    if (builder.deep_copy) {
      copy_.assign(builder.data, builder.data + builder.data_size);
      data_ = copy_.data();
    } else {
      // Handed out for writing to audio processors only, which never see a frame of the application's.
      data_ = const_cast<uint8_t*>(builder.data);
    }
  }

  int64_t timestampUs() const override { return timestamp_us_; }
  int32_t sampleRate() const override { return sample_rate_; }
  int32_t channels() const override { return channels_; }
  uint8_t* data() const override { return data_; }
  int32_t dataSize() const override { return size_; }
  int32_t frameType() const override { return kAudioFrameTypePCM16; }
  bool isMuted() const override { return false; }
  void release() override { delete this; }

 private:
  const int32_t sample_rate_;
  const int32_t channels_;
  const int64_t timestamp_us_;
  const int32_t size_;
  std::vector<uint8_t> copy_;
  uint8_t* data_;
};

}  // namespace

IVideoFrame* makeMemoryVideoFrame(const VideoFrameBuilder& builder) {
  const bool known_format = builder.pixel_format == kVideoPixelFormatI420 ||
                            builder.pixel_format == kVideoPixelFormatRGBA ||
                            builder.pixel_format == kVideoPixelFormatARGB;
  if (!known_format || builder.width <= 0 || builder.width > kMaxSide || builder.height <= 0 ||
      builder.height > kMaxSide || !isRotation(builder.rotation)) {
    return nullptr;
  }
  const auto shapes = planeShapes(builder.pixel_format, builder.width, builder.height);
  for (size_t plane = 0; plane < shapes.size() && shapes[plane].rows > 0; ++plane) {
    if (builder.data[plane] == nullptr || builder.linesize[plane] < shapes[plane].row_bytes) return nullptr;
  }
  return std::make_unique<MemoryVideoFrame>(builder, shapes).release();
}

IAudioFrame* makeMemoryAudioFrame(const AudioFrameBuilder& builder) {
  constexpr int64_t kSampleBytes = sizeof(int16_t);
  if (builder.sample_rate <= 0 || builder.channels < 1 || builder.channels > 2 || builder.data == nullptr ||
      builder.data_size <= 0 || builder.data_size > std::numeric_limits<int32_t>::max() ||
      builder.data_size % (kSampleBytes * builder.channels) != 0) {
    return nullptr;
  }
  return std::make_unique<MemoryAudioFrame>(builder).release();
}

}  // namespace corvane::rtc
