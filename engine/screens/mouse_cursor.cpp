#include "screens/mouse_cursor.h"

#include <xcb/xfixes.h>

#include <algorithm>

namespace corvane::rtc {

namespace {

// Both 0xAARRGGBB; `above` has its colours multiplied by its A.
uint32_t blend(uint32_t above, uint32_t below) {
  const uint32_t rest = 255 - (above >> 24);
  uint32_t result = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    const uint32_t channel = ((above >> shift) & 0xff) + (((below >> shift) & 0xff) * rest + 127) / 255;
    result |= std::min<uint32_t>(channel, 255) << shift;
  }
  return result;
}

}  // namespace

MouseCursor::MouseCursor(const XConnection& x) : x_(x), available_(x.has(XExtension::kFixes)) {
  if (available_) {
    xcb_xfixes_select_cursor_input(x_.get(), x_.root(), XCB_XFIXES_CURSOR_NOTIFY_MASK_DISPLAY_CURSOR);
  }
}

bool MouseCursor::onEvent(const xcb_generic_event_t& event) {
  if (!available_ || event.response_type != x_.firstEvent(xcb_xfixes_id) + XCB_XFIXES_CURSOR_NOTIFY) return false;
  loaded_ = false;
  return true;
}

bool MouseCursor::update() {
  if (!available_) return false;
  const auto pointer = x_.answer<&xcb_query_pointer_reply>(xcb_query_pointer(x_.get(), x_.root()));
  if (pointer == nullptr || (pointer->root_x == x_position_ && pointer->root_y == y_position_)) return false;
  x_position_ = pointer->root_x;
  y_position_ = pointer->root_y;
  return true;
}

void MouseCursor::load() {
  if (loaded_ || !available_) return;
  loaded_ = true;
  const auto image = x_.answer<&xcb_xfixes_get_cursor_image_reply>(xcb_xfixes_get_cursor_image(x_.get()));
  pixels_.clear();
  width_ = height_ = 0;
  if (image == nullptr) return;
  hot_x_ = image->xhot;
  hot_y_ = image->yhot;
  width_ = image->width;
  height_ = image->height;
  const uint32_t* first = xcb_xfixes_get_cursor_image_cursor_image(image.get());
  pixels_.assign(first, first + static_cast<ptrdiff_t>(width_) * height_);
}

bool MouseCursor::touches(const Rectangle& area) {
  load();
  const int32_t left = x_position_ - hot_x_ - area.x;
  const int32_t top = y_position_ - hot_y_ - area.y;
  return left < area.width && top < area.height && left + width_ > 0 && top + height_ > 0;
}

void MouseCursor::drawOver(uint8_t* pixels, const Rectangle& area) {
  if (!touches(area)) return;
  const int32_t left = x_position_ - hot_x_ - area.x;
  const int32_t top = y_position_ - hot_y_ - area.y;
  auto* const target = reinterpret_cast<uint32_t*>(pixels);
  for (int32_t row = std::max(0, -top); row < std::min(height_, area.height - top); ++row) {
    const uint32_t* source_row = pixels_.data() + static_cast<ptrdiff_t>(row) * width_;
    uint32_t* target_row = target + static_cast<ptrdiff_t>(top + row) * area.width + left;
    for (int32_t column = std::max(0, -left); column < std::min(width_, area.width - left); ++column) {
      target_row[column] = blend(source_row[column], target_row[column]);
    }
  }
}

}  // namespace corvane::rtc
