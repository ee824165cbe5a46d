// What tests of the whole engine share: one engine for each test, its events and its sink.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "corvane_rtc/device_manager.h"
#include "corvane_rtc/entry_points.h"
#include "corvane_rtc/rtc_video.h"
#include "support/clips.h"
#include "support/recorders.h"

namespace corvane::test {

/// Ends the engine when it goes: stands behind what a test lends to the engine.
struct EndOfEngine {
  EndOfEngine() = default;
  EndOfEngine(const EndOfEngine&) = delete;
  EndOfEngine& operator=(const EndOfEngine&) = delete;
  ~EndOfEngine() { rtc::destroyRTCVideo(); }
};

class EngineTest : public testing::Test {
 protected:
  void SetUp() override { create(""); }
  void TearDown() override { rtc::destroyRTCVideo(); }

  void create(const char* parameters) {
    engine = rtc::createRTCVideo("test", &events, parameters);
    ASSERT_NE(engine, nullptr);
  }

  /// Starts `camera`, or what is chosen already when "", with `sink` attached.
  void capture(const std::string& camera) {
    if (!camera.empty()) {
      ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice(camera.c_str()), rtc::kSuccess);
    }
    ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &sink, rtc::kVideoPixelFormatI420), rtc::kSuccess);
    ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  }

  /// Starts `microphone`.
  void listen(const std::string& microphone) {
    ASSERT_EQ(engine->getAudioDeviceManager()->setAudioCaptureDevice(microphone.c_str()), rtc::kSuccess);
    ASSERT_EQ(engine->startAudioCapture(), rtc::kSuccess);
  }

  /// Reports ten times a second, unsmoothed, with everything in them.
  void report(int32_t mode = rtc::kAudioReportModeNormal) {
    const rtc::AudioPropertiesConfig config = {100, true, true, rtc::kLocalMainReportMicrophone, 1.0, mode, true};
    ASSERT_EQ(engine->enableAudioPropertiesReport(config), rtc::kSuccess);
  }

  EventRecorder events;
  RecordingSink sink;
  TemporaryFolder folder;
  rtc::IRTCVideo* engine = nullptr;
};

}  // namespace corvane::test
