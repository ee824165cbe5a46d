// Trying out speakers and microphones before a call: playing, recording and hearing it, an echo of one's own, and
// whether a microphone hears the speaker.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "core/engine_context.h"
#include "corvane_rtc/device_events.h"
#include "devices/audio_device_list.h"
#include "devices/device_tests.h"
#include "media/sound_meter.h"
#include "trials/echo_finder.h"
#include "trials/kept_sound.h"
#include "trials/trial_microphone.h"
#include "trials/trial_speaker.h"

namespace corvane::rtc {

/// What else goes on in the engine.
struct DeviceUse {
  std::function<bool()> captures;    ///< the microphone is on
  std::function<bool()> is_in_room;  ///< of any room
};

/// Engine thread only.
class DeviceTrials {
 public:
  DeviceTrials(EngineContext& context, const AudioDeviceList& devices, DeviceUse use);
  ~DeviceTrials();
  DeviceTrials(const DeviceTrials&) = delete;
  DeviceTrials& operator=(const DeviceTrials&) = delete;

  // As DeviceTests has them. What is chosen is used where no device was named for tests.

  int32_t useSpeaker(const std::string& id);
  int32_t useMicrophone(const std::string& id);
  void chooseSpeaker(const std::string& id) { chosen_speaker_ = id; }
  void chooseMicrophone(const std::string& id) { chosen_microphone_ = id; }

  int32_t startPlaying(const std::string& path, int64_t interval);
  int32_t startRecording(int64_t interval);
  int32_t replay();
  int32_t startEchoTest(int64_t interval, int32_t delay_seconds);
  int32_t startEchoDetection(const std::string& path);

  int32_t stopPlaying() { return stop(Kind::kPlaying); }
  int32_t stopReplaying() { return stop(Kind::kReplaying); }
  int32_t stopEchoTest();
  int32_t stopEchoDetection();

 private:
  enum class Kind { kNone, kPlaying, kRecording, kReplaying, kEchoTest, kEchoDetection };

  class Clip;

  std::string speaker() const;
  std::string microphone() const;

  bool mayStart(bool records) const;
  void begin(Kind kind, int64_t interval);
  int32_t stop(Kind kind);
  void end();
  void fail(AudioDeviceType type, const std::string& device, const CaptureFault& fault);

  void openSpeaker(TrialSpeaker::Source source);
  void openMicrophone(TrialMicrophone::Taker taker);
  void openClip(const std::string& path);

  /// Calls `report` every `interval` milliseconds until the test ends.
  void repeat(std::chrono::milliseconds interval, std::function<void()> report);
  void reportPlayed();
  void reportRecorded();
  void listenForEcho();

  EngineContext& context_;
  const AudioDeviceList& devices_;
  const DeviceUse use_;
  std::string chosen_speaker_;
  std::string chosen_microphone_;
  std::string test_speaker_;
  std::string test_microphone_;

  Kind kind_ = Kind::kNone;
  std::chrono::milliseconds interval_{0};
  std::shared_ptr<void> session_;  // what other threads post is for this test only
  AttachedSource timer_;
  AttachedSource deadline_;
  std::unique_ptr<SoundMeter> meter_;
  std::unique_ptr<RecordedSound> recording_;
  std::unique_ptr<DelayedSound> delayed_;
  bool came_back_ = false;  // of the echo test
  std::unique_ptr<EchoFinder> finder_;
  std::unique_ptr<Clip> clip_;
  std::unique_ptr<TrialMicrophone> listening_;
  std::unique_ptr<TrialSpeaker> playing_;
};

}  // namespace corvane::rtc
