// Records and constants in reports of local and remote streams.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

enum LocalAudioStreamState : int32_t {
  kLocalAudioStreamStateStopped = 0,
  kLocalAudioStreamStateRecording = 1,
  kLocalAudioStreamStateEncoding = 2,
  kLocalAudioStreamStateFailed = 3,
  kLocalAudioStreamStateMuted = 4,
  kLocalAudioStreamStateUnmuted = 5,
};

enum LocalAudioStreamError : int32_t {
  kLocalAudioStreamErrorOk = 0,
  kLocalAudioStreamErrorFailure = 1,
  kLocalAudioStreamErrorDeviceNoPermission = 2,
  kLocalAudioStreamErrorDeviceBusy = 3,
  kLocalAudioStreamErrorRecordFailure = 4,
  kLocalAudioStreamErrorEncodeFailure = 5,
  kLocalAudioStreamErrorNoRecordingDevice = 6,
};

enum LocalVideoStreamState : int32_t {
  kLocalVideoStreamStateStopped = 0,
  kLocalVideoStreamStateRecording = 1,
  kLocalVideoStreamStateEncoding = 2,
  kLocalVideoStreamStateFailed = 3,
};

enum LocalVideoStreamError : int32_t {
  kLocalVideoStreamErrorOk = 0,
  kLocalVideoStreamErrorFailure = 1,
  kLocalVideoStreamErrorDeviceNoPermission = 2,
  kLocalVideoStreamErrorDeviceBusy = 3,
  kLocalVideoStreamErrorDeviceNotFound = 4,
  kLocalVideoStreamErrorCaptureFailure = 5,
  kLocalVideoStreamErrorEncodeFailure = 6,
  kLocalVideoStreamErrorDeviceDisconnected = 7,
};

enum RemoteAudioState : int32_t {
  kRemoteAudioStateStopped = 0,
  kRemoteAudioStateStarting = 1,  ///< the first packet has arrived
  kRemoteAudioStateDecoding = 2,
  kRemoteAudioStateFrozen = 3,
  kRemoteAudioStateFailed = 4,
};

enum RemoteAudioStateChangeReason : int32_t {
  kRemoteAudioStateReasonInternal = 0,
  kRemoteAudioStateReasonNetworkCongestion = 1,
  kRemoteAudioStateReasonNetworkRecovery = 2,
  kRemoteAudioStateReasonLocalMuted = 3,
  kRemoteAudioStateReasonLocalUnmuted = 4,
  kRemoteAudioStateReasonRemoteMuted = 5,
  kRemoteAudioStateReasonRemoteUnmuted = 6,
  kRemoteAudioStateReasonRemoteOffline = 7,
};

enum RemoteVideoState : int32_t {
  kRemoteVideoStateStopped = 0,
  kRemoteVideoStateStarting = 1,  ///< the first packet has arrived
  kRemoteVideoStateDecoding = 2,
  kRemoteVideoStateFrozen = 3,
  kRemoteVideoStateFailed = 4,
};

enum RemoteVideoStateChangeReason : int32_t {
  kRemoteVideoStateReasonInternal = 0,
  kRemoteVideoStateReasonNetworkCongestion = 1,
  kRemoteVideoStateReasonNetworkRecovery = 2,
  kRemoteVideoStateReasonLocalMuted = 3,
  kRemoteVideoStateReasonLocalUnmuted = 4,
  kRemoteVideoStateReasonRemoteMuted = 5,
  kRemoteVideoStateReasonRemoteUnmuted = 6,
  kRemoteVideoStateReasonRemoteOffline = 7,
};

/// Whether a stream's first frame has been sent.
enum FirstFrameSendState : int32_t {
  kFirstFrameSendStateSending = 0,
  kFirstFrameSendStateSent = 1,
  kFirstFrameSendStateEnd = 2,  ///< the stream ended before its first frame
};

/// Whether a stream's first frame has been played.
enum FirstFramePlayState : int32_t {
  kFirstFramePlayStatePlaying = 0,
  kFirstFramePlayStatePlayed = 1,
  kFirstFramePlayStateEnd = 2,  ///< the stream ended before its first frame
};

/// A user as named in reports of first frames.
struct RtcUser {
  const char* user_id;
  const char* meta_data;  ///< the extra information the user joined with
};

/// Why the video a subscriber receives was changed.
enum SimulcastFallbackReason : int32_t {
  kSimulcastFallbackBandwidth = 0,    ///< lowered: the subscriber's network
  kSimulcastFallbackPerformance = 1,  ///< lowered: the subscriber's machine
  kSimulcastRecoverBandwidth = 2,     ///< raised again
  kSimulcastRecoverPerformance = 3,   ///< raised again
  kSimulcastFallbackPublisher = 4,    ///< the publisher gave the layer up
  kSimulcastRecoverPublisher = 5,     ///< the publisher sends the layer again
};

/// One change of the layer in which a remote user's video arrives. An index of -1 means no layer.
struct RemoteStreamSwitch {
  const char* uid;
  bool is_screen;              ///< the user's screen rather than the camera
  int32_t before_video_index;  ///< layer, 0 the largest
  int32_t after_video_index;   ///< layer, 0 the largest
  bool before_enable;          ///< whether video arrived before
  bool after_enable;           ///< whether video arrives now
  int32_t reason;              ///< SimulcastFallbackReason
};

/// Why a remote stream's super resolution was turned on or off.
enum SuperResolutionChangeReason : int32_t {
  kSuperResolutionChangeRequested = 0,
  kSuperResolutionChangePictureTooLarge = 1,
  kSuperResolutionChangeMachineOverloaded = 2,
  kSuperResolutionChangeMachineUnable = 3,
  kSuperResolutionChangeOtherSetting = 4,  ///< another setting excludes it, or no longer does
  kSuperResolutionChangeStreamGone = 5,
};

}  // namespace corvane::rtc
