// Passes what the engine reports on to the application: every event is posted on the engine channel and logged.
// The methods are spread over engine/, one file for each group below.
//
// Threads: the engine's own, several at once; the handler has no state. Nothing that the engine lends is kept.
#pragma once

#include <cstdint>
#include <utility>

#include "corvane_rtc/rtc_video_events.h"
#include "events/event_record.h"
#include "log/log.h"
#include "video/transporter.h"

namespace corvane {

class KavRTCVideoEventHandler final : public rtc::IRTCVideoEventHandler {
 public:
  KavRTCVideoEventHandler() = default;
  ~KavRTCVideoEventHandler() { LogWrite(kLogInfo, "KavRTCVideoEventHandler destructure"); }
  KavRTCVideoEventHandler(const KavRTCVideoEventHandler&) = delete;
  KavRTCVideoEventHandler& operator=(const KavRTCVideoEventHandler&) = delete;

  // diagnostics.cpp: faults, logs and load
  void onWarning(int32_t warn) override;
  void onError(int32_t err) override;
  void onDeadLockError(const char* task_name, int32_t lasting_times) override;
  void onExtensionAccessError(const char* extension_name, const char* msg) override;
  void onLogReport(const char* log_type, const char* log_content) override;
  void onSysStats(const rtc::SysStats& stats) override;
  void onPerformanceAlarms(const char* room_id, int32_t mode, int32_t reason,
                           const rtc::SourceWantedData& data) override;
  void onSimulcastSubscribeFallback(const rtc::RemoteStreamSwitch& event) override;

  // network.cpp: connection, network tests and proxies
  void onConnectionStateChanged(int32_t state) override;
  void onNetworkTypeChanged(int32_t type) override;
  void onCreateRoomStateChanged(const char* room_id, int32_t error_code) override;
  void onHttpProxyState(int32_t state) override;
  void onHttpsProxyState(int32_t state) override;
  void onSocks5ProxyState(int32_t state, const char* cmd, const char* proxy_address, const char* local_address,
                          const char* remote_address) override;
  void onLocalProxyStateChanged(int32_t local_proxy_type, int32_t local_proxy_state,
                                int32_t local_proxy_error) override;
  void onCloudProxyConnected(int32_t interval) override;
  void onNetworkDetectionResult(int32_t type, int32_t quality, int32_t rtt, double lost_rate, int32_t bitrate,
                                int32_t jitter) override;
  void onNetworkDetectionStopped(int32_t reason) override;
  void onNetworkTimeSynchronized() override;

  // devices.cpp
  void onAudioDeviceStateChanged(const char* device_id, int32_t device_type, int32_t device_state,
                                 int32_t device_error) override;
  void onVideoDeviceStateChanged(const char* device_id, int32_t device_type, int32_t device_state,
                                 int32_t device_error) override;
  void onAudioDeviceWarning(const char* device_id, int32_t device_type, int32_t device_warning) override;
  void onVideoDeviceWarning(const char* device_id, int32_t device_type, int32_t device_warning) override;
  void onAudioDeviceVolumeChanged(int32_t device_type, int32_t volume, bool muted) override;
  void onAudioPlaybackDeviceTestVolume(int32_t volume) override;
  void onEchoTestResult(int32_t result) override;
  void onHardwareEchoDetectionResult(int32_t result) override;

  // local_streams.cpp
  void onLocalAudioStateChanged(int32_t state, int32_t error) override;
  void onLocalVideoStateChanged(int32_t stream_index, int32_t state, int32_t error) override;
  void onFirstLocalAudioFrame(int32_t index) override;
  void onFirstLocalVideoFrameCaptured(int32_t index, const rtc::VideoFrameInfo& info) override;
  void onLocalVideoSizeChanged(int32_t index, const rtc::VideoFrameInfo& info) override;

  // remote_streams.cpp
  void onUserStartVideoCapture(const char* room_id, const char* user_id) override;
  void onUserStopVideoCapture(const char* room_id, const char* user_id) override;
  void onUserStartAudioCapture(const char* room_id, const char* user_id) override;
  void onUserStopAudioCapture(const char* room_id, const char* user_id) override;
  void onRemoteAudioStateChanged(const rtc::StreamKey& key, int32_t state, int32_t reason) override;
  void onRemoteVideoStateChanged(const rtc::StreamKey& key, int32_t state, int32_t reason) override;
  void onFirstRemoteAudioFrame(const rtc::StreamKey& key) override;
  void onFirstRemoteVideoFrameDecoded(const rtc::StreamKey& key, const rtc::VideoFrameInfo& info) override;
  void onFirstRemoteVideoFrameRendered(const rtc::StreamKey& key, const rtc::VideoFrameInfo& info) override;
  void onRemoteVideoSizeChanged(const rtc::StreamKey& key, const rtc::VideoFrameInfo& info) override;
  void onRemoteVideoSuperResolutionModeChanged(const rtc::StreamKey& stream_key, int32_t mode, int32_t reason) override;

  // first_frames.cpp: whether a first frame was sent or played
  void onAudioFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;
  void onVideoFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;
  void onScreenAudioFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;
  void onScreenVideoFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;
  void onAudioFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;
  void onVideoFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;
  void onScreenAudioFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;
  void onScreenVideoFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user, int32_t state) override;

  // audio.cpp: properties and mixing
  void onLocalAudioPropertiesReport(const rtc::LocalAudioPropertiesInfo* audio_properties_infos,
                                    int32_t audio_properties_info_number) override;
  void onRemoteAudioPropertiesReport(const rtc::RemoteAudioPropertiesInfo* audio_properties_infos,
                                     int32_t audio_properties_info_number, int32_t total_remote_volume) override;
  void onActiveSpeaker(const char* room_id, const char* uid) override;
  void onAudioMixingStateChanged(int32_t mix_id, int32_t state, int32_t error) override;
  void onAudioMixingPlayingProgress(int32_t mix_id, int32_t progress) override;

  // recording.cpp
  void onRecordingStateUpdate(int32_t type, int32_t state, int32_t error_code, const rtc::RecordingInfo& info) override;
  void onRecordingProgressUpdate(int32_t type, const rtc::RecordingProgress& process,
                                 const rtc::RecordingInfo& info) override;
  void onAudioRecordingStateUpdate(int32_t state, int32_t error_code) override;

  // messages.cpp: login, messages outside rooms, data inside streams
  void onLoginResult(const char* uid, int32_t error_code, int32_t elapsed) override;
  void onLogout(int32_t reason) override;
  void onServerParamsSetResult(int32_t error) override;
  void onGetPeerOnlineStatus(const char* peer_user_id, int32_t status) override;
  void onUserMessageReceivedOutsideRoom(const char* uid, const char* message) override;
  void onUserBinaryMessageReceivedOutsideRoom(const char* uid, const uint8_t* message, int32_t size) override;
  void onUserMessageSendResultOutsideRoom(int64_t msgid, int32_t error) override;
  void onServerMessageSendResult(int64_t msgid, int32_t error, const char* msg) override;
  void onSEIMessageReceived(const rtc::StreamKey& stream_key, const uint8_t* message, int32_t length) override;
  void onSEIStreamUpdate(const rtc::StreamKey& stream_key, int32_t type) override;
  void onStreamSyncInfoReceived(const rtc::StreamKey& stream_key, int32_t stream_type, const uint8_t* data,
                                int32_t size) override;

  // public_streams.cpp
  void onPushPublicStreamResult(const char* room_id, const char* public_stream_id, int32_t error_code) override;
  void onPlayPublicStreamResult(const char* public_stream_id, int32_t error_code) override;
  void onFirstPublicStreamAudioFrame(const char* public_stream_id) override;
  void onFirstPublicStreamVideoFrameDecoded(const char* public_stream_id, const rtc::VideoFrameInfo& info) override;
  void onPublicStreamSEIMessageReceived(const char* public_stream_id, const uint8_t* message, int32_t message_length,
                                        int32_t source_type) override;
  void onPublicStreamSEIMessageReceivedWithChannel(const char* public_stream_id, int32_t channel_id,
                                                   const uint8_t* message, int32_t message_length) override;
  void onPublicStreamDataMessageReceived(const char* public_stream_id, const uint8_t* message, int32_t message_length,
                                         int32_t source_type) override;

 private:
  // Posts the event on the engine channel and answers the post's status. `event` must be a literal or __func__.
  template <class Fill>
  static int32_t post(const char* event, Fill fill) {
    return KavRTCTransporter::instance().postEvent(EventRecord::event(event, std::move(fill)));
  }
};

}  // namespace corvane
