// Where played sound goes: a device, or nowhere.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>

#include "capture/capture_fault.h"
#include "devices/audio_device_id.h"
#include "media/sound_block.h"

namespace corvane::rtc {

/// Of one thread at a time. A device may hold up whoever opens or destroys it, for as long as it likes.
class SoundOutput {
 public:
  virtual ~SoundOutput() = default;

  virtual std::optional<CaptureFault> open() = 0;
  /// Waits until it wants the next 10 ms. False when stopped, or when it has failed: then fault() tells why.
  virtual bool wait(const std::stop_token& stop) = 0;
  /// When the next block will be heard, in microseconds on the clock of all pipelines.
  virtual int64_t heardAtUs() const = 0;
  /// Takes a block of two channels.
  virtual void play(const SoundBlock& block) = 0;
  virtual std::optional<CaptureFault> fault() = 0;
};

/// `speaker`: any but none.
std::unique_ptr<SoundOutput> makeSoundOutput(const SpeakerId& speaker);

}  // namespace corvane::rtc
