// Tells voices from other sound, and how high they are.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "media/sound_block.h"

namespace corvane::rtc {

/// Looks for what makes a voice: sound well above the background that repeats itself 70 to 400 times a second and has
/// overtones. So hiss, knocks, tones and silence are none, while a lone string or wind instrument may pass for one.
/// One thread at a time.
class VoiceDetector {
 public:
  VoiceDetector();

  /// `samples`: one channel of a block, -1 to 1. The pitch in Hz of a voice in the last 40 ms; none without a voice.
  std::optional<float> detect(std::span<const float, kBlockFrames> samples);

 private:
  // The work is done at 8 kHz, which holds all of a voice that is looked at.
  static constexpr size_t kDecimation = 6;
  static constexpr size_t kHop = kBlockFrames / kDecimation;
  static constexpr size_t kTaps = 61;
  static constexpr size_t kShortestLag = 8;   // 1000 Hz
  static constexpr size_t kLongestLag = 115;  // 70 Hz
  static constexpr size_t kWindow = 200;      // 25 ms
  static constexpr size_t kHistory = kWindow + kLongestLag + 1;

  void decimate(std::span<const float, kBlockFrames> samples);
  bool isAboveBackground();
  bool isPureTone() const;
  /// How often the recent sound repeats itself; none when it does not.
  std::optional<float> findPitch();

  std::array<float, kTaps> filter_;
  std::array<float, kTaps - 1 + kBlockFrames> input_ = {};  // the filter's memory, then the block
  std::array<float, kHistory> history_ = {};                // at 8 kHz, the newest last
  std::array<float, kLongestLag + 2> likeness_ = {};        // of the sound to itself, by lag
  float background_db_;
};

}  // namespace corvane::rtc
