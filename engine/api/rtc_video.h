// The engine as applications call it. Operations are short: they check, post to the engine thread and return.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "api/device_tests.h"
#include "api/missing_operations.h"
#include "api/room_door.h"
#include "api/video_effect.h"
#include "capture/audio_capture.h"
#include "capture/audio_report.h"
#include "capture/capture_fault.h"
#include "capture/captured_sound.h"
#include "capture/pushed_pictures.h"
#include "capture/pushed_sound.h"
#include "capture/screen_sound.h"
#include "capture/screen_sound_capture.h"
#include "capture/video_capture.h"
#include "core/engine_context.h"
#include "core/parameters.h"
#include "corvane_rtc/rtc_video.h"
#include "devices/audio_device_list.h"
#include "devices/audio_device_manager.h"
#include "devices/camera_list.h"
#include "devices/video_device_manager.h"
#include "effects/digital_zoom.h"
#include "effects/local_video.h"
#include "effects/snapshots.h"
#include "media/picture_taps.h"
#include "media/remote_sinks.h"
#include "media/sent_sound.h"
#include "media/sound_hooks.h"
#include "media/sound_mixer.h"
#include "media/video_sink_slot.h"
#include "playback/ear_monitor.h"
#include "playback/played_sound.h"
#include "playback/remote_sounds.h"
#include "playback/speaker.h"
#include "players/players.h"
#include "recording/recordings.h"
#include "rooms/rooms.h"
#include "screens/screen_capture.h"
#include "screens/screen_query.h"

namespace corvane::rtc {

/// Operations that the engine does not offer yet answer kNotSupported, or null, and say so in its log once.
class RtcVideo final : public IRTCVideo, private AudioDeviceManager::Listener {
 public:
  RtcVideo(LogSettings log, const char* app_id, IRTCVideoEventHandler* handler, std::string_view parameters);
  /// Returns when no callback is running or will come.
  ~RtcVideo();
  RtcVideo(const RtcVideo&) = delete;
  RtcVideo& operator=(const RtcVideo&) = delete;

  // Rooms, players and managers.

  IRTCRoom* createRTCRoom(const char* room_id) override;
  IAudioDeviceManager* getAudioDeviceManager() override;
  IVideoDeviceManager* getVideoDeviceManager() override;
  IAudioMixingManager* getAudioMixingManager() override;
  IVideoEffect* getVideoEffectInterface() override;
  IKTVManager* getKTVManager() override;
  ISingScoringManager* getSingScoringManager() override;
  IAudioEffectPlayer* getAudioEffectPlayer() override;
  IMediaPlayer* getMediaPlayer(int32_t player_id) override;

  // Engine-wide settings.

  int32_t setBusinessId(const char* business_id) override;
  int32_t setRuntimeParameters(const char* json_string) override;
  int32_t feedback(uint64_t type, const FeedbackInfo& info) override;

  // Audio capture and playback.

  int32_t startAudioCapture() override;
  int32_t stopAudioCapture() override;
  int32_t muteAudioCapture(int32_t stream_index, bool mute) override;
  int32_t setCaptureVolume(int32_t stream_index, int32_t volume) override;
  int32_t setPlaybackVolume(int32_t volume) override;
  int32_t setRemoteAudioPlaybackVolume(const StreamKey& stream_key, int32_t volume) override;
  int32_t setEarMonitorMode(int32_t mode) override;
  int32_t setEarMonitorVolume(int32_t volume) override;
  int32_t setAudioProfile(int32_t audio_profile) override;
  int32_t setAnsMode(int32_t ans_mode) override;
  int32_t enableAGC(bool enable) override;
  int32_t enablePlaybackDucking(bool enable) override;
  int32_t enableExternalSoundCard(bool enable) override;
  int32_t setAudioAlignmentProperty(const StreamKey& stream_key, int32_t mode) override;
  int32_t enableAudioPropertiesReport(const AudioPropertiesConfig& config) override;

  // The local voice.

  int32_t setLocalVoicePitch(int32_t pitch) override;
  int32_t setLocalVoiceEqualization(const VoiceEqualizationConfig& config) override;
  int32_t setLocalVoiceReverbParam(const VoiceReverbConfig& config) override;
  int32_t enableLocalVoiceReverb(bool enable) override;

  // Raw audio in and out.

  int32_t registerAudioFrameObserver(IAudioFrameObserver* observer) override;
  int32_t enableAudioFrameCallback(int32_t method, const AudioFormat& format) override;
  int32_t disableAudioFrameCallback(int32_t method) override;
  int32_t registerAudioFrameProcessor(IAudioFrameProcessor* processor) override;
  int32_t enableAudioProcessor(int32_t method, const AudioFormat& format) override;
  int32_t disableAudioProcessor(int32_t method) override;
  int32_t setAudioSourceType(int32_t type) override;
  int32_t pushExternalAudioFrame(IAudioFrame* frame) override;

  // Video capture and encoding.

  int32_t startVideoCapture() override;
  int32_t stopVideoCapture() override;
  int32_t setVideoCaptureConfig(const VideoCaptureConfig& config) override;
  int32_t setVideoCaptureRotation(int32_t rotation) override;
  int32_t setLocalVideoMirrorType(int32_t mirror_type) override;
  int32_t setDummyCaptureImagePath(const char* file_path) override;
  int32_t setLowLightAdjusted(int32_t mode) override;
  int32_t setVideoEncoderConfig(const VideoEncoderConfig* channel_solutions, int32_t count) override;
  int32_t setMaxVideoEncoderConfig(const VideoEncoderConfig& max_solution) override;
  int32_t setScreenVideoEncoderConfig(const VideoEncoderConfig& screen_solution) override;
  int32_t enableSimulcastMode(bool enable) override;
  int32_t enableAlphaChannelVideoEncode(int32_t stream_index, int32_t alpha_layout) override;
  int32_t disableAlphaChannelVideoEncode(int32_t stream_index) override;
  int32_t setRemoteVideoSuperResolution(const StreamKey& stream_key, int32_t mode) override;
  int32_t setVideoDigitalZoomConfig(int32_t type, double size) override;
  int32_t setVideoDigitalZoomControl(int32_t direction) override;
  int32_t startVideoDigitalZoomControl(int32_t direction) override;
  int32_t stopVideoDigitalZoomControl() override;

  // Raw video in and out.

  int32_t setLocalVideoSink(int32_t stream_index, IVideoSink* sink, int32_t required_format) override;
  int32_t setRemoteVideoSink(const StreamKey& stream_key, IVideoSink* sink, int32_t required_format) override;
  int32_t setPublicStreamVideoSink(const char* public_stream_id, IVideoSink* sink, int32_t required_format) override;
  int32_t registerVideoProcessor(IVideoProcessor* processor, const VideoPreprocessorConfig& config) override;
  int32_t setVideoSourceType(int32_t stream_index, int32_t type) override;
  int32_t pushExternalVideoFrame(IVideoFrame* frame) override;

  // Screen sharing.

  IScreenCaptureSourceList* getScreenCaptureSourceList() override;
  IVideoFrame* getThumbnail(int32_t type, int64_t source_id, int32_t max_width, int32_t max_height) override;
  IVideoFrame* getWindowAppIcon(int64_t source_id, int32_t max_width, int32_t max_height) override;
  int32_t startScreenVideoCapture(const ScreenCaptureSourceInfo& source_info,
                                  const ScreenCaptureParameters& capture_params) override;
  int32_t updateScreenCaptureRegion(const Rectangle& region_rect) override;
  int32_t updateScreenCaptureHighlightConfig(const ScreenHighlightConfig& highlight_config) override;
  int32_t updateScreenCaptureMouseCursor(int32_t capture_mouse_cursor) override;
  int32_t updateScreenCaptureFilterConfig(const ScreenFilterConfig& filter_config) override;
  int32_t stopScreenVideoCapture() override;
  int32_t startScreenAudioCapture() override;
  int32_t startMacScreenAudioCapture(const char* device_id) override;
  int32_t stopScreenAudioCapture() override;
  int32_t setScreenAudioStreamIndex(int32_t stream_index) override;
  int32_t setScreenAudioChannel(int32_t channel) override;

  // Recording and snapshots.

  int32_t startFileRecording(int32_t stream_index, const RecordingConfig& config, int32_t recording_type) override;
  int32_t stopFileRecording(int32_t stream_index) override;
  int32_t startAudioRecording(const AudioRecordingConfig& config) override;
  int32_t stopAudioRecording() override;
  int32_t takeLocalSnapshot(int32_t stream_index, ISnapshotResultCallback* callback) override;
  int32_t takeRemoteSnapshot(const StreamKey& stream_key, ISnapshotResultCallback* callback) override;

  // Network, proxies, encryption.

  int32_t setPublishFallbackOption(int32_t option) override;
  int32_t setSubscribeFallbackOption(int32_t option) override;
  int32_t setRemoteUserPriority(const char* room_id, const char* user_id, int32_t priority) override;
  int32_t startNetworkDetection(bool is_test_uplink, int32_t expected_uplink_bitrate, bool is_test_downlink,
                                int32_t expected_downlink_bitrate) override;
  int32_t stopNetworkDetection() override;
  int32_t startCloudProxy(const CloudProxyInfo* configurations, int32_t count) override;
  int32_t stopCloudProxy() override;
  int32_t setLocalProxy(const LocalProxyConfiguration* configurations, int32_t count) override;
  int64_t getNetworkTimeInfo() override;
  int32_t setEncryptInfo(int32_t encrypt_type, const char* key) override;

  // Messages outside rooms, and data inside streams.

  int32_t login(const char* token, const char* uid) override;
  int32_t logout() override;
  int32_t updateLoginToken(const char* token) override;
  int32_t setServerParams(const char* signature, const char* url) override;
  int32_t getPeerOnlineStatus(const char* peer_user_id) override;
  int64_t sendUserMessageOutsideRoom(const char* uid, const char* message, int32_t config) override;
  int64_t sendUserBinaryMessageOutsideRoom(const char* uid, int32_t length, const uint8_t* message,
                                           int32_t config) override;
  int64_t sendServerMessage(const char* message) override;
  int64_t sendServerBinaryMessage(int32_t length, const uint8_t* message) override;
  int32_t sendSEIMessage(int32_t stream_index, const uint8_t* message, int32_t length, int32_t repeat_count,
                         int32_t mode) override;
  int32_t sendPublicStreamSEIMessage(int32_t stream_index, int32_t channel_id, const uint8_t* message, int32_t length,
                                     int32_t repeat_count, int32_t mode) override;
  int64_t sendStreamSyncInfo(const uint8_t* data, int32_t length, const StreamSyncInfoConfig& config) override;

  // Mixing and pushing by the service, public streams.

  int32_t startLiveTranscoding(const char* task_id, ITranscoderParam* param, ITranscodingObserver* observer) override;
  int32_t updateLiveTranscoding(const char* task_id, ITranscoderParam* param) override;
  int32_t stopLiveTranscoding(const char* task_id) override;
  int32_t startPushMixedStreamToCDN(const char* task_id, IMixedStreamConfig* config,
                                    ITranscodingObserver* observer) override;
  int32_t updatePushMixedStreamToCDN(const char* task_id, IMixedStreamConfig* config) override;
  int32_t startPushSingleStreamToCDN(const char* task_id, const PushSingleStreamParam& param,
                                     IPushSingleStreamToCDNObserver* observer) override;
  int32_t stopPushStreamToCDN(const char* task_id) override;
  int32_t startPushPublicStream(const char* public_stream_id, IPublicStreamParam* param) override;
  int32_t updatePublicStreamParam(const char* public_stream_id, IPublicStreamParam* param) override;
  int32_t stopPushPublicStream(const char* public_stream_id) override;
  int32_t startPlayPublicStream(const char* public_stream_id) override;
  int32_t stopPlayPublicStream(const char* public_stream_id) override;
  int32_t setPublicStreamAudioPlaybackVolume(const char* public_stream_id, int32_t volume) override;

  // Of its rooms.

  int32_t notSupported(const char* operation) override { return missing_operations_.refuse(operation); }
  void postToRoom(const std::string& room_id, std::function<void(Room&)> task);
  void setRoomHandler(const std::string& room_id, IRTCRoomEventHandler* handler);
  /// Returns when no callback of the room's is running or will come.
  void destroyRoom(const std::string& room_id);

 private:
  void onAudioDeviceChosen(AudioDeviceKind kind, const std::string& id) override;
  void onAudioDeviceVolume(AudioDeviceKind kind, int32_t volume, bool muted) override;
  /// Tells the log why there is nothing of the screen. Returns the fault's status.
  int32_t refuseScreen(const char* operation, const CaptureFault& fault);

  EngineContext context_;
  const EngineParameters parameters_;
  MissingOperations missing_operations_;
  Snapshots snapshots_;
  LocalVideo local_video_;
  VideoEffect video_effect_;
  PushedQueue pushed_video_;
  VideoSinkSlot screen_sink_;
  PictureTaps screen_taps_;
  SoundTaps screen_sound_taps_;  // who publishes or records the screen's sound
  ScreenQuery screen_query_;
  std::atomic<bool> screen_started_ = false;  // the application's, whatever became of it
  CameraList cameras_;
  VideoDeviceManager video_devices_;
  SoundHooks sound_hooks_;
  PushedSound pushed_sound_;
  CapturedSound captured_sound_;
  ScreenSound screen_sound_{sound_hooks_, screen_sound_taps_};
  SentSound sent_sound_{captured_sound_.taps()};
  SoundMixer playback_;  // what rooms and players play
  PlayedSound played_sound_;
  EarMonitor ear_monitor_{captured_sound_.taps(), playback_};
  Players players_{context_, playback_, sent_sound_};
  RemoteSounds remote_sounds_{playback_, sound_hooks_};
  AudioDeviceList sound_devices_;
  PostedDeviceTests device_tests_{context_.thread, device_trials_};
  AudioDeviceManager audio_devices_;
  Recordings recordings_{context_,
                         {local_video_.taps(), screen_taps_, sent_sound_.taps(), screen_sound_taps_,
                          captured_sound_.taps(), playback_.taps()}};

  // The engine thread's.
  std::unique_ptr<VideoCapture> video_capture_;
  std::unique_ptr<ScreenCapture> screen_capture_;
  std::unique_ptr<ScreenSoundCapture> screen_sound_capture_;
  std::unique_ptr<DigitalZoom> zoom_;
  std::unique_ptr<AudioCapture> audio_capture_;
  std::unique_ptr<AudioReport> audio_report_;
  std::unique_ptr<Speaker> speaker_;
  std::unique_ptr<DeviceTrials> device_trials_;
  std::unique_ptr<Rooms> rooms_;
  RemoteSinks remote_sinks_;
  const std::shared_ptr<RoomDoor> door_ = std::make_shared<RoomDoor>(*this);

  std::mutex room_ids_mutex_;
  std::set<std::string> room_ids_;
};

}  // namespace corvane::rtc
