#include "effects/video_processor_slot.h"

#include <libyuv.h>

#include "media/buffer_frame.h"

namespace corvane::rtc {

namespace {

// A picture as its processor sees it. Stays the engine's: releasing it does nothing.
class LentFrame final : public IVideoFrame {
 public:
  LentFrame(const Picture& picture, const PicturePixels& pixels, int32_t pixel_format)
      : picture_(picture), pixels_(pixels), pixel_format_(pixel_format) {}

  int32_t frameType() const override { return kVideoFrameRawMemory; }
  int32_t pixelFormat() const override { return pixel_format_; }
  int64_t timestampUs() const override { return picture_.timestamp_us; }
  int32_t width() const override { return pixels_.width(); }
  int32_t height() const override { return pixels_.height(); }
  int32_t rotation() const override { return picture_.rotation; }
  uint8_t* planeData(int32_t plane) const override { return hasPlane(plane) ? pixels_.plane(plane) : nullptr; }
  int32_t planeStride(int32_t plane) const override { return hasPlane(plane) ? pixels_.stride(plane) : 0; }
  void release() override {}

 private:
  bool hasPlane(int32_t plane) const { return plane >= 0 && plane < pixels_.planes(); }

  const Picture& picture_;
  const PicturePixels& pixels_;
  const int32_t pixel_format_;
};

}  // namespace

int32_t VideoProcessorSlot::attach(IVideoProcessor* processor, int32_t pixel_format) {
  const GstVideoFormat format =
      pixel_format == kVideoPixelFormatUnknown ? GST_VIDEO_FORMAT_I420 : gstFormat(pixel_format);
  if (processor != nullptr && format == GST_VIDEO_FORMAT_UNKNOWN) return kInvalidParameter;
  std::unique_lock lock(mutex_);
  processor_ = processor;
  format_ = format;
  call_ended_.wait(lock, [this] { return !in_call_; });
  return kSuccess;
}

bool VideoProcessorSlot::isAttached() {
  const std::lock_guard lock(mutex_);
  return processor_ != nullptr;
}

bool VideoProcessorSlot::process(Picture& picture) {
  IVideoProcessor* processor = nullptr;
  GstVideoFormat format = GST_VIDEO_FORMAT_UNKNOWN;
  {
    const std::lock_guard lock(mutex_);
    if (processor_ == nullptr) return true;
    processor = processor_;
    format = format_;
    in_call_ = true;
  }
  const bool kept = format == GST_VIDEO_FORMAT_I420 ? processInPlace(*processor, picture)
                                                    : processConverted(*processor, picture, format);
  {
    const std::lock_guard lock(mutex_);
    in_call_ = false;
  }
  call_ended_.notify_all();
  return kept;
}

bool VideoProcessorSlot::processInPlace(IVideoProcessor& processor, Picture& picture) {
  if (!makeWritable(picture, pool_)) return false;
  Picture replaced;
  {
    const PicturePixels pixels(picture.buffer.get(), picture.info, GST_MAP_READWRITE);
    if (!pixels) return false;
    LentFrame frame(picture, pixels, kVideoPixelFormatI420);
    const IVideoFrame* const result = processor.processVideoFrame(&frame);
    if (result == &frame) return true;
    if (!replace(replaced, result)) return false;
  }
  picture = std::move(replaced);
  return true;
}

bool VideoProcessorSlot::processConverted(IVideoProcessor& processor, Picture& picture, GstVideoFormat format) {
  const bool is_rgba = format == GST_VIDEO_FORMAT_RGBA;
  const GstVideoInfo info =
      pictureInfo(format, GST_VIDEO_INFO_WIDTH(&picture.info), GST_VIDEO_INFO_HEIGHT(&picture.info));
  const GstPtr<GstBuffer> converted = converted_pool_.acquire(info);
  if (converted == nullptr) return false;
  const PicturePixels colours(converted.get(), info, GST_MAP_READWRITE);
  if (!colours) return false;
  {
    const PicturePixels pixels(picture.buffer.get(), picture.info, GST_MAP_READ);
    if (!pixels) return false;
    const auto convert = is_rgba ? &libyuv::I420ToABGR : &libyuv::I420ToARGB;
    convert(pixels.plane(0), pixels.stride(0), pixels.plane(1), pixels.stride(1), pixels.plane(2), pixels.stride(2),
            colours.plane(0), colours.stride(0), colours.width(), colours.height());
  }
  LentFrame frame(picture, colours, is_rgba ? kVideoPixelFormatRGBA : kVideoPixelFormatARGB);
  const IVideoFrame* const result = processor.processVideoFrame(&frame);
  Picture replaced;
  if (!replace(replaced, result)) return false;
  picture = std::move(replaced);
  return true;
}

// A frame that a processor returns instead of the one it was given stays the processor's, so that it is copied.
bool VideoProcessorSlot::replace(Picture& picture, const IVideoFrame* result) {
  if (result == nullptr || !isUsableFrame(*result)) return false;
  picture = importer_.copy(*result);
  return picture.buffer != nullptr;
}

}  // namespace corvane::rtc
