#include "capture/captured_sound.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "corvane_rtc/common.h"

namespace corvane::rtc {

namespace {

constexpr int32_t kChannels = 1;

template <class Path>
int32_t turnOn(HookSwitch<Path>& hook, const AudioFormat& format) {
  const std::optional<FrameShape> shape = readFrameShape(format, kChannels);
  if (!shape) return kInvalidParameter;
  hook.on(std::make_shared<Path>(kChannels, *shape));
  return kSuccess;
}

void silence(SoundBlock& block) {
  std::fill(block.samples().begin(), block.samples().end(), int16_t{0});
}

}  // namespace

int32_t CapturedSound::enableProcessor(const AudioFormat& format) {
  return turnOn(processor_, format);
}

int32_t CapturedSound::enableObserver(const AudioFormat& format) {
  return turnOn(observer_, format);
}

void CapturedSound::deliver(SoundBlock& block) {
  applied_.apply(block, device_gain_.load(std::memory_order_relaxed) * gain_.load(std::memory_order_relaxed));
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
