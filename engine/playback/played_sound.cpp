#include "playback/played_sound.h"

#include <algorithm>
#include <limits>

namespace corvane::rtc {

namespace {

// Adds sound of one channel to both of another's.
void add(const SoundBlock& mono, SoundBlock& stereo) {
  for (size_t index = 0; index < stereo.storage.size(); ++index) {
    const int32_t sum = int32_t{stereo.storage[index]} + mono.storage[index / kMaxSoundChannels];
    stereo.storage[index] = static_cast<int16_t>(
        std::clamp<int32_t>(sum, std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()));
  }
}

}  // namespace

PlayedSound::PlayedSound(SoundMixer& mixer, SoundHooks& hooks, SoundTaps& microphone)
    : mixer_(mixer), hooks_(hooks), microphone_taps_(microphone) {}

PlayedSound::~PlayedSound() {
  if (hears_microphone_) microphone_taps_.remove(microphone_);
}

int32_t PlayedSound::enableProcessor(const AudioFormat& format) {
  const int32_t result = turnOn(processor_, format, kMaxSoundChannels);
  keepMixing();
  return result;
}

void PlayedSound::disableProcessor() {
  processor_.off();
  keepMixing();
}

int32_t PlayedSound::enableObserver(const AudioFormat& format) {
  const int32_t result = turnOn(observer_, format, kMaxSoundChannels);
  keepMixing();
  return result;
}

void PlayedSound::disableObserver() {
  observer_.off();
  keepMixing();
}

int32_t PlayedSound::enableMixedObserver(const AudioFormat& format) {
  const int32_t result = turnOn(mixed_observer_, format, kMaxSoundChannels);
  keepMixing();
  return result;
}

void PlayedSound::disableMixedObserver() {
  mixed_observer_.off();
  keepMixing();
}

void PlayedSound::keepMixing() {
  const std::lock_guard lock(mutex_);
  const bool mixed = mixed_observer_.path() != nullptr;
  if (!mixed && observer_.path() == nullptr && processor_.path() == nullptr) {
    kept_.reset();
  } else if (kept_ == nullptr) {
    kept_ = mixer_.addInput();
  }
  if (mixed == hears_microphone_) return;
  hears_microphone_ = mixed;
  if (mixed) {
    microphone_taps_.add(microphone_);
  } else {
    microphone_taps_.remove(microphone_);
  }
}

void PlayedSound::mix(SoundBlock& block, int64_t time_us) {
  mixer_.setDucking(ducking_.next(time_us));
  mixer_.mix(block, time_us, [this](SoundBlock& remote) { observe(remote); });
}

void PlayedSound::observe(SoundBlock& remote) {
  if (const auto path = processor_.path()) {
    hooks_.processor.call([&](IAudioFrameProcessor& processor) {
      path->process(remote, [&](LentAudioFrame& frame) { processor.onProcessPlayBackAudioFrame(&frame); });
    });
  }
  if (const auto path = observer_.path()) {
    // A copy is lent: whatever becomes of it harms nobody.
    heard_ = remote;
    hooks_.observer.call([&](IAudioFrameObserver& observer) {
      path->take(heard_, [&](const LentAudioFrame& frame) { observer.onPlaybackAudioFrame(&frame); });
    });
  }
  observeMixed(remote);
}

void PlayedSound::observeMixed(const SoundBlock& remote) {
  const auto path = mixed_observer_.path();
  if (path == nullptr) return;
  mixed_ = remote;
  if (microphone_.take(heard_)) add(heard_, mixed_);
  hooks_.observer.call([&](IAudioFrameObserver& observer) {
    path->take(mixed_, [&](const LentAudioFrame& frame) { observer.onMixedAudioFrame(&frame); });
  });
}

}  // namespace corvane::rtc
