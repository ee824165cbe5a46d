#include "screens/screen_reader.h"

#include <xcb/damage.h>

#include <algorithm>
#include <utility>

#include "capture/pipeline.h"

namespace corvane::rtc {

namespace {

// A picture that does not change is repeated, for sinks and encoders that come later.
constexpr std::chrono::milliseconds kRepeat(200);
// Three seconds of looks at a source that is there.
constexpr int kMaxFailures = 90;

// The asked part of the source; the part is counted from the source's corner.
Rectangle clip(const Rectangle& region, const Rectangle& source) {
  if (region.width == 0 || region.height == 0) return {0, 0, source.width, source.height};
  const int32_t left = std::min(region.x, source.width);
  const int32_t top = std::min(region.y, source.height);
  return {left, top, std::min(region.width, source.width - left), std::min(region.height, source.height - top)};
}

}  // namespace

ScreenReader::ScreenReader(const XConnection& x, int32_t type, int64_t id)
    : x_(x), target_(ScreenTarget::make(x, type, id)), images_(x), cursor_(x), highlight_(x) {
  if (!x_.has(XExtension::kDamage)) return;
  damage_ = xcb_generate_id(x_.get());
  xcb_damage_create(x_.get(), damage_, target_->watched(), XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
}

void ScreenReader::readEvents() {
  while (const auto event = x_.nextEvent()) {
    if (event->response_type == 0) continue;  // an error of a request that nothing hangs on
    if (damage_ != 0 && event->response_type == x_.firstEvent(xcb_damage_id) + XCB_DAMAGE_NOTIFY) changed_ = true;
    if (cursor_.onEvent(*event) && cursor_inside_) changed_ = true;
    target_->onEvent(*event);
  }
}

std::optional<CaptureFault> ScreenReader::read(const ScreenSettings& settings, CapturedPicture& picture) {
  readEvents();
  const bool with_place = settings.with_cursor || settings.highlighted;
  const ScreenTarget::View view = target_->look(with_place);
  if (!x_.alive()) return CaptureFault{kDeviceFailure, kMediaDeviceErrorDisconnected, "the X server has gone"};
  if (view.state == ScreenTarget::State::kGone) return goneFault();
  seen_ = true;

  const Rectangle part = clip(settings.region, view.source);
  if (view.state == ScreenTarget::State::kHidden || part.width <= 0 || part.height <= 0) {
    highlight_.hide();
    changed_ = true;
    return std::nullopt;
  }
  const Rectangle area = {view.desktop.x + part.x, view.desktop.y + part.y, part.width, part.height};
  if (settings.highlighted) {
    highlight_.show(area, settings.border_color, settings.border_width);
  } else {
    highlight_.hide();
  }
  followCursor(settings, area);
  if (damage_ == 0 || !sameRectangle(part, part_) || Clock::now() - taken_ >= kRepeat) changed_ = true;
  if (!changed_) return std::nullopt;

  take(view, part, area, settings.with_cursor, picture);
  failures_ = picture.buffer != nullptr ? 0 : failures_ + 1;
  if (failures_ < kMaxFailures) return std::nullopt;
  return CaptureFault{kMediaFailure, kMediaDeviceErrorUnsupportedFormat, "the source's pixels cannot be read"};
}

void ScreenReader::followCursor(const ScreenSettings& settings, const Rectangle& area) {
  const bool was_inside = cursor_inside_;
  cursor_inside_ = false;
  bool moved = false;
  if (settings.with_cursor) {
    moved = cursor_.update();
    cursor_inside_ = cursor_.touches(area);
  }
  if (was_inside != cursor_inside_ || (moved && cursor_inside_)) changed_ = true;
}

void ScreenReader::take(const ScreenTarget::View& view, const Rectangle& part, const Rectangle& area, bool with_cursor,
                        CapturedPicture& picture) {
  // Before the pixels: what changes from here on is told anew.
  if (damage_ != 0) xcb_damage_subtract(x_.get(), damage_, XCB_NONE, XCB_NONE);
  picture.buffer =
      images_.read(view.drawable, {view.source.x + part.x, view.source.y + part.y, part.width, part.height});
  if (picture.buffer == nullptr) {
    target_->onReadFailed();
    return;
  }
  if (with_cursor && cursor_inside_) {
    GstMapInfo map;
    if (gst_buffer_map(picture.buffer.get(), &map, GST_MAP_WRITE)) {
      cursor_.drawOver(map.data, area);
      gst_buffer_unmap(picture.buffer.get(), &map);
    }
  }
  if (caps_ == nullptr || part.width != part_.width || part.height != part_.height) {
    const GstVideoInfo info = xImageInfo(part.width, part.height);
    caps_.reset(gst_video_info_to_caps(&info));
  }
  part_ = part;
  taken_ = Clock::now();
  changed_ = false;
  GST_BUFFER_PTS(picture.buffer.get()) = clockNow();
  picture.caps.reset(gst_caps_ref(caps_.get()));
}

CaptureFault ScreenReader::goneFault() const {
  if (seen_) return {kDeviceFailure, kMediaDeviceErrorDisconnected, "what was captured is there no more"};
  return {kNotFound, kMediaDeviceErrorNotFound, "there is no such monitor or window"};
}

}  // namespace corvane::rtc
