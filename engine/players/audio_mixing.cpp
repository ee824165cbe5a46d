#include "players/audio_mixing.h"

#include <cmath>

#include "corvane_rtc/audio_mixing_events.h"
#include "players/ranges.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kMinProgressMs = 10;
// LUFS: how loud a file is made whose own loudness is known.
constexpr double kMixedLoudness = -16.0;
constexpr double kMaxCorrection = 20.0;  // dB

// States that mixing has no name for are not told.
int32_t mixingState(PlayerState state) {
  switch (state) {
    case kPlayerStatePreloaded:
      return kAudioMixingStatePreloaded;
    case kPlayerStatePlaying:
      return kAudioMixingStatePlaying;
    case kPlayerStatePaused:
      return kAudioMixingStatePaused;
    case kPlayerStateStopped:
      return kAudioMixingStateStopped;
    case kPlayerStateFinished:
      return kAudioMixingStateFinished;
    case kPlayerStateFailed:
      return kAudioMixingStateFailed;
    default:
      return -1;
  }
}

int32_t mixingError(PlayerState state, PlayerError error, bool of_preload) {
  if (error == kPlayerErrorOk) return kAudioMixingErrorOk;
  if (state != kPlayerStateFailed) return kAudioMixingErrorSetPositionFailed;
  if (error == kPlayerErrorInvalidState) return kAudioMixingErrorLoadConflict;
  return of_preload ? kAudioMixingErrorPreloadFailed : kAudioMixingErrorStartFailed;
}

}  // namespace

AudioMixing::AudioMixing(EngineContext& context, VoiceMix& mix)
    : context_(context),
      decks_(context, mix, DeckTable::OtherFile::kRefused,
             {.state =
                  [this](int32_t id, PlayerState state, PlayerError error, bool of_preload) {
                    const int32_t told = mixingState(state);
                    if (told < 0) return;
                    context_.events->onAudioMixingStateChanged(id, told, mixingError(state, error, of_preload));
                  },
              .progress =
                  [this](int32_t id, int64_t position_ms) {
                    context_.events->onAudioMixingPlayingProgress(id, asResult(position_ms));
                  }}) {}

template <class F>
int32_t AudioMixing::change(int32_t mix_id, bool valid, F&& change) {
  if (!valid) return kInvalidParameter;
  return decks_.with(mix_id, [&](Deck& deck) {
    deck.change(change);
    return kSuccess;
  });
}

void AudioMixing::startAudioMixing(int32_t mix_id, const char* file_path, const AudioMixingConfig& config) {
  if (!isOutputType(config.type) || config.position < 0 ||
      !isProgressInterval(config.callback_on_progress_interval, kMinProgressMs)) {
    context_.thread.post([this, mix_id] {
      context_.events->onAudioMixingStateChanged(mix_id, kAudioMixingStateFailed, kAudioMixingErrorStartFailed);
    });
    return;
  }
  const DeckConfig deck_config = {.play_count = config.play_count, .start_ms = config.position};
  decks_.start(mix_id, textOf(file_path), deck_config, [&](VoiceSettings& settings) {
    settings.outputs = config.type;
    settings.progress_ms = config.callback_on_progress_interval;
  });
}

int32_t AudioMixing::stopAudioMixing(int32_t mix_id) {
  return decks_.with(mix_id, [](Deck& deck) { return deck.stop(); });
}

int32_t AudioMixing::pauseAudioMixing(int32_t mix_id) {
  return decks_.with(mix_id, [](Deck& deck) { return deck.pause(); });
}

int32_t AudioMixing::resumeAudioMixing(int32_t mix_id) {
  return decks_.with(mix_id, [](Deck& deck) { return deck.resume(); });
}

int32_t AudioMixing::stopAllAudioMixing() {
  decks_.forActive(&Deck::stop);
  return kSuccess;
}

int32_t AudioMixing::pauseAllAudioMixing() {
  decks_.forActive(&Deck::pause);
  return kSuccess;
}

int32_t AudioMixing::resumeAllAudioMixing() {
  decks_.forActive(&Deck::resume);
  return kSuccess;
}

int32_t AudioMixing::preloadAudioMixing(int32_t mix_id, const char* file_path) {
  const char* path = textOf(file_path);
  return *path != '\0' ? decks_.preload(mix_id, path) : kInvalidParameter;
}

int32_t AudioMixing::unloadAudioMixing(int32_t mix_id) {
  return decks_.unload(mix_id);
}

int32_t AudioMixing::setAudioMixingVolume(int32_t mix_id, int32_t volume, int32_t type) {
  return change(mix_id, isVolume(volume) && isOutputType(type),
                [&](VoiceSettings& settings) { settings.setGain(type, gainOf(volume)); });
}

int32_t AudioMixing::setAudioMixingPosition(int32_t mix_id, int32_t position) {
  return decks_.with(mix_id, [&](Deck& deck) { return deck.setPosition(position); });
}

int32_t AudioMixing::setAudioMixingDualMonoMode(int32_t mix_id, int32_t mode) {
  return change(mix_id, isDualMonoMode(mode), [&](VoiceSettings& settings) { settings.dual_mono = mode; });
}

int32_t AudioMixing::setAudioMixingPitch(int32_t mix_id, int32_t pitch) {
  return change(mix_id, isPitch(pitch), [&](VoiceSettings& settings) { settings.pitch = pitch; });
}

int32_t AudioMixing::setAudioMixingPlaybackSpeed(int32_t mix_id, int32_t speed) {
  return change(mix_id, isSpeed(speed), [&](VoiceSettings& settings) { settings.speed = speed; });
}

int32_t AudioMixing::setAudioMixingLoudness(int32_t mix_id, double loudness) {
  return change(mix_id, isLoudness(loudness), [&](VoiceSettings& settings) {
    const double correction = std::clamp(kMixedLoudness - loudness, -kMaxCorrection, kMaxCorrection);
    settings.own_gain = loudness == 0.0 ? 1.0F : static_cast<float>(std::pow(10.0, correction / 20.0));
  });
}

int32_t AudioMixing::setAudioMixingProgressInterval(int32_t mix_id, int32_t interval) {
  return change(mix_id, isProgressInterval(interval, kMinProgressMs),
                [&](VoiceSettings& settings) { settings.progress_ms = interval; });
}

int32_t AudioMixing::selectAudioTrack(int32_t mix_id, int32_t audio_track_index) {
  return decks_.with(mix_id, [&](Deck& deck) { return deck.selectTrack(audio_track_index); });
}

int32_t AudioMixing::getAudioMixingDuration(int32_t mix_id) {
  return asResult(decks_.duration(mix_id));
}

int32_t AudioMixing::getAudioMixingCurrentPosition(int32_t mix_id) {
  return decks_.with(mix_id, [](Deck& deck) { return asResult(deck.position()); });
}

int32_t AudioMixing::getAudioMixingPlaybackDuration(int32_t mix_id) {
  return decks_.with(mix_id, [](Deck& deck) { return asResult(deck.played()); });
}

int32_t AudioMixing::getAudioTrackCount(int32_t mix_id) {
  return decks_.with(mix_id, [](Deck& deck) { return deck.tracks(); });
}

}  // namespace corvane::rtc
