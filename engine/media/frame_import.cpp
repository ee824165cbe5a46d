#include "media/frame_import.h"

#include <libyuv.h>

#include <utility>

#include "media/memory_frames.h"
#include "media/plane_shapes.h"

namespace corvane::rtc {

namespace {

// VideoFrameBuilder's colour spaces, but for those that are the engine's own.
constexpr int32_t kBt601Full = 2;
constexpr int32_t kBt709Limited = 3;
constexpr int32_t kBt709Full = 4;

// Maps 0..255 to the limited range, in the frame's own memory: the converter takes pictures that differ in nothing but
// the range for the same.
void limitRange(const MemoryVideoFrame& frame) {
  const auto shapes = planeShapes(kVideoPixelFormatI420, frame.width(), frame.height());
  for (size_t index = 0; index < shapes.size(); ++index) {
    const uint32_t span = index == 0 ? 219 : 224;
    const uint32_t factor = (span * 65536 + 127) / 255;
    const uint32_t start = index == 0 ? 16 * 65536 : 128 * 65536 - 128 * factor;
    uint8_t* const pixels = frame.planeData(static_cast<int32_t>(index));
    const auto count = static_cast<size_t>(shapes[index].row_bytes) * static_cast<size_t>(shapes[index].rows);
    for (size_t at = 0; at < count; ++at) {
      pixels[at] = static_cast<uint8_t>((pixels[at] * factor + start + 32768) >> 16);
    }
  }
}

Picture emptyPicture(const IVideoFrame& frame) {
  Picture picture;
  picture.info = pictureInfo(GST_VIDEO_FORMAT_I420, frame.width(), frame.height());
  picture.timestamp_us = frame.timestampUs();
  picture.rotation = frame.rotation();
  return picture;
}

// A picture over the frame's own memory, which the frame outlives.
Picture wrap(std::unique_ptr<MemoryVideoFrame, ReleaseFrame> frame) {
  Picture picture = emptyPicture(*frame);
  const uint8_t* start = frame->planeData(0);
  for (int32_t plane = 0; plane < static_cast<int32_t>(kMaxPlanes); ++plane) {
    GST_VIDEO_INFO_PLANE_OFFSET(&picture.info, plane) = static_cast<gsize>(frame->planeData(plane) - start);
    GST_VIDEO_INFO_PLANE_STRIDE(&picture.info, plane) = frame->planeStride(plane);
  }
  GST_VIDEO_INFO_SIZE(&picture.info) = frame->size();
  uint8_t* const pixels = frame->planeData(0);
  const gsize size = frame->size();
  const auto give_back = +[](gpointer owner) { static_cast<MemoryVideoFrame*>(owner)->release(); };
  picture.buffer.reset(
      gst_buffer_new_wrapped_full(static_cast<GstMemoryFlags>(0), pixels, size, 0, size, frame.release(), give_back));
  return picture;
}

}  // namespace

bool isUsableFrame(const IVideoFrame& frame) {
  if (frame.frameType() != kVideoFrameRawMemory ||
      !isPictureShape(frame.pixelFormat(), frame.width(), frame.height(), frame.rotation())) {
    return false;
  }
  const auto shapes = planeShapes(frame.pixelFormat(), frame.width(), frame.height());
  for (size_t index = 0; index < shapes.size() && shapes[index].rows > 0; ++index) {
    const auto plane = static_cast<int32_t>(index);
    if (frame.planeData(plane) == nullptr || frame.planeStride(plane) < shapes[index].row_bytes) return false;
  }
  return true;
}

Picture FrameImporter::take(OwnedFrame frame) {
  auto* const own = dynamic_cast<MemoryVideoFrame*>(frame.get());
  if (own == nullptr || own->pixelFormat() != kVideoPixelFormatI420) return copy(*frame);
  const int32_t color_space = own->colorSpace();
  static_cast<void>(frame.release());  // `own` from here on
  Picture picture = wrap(std::unique_ptr<MemoryVideoFrame, ReleaseFrame>(own));
  if (color_space == kBt601Full) limitRange(*own);
  if (color_space != kBt709Limited && color_space != kBt709Full) return picture;
  GstVideoColorimetry& colours = picture.info.colorimetry;
  colours.matrix = GST_VIDEO_COLOR_MATRIX_BT709;
  if (color_space == kBt709Full) colours.range = GST_VIDEO_COLOR_RANGE_0_255;
  picture.buffer = colours_.convert(picture.buffer.get(), picture.info, GST_VIDEO_FORMAT_I420);
  picture.info = colours_.outInfo();
  return picture;
}

Picture FrameImporter::copy(const IVideoFrame& frame) {
  Picture picture = emptyPicture(frame);
  GstPtr<GstBuffer> buffer = pool_.acquire(picture.info);
  if (buffer == nullptr) return picture;
  {
    const PicturePixels to(buffer.get(), picture.info, GST_MAP_WRITE);
    if (!to) return picture;
    const auto convert = frame.pixelFormat() == kVideoPixelFormatRGBA ? &libyuv::ABGRToI420 : &libyuv::ARGBToI420;
    const int failed =
        frame.pixelFormat() == kVideoPixelFormatI420
            ? libyuv::I420Copy(frame.planeData(0), frame.planeStride(0), frame.planeData(1), frame.planeStride(1),
                               frame.planeData(2), frame.planeStride(2), to.plane(0), to.stride(0), to.plane(1),
                               to.stride(1), to.plane(2), to.stride(2), to.width(), to.height())
            : convert(frame.planeData(0), frame.planeStride(0), to.plane(0), to.stride(0), to.plane(1), to.stride(1),
                      to.plane(2), to.stride(2), to.width(), to.height());
    if (failed != 0) return picture;
  }
  picture.buffer = std::move(buffer);
  return picture;
}

}  // namespace corvane::rtc
