#include "media/sent_sound.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "capture/pipeline.h"
#include "core/engine_thread.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kBlockUs = 10'000;
// A microphone may deliver late by less than this before it counts as off.
constexpr int64_t kMicrophoneGapUs = 60'000;
// Blocks that could not be made in time by more are left out.
constexpr int64_t kFarBehindUs = 100'000;

int64_t nowUs() {
  return static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow()));
}

// Brings the mixer's two channels into one and adds the microphone's.
void foldInto(SoundBlock& mix, const SoundBlock* microphone) {
  constexpr int32_t kLow = std::numeric_limits<int16_t>::min();
  constexpr int32_t kHigh = std::numeric_limits<int16_t>::max();
  for (size_t frame = 0; frame < static_cast<size_t>(kBlockFrames); ++frame) {
    int32_t sample = (int32_t{mix.storage[2 * frame]} + mix.storage[2 * frame + 1]) / 2;
    if (microphone != nullptr) sample += microphone->storage[frame];
    mix.storage[frame] = static_cast<int16_t>(std::clamp(sample, kLow, kHigh));
  }
  mix.channels = 1;
}

}  // namespace

SentSound::SentSound(SoundTaps& microphone) : microphone_(microphone) {
  microphone_.add(*this);
}

SentSound::~SentSound() {
  microphone_.remove(*this);
}

std::shared_ptr<SoundMixer::Input> SentSound::addInput() {
  const std::lock_guard lock(mutex_);
  std::shared_ptr<SoundMixer::Input> input = added_.addInput();
  if (!thread_.joinable()) {
    thread_ = std::jthread([this](const std::stop_token& stop) {
      nameThread("sent-sound");
      run(stop);
    });
  }
  changed_.notify_all();
  return input;
}

void SentSound::onSound(const SoundBlock& block) {
  const std::lock_guard lock(mutex_);
  heard_us_ = nowUs();
  // Its time was filled in without it.
  if (block.time_us <= last_us_) return;
  if (added_.hasInputs()) return deliverMixed(&block, block.time_us);
  last_us_ = block.time_us;
  taps_.deliver(block);
}

void SentSound::run(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  while (!stop.stop_requested()) {
    if (!added_.hasInputs()) {
      changed_.wait(lock, stop, [this] { return added_.hasInputs(); });
      continue;
    }
    const int64_t now = nowUs();
    const int64_t due = std::max(last_us_ + kBlockUs, heard_us_ + kMicrophoneGapUs);
    if (due > now) {
      changed_.wait_for(lock, stop, std::chrono::microseconds(due - now), [] { return false; });
      continue;
    }
    const int64_t next = last_us_ + kBlockUs;
    deliverMixed(nullptr, next + kFarBehindUs < now ? now : next);
  }
}

void SentSound::deliverMixed(const SoundBlock* microphone, int64_t time_us) {
  last_us_ = time_us;
  added_.mix(mix_, time_us);
  foldInto(mix_, microphone);
  taps_.deliver(mix_);
}

}  // namespace corvane::rtc
