// Sound files that tests write for themselves, with known samples.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace corvane::test {

/// Writes a WAV file of 16-bit samples in two channels at 48 kHz. sample(frame, channel).
void writeWave(const std::string& path, int64_t frames, const std::function<int(int64_t, int)>& sample);

/// Its left channel counts milliseconds from 1 on, its right one is the left one turned over.
void writeCountingWave(const std::string& path, int64_t ms);

}  // namespace corvane::test
