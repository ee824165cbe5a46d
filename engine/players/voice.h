// One sound on its way into the mixes: where it is, how it is changed, who hears it.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "media/sound_block.h"
#include "media/sound_gain.h"
#include "players/loudness.h"
#include "players/pcm.h"
#include "players/stretcher.h"

namespace corvane::rtc {

/// Ten milliseconds of several voices, before they are cut to full scale.
struct VoiceSum {
  std::array<int32_t, static_cast<size_t>(kBlockFrames) * kPcmChannels> samples;
  bool used;
};

/// What may be changed while a voice sounds.
struct VoiceSettings {
  int32_t outputs = 0;        ///< PlayerOutputType
  float playout_gain = 1.0F;  ///< factors
  float publish_gain = 1.0F;  ///< likewise
  int32_t pitch = 0;          ///< semitones
  int32_t speed = 100;        ///< percent
  int32_t dual_mono = 0;      ///< PlayerDualMonoMode
  float own_gain = 1.0F;      ///< a factor for both outputs
  float loudness = 0.0F;      ///< LUFS aimed at, by what has been heard so far; 0 leaves sound unchanged
  int64_t progress_ms = 0;    ///< between two calls of progress; 0 or less for none

  /// Of what `type`, a PlayerOutputType, names.
  void setGain(int32_t type, float gain);
  bool toPlayout() const;
  bool toPublish() const;
};

class Voice {
 public:
  /// Called on the mixing thread; they must not wait.
  struct Events {
    std::function<void()> ended;
    std::function<void(int64_t position_ms)> progress;
  };

  Voice(std::shared_ptr<PcmSource> source, const VoiceSettings& settings, Events events);

  // Any thread.

  void set(const VoiceSettings& settings);
  /// The source was told to go on elsewhere: what was taken from it ahead is void.
  void onSeek();
  int64_t positionMs() const;
  int64_t playedMs() const;  ///< pauses not counted

  // The mixing thread.

  /// Adds the next block to the sums that hear it. False when nothing is left: the voice is then done.
  bool render(VoiceSum& playout, VoiceSum& publish);
  void tellEnded() const { events_.ended(); }

 private:
  // Samples at the start of the block that are there.
  size_t fill(SoundBlock& block);
  void shape(SoundBlock& block);

  const std::shared_ptr<PcmSource> source_;
  const Events events_;

  mutable std::mutex mutex_;
  VoiceSettings settings_;
  std::unique_ptr<Stretcher> stretcher_;  // from the first change of pitch or speed on
  bool stretcher_flushed_ = false;
  std::optional<LoudnessMeter> meter_;
  SoundGain applied_own_;
  SoundGain applied_playout_;
  SoundGain applied_publish_;
  std::vector<int16_t> ahead_;
  int64_t played_frames_ = 0;
  int64_t since_progress_ = 0;  // frames
};

}  // namespace corvane::rtc
