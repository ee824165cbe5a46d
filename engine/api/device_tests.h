// The way of device tests from the caller's thread to the engine's.
#pragma once

#include <memory>
#include <string>

#include "core/engine_thread.h"
#include "corvane_rtc/common.h"
#include "devices/device_tests.h"
#include "trials/device_trials.h"

namespace corvane::rtc {

/// Waits for the engine thread, as whether a test may start is its business; when one ends, until its devices are
/// closed.
class PostedDeviceTests final : public DeviceTests {
 public:
  /// `trials` is read on the engine thread. Both outlive this.
  PostedDeviceTests(EngineThread& thread, const std::unique_ptr<DeviceTrials>& trials)
      : thread_(thread), trials_(trials) {}

  int32_t useSpeaker(const std::string& id) override { return ask(&DeviceTrials::useSpeaker, id); }
  int32_t useMicrophone(const std::string& id) override { return ask(&DeviceTrials::useMicrophone, id); }
  int32_t startPlaying(const std::string& path, int64_t interval) override {
    return ask(&DeviceTrials::startPlaying, path, interval);
  }
  int32_t stopPlaying() override { return ask(&DeviceTrials::stopPlaying); }
  int32_t startRecording(int64_t interval) override { return ask(&DeviceTrials::startRecording, interval); }
  int32_t replay() override { return ask(&DeviceTrials::replay); }
  int32_t stopReplaying() override { return ask(&DeviceTrials::stopReplaying); }
  int32_t startEchoTest(int64_t interval, int32_t delay_seconds) override {
    return ask(&DeviceTrials::startEchoTest, interval, delay_seconds);
  }
  int32_t stopEchoTest() override { return ask(&DeviceTrials::stopEchoTest); }
  int32_t startEchoDetection(const std::string& path) override { return ask(&DeviceTrials::startEchoDetection, path); }
  int32_t stopEchoDetection() override { return ask(&DeviceTrials::stopEchoDetection); }

 private:
  template <class... Parameters, class... Arguments>
  int32_t ask(int32_t (DeviceTrials::*operation)(Parameters...), const Arguments&... arguments) {
    int32_t result = kWrongState;
    thread_.postAndWait([&] { result = (*trials_.*operation)(arguments...); });
    return result;
  }

  EngineThread& thread_;
  const std::unique_ptr<DeviceTrials>& trials_;
};

}  // namespace corvane::rtc
