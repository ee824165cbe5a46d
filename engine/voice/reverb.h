// A voice in a room that it was not spoken in.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "corvane_rtc/audio_config.h"

namespace corvane::rtc {

/// Eight echoes that repeat themselves, each in a time of its own, spread by four filters that let everything through
/// at different times. One thread at a time.
class Reverb {
 public:
  Reverb();

  /// Values within their ranges. What sounds already dies away as the new room has it.
  void set(const VoiceReverbConfig& config);

  /// Changes one channel of samples, -1 to 1, in place. At a wet gain of 0 dB the room is about as loud as the voice.
  void process(std::span<float> samples);

 private:
  class Line {
   public:
    explicit Line(size_t longest) : samples_(longest) {}
    void setLength(size_t length);
    float oldest() const { return samples_[at_]; }
    void push(float sample) {
      samples_[at_] = sample;
      if (++at_ == length_) at_ = 0;
    }

   private:
    std::vector<float> samples_;
    size_t length_ = 1;
    size_t at_ = 0;
  };

  struct Echo {
    Line line;
    float feedback = 0.0F;
    float damped = 0.0F;
  };

  float reverberate(float sample);

  std::vector<Echo> echoes_;
  std::vector<Line> spreaders_;
  Line pre_delay_;
  bool has_pre_delay_ = false;
  float damping_ = 0.0F;
  float wet_ = 0.0F;
  float dry_ = 1.0F;
};

}  // namespace corvane::rtc
