#include "screens/thumbnails.h"

#include <libyuv.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

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
constexpr int kPixelBytes = 4;

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

// Pixels of four bytes, rows without padding.
struct Pixels {
  const uint8_t* data;
  Size size;

  int stride() const { return size.width * kPixelBytes; }
};

// Halves it, each time from all pixels of the larger one: text stays grey rather than becoming dots. The last step, by
// less than two, is left to the caller.
Pixels halve(Pixels picture, Size target, std::vector<uint8_t>& memory) {
  while (picture.size.width / 2 >= target.width && picture.size.height / 2 >= target.height) {
    const Size half = {picture.size.width / 2, picture.size.height / 2};
    std::vector<uint8_t> halved(kPixelBytes * static_cast<size_t>(half.width) * static_cast<size_t>(half.height));
    // Exactly half: of odd sizes the last row or column is left out.
    libyuv::ARGBScale(picture.data, picture.stride(), half.width * 2, half.height * 2, halved.data(),
                      half.width * kPixelBytes, half.width, half.height, libyuv::kFilterBox);
    memory.swap(halved);
    picture = {memory.data(), half};
  }
  return picture;
}

IVideoFrame* scale(const Pixels& picture, Size size, bool opaque) {
  std::vector<uint8_t> memory;
  const Pixels near = halve(picture, size, memory);
  const GstVideoInfo info = pictureInfo(GST_VIDEO_FORMAT_BGRA, size.width, size.height);
  const GstPtr<GstBuffer> scaled(gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&info), nullptr));
  {
    const PicturePixels out(scaled.get(), info, GST_MAP_WRITE);
    if (!out) return nullptr;
    libyuv::ARGBScale(near.data, near.stride(), near.size.width, near.size.height, out.plane(0), out.stride(0),
                      size.width, size.height, libyuv::kFilterBilinear);
    auto* const pixels = reinterpret_cast<uint32_t*>(out.plane(0));
    const size_t count = GST_VIDEO_INFO_SIZE(&info) / kPixelBytes;
    for (size_t index = 0; opaque && index < count; ++index) pixels[index] |= kOpaque;
  }
  return BufferFrame::make(scaled.get(), info, static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow())), 0, {});
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
  const PicturePixels pixels(picture.get(), xImageInfo(area.width, area.height), GST_MAP_READ);
  if (!pixels) return nullptr;
  const Size size = {area.width, area.height};
  return scale({pixels.plane(0), size}, fit(size, max_width, max_height, kThumbnailBound), true);
}

IVideoFrame* makeWindowIcon(const XConnection& x, int64_t id, int32_t max_width, int32_t max_height) {
  const Size bound = {max_width > 0 ? max_width : kIconBound.width, max_height > 0 ? max_height : kIconBound.height};
  const WindowIcon icon = readWindowIcon(x, static_cast<xcb_window_t>(id), bound.width, bound.height);
  if (icon.pixels.empty()) return nullptr;
  const Size size = {icon.width, icon.height};
  return scale({reinterpret_cast<const uint8_t*>(icon.pixels.data()), size},
               fit(size, max_width, max_height, kIconBound), false);
}

}  // namespace corvane::rtc
