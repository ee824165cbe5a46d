// Effects, as applications play them.
#pragma once

#include "corvane_rtc/audio_effect_player.h"
#include "media/receiver_slot.h"
#include "players/deck_table.h"

namespace corvane::rtc {

class EffectPlayer final : public IAudioEffectPlayer {
 public:
  EffectPlayer(EngineContext& context, VoiceMix& mix);

  int32_t start(int32_t effect_id, const char* file_path, const AudioEffectPlayerConfig& config) override;
  int32_t stop(int32_t effect_id) override;
  int32_t stopAll() override;
  int32_t preload(int32_t effect_id, const char* file_path) override;
  int32_t unload(int32_t effect_id) override;
  int32_t unloadAll() override;
  int32_t pause(int32_t effect_id) override;
  int32_t pauseAll() override;
  int32_t resume(int32_t effect_id) override;
  int32_t resumeAll() override;
  int32_t setPosition(int32_t effect_id, int32_t position) override;
  int32_t getPosition(int32_t effect_id) override;
  int32_t setVolume(int32_t effect_id, int32_t volume) override;
  int32_t setVolumeAll(int32_t volume) override;
  int32_t getVolume(int32_t effect_id) override;
  int32_t getDuration(int32_t effect_id) override;
  int32_t setEventHandler(IAudioEffectPlayerEventHandler* handler) override;

  /// Engine thread, the last call.
  void shutDown() { decks_.shutDown(); }

 private:
  ReceiverSlot<IAudioEffectPlayerEventHandler> handler_;
  DeckTable decks_;
};

}  // namespace corvane::rtc
