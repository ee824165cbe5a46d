#include "media/memory_frames.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "media/copy_pixels.h"

namespace corvane::rtc {

namespace {

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

MemoryVideoFrame::MemoryVideoFrame(const VideoFrameBuilder& builder, const PlaneShapes& shapes, PixelBlock block)
    : pixel_format_(builder.pixel_format),
      color_space_(builder.color_space),
      width_(builder.width),
      height_(builder.height),
      rotation_(builder.rotation),
      timestamp_us_(builder.timestamp_us),
      block_(std::move(block)) {
  uint8_t* target = block_.pixels.get();
  for (size_t plane = 0; plane < shapes.size() && shapes[plane].rows > 0; ++plane) {
    const auto row_bytes = static_cast<size_t>(shapes[plane].row_bytes);
    const auto rows = static_cast<size_t>(shapes[plane].rows);
    planes_[plane] = {target, shapes[plane].row_bytes};
    if (builder.linesize[plane] == shapes[plane].row_bytes) {
      copyPixels(target, builder.data[plane], row_bytes * rows);
    } else {
      for (size_t row = 0; row < rows; ++row) {
        const size_t start = row * static_cast<size_t>(builder.linesize[plane]);
        memcpy(target + row * row_bytes, builder.data[plane] + start, row_bytes);
      }
    }
    target += row_bytes * rows;
  }
}

IVideoFrame* makeMemoryVideoFrame(const VideoFrameBuilder& builder) {
  if (!isPictureShape(builder.pixel_format, builder.width, builder.height, builder.rotation)) return nullptr;
  const auto shapes = planeShapes(builder.pixel_format, builder.width, builder.height);
  size_t size = 0;
  for (size_t plane = 0; plane < shapes.size() && shapes[plane].rows > 0; ++plane) {
    if (builder.data[plane] == nullptr || builder.linesize[plane] < shapes[plane].row_bytes) return nullptr;
    size += static_cast<size_t>(shapes[plane].row_bytes) * static_cast<size_t>(shapes[plane].rows);
  }
  PixelBlock block = takePixels(size);
  if (block.pixels == nullptr) return nullptr;
  return std::make_unique<MemoryVideoFrame>(builder, shapes, std::move(block)).release();
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
