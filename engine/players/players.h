// Everything of one engine that plays: effects, media players, audio mixing.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "players/audio_mixing.h"
#include "players/effect_player.h"
#include "players/media_player.h"
#include "players/voice_mix.h"

namespace corvane::rtc {

class Players {
 public:
  Players(EngineContext& context, SoundMixer& playback, SentSound& sent)
      : context_(context), mix_(playback, sent), effects_(context, mix_), mixing_(context, mix_) {}

  // Any thread. What they give lives as long as this.

  EffectPlayer& effects() { return effects_; }
  AudioMixing& mixing() { return mixing_; }
  /// Made when it is asked for first.
  MediaPlayer& mediaPlayer(int32_t id) {
    const std::lock_guard lock(mutex_);
    std::unique_ptr<MediaPlayer>& player = media_players_[id];
    if (player == nullptr) player = std::make_unique<MediaPlayer>(context_, mix_, id);
    return *player;
  }

  /// Engine thread, the last call.
  void shutDown() {
    effects_.shutDown();
    mixing_.shutDown();
    const std::lock_guard lock(mutex_);
    for (const auto& [id, player] : media_players_) player->shutDown();
  }

 private:
  EngineContext& context_;
  VoiceMix mix_;
  EffectPlayer effects_;
  AudioMixing mixing_;
  std::mutex mutex_;
  std::map<int32_t, std::unique_ptr<MediaPlayer>> media_players_;
};

}  // namespace corvane::rtc
