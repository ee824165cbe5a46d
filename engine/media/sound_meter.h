// What one stream's sound measures between two reports.
#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "corvane_rtc/audio_properties.h"
#include "media/sound_block.h"
#include "media/sound_level.h"
#include "media/sound_spectrum.h"
#include "media/voice_detector.h"

namespace corvane::rtc {

struct SoundMeterSettings {
  bool spectrum = false;
  bool voice_activity = false;
  bool voice_pitch = false;
  double smooth = 1.0;  ///< weight of the newest value, above 0 to 1
};

class SoundMeter final : public SoundTap {
 public:
  explicit SoundMeter(const SoundMeterSettings& settings);

  void onSound(const SoundBlock& block) override;

  /// What was heard since the last call; none when there was nothing, or the last of it was muted. Any one thread.
  std::optional<AudioPropertiesInfo> take();

 private:
  // Gathered from blocks, in the order in which they come.
  struct Gathered {
    SoundLevel level;
    PowerSpectrum powers = {};
    int32_t blocks = 0;
    bool muted = false;
    bool has_voice = false;
  };

  double smoothed(double newest, double& last) const;

  const SoundMeterSettings settings_;

  // The stream's thread's.
  SpectrumAnalyzer spectrum_;
  VoiceDetector voice_;
  std::array<float, kBlockFrames> mono_;
  int32_t voiced_in_a_row_ = 0;

  std::mutex mutex_;
  Gathered gathered_;
  std::vector<float> pitches_;

  // take()'s.
  bool has_last_ = false;
  double last_amplitude_ = 0.0;
  std::array<double, kAudioSpectrumSize> last_spectrum_ = {};
  std::vector<float> taken_pitches_;
};

}  // namespace corvane::rtc
