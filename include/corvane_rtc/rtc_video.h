// The engine: capture, encoding, devices, messages outside rooms, mixing and pushing of streams, and the way
// to rooms, players and managers.
#pragma once

#include "corvane_rtc/audio_config.h"
#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/common.h"
#include "corvane_rtc/feedback.h"
#include "corvane_rtc/messaging.h"
#include "corvane_rtc/network.h"
#include "corvane_rtc/recording.h"
#include "corvane_rtc/screen_capture.h"
#include "corvane_rtc/stream_mixing.h"
#include "corvane_rtc/video_config.h"
#include "corvane_rtc/video_frame.h"

namespace corvane::rtc {

class IAudioDeviceManager;
class IAudioEffectPlayer;
class IAudioMixingManager;
class IKTVManager;
class ITranscodingObserver;
class IMediaPlayer;
class IPushSingleStreamToCDNObserver;
class IRTCRoom;
class ISingScoringManager;
class ISnapshotResultCallback;
class IVideoDeviceManager;
class IVideoEffect;

/// The engine, made by createRTCVideo() and ended by destroyRTCVideo().
///
/// Threads: operations may be called from any one thread at a time, but not from inside an engine callback.
/// They return without waiting for devices or the network; what takes time reports to IRTCVideoEventHandler.
/// Ownership: managers, players and rooms reached from here belong to the engine; the getters answer the same
/// object each time, and null where the library lacks the feature.
/// Observers, sinks, processors and callbacks stay the caller's and must live until destroyRTCVideo() returns.
/// Null detaches one; unless an operation promises otherwise, a call into it may still be running then.
/// Errors: ReturnStatus, kNotSupported where the library lacks the operation.
class IRTCVideo {
 public:
  // Rooms, players and managers. Null when the library does not offer them.

  /// Ended by IRTCRoom::destroy(); null for a bad or taken id.
  virtual IRTCRoom* createRTCRoom(const char* room_id) = 0;
  virtual IAudioDeviceManager* getAudioDeviceManager() = 0;
  virtual IVideoDeviceManager* getVideoDeviceManager() = 0;
  virtual IAudioMixingManager* getAudioMixingManager() = 0;
  virtual IVideoEffect* getVideoEffectInterface() = 0;
  virtual IKTVManager* getKTVManager() = 0;
  virtual ISingScoringManager* getSingScoringManager() = 0;
  virtual IAudioEffectPlayer* getAudioEffectPlayer() = 0;
  virtual IMediaPlayer* getMediaPlayer(int32_t player_id) = 0;  ///< player_id from 0; one player for each id

  // Engine-wide settings.

  virtual int32_t setBusinessId(const char* business_id) = 0;             ///< a label that reports carry
  virtual int32_t setRuntimeParameters(const char* json_string) = 0;      ///< JSON object of library-specific settings
  virtual int32_t feedback(uint64_t type, const FeedbackInfo& info) = 0;  ///< type: bit mask of ProblemType

  // Audio capture and playback.

  virtual int32_t startAudioCapture() = 0;
  virtual int32_t stopAudioCapture() = 0;
  virtual int32_t muteAudioCapture(int32_t stream_index, bool mute) = 0;       ///< sends silence, capture goes on
  virtual int32_t setCaptureVolume(int32_t stream_index, int32_t volume) = 0;  ///< percent, 0 to 400; 100 as captured
  virtual int32_t setPlaybackVolume(int32_t volume) = 0;                       ///< percent, 0 to 400; all remote sound
  virtual int32_t setRemoteAudioPlaybackVolume(const StreamKey& stream_key, int32_t volume) = 0;  ///< percent, 0 to 400
  virtual int32_t setEarMonitorMode(int32_t mode) = 0;                                            ///< EarMonitorMode
  virtual int32_t setEarMonitorVolume(int32_t volume) = 0;                                        ///< percent, 0 to 100
  virtual int32_t setAudioProfile(int32_t audio_profile) = 0;                                     ///< AudioProfileType
  virtual int32_t setAnsMode(int32_t ans_mode) = 0;                                               ///< AnsMode
  virtual int32_t enableAGC(bool enable) = 0;                ///< automatic gain of the microphone
  virtual int32_t enablePlaybackDucking(bool enable) = 0;    ///< softer playback while the local user talks
  virtual int32_t enableExternalSoundCard(bool enable) = 0;  ///< leaves processing to the sound card
  /// Delays every other remote stream to stay in step with this one. mode: AudioAlignmentMode.
  virtual int32_t setAudioAlignmentProperty(const StreamKey& stream_key, int32_t mode) = 0;
  virtual int32_t enableAudioPropertiesReport(const AudioPropertiesConfig& config) = 0;

  // The local voice.

  virtual int32_t setLocalVoicePitch(int32_t pitch) = 0;  ///< semitones, -12 to 12
  virtual int32_t setLocalVoiceEqualization(const VoiceEqualizationConfig& config) = 0;
  virtual int32_t setLocalVoiceReverbParam(const VoiceReverbConfig& config) = 0;
  virtual int32_t enableLocalVoiceReverb(bool enable) = 0;

  // Raw audio in and out. `method` is an AudioFrameMethod everywhere.

  virtual int32_t registerAudioFrameObserver(IAudioFrameObserver* observer) = 0;  ///< null detaches
  virtual int32_t enableAudioFrameCallback(int32_t method, const AudioFormat& format) = 0;
  virtual int32_t disableAudioFrameCallback(int32_t method) = 0;
  /// Null detaches; no call is inside the previous processor any more when this returns.
  virtual int32_t registerAudioFrameProcessor(IAudioFrameProcessor* processor) = 0;
  virtual int32_t enableAudioProcessor(int32_t method, const AudioFormat& format) = 0;
  virtual int32_t disableAudioProcessor(int32_t method) = 0;
  virtual int32_t setAudioSourceType(int32_t type) = 0;  ///< AudioSourceType
  /// Sound of an external source, normally 10 ms. The frame stays the caller's: it is read during the call only.
  virtual int32_t pushExternalAudioFrame(IAudioFrame* frame) = 0;

  // Video capture and encoding.

  virtual int32_t startVideoCapture() = 0;
  virtual int32_t stopVideoCapture() = 0;
  virtual int32_t setVideoCaptureConfig(const VideoCaptureConfig& config) = 0;
  virtual int32_t setVideoCaptureRotation(int32_t rotation) = 0;     ///< degrees clockwise: 0, 90, 180, 270
  virtual int32_t setLocalVideoMirrorType(int32_t mirror_type) = 0;  ///< MirrorType
  virtual int32_t setDummyCaptureImagePath(
      const char* file_path) = 0;                         ///< in place of a camera that is off; "" for none
  virtual int32_t setLowLightAdjusted(int32_t mode) = 0;  ///< LowLightMode
  /// One layer for each record, best first. count: 1 to 4.
  virtual int32_t setVideoEncoderConfig(const VideoEncoderConfig* channel_solutions, int32_t count) = 0;
  virtual int32_t setMaxVideoEncoderConfig(const VideoEncoderConfig& max_solution) = 0;  ///< bound of automatic layers
  virtual int32_t setScreenVideoEncoderConfig(const VideoEncoderConfig& screen_solution) = 0;
  virtual int32_t enableSimulcastMode(bool enable) = 0;  ///< several layers at once
  virtual int32_t enableAlphaChannelVideoEncode(int32_t stream_index, int32_t alpha_layout) = 0;  ///< AlphaLayout
  virtual int32_t disableAlphaChannelVideoEncode(int32_t stream_index) = 0;
  /// mode: SuperResolutionMode.
  virtual int32_t setRemoteVideoSuperResolution(const StreamKey& stream_key, int32_t mode) = 0;

  virtual int32_t setVideoDigitalZoomConfig(int32_t type, double size) = 0;  ///< ZoomConfigType, which bounds size
  virtual int32_t setVideoDigitalZoomControl(int32_t direction) = 0;         ///< ZoomDirectionType; one step
  virtual int32_t startVideoDigitalZoomControl(int32_t direction) = 0;       ///< steps until stopped
  virtual int32_t stopVideoDigitalZoomControl() = 0;

  // Raw video in and out. required_format is a VideoPixelFormat; null detaches a sink or processor.

  virtual int32_t setLocalVideoSink(int32_t stream_index, IVideoSink* sink, int32_t required_format) = 0;
  virtual int32_t setRemoteVideoSink(const StreamKey& stream_key, IVideoSink* sink, int32_t required_format) = 0;
  virtual int32_t setPublicStreamVideoSink(const char* public_stream_id, IVideoSink* sink, int32_t required_format) = 0;
  /// No call is inside the previous processor any more when this returns.
  virtual int32_t registerVideoProcessor(IVideoProcessor* processor, const VideoPreprocessorConfig& config) = 0;
  /// VideoSourceType. An external source stops the camera, which has to be started again after it.
  virtual int32_t setVideoSourceType(int32_t stream_index, int32_t type) = 0;
  /// Picture of an external source, kWrongState without one. The engine takes the frame, also when the call fails, and
  /// releases it.
  virtual int32_t pushExternalVideoFrame(IVideoFrame* frame) = 0;

  // Screen sharing.

  virtual IScreenCaptureSourceList* getScreenCaptureSourceList() = 0;  ///< the caller releases it; null on failure
  /// Small picture of a source (ScreenCaptureSourceType). Sizes in pixels, 0 for any. The caller releases it; or null.
  virtual IVideoFrame* getThumbnail(int32_t type, int64_t source_id, int32_t max_width, int32_t max_height) = 0;
  /// Icon of the window's application. Sizes in pixels, 0 for any. The caller releases it; or null.
  virtual IVideoFrame* getWindowAppIcon(int64_t source_id, int32_t max_width, int32_t max_height) = 0;
  virtual int32_t startScreenVideoCapture(const ScreenCaptureSourceInfo& source_info,
                                          const ScreenCaptureParameters& capture_params) = 0;
  virtual int32_t updateScreenCaptureRegion(const Rectangle& region_rect) = 0;
  virtual int32_t updateScreenCaptureHighlightConfig(const ScreenHighlightConfig& highlight_config) = 0;
  virtual int32_t updateScreenCaptureMouseCursor(int32_t capture_mouse_cursor) = 0;  ///< MouseCursorCaptureState
  virtual int32_t updateScreenCaptureFilterConfig(const ScreenFilterConfig& filter_config) = 0;
  virtual int32_t stopScreenVideoCapture() = 0;
  virtual int32_t startScreenAudioCapture() = 0;                          ///< the machine's own sound
  virtual int32_t startMacScreenAudioCapture(const char* device_id) = 0;  ///< from a loop-back device
  virtual int32_t stopScreenAudioCapture() = 0;
  virtual int32_t setScreenAudioStreamIndex(int32_t stream_index) = 0;  ///< StreamIndex the screen's sound goes with
  virtual int32_t setScreenAudioChannel(int32_t channel) = 0;           ///< 1 or 2

  // Recording and snapshots.

  virtual int32_t startFileRecording(int32_t stream_index, const RecordingConfig& config, int32_t recording_type) = 0;
  virtual int32_t stopFileRecording(int32_t stream_index) = 0;
  virtual int32_t startAudioRecording(const AudioRecordingConfig& config) = 0;
  virtual int32_t stopAudioRecording() = 0;
  /// Results: the task id that the callback repeats (above 0), or a negative ReturnStatus without any callback.
  virtual int32_t takeLocalSnapshot(int32_t stream_index, ISnapshotResultCallback* callback) = 0;
  virtual int32_t takeRemoteSnapshot(const StreamKey& stream_key, ISnapshotResultCallback* callback) = 0;

  // Network, proxies, encryption.

  virtual int32_t setPublishFallbackOption(int32_t option) = 0;    ///< PublishFallbackOption
  virtual int32_t setSubscribeFallbackOption(int32_t option) = 0;  ///< SubscribeFallbackOption
  /// priority: RemoteUserPriority.
  virtual int32_t setRemoteUserPriority(const char* room_id, const char* user_id, int32_t priority) = 0;
  /// Expected bitrates in kbit/s, 0 for automatic. Reports onNetworkDetectionResult until stopped.
  virtual int32_t startNetworkDetection(bool is_test_uplink, int32_t expected_uplink_bitrate, bool is_test_downlink,
                                        int32_t expected_downlink_bitrate) = 0;
  virtual int32_t stopNetworkDetection() = 0;
  virtual int32_t startCloudProxy(const CloudProxyInfo* configurations, int32_t count) = 0;  ///< tried in order
  virtual int32_t stopCloudProxy() = 0;
  virtual int32_t setLocalProxy(const LocalProxyConfiguration* configurations, int32_t count) = 0;  ///< count 0: none
  /// Milliseconds since 1970 UTC on the service's clock; 0 before it is known.
  virtual int64_t getNetworkTimeInfo() = 0;
  virtual int32_t setEncryptInfo(int32_t encrypt_type, const char* key) = 0;  ///< EncryptType; before joining a room

  // Messages outside rooms, and data inside streams. Message ids are above 0, failures a negative ReturnStatus.

  virtual int32_t login(const char* token, const char* uid) = 0;  ///< reports onLoginResult
  virtual int32_t logout() = 0;
  virtual int32_t updateLoginToken(const char* token) = 0;
  virtual int32_t setServerParams(const char* signature,
                                  const char* url) = 0;               ///< the application's own message server
  virtual int32_t getPeerOnlineStatus(const char* peer_user_id) = 0;  ///< answered by onGetPeerOnlineStatus
  /// config: MessageConfig. At most 64 kB, like all messages here.
  virtual int64_t sendUserMessageOutsideRoom(const char* uid, const char* message, int32_t config) = 0;
  /// length in bytes; config: MessageConfig.
  virtual int64_t sendUserBinaryMessageOutsideRoom(const char* uid, int32_t length, const uint8_t* message,
                                                   int32_t config) = 0;
  virtual int64_t sendServerMessage(const char* message) = 0;
  virtual int64_t sendServerBinaryMessage(int32_t length, const uint8_t* message) = 0;  ///< length in bytes
  /// length in bytes, 1 to 4096; repeat_count: further frames that carry it, 0 to 30; mode: SEICountPerFrame.
  virtual int32_t sendSEIMessage(int32_t stream_index, const uint8_t* message, int32_t length, int32_t repeat_count,
                                 int32_t mode) = 0;
  virtual int32_t sendPublicStreamSEIMessage(int32_t stream_index, int32_t channel_id, const uint8_t* message,
                                             int32_t length, int32_t repeat_count, int32_t mode) = 0;
  /// Data in step with the sound; length in bytes, 1 to 255. The result is 64 bits wide: 0 or above on success.
  virtual int64_t sendStreamSyncInfo(const uint8_t* data, int32_t length, const StreamSyncInfoConfig& config) = 0;

  // Mixing and pushing by the service, public streams. Parameter objects are read during the call and stay the
  // caller's. task_id is chosen by the caller, up to 126 bytes; starting a running one answers kWrongState.

  virtual int32_t startLiveTranscoding(const char* task_id, ITranscoderParam* param,
                                       ITranscodingObserver* observer) = 0;
  virtual int32_t updateLiveTranscoding(const char* task_id, ITranscoderParam* param) = 0;
  virtual int32_t stopLiveTranscoding(const char* task_id) = 0;
  virtual int32_t startPushMixedStreamToCDN(const char* task_id, IMixedStreamConfig* config,
                                            ITranscodingObserver* observer) = 0;
  virtual int32_t updatePushMixedStreamToCDN(const char* task_id, IMixedStreamConfig* config) = 0;
  virtual int32_t startPushSingleStreamToCDN(const char* task_id, const PushSingleStreamParam& param,
                                             IPushSingleStreamToCDNObserver* observer) = 0;
  virtual int32_t stopPushStreamToCDN(const char* task_id) = 0;  ///< mixed and single alike
  virtual int32_t startPushPublicStream(const char* public_stream_id, IPublicStreamParam* param) = 0;
  virtual int32_t updatePublicStreamParam(const char* public_stream_id, IPublicStreamParam* param) = 0;
  virtual int32_t stopPushPublicStream(const char* public_stream_id) = 0;
  virtual int32_t startPlayPublicStream(const char* public_stream_id) = 0;  ///< reports onPlayPublicStreamResult
  virtual int32_t stopPlayPublicStream(const char* public_stream_id) = 0;
  /// Percent, 0 to 400.
  virtual int32_t setPublicStreamAudioPlaybackVolume(const char* public_stream_id, int32_t volume) = 0;

 protected:
  ~IRTCVideo() = default;
};

}  // namespace corvane::rtc
