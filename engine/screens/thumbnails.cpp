#include "screens/thumbnails.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "capture/pipeline.h"
#include "media/buffer_frame.h"
#include "media/picture.h"
#include "screens/screen_sources.h"
#include "screens/window_facts.h"
#include "screens/window_picture.h"

namespace corvane::rtc {

namespace {

struct Size {
  int32_t width;
  int32_t height;
};

// Where the application names no size: large enough for a dialog that offers a dozen sources, and quickly encoded.
constexpr Size kThumbnailBound = {640, 360};
constexpr Size kIconBound = {64, 64};
constexpr uint32_t kOpaque = 0xff000000;

struct FreeConverter {
  void operator()(GstVideoConverter* converter) const { gst_video_converter_free(converter); }
};

// The largest size of these proportions within the bounds; never larger than the picture.
Size fit(Size picture, int32_t max_width, int32_t max_height, Size bound) {
  if (max_width <= 0 && max_height <= 0) {
    max_width = bound.width;
    max_height = bound.height;
  }
  double scale = 1;
  if (max_width > 0) scale = std::min(scale, static_cast<double>(max_width) / picture.width);
  if (max_height > 0) scale = std::min(scale, static_cast<double>(max_height) / picture.height);
  const auto scaled = [scale](int32_t side) { return std::max(1, static_cast<int32_t>(std::lround(side * scale))); };
  return {scaled(picture.width), scaled(picture.height)};
}

IVideoFrame* scale(GstBuffer* picture, const GstVideoInfo& info, Size size) {
  GstVideoInfo scaled_info;
  gst_video_info_set_format(&scaled_info, GST_VIDEO_FORMAT_BGRA, static_cast<guint>(size.width),
                            static_cast<guint>(size.height));
  const GstPtr<GstBuffer> scaled(gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&scaled_info), nullptr));
  // Each pixel of the large picture counts: text in it stays grey rather than becoming dots.
  GstStructure* options =
      gst_structure_new("options", GST_VIDEO_CONVERTER_OPT_RESAMPLER_METHOD, GST_TYPE_VIDEO_RESAMPLER_METHOD,
                        GST_VIDEO_RESAMPLER_METHOD_LINEAR, GST_VIDEO_CONVERTER_OPT_DITHER_METHOD,
                        GST_TYPE_VIDEO_DITHER_METHOD, GST_VIDEO_DITHER_NONE, nullptr);
  const std::unique_ptr<GstVideoConverter, FreeConverter> converter(
      gst_video_converter_new(&info, &scaled_info, options));
  {
    PicturePixels in(picture, info, GST_MAP_READ);
    PicturePixels out(scaled.get(), scaled_info, GST_MAP_WRITE);
    if (converter == nullptr || !in || !out) return nullptr;
    gst_video_converter_frame(converter.get(), in.frame(), out.frame());
    if (!GST_VIDEO_INFO_HAS_ALPHA(&info)) {
      // What stood in for it has become it.
      auto* const pixels = reinterpret_cast<uint32_t*>(out.plane(0));
      const size_t count = GST_VIDEO_INFO_SIZE(&scaled_info) / sizeof(uint32_t);
      for (size_t index = 0; index < count; ++index) pixels[index] |= kOpaque;
    }
  }
  return BufferFrame::make(scaled.get(), scaled_info, static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow())), 0, {});
}

}  // namespace

IVideoFrame* makeThumbnail(const XConnection& x, XImages& images, int32_t type, int64_t id, int32_t max_width,
                           int32_t max_height) {
  xcb_drawable_t drawable = XCB_NONE;
  Rectangle area = {};
  std::optional<WindowPicture> window;
  if (type == kScreenCaptureSourceTypeWindow) {
    window.emplace(x, static_cast<xcb_window_t>(id));
    drawable = window->drawable();
    area = window->area();
  } else if (const auto monitor = findMonitor(x, id)) {
    drawable = x.root();
    area = *monitor;
  }
  if (drawable == XCB_NONE) return nullptr;
  const GstPtr<GstBuffer> picture = images.read(drawable, area);
  if (picture == nullptr) return nullptr;
  return scale(picture.get(), xImageInfo(area.width, area.height),
               fit({area.width, area.height}, max_width, max_height, kThumbnailBound));
}

IVideoFrame* makeWindowIcon(const XConnection& x, int64_t id, int32_t max_width, int32_t max_height) {
  const Size bound = {max_width > 0 ? max_width : kIconBound.width, max_height > 0 ? max_height : kIconBound.height};
  WindowIcon icon = readWindowIcon(x, static_cast<xcb_window_t>(id), bound.width, bound.height);
  if (icon.pixels.empty()) return nullptr;
  GstVideoInfo info;
  gst_video_info_set_format(&info, GST_VIDEO_FORMAT_BGRA, static_cast<guint>(icon.width),
                            static_cast<guint>(icon.height));
  const gsize bytes = icon.pixels.size() * sizeof(uint32_t);
  const GstPtr<GstBuffer> picture(
      gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, icon.pixels.data(), bytes, 0, bytes, nullptr, nullptr));
  return scale(picture.get(), info, fit({icon.width, icon.height}, max_width, max_height, kIconBound));
}

}  // namespace corvane::rtc
