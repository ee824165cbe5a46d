// Sound: capture, playback, the local voice, raw samples.
#include <array>

#include "api/rtc_room.h"
#include "api/rtc_video.h"

namespace corvane::rtc {

namespace {

// Percent.
constexpr int32_t kMaxVolume = 400;
constexpr int32_t kMaxEarMonitorVolume = 100;
constexpr float kUnchangedVolume = 100.0F;
// Of the device's own volume.
constexpr float kFullDeviceVolume = 255.0F;

// By AudioProfileType. What is sent has one channel, so that stereo profiles have the bitrate of its share.
constexpr std::array<SoundEncoding, kAudioProfileHDMono + 1> kAudioProfiles = {{
    {.bitrate = 40'000, .is_wideband = false},
    {.bitrate = 24'000, .is_wideband = true},
    {.bitrate = 48'000, .is_wideband = false},
    {.bitrate = 96'000, .is_wideband = false},
    {.bitrate = 64'000, .is_wideband = false},
    {.bitrate = 96'000, .is_wideband = false},
}};

}  // namespace

void RtcVideo::onAudioDeviceChosen(AudioDeviceKind kind, const std::string& id) {
  const bool is_microphone = kind == AudioDeviceKind::kMicrophone;
  context_.thread.post([this, is_microphone, id] {
    if (is_microphone) {
      audio_capture_->setMicrophone(id);
      device_trials_->chooseMicrophone(id);
    } else {
      speaker_->setSpeaker(id);
      device_trials_->chooseSpeaker(id);
    }
  });
}

void RtcVideo::onAudioDeviceVolume(AudioDeviceKind kind, int32_t volume, bool muted) {
  const bool is_microphone = kind == AudioDeviceKind::kMicrophone;
  const float gain = muted ? 0.0F : static_cast<float>(volume) / kFullDeviceVolume;
  if (is_microphone) {
    captured_sound_.setDeviceGain(gain);
  } else {
    playback_.setDeviceGain(gain);
  }
  context_.thread.post([this, is_microphone, volume, muted] {
    context_.events->onAudioDeviceVolumeChanged(is_microphone ? kAudioDeviceTypeCapture : kAudioDeviceTypeRender,
                                                volume, muted);
  });
}

// Audio capture and playback.

int32_t RtcVideo::startAudioCapture() {
  context_.thread.post([this] { audio_capture_->start(); });
  return kSuccess;
}

int32_t RtcVideo::stopAudioCapture() {
  context_.thread.post([this] { audio_capture_->stop(); });
  return kSuccess;
}

int32_t RtcVideo::muteAudioCapture(int32_t stream_index, bool mute) {
  if (stream_index == kStreamIndexScreen) {
    screen_sound_.setMuted(mute);
    return kSuccess;
  }
  if (stream_index != kStreamIndexMain) return kInvalidParameter;
  if (!captured_sound_.setMuted(mute)) return kSuccess;
  context_.thread.post([this, mute] {
    context_.events->onLocalAudioStateChanged(mute ? kLocalAudioStreamStateMuted : kLocalAudioStreamStateUnmuted,
                                              kLocalAudioStreamErrorOk);
  });
  return kSuccess;
}

int32_t RtcVideo::setCaptureVolume(int32_t stream_index, int32_t volume) {
  if (volume < 0 || volume > kMaxVolume) return kInvalidParameter;
  const float gain = static_cast<float>(volume) / kUnchangedVolume;
  if (stream_index == kStreamIndexScreen) {
    screen_sound_.setGain(gain);
  } else if (stream_index == kStreamIndexMain) {
    captured_sound_.setGain(gain);
  } else {
    return kInvalidParameter;
  }
  return kSuccess;
}

int32_t RtcVideo::setPlaybackVolume(int32_t volume) {
  if (volume < 0 || volume > kMaxVolume) return kInvalidParameter;
  playback_.setGain(static_cast<float>(volume) / kUnchangedVolume);
  return kSuccess;
}

int32_t RtcVideo::setRemoteAudioPlaybackVolume(const StreamKey& stream_key, int32_t volume) {
  if (!isRoomOrUserId(stream_key.room_id) || !isRoomOrUserId(stream_key.user_id) || volume < 0 || volume > kMaxVolume) {
    return kInvalidParameter;
  }
  const int32_t index = stream_key.stream_index;
  if (index != kStreamIndexMain && index != kStreamIndexScreen) return kInvalidParameter;
  postToRoom(stream_key.room_id, [user = std::string(stream_key.user_id), index, volume](Room& room) {
    room.setVolume(user, index, volume);
  });
  return kSuccess;
}

int32_t RtcVideo::setEarMonitorMode(int32_t mode) {
  if (mode != kEarMonitorModeOff && mode != kEarMonitorModeOn) return kInvalidParameter;
  const bool on = mode == kEarMonitorModeOn;
  // Who hears himself wears headphones; his own voice is not to be taken for an echo.
  captured_sound_.cleaner().setHeadphones(on);
  ear_monitor_.turn(on);
  return kSuccess;
}

int32_t RtcVideo::setEarMonitorVolume(int32_t volume) {
  if (volume < 0 || volume > kMaxEarMonitorVolume) return kInvalidParameter;
  ear_monitor_.setVolume(static_cast<float>(volume) / kUnchangedVolume);
  return kSuccess;
}

int32_t RtcVideo::setAudioProfile(int32_t audio_profile) {
  const bool is_known = audio_profile >= kAudioProfileDefault && audio_profile <= kAudioProfileHDMono;
  if (!is_known) return kInvalidParameter;
  const SoundEncoding encoding = kAudioProfiles[static_cast<size_t>(audio_profile)];
  context_.thread.post([this, encoding] { rooms_->media(kStreamIndexMain).setSoundEncoding(encoding); });
  return kSuccess;
}

int32_t RtcVideo::setAnsMode(int32_t ans_mode) {
  if (ans_mode < kAnsModeDisable || ans_mode > kAnsModeAutomatic) return kInvalidParameter;
  captured_sound_.cleaner().setNoiseSuppression(ans_mode);
  return kSuccess;
}

int32_t RtcVideo::enableAGC(bool enable) {
  captured_sound_.cleaner().setGainControl(enable);
  return kSuccess;
}

int32_t RtcVideo::enablePlaybackDucking(bool enable) {
  played_sound_.ducking().turn(enable);
  return kSuccess;
}

int32_t RtcVideo::enableExternalSoundCard(bool enable) {
  captured_sound_.cleaner().leaveToSoundCard(enable);
  return kSuccess;
}

int32_t RtcVideo::setAudioAlignmentProperty(const StreamKey& /*stream_key*/, int32_t /*mode*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::enableAudioPropertiesReport(const AudioPropertiesConfig& config) {
  if (!isAudioPropertiesConfig(config)) return kInvalidParameter;
  context_.thread.post([this, config] { audio_report_->configure(config); });
  return kSuccess;
}

// The local voice.

int32_t RtcVideo::setLocalVoicePitch(int32_t pitch) {
  return captured_sound_.effects().setPitch(pitch);
}

int32_t RtcVideo::setLocalVoiceEqualization(const VoiceEqualizationConfig& config) {
  return captured_sound_.effects().setBand(config);
}

int32_t RtcVideo::setLocalVoiceReverbParam(const VoiceReverbConfig& config) {
  return captured_sound_.effects().setReverb(config);
}

int32_t RtcVideo::enableLocalVoiceReverb(bool enable) {
  captured_sound_.effects().enableReverb(enable);
  return kSuccess;
}

// Raw audio in and out.

int32_t RtcVideo::registerAudioFrameObserver(IAudioFrameObserver* observer) {
  sound_hooks_.observer.attach(observer);
  return kSuccess;
}

int32_t RtcVideo::enableAudioFrameCallback(int32_t method, const AudioFormat& format) {
  switch (method) {
    case kAudioFrameMethodRecord:
      return captured_sound_.enableObserver(format);
    case kAudioFrameMethodPlayback:
      return played_sound_.enableObserver(format);
    case kAudioFrameMethodMixed:
      return played_sound_.enableMixedObserver(format);
    case kAudioFrameMethodRemoteUser:
      return remote_sounds_.enableObserver(format);
    case kAudioFrameMethodRecordScreen:
      return screen_sound_.enableObserver(format);
    default:
      return kInvalidParameter;
  }
}

int32_t RtcVideo::disableAudioFrameCallback(int32_t method) {
  switch (method) {
    case kAudioFrameMethodRecord:
      captured_sound_.disableObserver();
      return kSuccess;
    case kAudioFrameMethodPlayback:
      played_sound_.disableObserver();
      return kSuccess;
    case kAudioFrameMethodMixed:
      played_sound_.disableMixedObserver();
      return kSuccess;
    case kAudioFrameMethodRemoteUser:
      remote_sounds_.disableObserver();
      return kSuccess;
    case kAudioFrameMethodRecordScreen:
      screen_sound_.disableObserver();
      return kSuccess;
    default:
      return kInvalidParameter;
  }
}

int32_t RtcVideo::registerAudioFrameProcessor(IAudioFrameProcessor* processor) {
  sound_hooks_.processor.attachAndWait(processor);
  return kSuccess;
}

int32_t RtcVideo::enableAudioProcessor(int32_t method, const AudioFormat& format) {
  switch (method) {
    case kAudioFrameMethodRecord:
      return captured_sound_.enableProcessor(format);
    case kAudioFrameMethodPlayback:
      return played_sound_.enableProcessor(format);
    case kAudioFrameMethodRemoteUser:
      return remote_sounds_.enableProcessor(format);
    case kAudioFrameMethodRecordScreen:
      return screen_sound_.enableProcessor(format);
    default:
      return kInvalidParameter;
  }
}

int32_t RtcVideo::disableAudioProcessor(int32_t method) {
  switch (method) {
    case kAudioFrameMethodRecord:
      captured_sound_.disableProcessor();
      return kSuccess;
    case kAudioFrameMethodPlayback:
      played_sound_.disableProcessor();
      return kSuccess;
    case kAudioFrameMethodRemoteUser:
      remote_sounds_.disableProcessor();
      return kSuccess;
    case kAudioFrameMethodRecordScreen:
      screen_sound_.disableProcessor();
      return kSuccess;
    default:
      return kInvalidParameter;
  }
}

int32_t RtcVideo::setAudioSourceType(int32_t type) {
  if (type != kAudioSourceTypeExternal && type != kAudioSourceTypeInternal) return kInvalidParameter;
  const bool pushed = type == kAudioSourceTypeExternal;
  if (pushed) {
    pushed_sound_.open();
  } else {
    pushed_sound_.close();
  }
  context_.thread.post([this, pushed] { audio_capture_->setPushed(pushed); });
  return kSuccess;
}

int32_t RtcVideo::pushExternalAudioFrame(IAudioFrame* frame) {
  return pushed_sound_.push(frame);
}

}  // namespace corvane::rtc
