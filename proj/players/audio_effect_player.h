// KavRTCAudioEffectPlayer, the JavaScript class of the engine's one player of short effects.
#pragma once

#include <napi.h>

#include <memory>

#include "binding/row.h"
#include "corvane_rtc/audio_effect_player.h"
#include "players/player_events.h"

namespace corvane {

/// What the engine calls for a player object, on threads of its own; may outlive the object.
class AudioEffectPlayerEvents final : public rtc::IAudioEffectPlayerEventHandler, public PlayerEvents {
 public:
  using PlayerEvents::PlayerEvents;
  void onAudioEffectPlayerStateChanged(int32_t effect_id, int32_t state, int32_t error) override;
};

/// Everything runs on the JavaScript thread.
class KavRTCAudioEffectPlayer final : public Napi::ObjectWrap<KavRTCAudioEffectPlayer> {
 public:
  static Napi::Function define(Napi::Env env);
  static void* findOwner(const Call& call);

  explicit KavRTCAudioEffectPlayer(const Napi::CallbackInfo& info);
  ~KavRTCAudioEffectPlayer() override;

  int32_t setEventHandler(rtc::IAudioEffectPlayer& player) const;

 private:
  std::shared_ptr<AudioEffectPlayerEvents> events_;
};

/// The methods' rows.
std::span<const Row> audioEffectPlayerRows();

}  // namespace corvane
