// Echo cancellation, noise suppression and gain control of one microphone, by the library for it.
#pragma once

#include <cstdint>
#include <memory>

#include "media/sound_block.h"
#include "voice/echo_reference.h"

namespace corvane::rtc {

/// One thread at a time.
class VoiceProcessor {
 public:
  VoiceProcessor();
  ~VoiceProcessor();
  VoiceProcessor(const VoiceProcessor&) = delete;
  VoiceProcessor& operator=(const VoiceProcessor&) = delete;

  void setEchoCancellation(bool on);
  /// `mode`: AnsMode.
  void setNoiseSuppression(int32_t mode);
  void setGainControl(bool on);

  /// The next 10 ms of what is played, ahead of the sound in which it is heard.
  void hear(const PlayedBlock& played);
  /// Changes a block of one channel in place.
  void process(SoundBlock& block);

 private:
  struct Library;

  void followNoise(const SoundBlock& block);

  const std::unique_ptr<Library> library_;
  int32_t noise_mode_;
  float floor_db_;
  int32_t until_level_ = 0;  // blocks
  int64_t newest_played_us_ = 0;
};

}  // namespace corvane::rtc
