// Sound in another sample rate or number of channels.
#pragma once

#include <gst/audio/audio.h>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace corvane::rtc {

struct SoundFormat {
  int32_t sample_rate;  ///< samples a second of one channel
  int32_t channels;     ///< 1 or 2
  bool operator==(const SoundFormat&) const = default;
};

/// Of 16-bit samples, channels interleaved. One thread at a time. Sound comes out a fraction of a millisecond after it
/// went in, by the length of the filter.
class SoundConverter {
 public:
  SoundConverter(const SoundFormat& from, const SoundFormat& to);

  /// Appends what `samples` become. They are left as they are.
  void convert(std::span<const int16_t> samples, std::vector<int16_t>& converted);

 private:
  struct FreeConverter {
    void operator()(GstAudioConverter* converter) const { gst_audio_converter_free(converter); }
  };

  const SoundFormat from_;
  const SoundFormat to_;
  std::unique_ptr<GstAudioConverter, FreeConverter> converter_;  // null when there is nothing to convert
};

}  // namespace corvane::rtc
