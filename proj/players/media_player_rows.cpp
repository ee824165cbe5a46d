// The methods of KavRTCMediaPlayer.
#include <cstdlib>
#include <limits>

#include "binding/bytes.h"
#include "binding/rows.h"
#include "corvane_rtc/entry_points.h"
#include "players/engine_lookup.h"
#include "players/media_player.h"
#include "players/required_keys.h"

namespace corvane {

template <>
inline rtc::IMediaPlayer* find<rtc::IMediaPlayer>(Call& call) {
  return static_cast<rtc::IMediaPlayer*>(call.owner);
}

namespace {

rtc::IMediaPlayer& playerOf(const Call& call) {
  return *static_cast<rtc::IMediaPlayer*>(call.owner);
}

// Milliseconds, which travel as decimal text: a JavaScript number does not hold every 64-bit value. What follows the
// digits is ignored; a text without leading digits is 0.
int64_t readInterval(Reader& reader, napi_value value) {
  Text text;
  reader.text(value, text);
  return std::strtoll(text.c_str(), nullptr, 10);
}

constexpr RequiredKey kConfigKeys[] = {
    {"play_count", Kind::kNumber},
    {"start_pos", Kind::kNumber},
    {"callback_on_progress_interval", Kind::kString},
    {"sync_progress_to_record_frame", Kind::kBoolean},
    {"auto_play", Kind::kBoolean},
    {"type", Kind::kNumber},
};

std::optional<rtc::MediaPlayerConfig> readConfig(const Call& call, Reader& reader, napi_value record) {
  const auto values = readRequired(call, reader, record, kConfigKeys);
  if (!values) return std::nullopt;
  const auto& [play_count, start_pos, interval, sync_progress, auto_play, type] = *values;
  rtc::MediaPlayerConfig config{};
  config.play_count = reader.int32(play_count);
  config.start_pos = reader.int32(start_pos);
  config.callback_on_progress_interval = readInterval(reader, interval);
  config.sync_progress_to_record_frame = reader.boolean(sync_progress);
  config.auto_play = reader.boolean(auto_play);
  config.type = reader.int32(type);
  return config;
}

void open(Call& call) {
  Reader reader(call.env);
  const auto config = readConfig(call, reader, call[1]);
  if (!config) return;
  call.say(kLogInfo, "%s(%d) %s: %d", "type", config->type);
  Text path;
  reader.text(call[0], path);
  call.result = playerOf(call).open(path.c_str(), *config);
}

constexpr RequiredKey kSourceKeys[] = {{"mode", Kind::kNumber}, {"type", Kind::kNumber}};

void openWithCustomSource(Call& call) {
  Reader reader(call.env);
  const auto source = readRequired(call, reader, call[0], kSourceKeys);
  if (!source) return;
  const auto config = readConfig(call, reader, call[1]);
  if (!config) return;
  const auto& [mode, type] = *source;
  call.result = playerOf(call).openWithCustomSource({reader.int32(mode), reader.int32(type)}, *config);
}

void setProgressInterval(Call& call) {
  Reader reader(call.env);
  call.result = playerOf(call).setProgressInterval(readInterval(reader, call[0]));
}

void setLoudness(Call& call) {
  Reader reader(call.env);
  call.result = playerOf(call).setLoudness(static_cast<float>(reader.int32(call[0])));
}

void setEventHandler(Call& call) {
  call.result = static_cast<KavRTCMediaPlayer*>(call.wrapper)->setEventHandler(playerOf(call));
}

// Whole milliseconds as microseconds. What 64 bits do not hold is cut to their ends; not-a-number is 0.
int64_t microseconds(double milliseconds) {
  constexpr int64_t kLast = std::numeric_limits<int64_t>::max() / 1000;
  if (milliseconds != milliseconds) return 0;
  if (milliseconds >= static_cast<double>(kLast)) return kLast * 1000;
  if (milliseconds <= -static_cast<double>(kLast)) return -kLast * 1000;
  return static_cast<int64_t>(milliseconds) * 1000;
}

// "data" stands last: reading another key may run a getter, which could take the array's memory away.
constexpr RequiredKey kFrameKeys[] = {
    {"sample_rate", Kind::kNumber},
    {"channel", Kind::kNumber},
    {"timestamp_ms", Kind::kNumber},
    {"data", Kind::kBytes},
};

void pushExternalAudioFrame(Call& call) {
  if (!call.is(0, Kind::kObject)) {
    call.say(kLogWarning, "%s(%d) param is not valid, %d", typeCode(call.env, call[0]));
    return;
  }
  Reader reader(call.env);
  const auto values = readRequired(call, reader, call[0], kFrameKeys);
  if (!values) return;
  const auto& [sample_rate, channel, timestamp_ms, data] = *values;
  rtc::AudioFrameBuilder builder{};
  builder.sample_rate = reader.int32(sample_rate);
  builder.channels = reader.int32(channel);
  builder.timestamp_us = microseconds(reader.number(timestamp_ms));
  const Bytes bytes = reader.bytes(data);
  if (!isCountable(call, bytes, kParamInvalid)) return;
  builder.data = bytes.data;
  builder.data_size = static_cast<int32_t>(bytes.size);
  builder.deep_copy = true;
  rtc::IAudioFrame* frame = rtc::buildAudioFrame(builder);
  if (frame == nullptr) {
    call.say(kLogInfo, kParamInvalid);
    return;
  }
  call.result = playerOf(call).pushExternalAudioFrame(frame);
  frame->release();
}

template <auto Operation>
consteval auto method(const char* name, int32_t line = __builtin_LINE()) {
  return plain<Operation>(name, line).exits(kPlayerExit);
}

constexpr Row kRows[] = {
    special("open", &open, {Kind::kString, Kind::kObject}).exits(kPlayerExit),
    special("openWithCustomSource", &openWithCustomSource, {Kind::kObject, Kind::kObject}).exits(kPlayerExit),
    method<&rtc::IMediaPlayer::start>("start"),
    method<&rtc::IMediaPlayer::stop>("stop"),
    method<&rtc::IMediaPlayer::pause>("pause"),
    method<&rtc::IMediaPlayer::resume>("resume"),
    method<&rtc::IMediaPlayer::setVolume>("setVolume"),
    method<&rtc::IMediaPlayer::getVolume>("getVolume"),
    method<&rtc::IMediaPlayer::getTotalDuration>("getTotalDuration"),
    method<&rtc::IMediaPlayer::getPlaybackDuration>("getPlaybackDuration"),
    method<&rtc::IMediaPlayer::getPosition>("getPosition"),
    method<&rtc::IMediaPlayer::setAudioPitch>("setAudioPitch"),
    method<&rtc::IMediaPlayer::setPosition>("setPosition"),
    method<&rtc::IMediaPlayer::setAudioDualMonoMode>("setAudioDualMonoMode"),
    method<&rtc::IMediaPlayer::getAudioTrackCount>("getAudioTrackCount"),
    method<&rtc::IMediaPlayer::selectAudioTrack>("selectAudioTrack"),
    method<&rtc::IMediaPlayer::setPlaybackSpeed>("setPlaybackSpeed"),
    special("setProgressInterval", &setProgressInterval, {Kind::kString}).exits(kPlayerExit),
    special("setLoudness", &setLoudness, {Kind::kNumber}).exits(kPlayerExit),
    special("setEventHandler", &setEventHandler).exits(kPlayerExit),
    special("pushExternalAudioFrame", &pushExternalAudioFrame).exits(kPlayerExit),
};

}  // namespace

std::span<const Row> mediaPlayerRows() {
  return kRows;
}

}  // namespace corvane
