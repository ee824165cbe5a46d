// The methods of KavRTCAudioEffectPlayer.
#include "binding/rows.h"
#include "players/audio_effect_player.h"
#include "players/engine_lookup.h"
#include "players/required_keys.h"

namespace corvane {

template <>
inline rtc::IAudioEffectPlayer* find<rtc::IAudioEffectPlayer>(Call& call) {
  return static_cast<rtc::IAudioEffectPlayer*>(call.owner);
}

namespace {

rtc::IAudioEffectPlayer& playerOf(const Call& call) {
  return *static_cast<rtc::IAudioEffectPlayer*>(call.owner);
}

constexpr RequiredKey kConfigKeys[] = {
    {"type", Kind::kNumber},
    {"play_count", Kind::kNumber},
    {"pitch", Kind::kNumber},
    {"start_pos", Kind::kNumber},
};

void start(Call& call) {
  Reader reader(call.env);
  const auto values = readRequired(call, reader, call[2], kConfigKeys);
  if (!values) return;
  rtc::AudioEffectPlayerConfig config{};
  int32_t* const fields[] = {&config.type, &config.play_count, &config.pitch, &config.start_pos};
  for (size_t i = 0; i < std::size(fields); ++i) {
    *fields[i] = reader.int32((*values)[i]);
    call.say(kLogInfo, "%s(%d) %s: %d", kConfigKeys[i].name, *fields[i]);
  }
  Text path;
  reader.text(call[1], path);
  call.result = playerOf(call).start(reader.int32(call[0]), path.c_str(), config);
}

void setEventHandler(Call& call) {
  call.result = static_cast<KavRTCAudioEffectPlayer*>(call.wrapper)->setEventHandler(playerOf(call));
}

template <auto Operation>
consteval auto method(const char* name, int32_t line = __builtin_LINE()) {
  return plain<Operation>(name, line).exits(kPlayerExit);
}

constexpr Row kRows[] = {
    special("start", &start, {Kind::kNumber, Kind::kString, Kind::kObject}).exits(kPlayerExit),
    method<&rtc::IAudioEffectPlayer::stop>("stop"),
    method<&rtc::IAudioEffectPlayer::stopAll>("stopAll"),
    method<&rtc::IAudioEffectPlayer::preload>("preload"),
    method<&rtc::IAudioEffectPlayer::unload>("unload"),
    method<&rtc::IAudioEffectPlayer::unloadAll>("unloadAll"),
    method<&rtc::IAudioEffectPlayer::pause>("pause"),
    method<&rtc::IAudioEffectPlayer::pauseAll>("pauseAll"),
    method<&rtc::IAudioEffectPlayer::resume>("resume"),
    method<&rtc::IAudioEffectPlayer::resumeAll>("resumeAll"),
    method<&rtc::IAudioEffectPlayer::setPosition>("setPosition"),
    method<&rtc::IAudioEffectPlayer::getPosition>("getPosition"),
    method<&rtc::IAudioEffectPlayer::setVolume>("setVolume"),
    method<&rtc::IAudioEffectPlayer::setVolumeAll>("setVolumeAll"),
    method<&rtc::IAudioEffectPlayer::getVolume>("getVolume"),
    method<&rtc::IAudioEffectPlayer::getDuration>("getDuration"),
    special("setEventHandler", &setEventHandler).exits(kPlayerExit),
};

}  // namespace

std::span<const Row> audioEffectPlayerRows() {
  return kRows;
}

}  // namespace corvane
