// A volume that can be turned while sound runs.
#pragma once

#include <optional>

#include "media/sound_block.h"

namespace corvane::rtc {

/// One thread at a time.
class SoundGain {
 public:
  /// Multiplies the samples by `gain`, cutting at full scale. A change goes over the length of one block, so that
  /// nothing clicks; the first block has it at once.
  void apply(SoundBlock& block, float gain);

 private:
  std::optional<float> last_;
};

}  // namespace corvane::rtc
