// The thread on which captured sound goes through the engine, ten milliseconds at a time.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

#include "capture/sound_queue.h"
#include "media/sound_block.h"

namespace corvane::rtc {

/// What the pump has to tell. Called on its thread.
struct SoundPumpEvents {
  std::function<void()> first_block;
  /// Nothing but zeros has come for three seconds; once.
  std::function<void()> silence;
};

/// What becomes of captured sound.
class SoundReceiver {
 public:
  /// Takes one block of the queue's channels, and may change it. On the pump's thread.
  virtual void deliver(SoundBlock& block) = 0;

 protected:
  ~SoundReceiver() = default;
};

/// Runs while it lives.
class SoundPump {
 public:
  /// `paced`: sound is queued ahead of its time and goes on by the clock; else it goes on as it comes.
  SoundPump(SoundQueue& queue, SoundReceiver& sound, bool paced, SoundPumpEvents events);
  /// Returns when no call is on its way.
  ~SoundPump();
  SoundPump(const SoundPump&) = delete;
  SoundPump& operator=(const SoundPump&) = delete;

 private:
  void run(const std::stop_token& stop);
  /// Waits until the block is due and gives it its time. False when stopped.
  bool waitUntilDue(SoundBlock& block, const std::stop_token& stop);
  void watchForSilence(const SoundBlock& block);

  SoundQueue& queue_;
  SoundReceiver& sound_;
  const bool paced_;
  const SoundPumpEvents events_;
  int64_t next_us_ = 0;  // when the next block is due, or what its time is at least
  int32_t silent_blocks_ = 0;
  std::mutex mutex_;
  std::condition_variable_any stopped_;
  std::jthread thread_;  // the last, as it uses the others
};

}  // namespace corvane::rtc
