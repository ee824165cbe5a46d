// Between the engine's blocks of sound and frames in the shape that an application asked for.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "corvane_rtc/audio_frame.h"
#include "media/lent_audio_frame.h"
#include "media/sound_block.h"
#include "media/sound_converter.h"
#include "media/sound_hooks.h"

namespace corvane::rtc {

/// The shape of frames with nothing left to the engine.
struct FrameShape {
  SoundFormat format;
  int32_t frames;  ///< samples of one channel in one frame
};

/// What `asked` comes to for a stream of `channels`: 48 kHz, the stream's channels and 10 ms where it says 0. None when
/// it is outside 8 to 96 kHz, 1 or 2 channels, 1 to 100 ms.
std::optional<FrameShape> readFrameShape(const AudioFormat& asked, int32_t channels);

/// One way: frames are made of the blocks. One thread at a time.
class OutgoingPath {
 public:
  /// `block_format`: 48 kHz, as blocks are.
  OutgoingPath(int32_t block_channels, const FrameShape& shape);

  /// Calls handle(LentAudioFrame&) for each frame that is whole by now. Blocks that have the shape already are lent as
  /// they are.
  template <class F>
  void take(SoundBlock& block, F&& handle);

  bool isNative() const { return native_; }

 private:
  void append(const SoundBlock& block);
  size_t frameSamples() const {
    return static_cast<size_t>(shape_.frames) * static_cast<size_t>(shape_.format.channels);
  }
  int64_t durationUs(size_t samples) const;

  const FrameShape shape_;
  const bool native_;
  SoundConverter converter_;
  std::vector<int16_t> pending_;
};

/// There and back: frames that the handler changes become blocks again, later by one frame where the shapes differ.
class ProcessingPath {
 public:
  ProcessingPath(int32_t block_channels, const FrameShape& shape);

  template <class F>
  void process(SoundBlock& block, F&& handle);

 private:
  void putBack(SoundBlock& block);

  OutgoingPath out_;
  SoundConverter back_;
  std::vector<int16_t> processed_;
};

/// Turns the hook on for a stream of `channels`. kInvalidParameter for a shape that no frames can have.
template <class Path>
int32_t turnOn(HookSwitch<Path>& hook, const AudioFormat& format, int32_t channels) {
  const std::optional<FrameShape> shape = readFrameShape(format, channels);
  if (!shape) return kInvalidParameter;
  hook.on(std::make_shared<Path>(channels, *shape));
  return kSuccess;
}

template <class F>
void OutgoingPath::take(SoundBlock& block, F&& handle) {
  if (native_) {
    LentAudioFrame frame(block.samples(), kSoundRate, block.channels, block.time_us, block.muted);
    handle(frame);
    return;
  }
  const int64_t first_us = block.time_us - durationUs(pending_.size());
  append(block);
  size_t from = 0;
  for (; pending_.size() - from >= frameSamples(); from += frameSamples()) {
    LentAudioFrame frame({pending_.data() + from, frameSamples()}, shape_.format.sample_rate, shape_.format.channels,
                         first_us + durationUs(from), block.muted);
    handle(frame);
  }
  pending_.erase(pending_.begin(), pending_.begin() + static_cast<ptrdiff_t>(from));
}

template <class F>
void ProcessingPath::process(SoundBlock& block, F&& handle) {
  if (out_.isNative()) return out_.take(block, handle);
  out_.take(block, [&](LentAudioFrame& frame) {
    handle(frame);
    const auto* samples = reinterpret_cast<const int16_t*>(frame.data());
    back_.convert({samples, static_cast<size_t>(frame.dataSize()) / sizeof(int16_t)}, processed_);
  });
  putBack(block);
}

}  // namespace corvane::rtc
