// Ways to rooms, players and managers, and settings of the whole engine.
#include "api/rtc_video.h"

namespace corvane::rtc {

// Rooms, players and managers.

IRTCRoom* RtcVideo::createRTCRoom(const char* /*room_id*/) {
  notSupported(__func__);
  return nullptr;
}

IAudioDeviceManager* RtcVideo::getAudioDeviceManager() {
  return &audio_devices_;
}

IVideoDeviceManager* RtcVideo::getVideoDeviceManager() {
  return &video_devices_;
}

IAudioMixingManager* RtcVideo::getAudioMixingManager() {
  notSupported(__func__);
  return nullptr;
}

IVideoEffect* RtcVideo::getVideoEffectInterface() {
  return &video_effect_;
}

IKTVManager* RtcVideo::getKTVManager() {
  notSupported(__func__);
  return nullptr;
}

ISingScoringManager* RtcVideo::getSingScoringManager() {
  notSupported(__func__);
  return nullptr;
}

IAudioEffectPlayer* RtcVideo::getAudioEffectPlayer() {
  notSupported(__func__);
  return nullptr;
}

IMediaPlayer* RtcVideo::getMediaPlayer(int32_t /*player_id*/) {
  notSupported(__func__);
  return nullptr;
}

// Engine-wide settings.

int32_t RtcVideo::setBusinessId(const char* /*business_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setRuntimeParameters(const char* /*json_string*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::feedback(uint64_t /*type*/, const FeedbackInfo& /*info*/) {
  return notSupported(__func__);
}

}  // namespace corvane::rtc
