// The owned copy of a raw audio frame and its object in JavaScript.
#pragma once

#include <cstdint>
#include <memory>

#include "corvane_rtc/audio_frame.h"
#include "events/payload.h"

namespace corvane {

class OwnedAudioFrame {
 public:
  explicit OwnedAudioFrame(const rtc::IAudioFrame& frame);

  /// Sets "audio_frame". JavaScript gets its own copy of the bytes.
  void put(Payload& payload) const;

 private:
  /// Milliseconds cut to 32 bits: they wrap every 49.7 days.
  int32_t render_time_ms_;
  int32_t sample_rate_;
  int32_t channels_;
  int32_t frame_type_;
  bool mute_;
  size_t size_;  // bytes, without the zero that stands behind them
  std::unique_ptr<uint8_t[]> samples_;
};

/// Sets a Buffer with a copy of the bytes.
void putBytes(Payload& payload, const char* key, const uint8_t* bytes, size_t size);

}  // namespace corvane
