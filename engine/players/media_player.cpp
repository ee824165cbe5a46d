#include "players/media_player.h"

#include <span>

#include "players/ranges.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kMinProgressMs = 100;

bool isMediaPlayerConfig(const MediaPlayerConfig& config) {
  return isOutputType(config.type) && config.start_pos >= 0 &&
         isProgressInterval(config.callback_on_progress_interval, kMinProgressMs);
}

}  // namespace

MediaPlayer::MediaPlayer(EngineContext& context, VoiceMix& mix, int32_t player_id)
    : deck_(std::make_shared<Deck>(context, mix,
                                   Deck::Events{.state =
                                                    [this, player_id](PlayerState state, PlayerError error) {
                                                      handler_.call([&](IMediaPlayerEventHandler& handler) {
                                                        handler.onMediaPlayerStateChanged(player_id, state, error);
                                                      });
                                                    },
                                                .progress =
                                                    [this, player_id](int64_t position_ms) {
                                                      handler_.call([&](IMediaPlayerEventHandler& handler) {
                                                        handler.onMediaPlayerPlayingProgress(player_id, position_ms);
                                                      });
                                                    }})) {}

DeckConfig MediaPlayer::apply(const MediaPlayerConfig& config) {
  deck_->change([&](VoiceSettings& settings) {
    settings.outputs = config.type;
    settings.progress_ms = progressInterval(config.callback_on_progress_interval);
  });
  return {.play_count = config.play_count, .start_ms = config.start_pos, .waits = true, .starts = config.auto_play};
}

int32_t MediaPlayer::open(const char* file_path, const MediaPlayerConfig& config) {
  const char* path = textOf(file_path);
  if (*path == '\0' || !isMediaPlayerConfig(config)) return kInvalidParameter;
  deck_->openFile(path, apply(config));
  return kSuccess;
}

int32_t MediaPlayer::openWithCustomSource(const MediaPlayerCustomSource& source, const MediaPlayerConfig& config) {
  if (source.mode != kMediaPlayerCustomSourcePush || source.type != kMediaPlayerCustomSourcePCM) return kNotSupported;
  if (!isMediaPlayerConfig(config)) return kInvalidParameter;
  DeckConfig deck_config = apply(config);
  deck_config.start_ms = 0;  // what is pushed has a start only
  deck_->openPushed(deck_config);
  return kSuccess;
}

int32_t MediaPlayer::start() {
  return deck_->start();
}

int32_t MediaPlayer::stop() {
  return deck_->stop();
}

int32_t MediaPlayer::pause() {
  return deck_->pause();
}

int32_t MediaPlayer::resume() {
  return deck_->resume();
}

int32_t MediaPlayer::setVolume(int32_t volume, int32_t type) {
  if (!isVolume(volume) || !isOutputType(type)) return kInvalidParameter;
  deck_->change([&](VoiceSettings& settings) { settings.setGain(type, gainOf(volume)); });
  return kSuccess;
}

int32_t MediaPlayer::getVolume(int32_t type) {
  const VoiceSettings settings = deck_->settings();
  if (type == kPlayerOutputPlayout) return volumeOf(settings.playout_gain);
  if (type == kPlayerOutputPublish) return volumeOf(settings.publish_gain);
  return kInvalidParameter;
}

int32_t MediaPlayer::getTotalDuration() {
  return asResult(deck_->duration());
}

int32_t MediaPlayer::getPlaybackDuration() {
  return asResult(deck_->played());
}

int32_t MediaPlayer::getPosition() {
  return asResult(deck_->position());
}

int32_t MediaPlayer::setAudioPitch(int32_t pitch) {
  if (!isPitch(pitch)) return kInvalidParameter;
  deck_->change([&](VoiceSettings& settings) { settings.pitch = pitch; });
  return kSuccess;
}

int32_t MediaPlayer::setPosition(int32_t position) {
  return deck_->setPosition(position);
}

int32_t MediaPlayer::setAudioDualMonoMode(int32_t mode) {
  if (!isDualMonoMode(mode)) return kInvalidParameter;
  deck_->change([&](VoiceSettings& settings) { settings.dual_mono = mode; });
  return kSuccess;
}

int32_t MediaPlayer::getAudioTrackCount() {
  return deck_->tracks();
}

int32_t MediaPlayer::selectAudioTrack(int32_t index) {
  return deck_->selectTrack(index);
}

int32_t MediaPlayer::setPlaybackSpeed(int32_t speed) {
  if (!isSpeed(speed)) return kInvalidParameter;
  deck_->change([&](VoiceSettings& settings) { settings.speed = speed; });
  return kSuccess;
}

int32_t MediaPlayer::setProgressInterval(int64_t interval) {
  if (!isProgressInterval(interval, kMinProgressMs)) return kInvalidParameter;
  deck_->change([&](VoiceSettings& settings) { settings.progress_ms = progressInterval(interval); });
  return kSuccess;
}

int32_t MediaPlayer::setLoudness(float loudness) {
  if (!isLoudness(loudness)) return kInvalidParameter;
  deck_->change([&](VoiceSettings& settings) { settings.loudness = loudness; });
  return kSuccess;
}

int32_t MediaPlayer::setEventHandler(IMediaPlayerEventHandler* handler) {
  handler_.attachAndWait(handler);
  return kSuccess;
}

int32_t MediaPlayer::pushExternalAudioFrame(IAudioFrame* audio_frame) {
  if (audio_frame == nullptr || audio_frame->frameType() != kAudioFrameTypePCM16) return kInvalidParameter;
  const SoundFormat format = {audio_frame->sampleRate(), audio_frame->channels()};
  const int32_t size = audio_frame->dataSize();
  const auto* samples = reinterpret_cast<const int16_t*>(audio_frame->data());
  if (format.sample_rate < 8000 || format.sample_rate > 96000 || format.channels < 1 ||
      format.channels > kMaxSoundChannels || samples == nullptr || size <= 0 ||
      size % (format.channels * static_cast<int32_t>(sizeof(int16_t))) != 0) {
    return kInvalidParameter;
  }
  const std::lock_guard lock(pushed_mutex_);
  if (!pushed_form_ || pushed_form_->format != format) {
    pushed_form_.emplace(format, SoundFormat{kSoundRate, kMaxSoundChannels});
  }
  pushed_.clear();
  pushed_form_->converter.convert({samples, static_cast<size_t>(size) / sizeof(int16_t)}, pushed_);
  return deck_->push(pushed_);
}

}  // namespace corvane::rtc
