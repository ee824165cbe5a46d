// Sound of players before it is mixed: 16-bit samples at 48 kHz, two channels interleaved. A frame is one sample of
// each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "media/sound_block.h"

namespace corvane::rtc {

inline constexpr size_t kPcmChannels = 2;

inline constexpr int64_t framesOf(int64_t ms) {
  return ms * (kSoundRate / 1000);
}
inline constexpr int64_t msOf(int64_t frames) {
  return frames / (kSoundRate / 1000);
}

/// Where a decoder's sound goes. One thread writes.
class PcmSink {
 public:
  virtual ~PcmSink() = default;

  /// `frame`: the place of the first of them in the media. May wait for room. False when they are not wanted any more.
  virtual bool write(std::span<const int16_t> samples, int64_t frame) = 0;
  /// What was written is void: write() answers false until endFlush(). Any thread.
  virtual void beginFlush() {}
  virtual void endFlush() {}
  /// The next sound is the media's start once more.
  virtual void beginPass() {}
  /// Nothing follows, unless something is flushed before it was read.
  virtual void end() {}
};

/// Where a voice's sound comes from. One thread reads.
class PcmSource {
 public:
  virtual ~PcmSource() = default;

  /// Fills `samples` from its start and returns how many it wrote: fewer when no more is there yet, or at the end.
  virtual size_t read(std::span<int16_t> samples) = 0;
  virtual bool ended() = 0;
  /// The place in the media of what is read next, in frames; what was asked for last while that is on its way.
  virtual int64_t position() = 0;
};

/// Sound that was decoded before it is played. Any number of players share it.
struct PcmMemory {
  std::vector<int16_t> samples;
  int32_t tracks = 1;  ///< of the file; the first was decoded

  int64_t frames() const { return static_cast<int64_t>(samples.size() / kPcmChannels); }
};

class PcmMemorySource final : public PcmSource {
 public:
  /// `play_count`: 0 or less repeats for ever. `memory` is not empty.
  PcmMemorySource(std::shared_ptr<const PcmMemory> memory, int32_t play_count, int64_t start_frame);

  /// Any thread. Within the media.
  void seek(int64_t frame);

  size_t read(std::span<int16_t> samples) override;
  bool ended() override;
  int64_t position() override;

 private:
  const std::shared_ptr<const PcmMemory> memory_;
  std::mutex mutex_;
  int32_t passes_left_;  // below 0 for ever
  size_t next_;          // sample
};

}  // namespace corvane::rtc
