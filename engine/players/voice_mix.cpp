#include "players/voice_mix.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

#include "capture/pipeline.h"
#include "core/engine_thread.h"

namespace corvane::rtc {

namespace {

constexpr int32_t kLow = std::numeric_limits<int16_t>::min();
constexpr int32_t kHigh = std::numeric_limits<int16_t>::max();
constexpr int64_t kBlockUs = 10'000;
// What the mixes hold before a source of theirs is heard.
constexpr int64_t kLeadUs = 10'000;
// What could not be made in time by more is left out.
constexpr int64_t kFarBehindUs = 60'000;
// How long an input stays that nothing goes into.
constexpr int32_t kUnusedBlocks = 20;

int64_t nowUs() {
  return static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow()));
}

}  // namespace

VoiceMix::VoiceMix(SoundMixer& playback, SentSound& sent) : playback_(playback), sent_(sent) {}

VoiceMix::~VoiceMix() = default;

void VoiceMix::add(std::shared_ptr<Voice> voice) {
  const std::lock_guard lock(mutex_);
  voices_.push_back(std::move(voice));
  if (!thread_.joinable()) {
    thread_ = std::jthread([this](const std::stop_token& stop) {
      nameThread("players");
      run(stop);
    });
  }
  changed_.notify_all();
}

void VoiceMix::remove(const std::shared_ptr<Voice>& voice) {
  const std::lock_guard lock(mutex_);
  std::erase(voices_, voice);
}

void VoiceMix::run(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  int64_t due = 0;
  while (!stop.stop_requested()) {
    if (voices_.empty() && playout_.input == nullptr && publish_.input == nullptr) {
      changed_.wait(lock, stop, [this] { return !voices_.empty(); });
      continue;
    }
    const int64_t now = nowUs();
    if (due + kFarBehindUs < now) due = now;
    if (due > now + kLeadUs) {
      changed_.wait_for(lock, stop, std::chrono::microseconds(due - kLeadUs - now), [] { return false; });
      continue;
    }
    renderBlock(due);
    due += kBlockUs;
  }
}

void VoiceMix::renderBlock(int64_t time_us) {
  for (Output* output : {&playout_, &publish_}) {
    output->sum.samples.fill(0);
    output->sum.used = false;
  }
  std::erase_if(voices_, [this](const std::shared_ptr<Voice>& voice) {
    if (voice->render(playout_.sum, publish_.sum)) return false;
    voice->tellEnded();
    return true;
  });
  push(playout_, playback_, time_us);
  push(publish_, sent_, time_us);
}

template <class Mix>
void VoiceMix::push(Output& output, Mix& mix, int64_t time_us) {
  output.unused_blocks = output.sum.used ? 0 : output.unused_blocks + 1;
  if (output.unused_blocks > kUnusedBlocks) output.input.reset();
  if (output.sum.used && output.input == nullptr) output.input = mix.addInput();
  if (output.input == nullptr) return;
  SoundBlock block;
  block.channels = kMaxSoundChannels;
  block.time_us = time_us;
  std::transform(output.sum.samples.begin(), output.sum.samples.end(), block.storage.begin(),
                 [](int32_t sample) { return static_cast<int16_t>(std::clamp(sample, kLow, kHigh)); });
  output.input->push(block);
}

}  // namespace corvane::rtc
