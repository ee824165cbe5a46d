// One media player, as applications use it.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "corvane_rtc/media_player.h"
#include "media/receiver_slot.h"
#include "media/sound_converter.h"
#include "players/deck.h"

namespace corvane::rtc {

class MediaPlayer final : public IMediaPlayer {
 public:
  MediaPlayer(EngineContext& context, VoiceMix& mix, int32_t player_id);

  int32_t open(const char* file_path, const MediaPlayerConfig& config) override;
  int32_t openWithCustomSource(const MediaPlayerCustomSource& source, const MediaPlayerConfig& config) override;
  int32_t start() override;
  int32_t stop() override;
  int32_t pause() override;
  int32_t resume() override;
  int32_t setVolume(int32_t volume, int32_t type) override;
  int32_t getVolume(int32_t type) override;
  int32_t getTotalDuration() override;
  int32_t getPlaybackDuration() override;
  int32_t getPosition() override;
  int32_t setAudioPitch(int32_t pitch) override;
  int32_t setPosition(int32_t position) override;
  int32_t setAudioDualMonoMode(int32_t mode) override;
  int32_t getAudioTrackCount() override;
  int32_t selectAudioTrack(int32_t index) override;
  int32_t setPlaybackSpeed(int32_t speed) override;
  int32_t setProgressInterval(int64_t interval) override;
  int32_t setLoudness(float loudness) override;
  int32_t setEventHandler(IMediaPlayerEventHandler* handler) override;
  int32_t pushExternalAudioFrame(IAudioFrame* audio_frame) override;

  /// Engine thread, the last call.
  void shutDown() { deck_->shutDown(); }

 private:
  /// What pushed sound is brought into the engine's form with.
  struct PushedForm {
    PushedForm(const SoundFormat& from, const SoundFormat& to) : format(from), converter(from, to) {}
    SoundFormat format;
    SoundConverter converter;
  };

  DeckConfig apply(const MediaPlayerConfig& config);

  ReceiverSlot<IMediaPlayerEventHandler> handler_;
  const std::shared_ptr<Deck> deck_;
  std::mutex pushed_mutex_;
  std::optional<PushedForm> pushed_form_;
  std::vector<int16_t> pushed_;
};

}  // namespace corvane::rtc
