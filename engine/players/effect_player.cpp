#include "players/effect_player.h"

#include "players/ranges.h"

namespace corvane::rtc {

EffectPlayer::EffectPlayer(EngineContext& context, VoiceMix& mix)
    : decks_(context, mix, DeckTable::OtherFile::kPlays,
             {.state =
                  [this](int32_t id, PlayerState state, PlayerError error, bool) {
                    handler_.call([&](IAudioEffectPlayerEventHandler& handler) {
                      handler.onAudioEffectPlayerStateChanged(id, state, error);
                    });
                  },
              .progress = [](int32_t, int64_t) {}}) {}

int32_t EffectPlayer::start(int32_t effect_id, const char* file_path, const AudioEffectPlayerConfig& config) {
  if (!isOutputType(config.type) || !isPitch(config.pitch) || config.start_pos < 0) return kInvalidParameter;
  const DeckConfig deck_config = {.play_count = config.play_count, .start_ms = config.start_pos};
  return decks_.start(effect_id, textOf(file_path), deck_config, [&](VoiceSettings& settings) {
    settings.outputs = config.type;
    settings.pitch = config.pitch;
  });
}

int32_t EffectPlayer::stop(int32_t effect_id) {
  return decks_.with(effect_id, [](Deck& deck) { return deck.stop(); });
}

int32_t EffectPlayer::stopAll() {
  decks_.forActive(&Deck::stop);
  return kSuccess;
}

int32_t EffectPlayer::preload(int32_t effect_id, const char* file_path) {
  const char* path = textOf(file_path);
  return *path != '\0' ? decks_.preload(effect_id, path) : kInvalidParameter;
}

int32_t EffectPlayer::unload(int32_t effect_id) {
  return decks_.unload(effect_id);
}

int32_t EffectPlayer::unloadAll() {
  decks_.unloadAll();
  return kSuccess;
}

int32_t EffectPlayer::pause(int32_t effect_id) {
  return decks_.with(effect_id, [](Deck& deck) { return deck.pause(); });
}

int32_t EffectPlayer::pauseAll() {
  decks_.forActive(&Deck::pause);
  return kSuccess;
}

int32_t EffectPlayer::resume(int32_t effect_id) {
  return decks_.with(effect_id, [](Deck& deck) { return deck.resume(); });
}

int32_t EffectPlayer::resumeAll() {
  decks_.forActive(&Deck::resume);
  return kSuccess;
}

int32_t EffectPlayer::setPosition(int32_t effect_id, int32_t position) {
  return decks_.with(effect_id, [&](Deck& deck) { return deck.setPosition(position); });
}

int32_t EffectPlayer::getPosition(int32_t effect_id) {
  return decks_.with(effect_id, [](Deck& deck) { return asResult(deck.position()); });
}

int32_t EffectPlayer::setVolume(int32_t effect_id, int32_t volume) {
  if (!isVolume(volume)) return kInvalidParameter;
  return decks_.with(effect_id, [&](Deck& deck) {
    deck.change([&](VoiceSettings& settings) { settings.own_gain = gainOf(volume); });
    return kSuccess;
  });
}

int32_t EffectPlayer::setVolumeAll(int32_t volume) {
  if (!isVolume(volume)) return kInvalidParameter;
  decks_.changeAll([&](VoiceSettings& settings) { settings.own_gain = gainOf(volume); });
  return kSuccess;
}

int32_t EffectPlayer::getVolume(int32_t effect_id) {
  return decks_.with(effect_id, [](Deck& deck) { return volumeOf(deck.settings().own_gain); });
}

int32_t EffectPlayer::getDuration(int32_t effect_id) {
  return asResult(decks_.duration(effect_id));
}

int32_t EffectPlayer::setEventHandler(IAudioEffectPlayerEventHandler* handler) {
  handler_.attachAndWait(handler);
  return kSuccess;
}

}  // namespace corvane::rtc
