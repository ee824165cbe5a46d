// Takes out of the microphone's sound what is not the voice: the speaker's echo, noise, and being too quiet or too
// loud.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "media/sound_block.h"
#include "media/sound_taps.h"
#include "voice/echo_reference.h"

namespace corvane::rtc {

class VoiceProcessor;

/// Any thread, but for process(). What the application says nothing about is on for devices, and off for clips and
/// synthetic sound, which have neither echo nor a voice that is too quiet.
class VoiceCleaner {
 public:
  VoiceCleaner();
  /// The reference is not among any taps any more.
  ~VoiceCleaner();
  VoiceCleaner(const VoiceCleaner&) = delete;
  VoiceCleaner& operator=(const VoiceCleaner&) = delete;

  /// `mode`: AnsMode.
  void setNoiseSuppression(int32_t mode) { noise_.store(mode, std::memory_order_relaxed); }
  void setGainControl(bool on) { gain_.store(on ? 1 : 0, std::memory_order_relaxed); }
  /// The sound card does all of it: nothing is done here, whatever was asked for.
  void leaveToSoundCard(bool leave) { left_to_card_.store(leave, std::memory_order_relaxed); }
  /// Echo is what a microphone hears of a speaker: there is none in headphones.
  void setHeadphones(bool worn) { headphones_.store(worn, std::memory_order_relaxed); }
  /// Whether the microphone is a device.
  void setDevice(bool is_device) { is_device_.store(is_device, std::memory_order_relaxed); }

  /// To be among the taps of what is played.
  SoundTap& reference() { return reference_; }

  /// Changes one block of one channel in place. On the capture's thread; none but one at a time.
  void process(SoundBlock& block);

 private:
  // The application has said nothing.
  static constexpr int32_t kByMicrophone = -1;

  struct Work {
    bool echo;
    int32_t noise;  // AnsMode
    bool gain;
    bool operator==(const Work&) const = default;
  };
  Work wanted() const;

  std::atomic<int32_t> noise_ = kByMicrophone;
  std::atomic<int32_t> gain_ = kByMicrophone;
  std::atomic<bool> left_to_card_ = false;
  std::atomic<bool> headphones_ = false;
  std::atomic<bool> is_device_ = false;
  EchoReference reference_;

  // The capture's thread's.
  Work work_ = {};
  std::unique_ptr<VoiceProcessor> processor_;  // null while there is nothing to do
};

}  // namespace corvane::rtc
