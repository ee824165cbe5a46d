// KavRTCObserver: one object for everything that the engine reports through observers of its own: raw sound, pushes to
// addresses, faces, snapshots, the music library and its player, scores. Mixing has KavRTCTranscodingObserver.
// The methods are spread over observers/, one file for each group below.
//
// Threads: the engine's own, several at once. Nothing that the engine lends is kept.
#pragma once

#include <atomic>
#include <cstdint>

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/face_detection.h"
#include "corvane_rtc/ktv_events.h"
#include "corvane_rtc/sing_scoring_events.h"
#include "corvane_rtc/snapshot.h"
#include "corvane_rtc/stream_mixing_events.h"

namespace corvane {

class KavRTCObserver final : public rtc::IAudioFrameObserver,
                             public rtc::IKTVManagerEventHandler,
                             public rtc::IKTVPlayerEventHandler,
                             public rtc::IPushSingleStreamToCDNObserver,
                             public rtc::IFaceDetectionObserver,
                             public rtc::ISnapshotResultCallback,
                             public rtc::ISingScoringEventHandler {
 public:
  KavRTCObserver() = default;
  ~KavRTCObserver();
  KavRTCObserver(const KavRTCObserver&) = delete;
  KavRTCObserver& operator=(const KavRTCObserver&) = delete;

  // audio_frames.cpp
  void onRecordAudioFrame(const rtc::IAudioFrame* audio_frame) override;
  void onPlaybackAudioFrame(const rtc::IAudioFrame* audio_frame) override;
  void onRemoteUserAudioFrame(const rtc::StreamKey& stream_info, const rtc::IAudioFrame* audio_frame) override;
  void onMixedAudioFrame(const rtc::IAudioFrame* audio_frame) override;
  void onRecordScreenAudioFrame(const rtc::IAudioFrame* audio_frame) override;

  // mixing.cpp
  void onStreamPushEvent(int32_t event, const char* task_id, int32_t error) override;

  // faces.cpp
  void onFaceDetectResult(const rtc::FaceDetectionResult& result) override;

  // snapshots.cpp
  void onTakeLocalSnapshotResult(int32_t task_id, int32_t stream_index, rtc::IVideoFrame* image,
                                 int32_t error_code) override;
  void onTakeRemoteSnapshotResult(int32_t task_id, const rtc::StreamKey& stream_key, rtc::IVideoFrame* image,
                                  int32_t error_code) override;

  // music.cpp: the library and its player
  void onMusicListResult(const rtc::MusicInfo* music_infos, int32_t music_count, int32_t total_musics_size,
                         int32_t error_code) override;
  void onSearchMusicResult(const rtc::MusicInfo* music_infos, int32_t music_count, int32_t total_musics_size,
                           int32_t error_code) override;
  void onHotMusicResult(const rtc::HotMusicInfo* hot_infos, int32_t hot_count, int32_t error_code) override;
  void onMusicDetailResult(const rtc::MusicInfo& music_info, int32_t error_code) override;
  void onDownloadSuccess(int32_t download_id, const rtc::DownloadResult& download_info) override;
  void onDownloadFailed(int32_t download_id, int32_t error_code) override;
  void onDownloadMusicProgress(int32_t download_id, int32_t download_percentage) override;
  void onClearCacheResult(int32_t error_code) override;
  void onPlayProgress(const char* music_id, int32_t progress) override;
  void onPlayStateChanged(const char* music_id, int32_t play_state, int32_t error_code) override;

  // scoring.cpp
  void onCurrentScoringInfo(const rtc::SingScoringRealtimeInfo& info) override;

 private:
  void processAudioFrame(const char* event, const rtc::IAudioFrame* audio_frame);
  void refuseAudioFrame(const char* method, int32_t line);

  // Set with the first null frame: an engine that sends one sends a hundred a second, and one line is enough.
  std::atomic<bool> null_frame_seen_{false};
};

}  // namespace corvane
