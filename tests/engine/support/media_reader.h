// Plays recordings back, for tests to look at what is in them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvane::test {

struct ReadPicture {
  int32_t width;
  int32_t height;
  int64_t time_ms;
  int32_t middle;  ///< brightness there
  int32_t corner;
};

struct ReadMedia {
  bool complete = false;  ///< read to its end without a fault
  std::vector<ReadPicture> pictures;
  int32_t sample_rate = 0;
  int32_t channels = 0;
  std::vector<int16_t> samples;

  int64_t soundMs() const;
  /// In dB of full scale, from one time to another, both channels together.
  double level(int64_t from_ms, int64_t to_ms) const;
};

/// Decodes the picture, the sound or both of a file, in it as they are.
ReadMedia readMedia(const std::string& path, bool picture, bool sound);

}  // namespace corvane::test
