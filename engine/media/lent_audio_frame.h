// Sound of the engine's own, lent to an application for the time of one call.
#pragma once

#include <cstdint>
#include <span>

#include "corvane_rtc/audio_frame.h"

namespace corvane::rtc {

class LentAudioFrame final : public IAudioFrame {
 public:
  /// `samples` outlive the frame. A receiver that may not write them gets the frame as const.
  LentAudioFrame(std::span<int16_t> samples, int32_t sample_rate, int32_t channels, int64_t timestamp_us, bool muted)
      : samples_(samples), sample_rate_(sample_rate), channels_(channels), timestamp_us_(timestamp_us), muted_(muted) {}

  int64_t timestampUs() const override { return timestamp_us_; }
  int32_t sampleRate() const override { return sample_rate_; }
  int32_t channels() const override { return channels_; }
  uint8_t* data() const override { return reinterpret_cast<uint8_t*>(samples_.data()); }
  int32_t dataSize() const override { return static_cast<int32_t>(samples_.size_bytes()); }
  int32_t frameType() const override { return kAudioFrameTypePCM16; }
  bool isMuted() const override { return muted_; }
  void release() override {}  // the engine's, whatever the receiver does

 private:
  const std::span<int16_t> samples_;
  const int32_t sample_rate_;
  const int32_t channels_;
  const int64_t timestamp_us_;
  const bool muted_;
};

}  // namespace corvane::rtc
