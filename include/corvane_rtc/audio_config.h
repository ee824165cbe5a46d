// Records and constants of audio capture, processing and reports.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

enum EarMonitorMode : int32_t {
  kEarMonitorModeOff = 0,
  kEarMonitorModeOn = 1,
};

/// Sample rate, channels and bitrate of what is sent.
enum AudioProfileType : int32_t {
  kAudioProfileDefault = 0,         ///< chosen by the room's kind
  kAudioProfileFluent = 1,          ///< 16 kHz, mono, low bitrate
  kAudioProfileStandard = 2,        ///< 48 kHz, mono
  kAudioProfileHD = 3,              ///< 48 kHz, stereo, high bitrate
  kAudioProfileStandardStereo = 4,  ///< 48 kHz, stereo
  kAudioProfileHDMono = 5,          ///< 48 kHz, mono, high bitrate
};

/// Suppression of background noise, in rising strength.
enum AnsMode : int32_t {
  kAnsModeDisable = 0,
  kAnsModeLow = 1,
  kAnsModeMedium = 2,
  kAnsModeHigh = 3,
  kAnsModeAutomatic = 4,
};

enum AudioAlignmentMode : int32_t {
  kAudioAlignmentModeOff = 0,
  kAudioAlignmentModeAudioMixing = 1,  ///< in step with the progress of the named stream's audio mixing
};

enum AudioSourceType : int32_t {
  kAudioSourceTypeExternal = 0,  ///< pushExternalAudioFrame()
  kAudioSourceTypeInternal = 1,  ///< the microphone
};

/// Which sound raw audio callbacks and processors are about.
enum AudioFrameMethod : int32_t {
  kAudioFrameMethodRecord = 0,        ///< the microphone
  kAudioFrameMethodPlayback = 1,      ///< all remote users together
  kAudioFrameMethodMixed = 2,         ///< microphone and remote users together; not for processors
  kAudioFrameMethodRemoteUser = 3,    ///< each remote user alone
  kAudioFrameMethodRecordScreen = 4,  ///< the shared screen's sound
};

/// Which local sound onLocalAudioPropertiesReport covers.
enum AudioReportMode : int32_t {
  kAudioReportModeNormal = 0,      ///< only while the microphone is unmuted
  kAudioReportModeDisconnect = 1,  ///< also before joining a room
  kAudioReportModeReset = 2,       ///< silent entries are reported as 0
};

/// What the report of the local main stream is measured on.
enum LocalMainReportMode : int32_t {
  kLocalMainReportMicrophone = 0,  ///< the microphone alone
  kLocalMainReportMixed = 1,       ///< with audio mixing and pushed sound
};

/// Reports of volume, spectrum and voice.
struct AudioPropertiesConfig {
  int32_t interval;                ///< milliseconds between reports, at least 100; 0 or less turns them off
  bool enable_spectrum;            ///< fills the 257 spectrum values
  bool enable_vad;                 ///< tells voice from other sound
  int32_t local_main_report_mode;  ///< LocalMainReportMode
  double smooth;                   ///< weight of the newest value, above 0 to 1; 1 does not smooth
  int32_t audio_report_mode;       ///< AudioReportMode
  bool enable_voice_pitch;         ///< measures the local voice's pitch in Hz
};

/// One band of the local voice's equaliser.
struct VoiceEqualizationConfig {
  int32_t frequency;  ///< band, 0 to 9: centres 31, 62, 125, 250, 500 Hz and 1, 2, 4, 8, 16 kHz
  int32_t gain;       ///< dB, -15 to 15
};

/// Reverberation of the local voice.
struct VoiceReverbConfig {
  int32_t room_size;   ///< percent, 0 to 100
  int32_t decay_time;  ///< percent of the longest decay, 0 to 100
  int32_t damping;     ///< percent, 0 to 100
  int32_t wet_gain;    ///< dB, -20 to 10
  int32_t dry_gain;    ///< dB, -20 to 10
  int32_t pre_delay;   ///< milliseconds, 0 to 200
};

}  // namespace corvane::rtc
