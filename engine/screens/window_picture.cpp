#include "screens/window_picture.h"

#include <xcb/composite.h>

namespace corvane::rtc {

WindowPicture::WindowPicture(const XConnection& x, xcb_window_t window)
    : x_(x),
      window_(window),
      redirected_(x.has(XExtension::kComposite) && x.succeeds(xcb_composite_redirect_window_checked(
                                                       x.get(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC))) {}

WindowPicture::~WindowPicture() {
  forget();
  if (!redirected_) return;
  // Checked and dropped: the window may be gone, and nobody would ever look at the error.
  const auto ended = xcb_composite_unredirect_window_checked(x_.get(), window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
  xcb_discard_reply(x_.get(), ended.sequence);
  xcb_flush(x_.get());
}

xcb_drawable_t WindowPicture::drawable() {
  if (pixmap_ != XCB_NONE) return pixmap_;
  const auto asked_facts = xcb_get_window_attributes(x_.get(), window_);
  const auto asked_geometry = xcb_get_geometry(x_.get(), window_);
  const auto facts = x_.answer<&xcb_get_window_attributes_reply>(asked_facts);
  const auto geometry = x_.answer<&xcb_get_geometry_reply>(asked_geometry);
  if (facts == nullptr || geometry == nullptr || facts->map_state != XCB_MAP_STATE_VIEWABLE) return XCB_NONE;
  area_ = {0, 0, geometry->width, geometry->height};
  if (!redirected_) return window_;

  const xcb_pixmap_t pixmap = xcb_generate_id(x_.get());
  if (!x_.succeeds(xcb_composite_name_window_pixmap_checked(x_.get(), window_, pixmap))) return XCB_NONE;
  pixmap_ = pixmap;
  // The picture has the window's own border around it.
  area_.x = geometry->border_width;
  area_.y = geometry->border_width;
  return pixmap_;
}

void WindowPicture::forget() {
  if (pixmap_ != XCB_NONE) xcb_free_pixmap(x_.get(), pixmap_);
  pixmap_ = XCB_NONE;
}

}  // namespace corvane::rtc
