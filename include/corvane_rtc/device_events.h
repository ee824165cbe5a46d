// Constants in reports of cameras, microphones and speakers.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Kinds of devices in audio device reports.
enum AudioDeviceType : int32_t {
  kAudioDeviceTypeUnknown = -1,
  kAudioDeviceTypeRender = 0,   ///< speaker
  kAudioDeviceTypeCapture = 1,  ///< microphone
  kAudioDeviceTypeScreenCapture = 2,
};

/// Kinds of devices in video device reports.
enum VideoDeviceType : int32_t {
  kVideoDeviceTypeUnknown = -1,
  kVideoDeviceTypeRender = 0,
  kVideoDeviceTypeCapture = 1,  ///< camera
  kVideoDeviceTypeScreenCapture = 2,
};

enum MediaDeviceState : int32_t {
  kMediaDeviceStateStarted = 1,
  kMediaDeviceStateStopped = 2,
  kMediaDeviceStateRuntimeError = 3,  ///< MediaDeviceError tells why
  kMediaDeviceStateAdded = 4,         ///< plugged in
  kMediaDeviceStateRemoved = 5,       ///< unplugged
};

enum MediaDeviceError : int32_t {
  kMediaDeviceErrorOk = 0,
  kMediaDeviceErrorNoPermission = 1,
  kMediaDeviceErrorBusy = 2,
  kMediaDeviceErrorFailure = 3,
  kMediaDeviceErrorNotFound = 4,
  kMediaDeviceErrorDisconnected = 5,
  kMediaDeviceErrorNoCallback = 6,  ///< open, but it delivers nothing
  kMediaDeviceErrorUnsupportedFormat = 7,
};

enum MediaDeviceWarning : int32_t {
  kMediaDeviceWarningNone = 0,
  kMediaDeviceWarningOperationDenied = 1,
  kMediaDeviceWarningCaptureSilence = 2,   ///< a microphone has delivered nothing but silence for a while
  kMediaDeviceWarningPlaybackSilence = 3,  ///< a speaker takes no sound
  kMediaDeviceWarningHowling = 4,          ///< microphone and speaker feed each other
};

/// Results of startEchoTest().
enum EchoTestResult : int32_t {
  kEchoTestSuccess = 0,
  kEchoTestTimeout = 1,        ///< what was sent did not come back
  kEchoTestTooShort = 2,       ///< stopped before anything could come back
  kEchoTestDeviceFailure = 3,  ///< nothing could be recorded or played
  kEchoTestServiceFailure = 4,
  kEchoTestInternalError = 5,
};

/// Results of startHardwareEchoDetection().
enum HardwareEchoDetectionResult : int32_t {
  kHardwareEchoDetectionStopped = 0,  ///< stopped before there was a result
  kHardwareEchoDetectionUnknown = 1,
  kHardwareEchoDetectionNone = 2,
  kHardwareEchoDetectionPresent = 3,  ///< the microphone hears the speaker: headphones would help
};

}  // namespace corvane::rtc
