#include "trials/trial_speaker.h"

#include <utility>

namespace corvane::rtc {

TrialSpeaker::TrialSpeaker(const SpeakerId& speaker, Source source, Failed failed) : source_(std::move(source)) {
  hooks_.processor.attach(this);
  mixer_.taps().add(*this);
  // As blocks are, so that frames are the blocks themselves.
  played_.enableProcessor({});
  thread_.play(speaker, {.started = [] {}, .failed = std::move(failed), .idle = [] {}});
}

TrialSpeaker::~TrialSpeaker() {
  thread_.rest();
}

int32_t TrialSpeaker::takeVolume() {
  const std::lock_guard lock(mutex_);
  const int32_t volume = linearVolume(level_.amplitude());
  level_.clear();
  return volume;
}

int32_t TrialSpeaker::onProcessPlayBackAudioFrame(IAudioFrame* frame) {
  block_.channels = 1;
  block_.time_us = frame->timestampUs();
  source_(block_);
  auto* samples = reinterpret_cast<int16_t*>(frame->data());
  for (const int16_t sample : block_.samples()) {
    *samples++ = sample;
    *samples++ = sample;
  }
  return 0;
}

void TrialSpeaker::onSound(const SoundBlock& block) {
  const std::lock_guard lock(mutex_);
  level_.add(block.samples());
}

}  // namespace corvane::rtc
