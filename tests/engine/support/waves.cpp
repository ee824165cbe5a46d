#include "support/waves.h"

#include <fstream>
#include <vector>

namespace corvane::test {

void writeWave(const std::string& path, int64_t frames, const std::function<int(int64_t, int)>& sample) {
  std::vector<int16_t> samples;
  samples.reserve(static_cast<size_t>(frames) * 2);
  for (int64_t frame = 0; frame < frames; ++frame) {
    for (int channel = 0; channel < 2; ++channel) samples.push_back(static_cast<int16_t>(sample(frame, channel)));
  }
  const auto bytes = static_cast<uint32_t>(samples.size() * sizeof(int16_t));
  std::ofstream file(path, std::ios::binary);
  const auto word = [&](uint32_t value) { file.write(reinterpret_cast<const char*>(&value), 4); };
  const auto half = [&](uint16_t value) { file.write(reinterpret_cast<const char*>(&value), 2); };
  file << "RIFF";
  word(36 + bytes);
  file << "WAVEfmt ";
  word(16);
  half(1);
  half(2);
  word(48000);
  word(48000 * 4);
  half(4);
  half(16);
  file << "data";
  word(bytes);
  file.write(reinterpret_cast<const char*>(samples.data()), bytes);
}

void writeCountingWave(const std::string& path, int64_t ms) {
  writeWave(path, ms * 48, [](int64_t frame, int channel) {
    const int count = static_cast<int>(frame / 48) + 1;
    return channel == 0 ? count : -count;
  });
}

}  // namespace corvane::test
