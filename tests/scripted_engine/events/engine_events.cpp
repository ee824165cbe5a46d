// The rows of the engine's event handler.

#include <array>
#include <span>

#include "corvane_rtc/rtc_video_events.h"
#include "events/event_row.h"
#include "events/registry.h"
#include "records/audio.h"
#include "records/common.h"

namespace corvane::scripted {

namespace {

using rtc::IRTCVideoEventHandler;

constexpr auto kRows = std::to_array<EventRow>({
    event<&IRTCVideoEventHandler::onWarning>("IRTCVideoEventHandler", "onWarning", "warn"),
    event<&IRTCVideoEventHandler::onError>("IRTCVideoEventHandler", "onError", "err"),
    event<&IRTCVideoEventHandler::onDeadLockError>("IRTCVideoEventHandler", "onDeadLockError", "task_name",
                                                   "lasting_times"),
    event<&IRTCVideoEventHandler::onExtensionAccessError>("IRTCVideoEventHandler", "onExtensionAccessError",
                                                          "extension_name", "msg"),
    event<&IRTCVideoEventHandler::onLogReport>("IRTCVideoEventHandler", "onLogReport", "log_type", "log_content"),
    event<&IRTCVideoEventHandler::onSysStats>("IRTCVideoEventHandler", "onSysStats", "stats"),
    event<&IRTCVideoEventHandler::onPerformanceAlarms>("IRTCVideoEventHandler", "onPerformanceAlarms", "room_id",
                                                       "mode", "reason", "data"),
    event<&IRTCVideoEventHandler::onSimulcastSubscribeFallback>("IRTCVideoEventHandler", "onSimulcastSubscribeFallback",
                                                                "event"),
    event<&IRTCVideoEventHandler::onConnectionStateChanged>("IRTCVideoEventHandler", "onConnectionStateChanged",
                                                            "state"),
    event<&IRTCVideoEventHandler::onNetworkTypeChanged>("IRTCVideoEventHandler", "onNetworkTypeChanged", "type"),
    event<&IRTCVideoEventHandler::onCreateRoomStateChanged>("IRTCVideoEventHandler", "onCreateRoomStateChanged",
                                                            "room_id", "error_code"),
    event<&IRTCVideoEventHandler::onHttpProxyState>("IRTCVideoEventHandler", "onHttpProxyState", "state"),
    event<&IRTCVideoEventHandler::onHttpsProxyState>("IRTCVideoEventHandler", "onHttpsProxyState", "state"),
    event<&IRTCVideoEventHandler::onSocks5ProxyState>("IRTCVideoEventHandler", "onSocks5ProxyState", "state", "cmd",
                                                      "proxy_address", "local_address", "remote_address"),
    event<&IRTCVideoEventHandler::onLocalProxyStateChanged>("IRTCVideoEventHandler", "onLocalProxyStateChanged",
                                                            "local_proxy_type", "local_proxy_state",
                                                            "local_proxy_error"),
    event<&IRTCVideoEventHandler::onCloudProxyConnected>("IRTCVideoEventHandler", "onCloudProxyConnected", "interval"),
    event<&IRTCVideoEventHandler::onNetworkDetectionResult>("IRTCVideoEventHandler", "onNetworkDetectionResult", "type",
                                                            "quality", "rtt", "lost_rate", "bitrate", "jitter"),
    event<&IRTCVideoEventHandler::onNetworkDetectionStopped>("IRTCVideoEventHandler", "onNetworkDetectionStopped",
                                                             "reason"),
    event<&IRTCVideoEventHandler::onNetworkTimeSynchronized>("IRTCVideoEventHandler", "onNetworkTimeSynchronized"),
    event<&IRTCVideoEventHandler::onAudioDeviceStateChanged>("IRTCVideoEventHandler", "onAudioDeviceStateChanged",
                                                             "device_id", "device_type", "device_state",
                                                             "device_error"),
    event<&IRTCVideoEventHandler::onVideoDeviceStateChanged>("IRTCVideoEventHandler", "onVideoDeviceStateChanged",
                                                             "device_id", "device_type", "device_state",
                                                             "device_error"),
    event<&IRTCVideoEventHandler::onAudioDeviceWarning>("IRTCVideoEventHandler", "onAudioDeviceWarning", "device_id",
                                                        "device_type", "device_warning"),
    event<&IRTCVideoEventHandler::onVideoDeviceWarning>("IRTCVideoEventHandler", "onVideoDeviceWarning", "device_id",
                                                        "device_type", "device_warning"),
    event<&IRTCVideoEventHandler::onAudioDeviceVolumeChanged>("IRTCVideoEventHandler", "onAudioDeviceVolumeChanged",
                                                              "device_type", "volume", "muted"),
    event<&IRTCVideoEventHandler::onAudioPlaybackDeviceTestVolume>("IRTCVideoEventHandler",
                                                                   "onAudioPlaybackDeviceTestVolume", "volume"),
    event<&IRTCVideoEventHandler::onEchoTestResult>("IRTCVideoEventHandler", "onEchoTestResult", "result"),
    event<&IRTCVideoEventHandler::onHardwareEchoDetectionResult>("IRTCVideoEventHandler",
                                                                 "onHardwareEchoDetectionResult", "result"),
    event<&IRTCVideoEventHandler::onLocalAudioStateChanged>("IRTCVideoEventHandler", "onLocalAudioStateChanged",
                                                            "state", "error"),
    event<&IRTCVideoEventHandler::onLocalVideoStateChanged>("IRTCVideoEventHandler", "onLocalVideoStateChanged",
                                                            "stream_index", "state", "error"),
    event<&IRTCVideoEventHandler::onFirstLocalAudioFrame>("IRTCVideoEventHandler", "onFirstLocalAudioFrame", "index"),
    event<&IRTCVideoEventHandler::onFirstLocalVideoFrameCaptured>("IRTCVideoEventHandler",
                                                                  "onFirstLocalVideoFrameCaptured", "index", "info"),
    event<&IRTCVideoEventHandler::onLocalVideoSizeChanged>("IRTCVideoEventHandler", "onLocalVideoSizeChanged", "index",
                                                           "info"),
    event<&IRTCVideoEventHandler::onUserStartVideoCapture>("IRTCVideoEventHandler", "onUserStartVideoCapture",
                                                           "room_id", "user_id"),
    event<&IRTCVideoEventHandler::onUserStopVideoCapture>("IRTCVideoEventHandler", "onUserStopVideoCapture", "room_id",
                                                          "user_id"),
    event<&IRTCVideoEventHandler::onUserStartAudioCapture>("IRTCVideoEventHandler", "onUserStartAudioCapture",
                                                           "room_id", "user_id"),
    event<&IRTCVideoEventHandler::onUserStopAudioCapture>("IRTCVideoEventHandler", "onUserStopAudioCapture", "room_id",
                                                          "user_id"),
    event<&IRTCVideoEventHandler::onRemoteAudioStateChanged>("IRTCVideoEventHandler", "onRemoteAudioStateChanged",
                                                             "key", "state", "reason"),
    event<&IRTCVideoEventHandler::onRemoteVideoStateChanged>("IRTCVideoEventHandler", "onRemoteVideoStateChanged",
                                                             "key", "state", "reason"),
    event<&IRTCVideoEventHandler::onFirstRemoteAudioFrame>("IRTCVideoEventHandler", "onFirstRemoteAudioFrame", "key"),
    event<&IRTCVideoEventHandler::onFirstRemoteVideoFrameDecoded>("IRTCVideoEventHandler",
                                                                  "onFirstRemoteVideoFrameDecoded", "key", "info"),
    event<&IRTCVideoEventHandler::onFirstRemoteVideoFrameRendered>("IRTCVideoEventHandler",
                                                                   "onFirstRemoteVideoFrameRendered", "key", "info"),
    event<&IRTCVideoEventHandler::onRemoteVideoSizeChanged>("IRTCVideoEventHandler", "onRemoteVideoSizeChanged", "key",
                                                            "info"),
    event<&IRTCVideoEventHandler::onRemoteVideoSuperResolutionModeChanged>(
        "IRTCVideoEventHandler", "onRemoteVideoSuperResolutionModeChanged", "stream_key", "mode", "reason"),
    event<&IRTCVideoEventHandler::onAudioFrameSendStateChanged>("IRTCVideoEventHandler", "onAudioFrameSendStateChanged",
                                                                "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onVideoFrameSendStateChanged>("IRTCVideoEventHandler", "onVideoFrameSendStateChanged",
                                                                "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onScreenAudioFrameSendStateChanged>(
        "IRTCVideoEventHandler", "onScreenAudioFrameSendStateChanged", "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onScreenVideoFrameSendStateChanged>(
        "IRTCVideoEventHandler", "onScreenVideoFrameSendStateChanged", "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onAudioFramePlayStateChanged>("IRTCVideoEventHandler", "onAudioFramePlayStateChanged",
                                                                "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onVideoFramePlayStateChanged>("IRTCVideoEventHandler", "onVideoFramePlayStateChanged",
                                                                "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onScreenAudioFramePlayStateChanged>(
        "IRTCVideoEventHandler", "onScreenAudioFramePlayStateChanged", "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onScreenVideoFramePlayStateChanged>(
        "IRTCVideoEventHandler", "onScreenVideoFramePlayStateChanged", "room_id", "user", "state"),
    event<&IRTCVideoEventHandler::onLocalAudioPropertiesReport>("IRTCVideoEventHandler", "onLocalAudioPropertiesReport",
                                                                "audio_properties_infos",
                                                                "audio_properties_info_number"),
    event<&IRTCVideoEventHandler::onRemoteAudioPropertiesReport>(
        "IRTCVideoEventHandler", "onRemoteAudioPropertiesReport", "audio_properties_infos",
        "audio_properties_info_number", "total_remote_volume"),
    event<&IRTCVideoEventHandler::onActiveSpeaker>("IRTCVideoEventHandler", "onActiveSpeaker", "room_id", "uid"),
    event<&IRTCVideoEventHandler::onAudioMixingStateChanged>("IRTCVideoEventHandler", "onAudioMixingStateChanged",
                                                             "mix_id", "state", "error"),
    event<&IRTCVideoEventHandler::onAudioMixingPlayingProgress>("IRTCVideoEventHandler", "onAudioMixingPlayingProgress",
                                                                "mix_id", "progress"),
    event<&IRTCVideoEventHandler::onRecordingStateUpdate>("IRTCVideoEventHandler", "onRecordingStateUpdate", "type",
                                                          "state", "error_code", "info"),
    event<&IRTCVideoEventHandler::onRecordingProgressUpdate>("IRTCVideoEventHandler", "onRecordingProgressUpdate",
                                                             "type", "process", "info"),
    event<&IRTCVideoEventHandler::onAudioRecordingStateUpdate>("IRTCVideoEventHandler", "onAudioRecordingStateUpdate",
                                                               "state", "error_code"),
    event<&IRTCVideoEventHandler::onLoginResult>("IRTCVideoEventHandler", "onLoginResult", "uid", "error_code",
                                                 "elapsed"),
    event<&IRTCVideoEventHandler::onLogout>("IRTCVideoEventHandler", "onLogout", "reason"),
    event<&IRTCVideoEventHandler::onServerParamsSetResult>("IRTCVideoEventHandler", "onServerParamsSetResult", "error"),
    event<&IRTCVideoEventHandler::onGetPeerOnlineStatus>("IRTCVideoEventHandler", "onGetPeerOnlineStatus",
                                                         "peer_user_id", "status"),
    event<&IRTCVideoEventHandler::onUserMessageReceivedOutsideRoom>(
        "IRTCVideoEventHandler", "onUserMessageReceivedOutsideRoom", "uid", "message"),
    event<&IRTCVideoEventHandler::onUserBinaryMessageReceivedOutsideRoom>(
        "IRTCVideoEventHandler", "onUserBinaryMessageReceivedOutsideRoom", "uid", "message", "size"),
    event<&IRTCVideoEventHandler::onUserMessageSendResultOutsideRoom>(
        "IRTCVideoEventHandler", "onUserMessageSendResultOutsideRoom", "msgid", "error"),
    event<&IRTCVideoEventHandler::onServerMessageSendResult>("IRTCVideoEventHandler", "onServerMessageSendResult",
                                                             "msgid", "error", "msg"),
    event<&IRTCVideoEventHandler::onSEIMessageReceived>("IRTCVideoEventHandler", "onSEIMessageReceived", "stream_key",
                                                        "message", "length"),
    event<&IRTCVideoEventHandler::onSEIStreamUpdate>("IRTCVideoEventHandler", "onSEIStreamUpdate", "stream_key",
                                                     "type"),
    event<&IRTCVideoEventHandler::onStreamSyncInfoReceived>("IRTCVideoEventHandler", "onStreamSyncInfoReceived",
                                                            "stream_key", "stream_type", "data", "size"),
    event<&IRTCVideoEventHandler::onPushPublicStreamResult>("IRTCVideoEventHandler", "onPushPublicStreamResult",
                                                            "room_id", "public_stream_id", "error_code"),
    event<&IRTCVideoEventHandler::onPlayPublicStreamResult>("IRTCVideoEventHandler", "onPlayPublicStreamResult",
                                                            "public_stream_id", "error_code"),
    event<&IRTCVideoEventHandler::onFirstPublicStreamAudioFrame>("IRTCVideoEventHandler",
                                                                 "onFirstPublicStreamAudioFrame", "public_stream_id"),
    event<&IRTCVideoEventHandler::onFirstPublicStreamVideoFrameDecoded>(
        "IRTCVideoEventHandler", "onFirstPublicStreamVideoFrameDecoded", "public_stream_id", "info"),
    event<&IRTCVideoEventHandler::onPublicStreamSEIMessageReceived>(
        "IRTCVideoEventHandler", "onPublicStreamSEIMessageReceived", "public_stream_id", "message", "message_length",
        "source_type"),
    event<&IRTCVideoEventHandler::onPublicStreamSEIMessageReceivedWithChannel>(
        "IRTCVideoEventHandler", "onPublicStreamSEIMessageReceivedWithChannel", "public_stream_id", "channel_id",
        "message", "message_length"),
    event<&IRTCVideoEventHandler::onPublicStreamDataMessageReceived>(
        "IRTCVideoEventHandler", "onPublicStreamDataMessageReceived", "public_stream_id", "message", "message_length",
        "source_type"),
});

}  // namespace

std::span<const EventRow> engineEvents() {
  return kRows;
}

}  // namespace corvane::scripted
