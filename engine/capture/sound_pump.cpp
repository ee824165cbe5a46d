#include "capture/sound_pump.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "capture/pipeline.h"
#include "core/engine_thread.h"

namespace corvane::rtc {

namespace {

constexpr int64_t kBlockUs = 10'000;
// A clip that has fallen behind by more goes on from now: it does not hurry.
constexpr int64_t kFarBehindUs = 250'000;
constexpr int32_t kSilentBlocks = 300;

int64_t nowUs() {
  return static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow()));
}

}  // namespace

SoundPump::SoundPump(SoundQueue& queue, SoundReceiver& sound, bool paced, SoundPumpEvents events)
    : queue_(queue), sound_(sound), paced_(paced), events_(std::move(events)) {
  thread_ = std::jthread([this](const std::stop_token& stop) {
    nameThread("sound-capture");
    run(stop);
  });
}

SoundPump::~SoundPump() {
  thread_.request_stop();
  thread_.join();
}

void SoundPump::run(const std::stop_token& stop) {
  SoundBlock block;
  bool is_first = true;
  while (queue_.pop(block, stop)) {
    if (paced_ && !waitUntilDue(block, stop)) return;
    // A device may tell times that jump a little; what is handed on runs forward.
    block.time_us = std::max(block.time_us, next_us_);
    next_us_ = paced_ ? block.time_us + kBlockUs : block.time_us + 1;
    watchForSilence(block);
    if (std::exchange(is_first, false)) events_.first_block();
    sound_.deliver(block);
  }
}

bool SoundPump::waitUntilDue(SoundBlock& block, const std::stop_token& stop) {
  const int64_t now = nowUs();
  block.time_us = next_us_ + kFarBehindUs < now ? now : next_us_;
  if (block.time_us <= now) return true;
  std::unique_lock lock(mutex_);
  stopped_.wait_for(lock, stop, std::chrono::microseconds(block.time_us - now), [] { return false; });
  return !stop.stop_requested();
}

void SoundPump::watchForSilence(const SoundBlock& block) {
  if (silent_blocks_ > kSilentBlocks) return;
  const auto samples = block.samples();
  const bool silent = std::all_of(samples.begin(), samples.end(), [](int16_t sample) { return sample == 0; });
  silent_blocks_ = silent ? silent_blocks_ + 1 : 0;
  if (silent_blocks_ > kSilentBlocks) events_.silence();
}

}  // namespace corvane::rtc
