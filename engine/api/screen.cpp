// The screen as a source, recordings and snapshots.
#include <limits>
#include <variant>

#include "api/rtc_room.h"
#include "api/rtc_video.h"
#include "devices/audio_device_id.h"

namespace corvane::rtc {

namespace {

// Ids are those of an X server, which have 32 bits.
bool isSourceId(int64_t id) {
  return id > 0 && id <= std::numeric_limits<uint32_t>::max();
}

// Coordinates of an X server have 16 bits.
bool isRegion(const Rectangle& region) {
  constexpr int32_t kMax = std::numeric_limits<int16_t>::max();
  const auto fits = [](int32_t value) { return value >= 0 && value <= kMax; };
  return fits(region.x) && fits(region.y) && fits(region.width) && fits(region.height);
}

bool isHighlight(const ScreenHighlightConfig& config) {
  constexpr int32_t kMaxWidth = 200;
  return !config.enable_highlight || (config.border_width > 0 && config.border_width <= kMaxWidth);
}

bool isCursorState(int32_t state) {
  return state == kMouseCursorCaptureStateOn || state == kMouseCursorCaptureStateOff;
}

// The border is as opaque as any window.
uint32_t opaque(int32_t color) {
  return static_cast<uint32_t>(color) & 0xffffff;
}

}  // namespace

// Screen sharing.

IScreenCaptureSourceList* RtcVideo::getScreenCaptureSourceList() {
  CaptureFault fault;
  IScreenCaptureSourceList* list = screen_query_.list(environmentDisplay(), fault);
  if (list == nullptr) refuseScreen(__func__, fault);
  return list;
}

IVideoFrame* RtcVideo::getThumbnail(int32_t type, int64_t source_id, int32_t max_width, int32_t max_height) {
  CaptureFault fault = {kInvalidParameter, kMediaDeviceErrorNotFound, "no such kind of source"};
  IVideoFrame* frame = nullptr;
  if ((type == kScreenCaptureSourceTypeWindow || type == kScreenCaptureSourceTypeScreen) && isSourceId(source_id)) {
    frame = screen_query_.thumbnail(environmentDisplay(), type, source_id, max_width, max_height, fault);
  }
  if (frame == nullptr) refuseScreen(__func__, fault);
  return frame;
}

IVideoFrame* RtcVideo::getWindowAppIcon(int64_t source_id, int32_t max_width, int32_t max_height) {
  CaptureFault fault = {kInvalidParameter, kMediaDeviceErrorNotFound, "no window's id"};
  IVideoFrame* frame = nullptr;
  if (isSourceId(source_id)) {
    frame = screen_query_.icon(environmentDisplay(), source_id, max_width, max_height, fault);
  }
  if (frame == nullptr) refuseScreen(__func__, fault);
  return frame;
}

int32_t RtcVideo::startScreenVideoCapture(const ScreenCaptureSourceInfo& source_info,
                                          const ScreenCaptureParameters& capture_params) {
  const ScreenFilterConfig& filter = capture_params.filter_config;
  const ScreenHighlightConfig& highlight = capture_params.highlight_config;
  const int32_t type = source_info.type;
  if ((type != kScreenCaptureSourceTypeWindow && type != kScreenCaptureSourceTypeScreen) ||
      !isSourceId(source_info.source_id) || !isRegion(capture_params.region_rect) ||
      !isCursorState(capture_params.capture_mouse_cursor) || !isHighlight(highlight) ||
      filter.excluded_window_count < 0) {
    return kInvalidParameter;
  }
  // A window that was to stay unseen must not be shown: without it, there is nothing.
  if (filter.excluded_window_count > 0) return notSupported(__func__);

  const ScreenSourceId source = {environmentDisplay(), type, source_info.source_id};
  CaptureFault fault;
  if (!screen_query_.check(source.display, fault)) return refuseScreen(__func__, fault);
  const ScreenSettings settings = {capture_params.region_rect,
                                   capture_params.capture_mouse_cursor == kMouseCursorCaptureStateOn,
                                   highlight.enable_highlight, opaque(highlight.border_color), highlight.border_width};
  screen_started_ = true;
  context_.thread.post([this, source, settings] { screen_capture_->start(source, settings); });
  return kSuccess;
}

int32_t RtcVideo::updateScreenCaptureRegion(const Rectangle& region_rect) {
  if (!isRegion(region_rect)) return kInvalidParameter;
  if (!screen_started_) return kWrongState;
  context_.thread.post([this, region_rect] { screen_capture_->setRegion(region_rect); });
  return kSuccess;
}

int32_t RtcVideo::updateScreenCaptureHighlightConfig(const ScreenHighlightConfig& highlight_config) {
  if (!isHighlight(highlight_config)) return kInvalidParameter;
  if (!screen_started_) return kWrongState;
  context_.thread.post([this, config = highlight_config] {
    screen_capture_->setHighlight(config.enable_highlight, opaque(config.border_color), config.border_width);
  });
  return kSuccess;
}

int32_t RtcVideo::updateScreenCaptureMouseCursor(int32_t capture_mouse_cursor) {
  if (!isCursorState(capture_mouse_cursor)) return kInvalidParameter;
  if (!screen_started_) return kWrongState;
  const bool with_cursor = capture_mouse_cursor == kMouseCursorCaptureStateOn;
  context_.thread.post([this, with_cursor] { screen_capture_->setCursor(with_cursor); });
  return kSuccess;
}

int32_t RtcVideo::updateScreenCaptureFilterConfig(const ScreenFilterConfig& filter_config) {
  if (filter_config.excluded_window_count < 0) return kInvalidParameter;
  if (filter_config.excluded_window_count > 0) return notSupported(__func__);
  return screen_started_ ? kSuccess : kWrongState;
}

int32_t RtcVideo::stopScreenVideoCapture() {
  screen_started_ = false;
  context_.thread.post([this] { screen_capture_->stop(); });
  return kSuccess;
}

int32_t RtcVideo::startScreenAudioCapture() {
  const bool is_source = parameters_.screen_sound.empty() ||
                         !std::holds_alternative<std::monostate>(parseMicrophoneId(parameters_.screen_sound));
  if (!is_source) return kInvalidParameter;
  context_.thread.post([this] { screen_sound_capture_->start(); });
  return kSuccess;
}

int32_t RtcVideo::startMacScreenAudioCapture(const char* /*device_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopScreenAudioCapture() {
  context_.thread.post([this] { screen_sound_capture_->stop(); });
  return kSuccess;
}

int32_t RtcVideo::setScreenAudioStreamIndex(int32_t stream_index) {
  if (stream_index != kStreamIndexMain && stream_index != kStreamIndexScreen) return kInvalidParameter;
  context_.thread.post([this, stream_index] { screen_sound_capture_->setStream(stream_index); });
  return kSuccess;
}

int32_t RtcVideo::setScreenAudioChannel(int32_t channel) {
  if (channel < 1 || channel > kMaxSoundChannels) return kInvalidParameter;
  screen_sound_.setChannels(channel);
  return kSuccess;
}

// Recording and snapshots.

int32_t RtcVideo::startFileRecording(int32_t stream_index, const RecordingConfig& config, int32_t recording_type) {
  return recordings_.startFile(stream_index, config, recording_type);
}

int32_t RtcVideo::stopFileRecording(int32_t stream_index) {
  return recordings_.stopFile(stream_index);
}

int32_t RtcVideo::startAudioRecording(const AudioRecordingConfig& config) {
  return recordings_.startSound(config);
}

int32_t RtcVideo::stopAudioRecording() {
  return recordings_.stopSound();
}

int32_t RtcVideo::takeLocalSnapshot(int32_t stream_index, ISnapshotResultCallback* callback) {
  return snapshots_.take(stream_index, callback);
}

int32_t RtcVideo::takeRemoteSnapshot(const StreamKey& stream_key, ISnapshotResultCallback* callback) {
  const bool valid = isRoomOrUserId(stream_key.room_id) && isRoomOrUserId(stream_key.user_id) &&
                     (stream_key.stream_index == kStreamIndexMain || stream_key.stream_index == kStreamIndexScreen);
  return valid ? snapshots_.takeRemote(stream_key, callback) : kInvalidParameter;
}

}  // namespace corvane::rtc
