// What applications try out devices with.
#pragma once

#include <cstdint>
#include <string>

namespace corvane::rtc {

/// Operations of the device manager, one test at a time. The caller's thread; they answer a ReturnStatus.
class DeviceTests {
 public:
  virtual int32_t useSpeaker(const std::string& id) = 0;
  virtual int32_t useMicrophone(const std::string& id) = 0;
  /// `interval`: milliseconds, 0 or less for no reports.
  virtual int32_t startPlaying(const std::string& path, int64_t interval) = 0;
  virtual int32_t stopPlaying() = 0;
  virtual int32_t startRecording(int64_t interval) = 0;
  virtual int32_t replay() = 0;
  virtual int32_t stopReplaying() = 0;
  virtual int32_t startEchoTest(int64_t interval, int32_t delay_seconds) = 0;
  virtual int32_t stopEchoTest() = 0;
  virtual int32_t startEchoDetection(const std::string& path) = 0;
  virtual int32_t stopEchoDetection() = 0;

 protected:
  ~DeviceTests() = default;
};

}  // namespace corvane::rtc
