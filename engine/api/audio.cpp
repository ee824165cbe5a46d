// Sound: capture, playback, the local voice, raw samples.
#include "api/rtc_video.h"

namespace corvane::rtc {

// Audio capture and playback.

int32_t RtcVideo::startAudioCapture() {
  return notSupported(__func__);
}

int32_t RtcVideo::stopAudioCapture() {
  return notSupported(__func__);
}

int32_t RtcVideo::muteAudioCapture(int32_t /*stream_index*/, bool /*mute*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setCaptureVolume(int32_t /*stream_index*/, int32_t /*volume*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setPlaybackVolume(int32_t /*volume*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setRemoteAudioPlaybackVolume(const StreamKey& /*stream_key*/, int32_t /*volume*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setEarMonitorMode(int32_t /*mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setEarMonitorVolume(int32_t /*volume*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setAudioProfile(int32_t /*audio_profile*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setAnsMode(int32_t /*ans_mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableAGC(bool /*enable*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enablePlaybackDucking(bool /*enable*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableExternalSoundCard(bool /*enable*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setAudioAlignmentProperty(const StreamKey& /*stream_key*/, int32_t /*mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableAudioPropertiesReport(const AudioPropertiesConfig& /*config*/) {
  return notSupported(__func__);
}

// The local voice.

int32_t RtcVideo::setLocalVoicePitch(int32_t /*pitch*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setLocalVoiceEqualization(const VoiceEqualizationConfig& /*config*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setLocalVoiceReverbParam(const VoiceReverbConfig& /*config*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableLocalVoiceReverb(bool /*enable*/) {
  return notSupported(__func__);
}

// Raw audio in and out.

int32_t RtcVideo::registerAudioFrameObserver(IAudioFrameObserver* /*observer*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableAudioFrameCallback(int32_t /*method*/, const AudioFormat& /*format*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::disableAudioFrameCallback(int32_t /*method*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::registerAudioFrameProcessor(IAudioFrameProcessor* /*processor*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableAudioProcessor(int32_t /*method*/, const AudioFormat& /*format*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::disableAudioProcessor(int32_t /*method*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setAudioSourceType(int32_t /*type*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::pushExternalAudioFrame(IAudioFrame* /*frame*/) {
  return notSupported(__func__);
}

}  // namespace corvane::rtc
