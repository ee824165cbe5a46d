// The sound of a recording: what comes from several streams, each block at its time, and silence wherever nothing came.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "core/gst_pointers.h"
#include "media/sound_block.h"

namespace corvane::rtc {

/// Two channels at 48 kHz. Any thread, but for what is marked otherwise.
class SoundTimeline {
 public:
  /// One stream's way in. It outlives its place among that stream's taps.
  class Source final : public SoundTap {
   public:
    explicit Source(SoundTimeline& timeline) : timeline_(timeline) {}
    void onSound(const SoundBlock& block) override { timeline_.add(block, next_); }

   private:
    SoundTimeline& timeline_;
    int64_t next_ = 0;  // where the block after the last one stands; the stream's thread's
  };

  /// What came before is left out.
  void begin(int64_t time_us);

  /// The next stretch of what stands before `until_us`, at most two seconds of it, with its time from the beginning.
  /// Null when all of it has been taken; what comes for it later is left out. One thread at a time.
  GstPtr<GstBuffer> take(int64_t until_us);

 private:
  static constexpr int64_t kCapacity = int64_t{kSoundRate} * 2;

  void add(const SoundBlock& block, int64_t& next);
  int64_t positionOf(int64_t time_us) const;

  std::mutex mutex_;
  std::vector<int16_t> ring_;  // of the samples from read_ on, silent where nothing came; empty before begin()
  int64_t begin_us_ = 0;
  int64_t read_ = 0;  // samples of one channel since the beginning
};

}  // namespace corvane::rtc
