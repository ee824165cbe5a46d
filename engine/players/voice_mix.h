// The thread on which everything that players play becomes sound, ten milliseconds at a time.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

#include "media/sent_sound.h"
#include "media/sound_mixer.h"
#include "players/voice.h"

namespace corvane::rtc {

/// Any thread. While nothing sounds it has no input in either mix, and its thread waits.
class VoiceMix {
 public:
  VoiceMix(SoundMixer& playback, SentSound& sent);
  ~VoiceMix();
  VoiceMix(const VoiceMix&) = delete;
  VoiceMix& operator=(const VoiceMix&) = delete;

  /// The voice sounds from the next block on, until it ends or is removed.
  void add(std::shared_ptr<Voice> voice);
  /// It does not sound any more when this returns. Not from one of its events.
  void remove(const std::shared_ptr<Voice>& voice);

 private:
  struct Output {
    VoiceSum sum;
    std::shared_ptr<SoundMixer::Input> input;
    int32_t unused_blocks = 0;
  };

  void run(const std::stop_token& stop);
  void renderBlock(int64_t time_us);
  template <class Mix>
  static void push(Output& output, Mix& mix, int64_t time_us);

  SoundMixer& playback_;
  SentSound& sent_;
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::vector<std::shared_ptr<Voice>> voices_;
  Output playout_;
  Output publish_;
  std::jthread thread_;  // the last, as it uses the others; started by the first voice
};

}  // namespace corvane::rtc
