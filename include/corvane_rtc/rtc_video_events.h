// What the engine reports about itself, its devices, its streams and messages outside rooms.
#pragma once

#include "corvane_rtc/audio_mixing_events.h"
#include "corvane_rtc/audio_properties.h"
#include "corvane_rtc/common.h"
#include "corvane_rtc/connection_events.h"
#include "corvane_rtc/device_events.h"
#include "corvane_rtc/message_events.h"
#include "corvane_rtc/recording_events.h"
#include "corvane_rtc/stream_events.h"
#include "corvane_rtc/system_statistics.h"

namespace corvane::rtc {

/// Handler of one engine, given to createRTCVideo(). Override what is of interest; the rest does nothing.
///
/// Threads: called on threads of the library, possibly on several at once; reports on one stream, device, task or
/// message come one after the other and in order. A callback returns soon and calls no engine operation.
/// Lifetime: texts, bytes, records, lists and what they point to are valid during the callback only.
/// The handler lives until destroyRTCVideo() has returned; nothing is called afterwards.
class IRTCVideoEventHandler {
 public:
  // Faults and logs. getErrorDescription() puts warning and error codes into words.

  virtual void onWarning([[maybe_unused]] int32_t warn) {}
  virtual void onError([[maybe_unused]] int32_t err) {}
  /// A task of the library has not come back for `lasting_times` milliseconds.
  virtual void onDeadLockError([[maybe_unused]] const char* task_name, [[maybe_unused]] int32_t lasting_times) {}
  /// An optional part of the library could not be loaded or used.
  virtual void onExtensionAccessError([[maybe_unused]] const char* extension_name, [[maybe_unused]] const char* msg) {}
  virtual void onLogReport([[maybe_unused]] const char* log_type, [[maybe_unused]] const char* log_content) {}

  // Load.

  /// Every 2 seconds.
  virtual void onSysStats([[maybe_unused]] const SysStats& stats) {}
  /// mode: PerformanceAlarmMode, reason: PerformanceAlarmReason. room_id is "" when no single room is concerned.
  virtual void onPerformanceAlarms([[maybe_unused]] const char* room_id, [[maybe_unused]] int32_t mode,
                                   [[maybe_unused]] int32_t reason, [[maybe_unused]] const SourceWantedData& data) {}
  virtual void onSimulcastSubscribeFallback([[maybe_unused]] const RemoteStreamSwitch& event) {}

  // Connection, network tests and proxies.

  virtual void onConnectionStateChanged([[maybe_unused]] int32_t state) {}  ///< ConnectionState
  virtual void onNetworkTypeChanged([[maybe_unused]] int32_t type) {}       ///< NetworkType
  /// error_code: 0 when the room was made.
  virtual void onCreateRoomStateChanged([[maybe_unused]] const char* room_id, [[maybe_unused]] int32_t error_code) {}
  virtual void onHttpProxyState([[maybe_unused]] int32_t state) {}   ///< ProxyState
  virtual void onHttpsProxyState([[maybe_unused]] int32_t state) {}  ///< ProxyState
  /// state: ProxyState. cmd names the proxy step; the addresses are "host:port".
  virtual void onSocks5ProxyState([[maybe_unused]] int32_t state, [[maybe_unused]] const char* cmd,
                                  [[maybe_unused]] const char* proxy_address,
                                  [[maybe_unused]] const char* local_address,
                                  [[maybe_unused]] const char* remote_address) {}
  /// LocalProxyType, LocalProxyState, LocalProxyError.
  virtual void onLocalProxyStateChanged([[maybe_unused]] int32_t local_proxy_type,
                                        [[maybe_unused]] int32_t local_proxy_state,
                                        [[maybe_unused]] int32_t local_proxy_error) {}
  /// interval: milliseconds the connection took.
  virtual void onCloudProxyConnected([[maybe_unused]] int32_t interval) {}
  /// type: NetworkDetectionLinkType, quality: NetworkQuality, rtt and jitter in milliseconds, lost_rate 0 to 1,
  /// bitrate in kbit/s. Every 2 seconds while a test runs.
  virtual void onNetworkDetectionResult([[maybe_unused]] int32_t type, [[maybe_unused]] int32_t quality,
                                        [[maybe_unused]] int32_t rtt, [[maybe_unused]] double lost_rate,
                                        [[maybe_unused]] int32_t bitrate, [[maybe_unused]] int32_t jitter) {}
  virtual void onNetworkDetectionStopped([[maybe_unused]] int32_t reason) {}  ///< NetworkDetectionStopReason
  /// getNetworkTimeInfo() answers the network's time from now on.
  virtual void onNetworkTimeSynchronized() {}

  // Devices. Ids are those of the device managers' collections.

  /// AudioDeviceType, MediaDeviceState, MediaDeviceError.
  virtual void onAudioDeviceStateChanged([[maybe_unused]] const char* device_id, [[maybe_unused]] int32_t device_type,
                                         [[maybe_unused]] int32_t device_state, [[maybe_unused]] int32_t device_error) {
  }
  /// VideoDeviceType, MediaDeviceState, MediaDeviceError.
  virtual void onVideoDeviceStateChanged([[maybe_unused]] const char* device_id, [[maybe_unused]] int32_t device_type,
                                         [[maybe_unused]] int32_t device_state, [[maybe_unused]] int32_t device_error) {
  }
  /// AudioDeviceType, MediaDeviceWarning.
  virtual void onAudioDeviceWarning([[maybe_unused]] const char* device_id, [[maybe_unused]] int32_t device_type,
                                    [[maybe_unused]] int32_t device_warning) {}
  /// VideoDeviceType, MediaDeviceWarning.
  virtual void onVideoDeviceWarning([[maybe_unused]] const char* device_id, [[maybe_unused]] int32_t device_type,
                                    [[maybe_unused]] int32_t device_warning) {}
  /// device_type: AudioDeviceType, volume 0 to 255.
  virtual void onAudioDeviceVolumeChanged([[maybe_unused]] int32_t device_type, [[maybe_unused]] int32_t volume,
                                          [[maybe_unused]] bool muted) {}
  /// volume of the test sound, 0 to 255.
  virtual void onAudioPlaybackDeviceTestVolume([[maybe_unused]] int32_t volume) {}
  virtual void onEchoTestResult([[maybe_unused]] int32_t result) {}               ///< EchoTestResult
  virtual void onHardwareEchoDetectionResult([[maybe_unused]] int32_t result) {}  ///< HardwareEchoDetectionResult

  // Local streams. index and stream_index: StreamIndex.

  /// LocalAudioStreamState, LocalAudioStreamError.
  virtual void onLocalAudioStateChanged([[maybe_unused]] int32_t state, [[maybe_unused]] int32_t error) {}
  /// LocalVideoStreamState, LocalVideoStreamError.
  virtual void onLocalVideoStateChanged([[maybe_unused]] int32_t stream_index, [[maybe_unused]] int32_t state,
                                        [[maybe_unused]] int32_t error) {}
  virtual void onFirstLocalAudioFrame([[maybe_unused]] int32_t index) {}
  virtual void onFirstLocalVideoFrameCaptured([[maybe_unused]] int32_t index,
                                              [[maybe_unused]] const VideoFrameInfo& info) {}
  virtual void onLocalVideoSizeChanged([[maybe_unused]] int32_t index, [[maybe_unused]] const VideoFrameInfo& info) {}

  // Remote streams.

  virtual void onUserStartVideoCapture([[maybe_unused]] const char* room_id, [[maybe_unused]] const char* user_id) {}
  virtual void onUserStopVideoCapture([[maybe_unused]] const char* room_id, [[maybe_unused]] const char* user_id) {}
  virtual void onUserStartAudioCapture([[maybe_unused]] const char* room_id, [[maybe_unused]] const char* user_id) {}
  virtual void onUserStopAudioCapture([[maybe_unused]] const char* room_id, [[maybe_unused]] const char* user_id) {}
  /// RemoteAudioState, RemoteAudioStateChangeReason.
  virtual void onRemoteAudioStateChanged([[maybe_unused]] const StreamKey& key, [[maybe_unused]] int32_t state,
                                         [[maybe_unused]] int32_t reason) {}
  /// RemoteVideoState, RemoteVideoStateChangeReason.
  virtual void onRemoteVideoStateChanged([[maybe_unused]] const StreamKey& key, [[maybe_unused]] int32_t state,
                                         [[maybe_unused]] int32_t reason) {}
  virtual void onFirstRemoteAudioFrame([[maybe_unused]] const StreamKey& key) {}
  virtual void onFirstRemoteVideoFrameDecoded([[maybe_unused]] const StreamKey& key,
                                              [[maybe_unused]] const VideoFrameInfo& info) {}
  virtual void onFirstRemoteVideoFrameRendered([[maybe_unused]] const StreamKey& key,
                                               [[maybe_unused]] const VideoFrameInfo& info) {}
  virtual void onRemoteVideoSizeChanged([[maybe_unused]] const StreamKey& key,
                                        [[maybe_unused]] const VideoFrameInfo& info) {}
  /// mode: SuperResolutionMode, reason: SuperResolutionChangeReason.
  virtual void onRemoteVideoSuperResolutionModeChanged([[maybe_unused]] const StreamKey& stream_key,
                                                       [[maybe_unused]] int32_t mode, [[maybe_unused]] int32_t reason) {
  }

  // First frames: the local user's as sent (FirstFrameSendState), the others' as played (FirstFramePlayState).

  virtual void onAudioFrameSendStateChanged([[maybe_unused]] const char* room_id, [[maybe_unused]] const RtcUser& user,
                                            [[maybe_unused]] int32_t state) {}
  virtual void onVideoFrameSendStateChanged([[maybe_unused]] const char* room_id, [[maybe_unused]] const RtcUser& user,
                                            [[maybe_unused]] int32_t state) {}
  virtual void onScreenAudioFrameSendStateChanged([[maybe_unused]] const char* room_id,
                                                  [[maybe_unused]] const RtcUser& user,
                                                  [[maybe_unused]] int32_t state) {}
  virtual void onScreenVideoFrameSendStateChanged([[maybe_unused]] const char* room_id,
                                                  [[maybe_unused]] const RtcUser& user,
                                                  [[maybe_unused]] int32_t state) {}
  virtual void onAudioFramePlayStateChanged([[maybe_unused]] const char* room_id, [[maybe_unused]] const RtcUser& user,
                                            [[maybe_unused]] int32_t state) {}
  virtual void onVideoFramePlayStateChanged([[maybe_unused]] const char* room_id, [[maybe_unused]] const RtcUser& user,
                                            [[maybe_unused]] int32_t state) {}
  virtual void onScreenAudioFramePlayStateChanged([[maybe_unused]] const char* room_id,
                                                  [[maybe_unused]] const RtcUser& user,
                                                  [[maybe_unused]] int32_t state) {}
  virtual void onScreenVideoFramePlayStateChanged([[maybe_unused]] const char* room_id,
                                                  [[maybe_unused]] const RtcUser& user,
                                                  [[maybe_unused]] int32_t state) {}

  // Sound: properties and mixing.

  /// At the interval given to enableAudioPropertiesReport(). The list may be empty.
  virtual void onLocalAudioPropertiesReport([[maybe_unused]] const LocalAudioPropertiesInfo* audio_properties_infos,
                                            [[maybe_unused]] int32_t audio_properties_info_number) {}
  /// At the same interval. total_remote_volume: 0 to 255, of all remote sound together. The list may be empty.
  virtual void onRemoteAudioPropertiesReport([[maybe_unused]] const RemoteAudioPropertiesInfo* audio_properties_infos,
                                             [[maybe_unused]] int32_t audio_properties_info_number,
                                             [[maybe_unused]] int32_t total_remote_volume) {}
  /// The loudest user of a room has changed.
  virtual void onActiveSpeaker([[maybe_unused]] const char* room_id, [[maybe_unused]] const char* uid) {}
  /// state: AudioMixingState, error: AudioMixingError.
  virtual void onAudioMixingStateChanged([[maybe_unused]] int32_t mix_id, [[maybe_unused]] int32_t state,
                                         [[maybe_unused]] int32_t error) {}
  /// progress: milliseconds from the file's start.
  virtual void onAudioMixingPlayingProgress([[maybe_unused]] int32_t mix_id, [[maybe_unused]] int32_t progress) {}

  // Recording. type: RecordingType, state: RecordingState, error_code: RecordingErrorCode.

  virtual void onRecordingStateUpdate([[maybe_unused]] int32_t type, [[maybe_unused]] int32_t state,
                                      [[maybe_unused]] int32_t error_code, [[maybe_unused]] const RecordingInfo& info) {
  }
  /// Every second while a recording runs.
  virtual void onRecordingProgressUpdate([[maybe_unused]] int32_t type,
                                         [[maybe_unused]] const RecordingProgress& process,
                                         [[maybe_unused]] const RecordingInfo& info) {}
  virtual void onAudioRecordingStateUpdate([[maybe_unused]] int32_t state, [[maybe_unused]] int32_t error_code) {}

  // Login and messages outside rooms. msgid: what the send operation returned, error: MessageSendResult.

  /// error_code: LoginErrorCode, elapsed: milliseconds since login().
  virtual void onLoginResult([[maybe_unused]] const char* uid, [[maybe_unused]] int32_t error_code,
                             [[maybe_unused]] int32_t elapsed) {}
  virtual void onLogout([[maybe_unused]] int32_t reason) {}  ///< LogoutReason
  /// error: 0, or the HTTP status of the application's server.
  virtual void onServerParamsSetResult([[maybe_unused]] int32_t error) {}
  /// status: UserOnlineStatus.
  virtual void onGetPeerOnlineStatus([[maybe_unused]] const char* peer_user_id, [[maybe_unused]] int32_t status) {}
  virtual void onUserMessageReceivedOutsideRoom([[maybe_unused]] const char* uid,
                                                [[maybe_unused]] const char* message) {}
  /// size in bytes; message is not terminated.
  virtual void onUserBinaryMessageReceivedOutsideRoom([[maybe_unused]] const char* uid,
                                                      [[maybe_unused]] const uint8_t* message,
                                                      [[maybe_unused]] int32_t size) {}
  virtual void onUserMessageSendResultOutsideRoom([[maybe_unused]] int64_t msgid, [[maybe_unused]] int32_t error) {}
  /// msg: the server's answer.
  virtual void onServerMessageSendResult([[maybe_unused]] int64_t msgid, [[maybe_unused]] int32_t error,
                                         [[maybe_unused]] const char* msg) {}

  // Data inside streams. Lengths are in bytes; the data is not terminated.

  virtual void onSEIMessageReceived([[maybe_unused]] const StreamKey& stream_key,
                                    [[maybe_unused]] const uint8_t* message, [[maybe_unused]] int32_t length) {}
  /// type: SEIStreamEventType.
  virtual void onSEIStreamUpdate([[maybe_unused]] const StreamKey& stream_key, [[maybe_unused]] int32_t type) {}
  /// stream_type: SyncInfoStreamType.
  virtual void onStreamSyncInfoReceived([[maybe_unused]] const StreamKey& stream_key,
                                        [[maybe_unused]] int32_t stream_type, [[maybe_unused]] const uint8_t* data,
                                        [[maybe_unused]] int32_t size) {}

  // Public streams. error_code: PublicStreamErrorCode, source_type: DataMessageSourceType.

  virtual void onPushPublicStreamResult([[maybe_unused]] const char* room_id,
                                        [[maybe_unused]] const char* public_stream_id,
                                        [[maybe_unused]] int32_t error_code) {}
  virtual void onPlayPublicStreamResult([[maybe_unused]] const char* public_stream_id,
                                        [[maybe_unused]] int32_t error_code) {}
  virtual void onFirstPublicStreamAudioFrame([[maybe_unused]] const char* public_stream_id) {}
  virtual void onFirstPublicStreamVideoFrameDecoded([[maybe_unused]] const char* public_stream_id,
                                                    [[maybe_unused]] const VideoFrameInfo& info) {}
  virtual void onPublicStreamSEIMessageReceived([[maybe_unused]] const char* public_stream_id,
                                                [[maybe_unused]] const uint8_t* message,
                                                [[maybe_unused]] int32_t message_length,
                                                [[maybe_unused]] int32_t source_type) {}
  /// channel_id: as given to sendPublicStreamSEIMessage().
  virtual void onPublicStreamSEIMessageReceivedWithChannel([[maybe_unused]] const char* public_stream_id,
                                                           [[maybe_unused]] int32_t channel_id,
                                                           [[maybe_unused]] const uint8_t* message,
                                                           [[maybe_unused]] int32_t message_length) {}
  virtual void onPublicStreamDataMessageReceived([[maybe_unused]] const char* public_stream_id,
                                                 [[maybe_unused]] const uint8_t* message,
                                                 [[maybe_unused]] int32_t message_length,
                                                 [[maybe_unused]] int32_t source_type) {}

 protected:
  ~IRTCVideoEventHandler() = default;
};

}  // namespace corvane::rtc
