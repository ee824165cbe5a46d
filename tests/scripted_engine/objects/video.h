// The engine. Plain operations are one line each; those that take or give objects stand in video.cpp.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "core/scripted_object.h"
#include "corvane_rtc/rtc_video.h"
#include "objects/managers.h"
#include "objects/mix_params.h"
#include "objects/players.h"
#include "objects/room.h"
#include "records/audio.h"
#include "records/common.h"
#include "records/mixing.h"
#include "records/video.h"

namespace corvane::scripted {

class Video final : public rtc::IRTCVideo, public ScriptedObject {
 public:
  explicit Video(const std::string& id) : ScriptedObject("IRTCVideo", id) {}

  /// The engine ends: calls on it and on what it owns come too late from now on.
  void endAll();

  rtc::IRTCRoom* createRTCRoom(const char* room_id) override;
  rtc::IAudioDeviceManager* getAudioDeviceManager() override {
    return offer<rtc::IAudioDeviceManager>("getAudioDeviceManager", &audio_devices_);
  }
  rtc::IVideoDeviceManager* getVideoDeviceManager() override {
    return offer<rtc::IVideoDeviceManager>("getVideoDeviceManager", &video_devices_);
  }
  rtc::IAudioMixingManager* getAudioMixingManager() override {
    return offer<rtc::IAudioMixingManager>("getAudioMixingManager", &audio_mixing_);
  }
  rtc::IVideoEffect* getVideoEffectInterface() override {
    return offer<rtc::IVideoEffect>("getVideoEffectInterface", &video_effect_);
  }
  rtc::IKTVManager* getKTVManager() override { return offer<rtc::IKTVManager>("getKTVManager", &ktv_); }
  rtc::ISingScoringManager* getSingScoringManager() override {
    return offer<rtc::ISingScoringManager>("getSingScoringManager", &sing_scoring_);
  }
  rtc::IAudioEffectPlayer* getAudioEffectPlayer() override {
    return offer<rtc::IAudioEffectPlayer>("getAudioEffectPlayer", &effect_player_);
  }
  rtc::IMediaPlayer* getMediaPlayer(int32_t player_id) override;
  int32_t setBusinessId(const char* business_id) override {
    return call("setBusinessId", arg("business_id", business_id));
  }
  int32_t setRuntimeParameters(const char* json_string) override {
    return call("setRuntimeParameters", arg("json_string", json_string));
  }
  int32_t feedback(uint64_t type, const rtc::FeedbackInfo& info) override {
    return call("feedback", arg("type", type), arg("info", info));
  }
  int32_t startAudioCapture() override { return call("startAudioCapture"); }
  int32_t stopAudioCapture() override { return call("stopAudioCapture"); }
  int32_t muteAudioCapture(int32_t stream_index, bool mute) override {
    return call("muteAudioCapture", arg("stream_index", stream_index), arg("mute", mute));
  }
  int32_t setCaptureVolume(int32_t stream_index, int32_t volume) override {
    return call("setCaptureVolume", arg("stream_index", stream_index), arg("volume", volume));
  }
  int32_t setPlaybackVolume(int32_t volume) override { return call("setPlaybackVolume", arg("volume", volume)); }
  int32_t setRemoteAudioPlaybackVolume(const rtc::StreamKey& stream_key, int32_t volume) override {
    return call("setRemoteAudioPlaybackVolume", arg("stream_key", stream_key), arg("volume", volume));
  }
  int32_t setEarMonitorMode(int32_t mode) override { return call("setEarMonitorMode", arg("mode", mode)); }
  int32_t setEarMonitorVolume(int32_t volume) override { return call("setEarMonitorVolume", arg("volume", volume)); }
  int32_t setAudioProfile(int32_t audio_profile) override {
    return call("setAudioProfile", arg("audio_profile", audio_profile));
  }
  int32_t setAnsMode(int32_t ans_mode) override { return call("setAnsMode", arg("ans_mode", ans_mode)); }
  int32_t enableAGC(bool enable) override { return call("enableAGC", arg("enable", enable)); }
  int32_t enablePlaybackDucking(bool enable) override { return call("enablePlaybackDucking", arg("enable", enable)); }
  int32_t enableExternalSoundCard(bool enable) override {
    return call("enableExternalSoundCard", arg("enable", enable));
  }
  int32_t setAudioAlignmentProperty(const rtc::StreamKey& stream_key, int32_t mode) override {
    return call("setAudioAlignmentProperty", arg("stream_key", stream_key), arg("mode", mode));
  }
  int32_t enableAudioPropertiesReport(const rtc::AudioPropertiesConfig& config) override {
    return call("enableAudioPropertiesReport", arg("config", config));
  }
  int32_t setLocalVoicePitch(int32_t pitch) override { return call("setLocalVoicePitch", arg("pitch", pitch)); }
  int32_t setLocalVoiceEqualization(const rtc::VoiceEqualizationConfig& config) override {
    return call("setLocalVoiceEqualization", arg("config", config));
  }
  int32_t setLocalVoiceReverbParam(const rtc::VoiceReverbConfig& config) override {
    return call("setLocalVoiceReverbParam", arg("config", config));
  }
  int32_t enableLocalVoiceReverb(bool enable) override { return call("enableLocalVoiceReverb", arg("enable", enable)); }
  int32_t registerAudioFrameObserver(rtc::IAudioFrameObserver* observer) override;
  int32_t enableAudioFrameCallback(int32_t method, const rtc::AudioFormat& format) override {
    return call("enableAudioFrameCallback", arg("method", method), arg("format", format));
  }
  int32_t disableAudioFrameCallback(int32_t method) override {
    return call("disableAudioFrameCallback", arg("method", method));
  }
  int32_t registerAudioFrameProcessor(rtc::IAudioFrameProcessor* processor) override;
  int32_t enableAudioProcessor(int32_t method, const rtc::AudioFormat& format) override {
    return call("enableAudioProcessor", arg("method", method), arg("format", format));
  }
  int32_t disableAudioProcessor(int32_t method) override {
    return call("disableAudioProcessor", arg("method", method));
  }
  int32_t setAudioSourceType(int32_t type) override { return call("setAudioSourceType", arg("type", type)); }
  int32_t pushExternalAudioFrame(rtc::IAudioFrame* frame) override;
  int32_t startVideoCapture() override { return call("startVideoCapture"); }
  int32_t stopVideoCapture() override { return call("stopVideoCapture"); }
  int32_t setVideoCaptureConfig(const rtc::VideoCaptureConfig& config) override {
    return call("setVideoCaptureConfig", arg("config", config));
  }
  int32_t setVideoCaptureRotation(int32_t rotation) override {
    return call("setVideoCaptureRotation", arg("rotation", rotation));
  }
  int32_t setLocalVideoMirrorType(int32_t mirror_type) override {
    return call("setLocalVideoMirrorType", arg("mirror_type", mirror_type));
  }
  int32_t setDummyCaptureImagePath(const char* file_path) override {
    return call("setDummyCaptureImagePath", arg("file_path", file_path));
  }
  int32_t setLowLightAdjusted(int32_t mode) override { return call("setLowLightAdjusted", arg("mode", mode)); }
  int32_t setVideoEncoderConfig(const rtc::VideoEncoderConfig* channel_solutions, int32_t count) override {
    return call("setVideoEncoderConfig", list("channel_solutions", channel_solutions, count), arg("count", count));
  }
  int32_t setMaxVideoEncoderConfig(const rtc::VideoEncoderConfig& max_solution) override {
    return call("setMaxVideoEncoderConfig", arg("max_solution", max_solution));
  }
  int32_t setScreenVideoEncoderConfig(const rtc::VideoEncoderConfig& screen_solution) override {
    return call("setScreenVideoEncoderConfig", arg("screen_solution", screen_solution));
  }
  int32_t enableSimulcastMode(bool enable) override { return call("enableSimulcastMode", arg("enable", enable)); }
  int32_t enableAlphaChannelVideoEncode(int32_t stream_index, int32_t alpha_layout) override {
    return call("enableAlphaChannelVideoEncode", arg("stream_index", stream_index), arg("alpha_layout", alpha_layout));
  }
  int32_t disableAlphaChannelVideoEncode(int32_t stream_index) override {
    return call("disableAlphaChannelVideoEncode", arg("stream_index", stream_index));
  }
  int32_t setRemoteVideoSuperResolution(const rtc::StreamKey& stream_key, int32_t mode) override {
    return call("setRemoteVideoSuperResolution", arg("stream_key", stream_key), arg("mode", mode));
  }
  int32_t setVideoDigitalZoomConfig(int32_t type, double size) override {
    return call("setVideoDigitalZoomConfig", arg("type", type), arg("size", size));
  }
  int32_t setVideoDigitalZoomControl(int32_t direction) override {
    return call("setVideoDigitalZoomControl", arg("direction", direction));
  }
  int32_t startVideoDigitalZoomControl(int32_t direction) override {
    return call("startVideoDigitalZoomControl", arg("direction", direction));
  }
  int32_t stopVideoDigitalZoomControl() override { return call("stopVideoDigitalZoomControl"); }
  int32_t setLocalVideoSink(int32_t stream_index, rtc::IVideoSink* sink, int32_t required_format) override;
  int32_t setRemoteVideoSink(const rtc::StreamKey& stream_key, rtc::IVideoSink* sink, int32_t required_format) override;
  int32_t setPublicStreamVideoSink(const char* public_stream_id, rtc::IVideoSink* sink,
                                   int32_t required_format) override;
  int32_t registerVideoProcessor(rtc::IVideoProcessor* processor, const rtc::VideoPreprocessorConfig& config) override;
  int32_t setVideoSourceType(int32_t stream_index, int32_t type) override {
    return call("setVideoSourceType", arg("stream_index", stream_index), arg("type", type));
  }
  int32_t pushExternalVideoFrame(rtc::IVideoFrame* frame) override;
  rtc::IScreenCaptureSourceList* getScreenCaptureSourceList() override;
  rtc::IVideoFrame* getThumbnail(int32_t type, int64_t source_id, int32_t max_width, int32_t max_height) override;
  rtc::IVideoFrame* getWindowAppIcon(int64_t source_id, int32_t max_width, int32_t max_height) override;
  int32_t startScreenVideoCapture(const rtc::ScreenCaptureSourceInfo& source_info,
                                  const rtc::ScreenCaptureParameters& capture_params) override {
    return call("startScreenVideoCapture", arg("source_info", source_info), arg("capture_params", capture_params));
  }
  int32_t updateScreenCaptureRegion(const rtc::Rectangle& region_rect) override {
    return call("updateScreenCaptureRegion", arg("region_rect", region_rect));
  }
  int32_t updateScreenCaptureHighlightConfig(const rtc::ScreenHighlightConfig& highlight_config) override {
    return call("updateScreenCaptureHighlightConfig", arg("highlight_config", highlight_config));
  }
  int32_t updateScreenCaptureMouseCursor(int32_t capture_mouse_cursor) override {
    return call("updateScreenCaptureMouseCursor", arg("capture_mouse_cursor", capture_mouse_cursor));
  }
  int32_t updateScreenCaptureFilterConfig(const rtc::ScreenFilterConfig& filter_config) override {
    return call("updateScreenCaptureFilterConfig", arg("filter_config", filter_config));
  }
  int32_t stopScreenVideoCapture() override { return call("stopScreenVideoCapture"); }
  int32_t startScreenAudioCapture() override { return call("startScreenAudioCapture"); }
  int32_t startMacScreenAudioCapture(const char* device_id) override {
    return call("startMacScreenAudioCapture", arg("device_id", device_id));
  }
  int32_t stopScreenAudioCapture() override { return call("stopScreenAudioCapture"); }
  int32_t setScreenAudioStreamIndex(int32_t stream_index) override {
    return call("setScreenAudioStreamIndex", arg("stream_index", stream_index));
  }
  int32_t setScreenAudioChannel(int32_t channel) override {
    return call("setScreenAudioChannel", arg("channel", channel));
  }
  int32_t startFileRecording(int32_t stream_index, const rtc::RecordingConfig& config,
                             int32_t recording_type) override {
    return call("startFileRecording", arg("stream_index", stream_index), arg("config", config),
                arg("recording_type", recording_type));
  }
  int32_t stopFileRecording(int32_t stream_index) override {
    return call("stopFileRecording", arg("stream_index", stream_index));
  }
  int32_t startAudioRecording(const rtc::AudioRecordingConfig& config) override {
    return call("startAudioRecording", arg("config", config));
  }
  int32_t stopAudioRecording() override { return call("stopAudioRecording"); }
  int32_t takeLocalSnapshot(int32_t stream_index, rtc::ISnapshotResultCallback* callback) override;
  int32_t takeRemoteSnapshot(const rtc::StreamKey& stream_key, rtc::ISnapshotResultCallback* callback) override;
  int32_t setPublishFallbackOption(int32_t option) override {
    return call("setPublishFallbackOption", arg("option", option));
  }
  int32_t setSubscribeFallbackOption(int32_t option) override {
    return call("setSubscribeFallbackOption", arg("option", option));
  }
  int32_t setRemoteUserPriority(const char* room_id, const char* user_id, int32_t priority) override {
    return call("setRemoteUserPriority", arg("room_id", room_id), arg("user_id", user_id), arg("priority", priority));
  }
  int32_t startNetworkDetection(bool is_test_uplink, int32_t expected_uplink_bitrate, bool is_test_downlink,
                                int32_t expected_downlink_bitrate) override {
    return call("startNetworkDetection", arg("is_test_uplink", is_test_uplink),
                arg("expected_uplink_bitrate", expected_uplink_bitrate), arg("is_test_downlink", is_test_downlink),
                arg("expected_downlink_bitrate", expected_downlink_bitrate));
  }
  int32_t stopNetworkDetection() override { return call("stopNetworkDetection"); }
  int32_t startCloudProxy(const rtc::CloudProxyInfo* configurations, int32_t count) override {
    return call("startCloudProxy", list("configurations", configurations, count), arg("count", count));
  }
  int32_t stopCloudProxy() override { return call("stopCloudProxy"); }
  int32_t setLocalProxy(const rtc::LocalProxyConfiguration* configurations, int32_t count) override {
    return call("setLocalProxy", list("configurations", configurations, count), arg("count", count));
  }
  int64_t getNetworkTimeInfo() override { return call<int64_t>("getNetworkTimeInfo"); }
  int32_t setEncryptInfo(int32_t encrypt_type, const char* key) override {
    return call("setEncryptInfo", arg("encrypt_type", encrypt_type), arg("key", key));
  }
  int32_t login(const char* token, const char* uid) override {
    return call("login", arg("token", token), arg("uid", uid));
  }
  int32_t logout() override { return call("logout"); }
  int32_t updateLoginToken(const char* token) override { return call("updateLoginToken", arg("token", token)); }
  int32_t setServerParams(const char* signature, const char* url) override {
    return call("setServerParams", arg("signature", signature), arg("url", url));
  }
  int32_t getPeerOnlineStatus(const char* peer_user_id) override {
    return call("getPeerOnlineStatus", arg("peer_user_id", peer_user_id));
  }
  int64_t sendUserMessageOutsideRoom(const char* uid, const char* message, int32_t config) override {
    return callForId<int64_t>("sendUserMessageOutsideRoom", arg("uid", uid), arg("message", message),
                              arg("config", config));
  }
  int64_t sendUserBinaryMessageOutsideRoom(const char* uid, int32_t length, const uint8_t* message,
                                           int32_t config) override {
    return callForId<int64_t>("sendUserBinaryMessageOutsideRoom", arg("uid", uid), arg("length", length),
                              list("message", message, length), arg("config", config));
  }
  int64_t sendServerMessage(const char* message) override {
    return callForId<int64_t>("sendServerMessage", arg("message", message));
  }
  int64_t sendServerBinaryMessage(int32_t length, const uint8_t* message) override {
    return callForId<int64_t>("sendServerBinaryMessage", arg("length", length), list("message", message, length));
  }
  int32_t sendSEIMessage(int32_t stream_index, const uint8_t* message, int32_t length, int32_t repeat_count,
                         int32_t mode) override {
    return call("sendSEIMessage", arg("stream_index", stream_index), list("message", message, length),
                arg("length", length), arg("repeat_count", repeat_count), arg("mode", mode));
  }
  int32_t sendPublicStreamSEIMessage(int32_t stream_index, int32_t channel_id, const uint8_t* message, int32_t length,
                                     int32_t repeat_count, int32_t mode) override {
    return call("sendPublicStreamSEIMessage", arg("stream_index", stream_index), arg("channel_id", channel_id),
                list("message", message, length), arg("length", length), arg("repeat_count", repeat_count),
                arg("mode", mode));
  }
  int64_t sendStreamSyncInfo(const uint8_t* data, int32_t length, const rtc::StreamSyncInfoConfig& config) override {
    return call<int64_t>("sendStreamSyncInfo", list("data", data, length), arg("length", length),
                         arg("config", config));
  }
  int32_t startLiveTranscoding(const char* task_id, rtc::ITranscoderParam* param,
                               rtc::ITranscodingObserver* observer) override;
  int32_t updateLiveTranscoding(const char* task_id, rtc::ITranscoderParam* param) override;
  int32_t stopLiveTranscoding(const char* task_id) override {
    return call("stopLiveTranscoding", arg("task_id", task_id));
  }
  int32_t startPushMixedStreamToCDN(const char* task_id, rtc::IMixedStreamConfig* config,
                                    rtc::ITranscodingObserver* observer) override;
  int32_t updatePushMixedStreamToCDN(const char* task_id, rtc::IMixedStreamConfig* config) override;
  int32_t startPushSingleStreamToCDN(const char* task_id, const rtc::PushSingleStreamParam& param,
                                     rtc::IPushSingleStreamToCDNObserver* observer) override;
  int32_t stopPushStreamToCDN(const char* task_id) override {
    return call("stopPushStreamToCDN", arg("task_id", task_id));
  }
  int32_t startPushPublicStream(const char* public_stream_id, rtc::IPublicStreamParam* param) override;
  int32_t updatePublicStreamParam(const char* public_stream_id, rtc::IPublicStreamParam* param) override;
  int32_t stopPushPublicStream(const char* public_stream_id) override {
    return call("stopPushPublicStream", arg("public_stream_id", public_stream_id));
  }
  int32_t startPlayPublicStream(const char* public_stream_id) override {
    return call("startPlayPublicStream", arg("public_stream_id", public_stream_id));
  }
  int32_t stopPlayPublicStream(const char* public_stream_id) override {
    return call("stopPlayPublicStream", arg("public_stream_id", public_stream_id));
  }
  int32_t setPublicStreamAudioPlaybackVolume(const char* public_stream_id, int32_t volume) override {
    return call("setPublicStreamAudioPlaybackVolume", arg("public_stream_id", public_stream_id), arg("volume", volume));
  }

 private:
  rtc::IVideoFrame* answerFrame(const char* operation) const;

  AudioDeviceManager audio_devices_;
  VideoDeviceManager video_devices_;
  AudioMixingManager audio_mixing_;
  VideoEffect video_effect_;
  KTVManager ktv_;
  SingScoringManager sing_scoring_;
  AudioEffectPlayer effect_player_;
  std::map<int32_t, std::unique_ptr<MediaPlayer>> media_players_;
};

}  // namespace corvane::scripted
