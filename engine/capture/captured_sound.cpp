#include "capture/captured_sound.h"

#include <algorithm>

namespace corvane::rtc {

namespace {

constexpr int32_t kChannels = 1;

void silence(SoundBlock& block) {
  std::fill(block.samples().begin(), block.samples().end(), int16_t{0});
}

}  // namespace

int32_t CapturedSound::enableProcessor(const AudioFormat& format) {
  return turnOn(processor_, format, kChannels);
}

int32_t CapturedSound::enableObserver(const AudioFormat& format) {
  return turnOn(observer_, format, kChannels);
}

void CapturedSound::deliver(SoundBlock& block) {
  applied_device_gain_.apply(block, device_gain_.load(std::memory_order_relaxed));
  cleaner_.process(block);
  effects_.process(block);
  // What the application makes louder or quieter is not for the automatic gain to make up for.
  applied_gain_.apply(block, gain_.load(std::memory_order_relaxed));
  block.muted = muted_.load(std::memory_order_relaxed);
  if (block.muted) silence(block);
  if (const auto path = processor_.path()) {
    hooks_.processor.call([&](IAudioFrameProcessor& processor) {
      path->process(block, [&](LentAudioFrame& frame) { processor.onProcessRecordAudioFrame(&frame); });
    });
    // Muted is muted, whatever a processor adds or has held back.
    if (block.muted) silence(block);
  }
  taps_.deliver(block);
  if (const auto path = observer_.path()) {
    hooks_.observer.call([&](IAudioFrameObserver& observer) {
      path->take(block, [&](const LentAudioFrame& frame) { observer.onRecordAudioFrame(&frame); });
    });
  }
}

}  // namespace corvane::rtc
