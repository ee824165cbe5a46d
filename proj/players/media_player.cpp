#include "players/media_player.h"

#include <string>

#include "corvane_rtc/rtc_video.h"
#include "players/engine_lookup.h"
#include "players/media_player_names.h"

namespace corvane {
namespace {

constexpr char kClassName[] = "KavRTCMediaPlayer";

constexpr LookupLines kLookupLines = {
    "%s(%d), KavRTCMediaPlayer error: getInstance is null",
    "%s(%d), KavRTCMediaPlayer error: IRTCVideo is null",
    "%s(%d), MediaPlayer is nullptr",
};

using Handlers = GivenHandlers<rtc::IMediaPlayer, MediaPlayerEvents>;

}  // namespace

void MediaPlayerEvents::onMediaPlayerStateChanged(int32_t player_id, int32_t state, int32_t error) {
  post(__func__, "onMediaPlayerStateChanged, -callback", __LINE__, [=](Payload& payload) {
    payload.put("player_id", player_id);
    payload.put("state", state);
    payload.put("error", error);
  });
}

// The progress travels as text: a JavaScript number does not hold every 64-bit value.
void MediaPlayerEvents::onMediaPlayerPlayingProgress(int32_t player_id, int64_t progress) {
  post(__func__, "onMediaPlayerPlayingProgress, -callback", __LINE__,
       [player_id, progress = std::to_string(progress)](Payload& payload) {
         payload.put("player_id", player_id);
         payload.put("progress", progress);
       });
}

Napi::Function KavRTCMediaPlayer::define(Napi::Env env) {
  const std::span<const Row> tables[] = {mediaPlayerRows()};
  Napi::Function constructor = defineClass<KavRTCMediaPlayer>(env, kClassName, kMediaPlayerMethodNames, tables);
  keepConstructor(constructor);
  return constructor;
}

void* KavRTCMediaPlayer::findOwner(const Call& call) {
  rtc::IRTCVideo* engine = findEngine(kLookupLines, call.row.name, call.row.line);
  if (engine == nullptr) return nullptr;
  const auto* self = static_cast<const KavRTCMediaPlayer*>(call.wrapper);
  rtc::IMediaPlayer* player = engine->getMediaPlayer(self->player_id_);
  if (player == nullptr) call.say(kLogInfo, kLookupLines.no_player);
  return player;
}

KavRTCMediaPlayer::KavRTCMediaPlayer(const Napi::CallbackInfo& info) : Napi::ObjectWrap<KavRTCMediaPlayer>(info) {
  LogWrite(kLogInfo, "+%s(%d)", kClassName, __LINE__);
  int32_t result = -1;
  events_ = std::make_shared<MediaPlayerEvents>(openChannel(info, result));
  LogWrite(kLogInfo, kPlayerExit, kClassName, __LINE__, result);
}

// The engine's player is left alone: the first method that needs it looks it up.
Channel KavRTCMediaPlayer::openChannel(const Napi::CallbackInfo& info, int32_t& result) {
  if (findEngine(kLookupLines, kClassName, __LINE__) == nullptr) return {};
  if (!info[0].IsNumber() || !info[1].IsFunction()) {
    LogWrite(kLogInfo, "%s(%d), Param Invalid", kClassName, __LINE__);
    return {};
  }
  player_id_ = Reader(info.Env()).int32(info[0]);
  Channel channel = Channel::open(info.Env(), info[1].As<Napi::Function>(), "KavRTCMediaPlayerCallback", nullptr);
  if (!info.Env().IsExceptionPending()) result = 0;
  return channel;
}

KavRTCMediaPlayer::~KavRTCMediaPlayer() {
  LastReceiver<KavRTCMediaPlayer>::forget(this);
  events_->disable();
  LogWrite(kLogInfo, "KavRTCMediaPlayer stopCallback");
  if (!Handlers::instance().isGiven(events_)) return;
  rtc::IRTCVideo* engine = engineIfAny();
  rtc::IMediaPlayer* player = engine == nullptr ? nullptr : engine->getMediaPlayer(player_id_);
  if (player != nullptr) Handlers::instance().takeBack(*player, events_);
}

int32_t KavRTCMediaPlayer::setEventHandler(rtc::IMediaPlayer& player) const {
  return Handlers::instance().give(player, events_);
}

}  // namespace corvane
