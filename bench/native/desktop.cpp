#include "desktop.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace corvane::bench {

namespace {

// Far below what any server takes in one request.
constexpr uint32_t kRowsAtOnce = 16;

std::vector<uint32_t> pixelsOf(const Napi::Uint8Array& bytes) {
  std::vector<uint32_t> pixels(bytes.ByteLength() / 4);
  const uint8_t* from = bytes.Data();
  for (uint32_t& pixel : pixels) {
    pixel = static_cast<uint32_t>(from[0] << 16 | from[1] << 8 | from[2]);
    from += 4;
  }
  return pixels;
}

}  // namespace

Napi::Value jsPaintDesktop(const Napi::CallbackInfo& info) {
  const std::string display = info[0].As<Napi::String>();
  std::vector<uint32_t> pixels = pixelsOf(info[1].As<Napi::Uint8Array>());
  const uint32_t width = info[2].As<Napi::Number>();
  const uint32_t height = info[3].As<Napi::Number>();

  xcb_connection_t* x = xcb_connect(display.c_str(), nullptr);
  bool painted = xcb_connection_has_error(x) == 0 && pixels.size() == size_t{width} * height;
  if (painted) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(x)).data;
    const xcb_pixmap_t tile = xcb_generate_id(x);
    xcb_create_pixmap(x, screen->root_depth, tile, screen->root, static_cast<uint16_t>(width),
                      static_cast<uint16_t>(height));
    const xcb_gcontext_t pen = xcb_generate_id(x);
    xcb_create_gc(x, pen, tile, 0, nullptr);
    for (uint32_t row = 0; row < height; row += kRowsAtOnce) {
      const uint32_t rows = std::min(kRowsAtOnce, height - row);
      xcb_put_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, tile, pen, static_cast<uint16_t>(width), static_cast<uint16_t>(rows),
                    0, static_cast<int16_t>(row), 0, screen->root_depth, rows * width * 4,
                    reinterpret_cast<const uint8_t*>(pixels.data() + size_t{row} * width));
    }
    xcb_change_window_attributes(x, screen->root, XCB_CW_BACK_PIXMAP, &tile);
    xcb_generic_error_t* error = xcb_request_check(x, xcb_clear_area_checked(x, 0, screen->root, 0, 0, 0, 0));
    painted = error == nullptr && xcb_connection_has_error(x) == 0;
    free(error);
  }
  xcb_disconnect(x);
  return Napi::Boolean::New(info.Env(), painted);
}

}  // namespace corvane::bench
