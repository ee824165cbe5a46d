// KavRTCMediaPlayer, the JavaScript class of one of the engine's media players.
#pragma once

#include <napi.h>

#include <memory>

#include "binding/row.h"
#include "corvane_rtc/media_player.h"
#include "players/player_events.h"

namespace corvane {

/// What the engine calls for a player object, on threads of its own; may outlive the object.
class MediaPlayerEvents final : public rtc::IMediaPlayerEventHandler, public PlayerEvents {
 public:
  using PlayerEvents::PlayerEvents;
  void onMediaPlayerStateChanged(int32_t player_id, int32_t state, int32_t error) override;
  void onMediaPlayerPlayingProgress(int32_t player_id, int64_t progress) override;
};

/// Everything runs on the JavaScript thread.
class KavRTCMediaPlayer final : public Napi::ObjectWrap<KavRTCMediaPlayer> {
 public:
  static Napi::Function define(Napi::Env env);
  static void* findOwner(const Call& call);

  explicit KavRTCMediaPlayer(const Napi::CallbackInfo& info);
  ~KavRTCMediaPlayer() override;

  int32_t setEventHandler(rtc::IMediaPlayer& player) const;

 private:
  // A channel to the constructor's callback, or none after a refusal.
  Channel openChannel(const Napi::CallbackInfo& info, int32_t& result);

  int32_t player_id_ = -1;  // -1 until the constructor accepted one
  std::shared_ptr<MediaPlayerEvents> events_;
};

/// The methods' rows.
std::span<const Row> mediaPlayerRows();

}  // namespace corvane
