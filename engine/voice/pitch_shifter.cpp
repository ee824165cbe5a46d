#include "voice/pitch_shifter.h"

#include <SoundTouch.h>

#include "media/sound_block.h"

namespace corvane::rtc {

namespace {

// Milliseconds: what is repeated or left out at a time, where its best place is looked for, and how long one part goes
// over into the next. Shorter than for music, as a call waits for all of them.
constexpr int kSequence = 26;
constexpr int kSeekWindow = 12;
constexpr int kOverlap = 8;

}  // namespace

PitchShifter::PitchShifter() : library_(std::make_unique<soundtouch::SoundTouch>()) {
  library_->setSampleRate(kSoundRate);
  library_->setChannels(1);
  library_->setSetting(SETTING_SEQUENCE_MS, kSequence);
  library_->setSetting(SETTING_SEEKWINDOW_MS, kSeekWindow);
  library_->setSetting(SETTING_OVERLAP_MS, kOverlap);
}

PitchShifter::~PitchShifter() = default;

void PitchShifter::set(int32_t semitones) {
  library_->setPitchSemiTones(semitones);
}

void PitchShifter::process(std::span<float> samples) {
  library_->putSamples(samples.data(), static_cast<unsigned>(samples.size()));
  // It gives a whole sequence at a time.
  constexpr unsigned kReserve = kSoundRate / 1000 * kSequence;
  const auto wanted = static_cast<unsigned>(samples.size());
  const unsigned ready = library_->numSamples();
  is_ahead_ = is_ahead_ ? ready >= wanted : ready >= wanted + kReserve;
  if (is_ahead_) library_->receiveSamples(samples.data(), wanted);
}

}  // namespace corvane::rtc
