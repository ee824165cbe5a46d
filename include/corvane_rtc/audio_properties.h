// Reports of how loud, how voiced and how bright sound is.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Values in one spectrum.
inline constexpr int32_t kAudioSpectrumSize = 257;

/// Whether a piece of sound holds a voice.
enum AudioVoiceActivity : int32_t {
  kAudioVoiceActivityNone = 0,
  kAudioVoiceActivityVoice = 1,
};

/// What one piece of sound measures. Values that were not asked for are 0.
struct AudioPropertiesInfo {
  int32_t linear_volume;               ///< 0 silent to 255 loudest
  int32_t nonlinear_volume;            ///< -127 silent to 0 loudest, in dB of full scale
  int32_t vad;                         ///< AudioVoiceActivity
  double voice_pitch;                  ///< Hz, local sound only; 0 without a voice and for remote sound
  float spectrum[kAudioSpectrumSize];  ///< magnitude from 0 Hz to half the sample rate, evenly spaced, 0 to 255
};

/// One local stream in a report.
struct LocalAudioPropertiesInfo {
  int32_t stream_index;  ///< StreamIndex
  AudioPropertiesInfo audio_properties_info;
};

/// One remote stream in a report.
struct RemoteAudioPropertiesInfo {
  StreamKey stream_key;
  AudioPropertiesInfo audio_properties_info;
};

}  // namespace corvane::rtc
