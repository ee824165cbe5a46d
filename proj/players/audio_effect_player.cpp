#include "players/audio_effect_player.h"

#include "corvane_rtc/rtc_video.h"
#include "players/audio_effect_player_names.h"
#include "players/engine_lookup.h"

namespace corvane {
namespace {

constexpr char kClassName[] = "KavRTCAudioEffectPlayer";

constexpr LookupLines kLookupLines = {
    "%s(%d), KavRTCAudioEffectPlayer error: getInstance is null",
    "%s(%d), KavRTCAudioEffectPlayer error: IRTCVideo is null",
    "%s(%d), AudioEffectPlayer is nullptr",
};

using Handlers = GivenHandlers<rtc::IAudioEffectPlayer, AudioEffectPlayerEvents>;

rtc::IAudioEffectPlayer* findPlayer(const char* name, int32_t line) {
  rtc::IRTCVideo* engine = findEngine(kLookupLines, name, line);
  if (engine == nullptr) return nullptr;
  rtc::IAudioEffectPlayer* player = engine->getAudioEffectPlayer();
  if (player == nullptr) LogWriteRow(kLogInfo, kLookupLines.no_player, name, line);
  return player;
}

// A channel to the constructor's argument, or none after a refusal.
Channel openChannel(const Napi::CallbackInfo& info, int32_t& result) {
  result = -1;
  if (findPlayer(kClassName, __LINE__) == nullptr) return {};
  if (!info[0].IsFunction()) {
    LogWrite(kLogInfo, "%s(%d), Param Invalid", kClassName, __LINE__);
    return {};
  }
  Channel channel = Channel::open(info.Env(), info[0].As<Napi::Function>(), "KavRTCAudioEffectPlayerCallback", nullptr);
  if (!info.Env().IsExceptionPending()) result = 0;
  return channel;
}

}  // namespace

void AudioEffectPlayerEvents::onAudioEffectPlayerStateChanged(int32_t effect_id, int32_t state, int32_t error) {
  post(__func__, "onAudioEffectPlayerStateChanged, -callback", __LINE__, [=](Payload& payload) {
    payload.put("effect_id", effect_id);
    payload.put("state", state);
    payload.put("error", error);
  });
}

Napi::Function KavRTCAudioEffectPlayer::define(Napi::Env env) {
  const std::span<const Row> tables[] = {audioEffectPlayerRows()};
  Napi::Function constructor =
      defineClass<KavRTCAudioEffectPlayer>(env, kClassName, kAudioEffectPlayerMethodNames, tables);
  keepConstructor(constructor);
  return constructor;
}

void* KavRTCAudioEffectPlayer::findOwner(const Call& call) {
  return findPlayer(call.row.name, call.row.line);
}

KavRTCAudioEffectPlayer::KavRTCAudioEffectPlayer(const Napi::CallbackInfo& info)
    : Napi::ObjectWrap<KavRTCAudioEffectPlayer>(info) {
  LogWrite(kLogInfo, "+%s(%d)", kClassName, __LINE__);
  int32_t result = -1;
  events_ = std::make_shared<AudioEffectPlayerEvents>(openChannel(info, result));
  LogWrite(kLogInfo, kPlayerExit, kClassName, __LINE__, result);
}

KavRTCAudioEffectPlayer::~KavRTCAudioEffectPlayer() {
  LastReceiver<KavRTCAudioEffectPlayer>::forget(this);
  events_->disable();
  LogWrite(kLogInfo, "KavRTCAudioEffectPlayer stopCallback");
  if (!Handlers::instance().isGiven(events_)) return;
  rtc::IRTCVideo* engine = engineIfAny();
  rtc::IAudioEffectPlayer* player = engine == nullptr ? nullptr : engine->getAudioEffectPlayer();
  if (player != nullptr) Handlers::instance().takeBack(*player, events_);
}

int32_t KavRTCAudioEffectPlayer::setEventHandler(rtc::IAudioEffectPlayer& player) const {
  return Handlers::instance().give(player, events_);
}

}  // namespace corvane
