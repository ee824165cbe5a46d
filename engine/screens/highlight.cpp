#include "screens/highlight.h"

#include <xcb/xfixes.h>

#include <algorithm>

#include "screens/screen_settings.h"

namespace corvane::rtc {

Highlight::~Highlight() {
  if (!created_) return;
  for (const xcb_window_t side : sides_) xcb_destroy_window(x_.get(), side);
  xcb_flush(x_.get());
}

void Highlight::create(uint32_t color) {
  // One that no click falls into, in the order of the flags.
  const uint32_t values[] = {color, 1};
  for (xcb_window_t& side : sides_) {
    side = xcb_generate_id(x_.get());
    xcb_create_window(x_.get(), XCB_COPY_FROM_PARENT, side, x_.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    if (!x_.has(XExtension::kFixes)) continue;
    const xcb_xfixes_region_t nothing = xcb_generate_id(x_.get());
    xcb_xfixes_create_region(x_.get(), nothing, 0, nullptr);
    xcb_xfixes_set_window_shape_region(x_.get(), side, XCB_SHAPE_SK_INPUT, 0, 0, nothing);
    xcb_xfixes_destroy_region(x_.get(), nothing);
  }
  created_ = true;
  color_ = color;
}

void Highlight::show(const Rectangle& area, uint32_t color, int32_t width) {
  if (!created_) create(color);
  if (color != color_) {
    for (const xcb_window_t side : sides_) {
      xcb_change_window_attributes(x_.get(), side, XCB_CW_BACK_PIXEL, &color);
      xcb_clear_area(x_.get(), 0, side, 0, 0, 0, 0);
    }
    color_ = color;
  }
  if (!shown_ || !sameRectangle(area, area_) || width != width_) {
    const int32_t left = std::max(0, area.x - width);
    const int32_t top = std::max(0, area.y - width);
    const int32_t right = std::min<int32_t>(x_.screen().width_in_pixels, area.x + area.width + width);
    const int32_t bottom = std::min<int32_t>(x_.screen().height_in_pixels, area.y + area.height + width);
    const std::array<Rectangle, kSides> places = {{{left, top, right - left, width},
                                                   {left, bottom - width, right - left, width},
                                                   {left, top, width, bottom - top},
                                                   {right - width, top, width, bottom - top}}};
    for (size_t side = 0; side < kSides; ++side) {
      const Rectangle& place = places[side];
      const uint32_t values[] = {static_cast<uint32_t>(place.x), static_cast<uint32_t>(place.y),
                                 static_cast<uint32_t>(std::max(1, place.width)),
                                 static_cast<uint32_t>(std::max(1, place.height)), XCB_STACK_MODE_ABOVE};
      xcb_configure_window(x_.get(), sides_[side],
                           XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                               XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_STACK_MODE,
                           values);
      if (!shown_) xcb_map_window(x_.get(), sides_[side]);
    }
    area_ = area;
    width_ = width;
    shown_ = true;
  }
  xcb_flush(x_.get());
}

void Highlight::hide() {
  if (!shown_) return;
  for (const xcb_window_t side : sides_) xcb_unmap_window(x_.get(), side);
  xcb_flush(x_.get());
  shown_ = false;
}

}  // namespace corvane::rtc
