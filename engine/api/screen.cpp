// The screen as a source, recordings and snapshots.
#include "api/rtc_video.h"

namespace corvane::rtc {

// Screen sharing.

IScreenCaptureSourceList* RtcVideo::getScreenCaptureSourceList() {
  notSupported(__func__);
  return nullptr;
}

IVideoFrame* RtcVideo::getThumbnail(int32_t /*type*/, int64_t /*source_id*/, int32_t /*max_width*/,
                                    int32_t /*max_height*/) {
  notSupported(__func__);
  return nullptr;
}

IVideoFrame* RtcVideo::getWindowAppIcon(int64_t /*source_id*/, int32_t /*max_width*/, int32_t /*max_height*/) {
  notSupported(__func__);
  return nullptr;
}

int32_t RtcVideo::startScreenVideoCapture(const ScreenCaptureSourceInfo& /*source_info*/,
                                          const ScreenCaptureParameters& /*capture_params*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::updateScreenCaptureRegion(const Rectangle& /*region_rect*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::updateScreenCaptureHighlightConfig(const ScreenHighlightConfig& /*highlight_config*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::updateScreenCaptureMouseCursor(int32_t /*capture_mouse_cursor*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::updateScreenCaptureFilterConfig(const ScreenFilterConfig& /*filter_config*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopScreenVideoCapture() {
  return notSupported(__func__);
}

int32_t RtcVideo::startScreenAudioCapture() {
  return notSupported(__func__);
}

int32_t RtcVideo::startMacScreenAudioCapture(const char* /*device_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopScreenAudioCapture() {
  return notSupported(__func__);
}

int32_t RtcVideo::setScreenAudioStreamIndex(int32_t /*stream_index*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setScreenAudioChannel(int32_t /*channel*/) {
  return notSupported(__func__);
}

// Recording and snapshots.

int32_t RtcVideo::startFileRecording(int32_t /*stream_index*/, const RecordingConfig& /*config*/,
                                     int32_t /*recording_type*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopFileRecording(int32_t /*stream_index*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::startAudioRecording(const AudioRecordingConfig& /*config*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopAudioRecording() {
  return notSupported(__func__);
}

int32_t RtcVideo::takeLocalSnapshot(int32_t /*stream_index*/, ISnapshotResultCallback* /*callback*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::takeRemoteSnapshot(const StreamKey& /*stream_key*/, ISnapshotResultCallback* /*callback*/) {
  return notSupported(__func__);
}

}  // namespace corvane::rtc
