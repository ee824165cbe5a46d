#include "capture/screen_sound.h"

#include <algorithm>
#include <utility>

namespace corvane::rtc {

namespace {

void silence(SoundBlock& block) {
  std::fill(block.samples().begin(), block.samples().end(), int16_t{0});
}

}  // namespace

void ScreenSound::setMix(std::shared_ptr<SoundMixer::Input> mix) {
  const std::lock_guard lock(mutex_);
  mix_.swap(mix);
}

int32_t ScreenSound::enableProcessor(const AudioFormat& format) {
  return turnOn(processor_, format, kMaxSoundChannels);
}

int32_t ScreenSound::enableObserver(const AudioFormat& format) {
  return turnOn(observer_, format, kMaxSoundChannels);
}

void ScreenSound::deliver(SoundBlock& block) {
  applied_gain_.apply(block, gain_.load(std::memory_order_relaxed));
  block.muted = muted_.load(std::memory_order_relaxed);
  if (block.muted) silence(block);
  if (const auto path = processor_.path()) {
    hooks_.processor.call([&](IAudioFrameProcessor& processor) {
      path->process(block, [&](LentAudioFrame& frame) { processor.onProcessScreenAudioFrame(&frame); });
    });
    // Muted is muted, whatever a processor adds or has held back.
    if (block.muted) silence(block);
  }
  if (channels_.load(std::memory_order_relaxed) == 1) {
    single_.channels = 1;
    single_.time_us = block.time_us;
    single_.muted = block.muted;
    for (size_t frame = 0; frame < static_cast<size_t>(kBlockFrames); ++frame) {
      single_.storage[frame] = static_cast<int16_t>((block.storage[2 * frame] + block.storage[2 * frame + 1]) / 2);
    }
    send(single_);
  } else {
    send(block);
  }
  if (const auto path = observer_.path()) {
    hooks_.observer.call([&](IAudioFrameObserver& observer) {
      path->take(block, [&](const LentAudioFrame& frame) { observer.onRecordScreenAudioFrame(&frame); });
    });
  }
}

void ScreenSound::send(const SoundBlock& block) {
  std::shared_ptr<SoundMixer::Input> mix;
  {
    const std::lock_guard lock(mutex_);
    mix = mix_;
  }
  if (mix != nullptr) {
    mix->push(block);
  } else {
    taps_.deliver(block);
  }
}

}  // namespace corvane::rtc
