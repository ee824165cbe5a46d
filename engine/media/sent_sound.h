// Everything that goes into what rooms are sent, as one stream: the microphone, and what players and others add to it.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

#include "media/sound_mixer.h"
#include "media/sound_taps.h"

namespace corvane::rtc {

/// Any thread.
class SentSound final : private SoundTap {
 public:
  /// `microphone` delivers blocks of one channel, and outlives this.
  explicit SentSound(SoundTaps& microphone);
  ~SentSound();
  SentSound(const SentSound&) = delete;
  SentSound& operator=(const SentSound&) = delete;

  /// What a source that is not the microphone pushes into. While any is kept there is sound, whether the microphone
  /// is on, muted, or not.
  std::shared_ptr<SoundMixer::Input> addInput();

  /// Where publishers and recorders take it: blocks of one channel, each with its time, which runs forward. They come
  /// on the microphone's thread, as they are while nothing is added to them. While it is off, and something is added,
  /// they come on a thread of this object's; else not at all.
  SoundTaps& taps() { return taps_; }

 private:
  void onSound(const SoundBlock& block) override;
  void run(const std::stop_token& stop);
  // With mutex_ held. `microphone` may be null.
  void deliverMixed(const SoundBlock* microphone, int64_t time_us);

  SoundTaps& microphone_;
  SoundTaps taps_;
  SoundMixer added_;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  int64_t heard_us_ = 0;  // when the microphone's last block came
  int64_t last_us_ = 0;   // the time of the last block that was delivered
  SoundBlock mix_;
  std::jthread thread_;  // the last, as it uses the others; started by the first input
};

}  // namespace corvane::rtc
