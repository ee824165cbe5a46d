// Trying out speakers and microphones, as an application does before a call.
#include <fstream>

#include "support/engine_test.h"

namespace corvane::test {
namespace {

class DeviceTestsTest : public EngineTest {
 protected:
  void SetUp() override {
    create("");
    ASSERT_EQ(devices().initAudioPlaybackDeviceForTest("null:"), rtc::kSuccess);
    ASSERT_EQ(devices().initAudioCaptureDeviceForTest("test:sine?level=-14"), rtc::kSuccess);
  }

  rtc::IAudioDeviceManager& devices() { return *engine->getAudioDeviceManager(); }

  /// A second of a tone of that amplitude.
  std::string tone(const std::string& amplitude) {
    std::string path = folder.file("tone.wav");
    EXPECT_TRUE(runPipeline("audiotestsrc num-buffers=100 samplesperbuffer=480 volume=" + amplitude +
                            " ! audio/x-raw,rate=48000,channels=1 ! wavenc ! filesink location=" + path));
    return path;
  }

  rtc::EchoTestConfig echo_test = {100, "user", "room", ""};
};

TEST_F(DeviceTestsTest, PlaysAFileOverAndOverAndTellsHowLoudItIs) {
  const std::string path = tone("0.4");
  ASSERT_EQ(devices().startAudioPlaybackDeviceTest(path.c_str(), 50), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("played 102"));
  EXPECT_EQ(devices().startAudioPlaybackDeviceTest(path.c_str(), 50), rtc::kWrongState);
  EXPECT_EQ(devices().startAudioDeviceRecordTest(50), rtc::kWrongState);
  EXPECT_EQ(devices().initAudioPlaybackDeviceForTest("null:"), rtc::kWrongState);
  EXPECT_EQ(devices().stopEchoTest(), rtc::kWrongState);
  EXPECT_EQ(devices().stopAudioPlaybackDeviceTest(), rtc::kSuccess);
  EXPECT_EQ(devices().stopAudioPlaybackDeviceTest(), rtc::kWrongState);
  // Any is fine while nothing is captured: this one plays.
  ASSERT_EQ(engine->startAudioCapture(), rtc::kSuccess);
  EXPECT_EQ(devices().startAudioPlaybackDeviceTest(path.c_str(), 0), rtc::kSuccess);
}

TEST_F(DeviceTestsTest, RecordsAndPlaysWhatWasRecorded) {
  EXPECT_EQ(devices().stopAudioDeviceRecordAndPlayTest(), rtc::kWrongState);
  ASSERT_EQ(devices().startAudioDeviceRecordTest(50), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(-14));
  ASSERT_TRUE(events.waitForLevel(-14));
  ASSERT_EQ(devices().stopAudioDeviceRecordAndPlayTest(), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("played 51"));
  // It ends by itself.
  int32_t again = rtc::kWrongState;
  for (int tries = 0; again == rtc::kWrongState && tries < 1000; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    again = devices().startAudioDeviceRecordTest(0);
  }
  EXPECT_EQ(again, rtc::kSuccess);
  EXPECT_EQ(devices().stopAudioDevicePlayTest(), rtc::kWrongState);
  ASSERT_EQ(devices().stopAudioDeviceRecordAndPlayTest(), rtc::kSuccess);
  EXPECT_EQ(devices().stopAudioDevicePlayTest(), rtc::kSuccess);

  ASSERT_EQ(engine->startAudioCapture(), rtc::kSuccess);
  EXPECT_EQ(devices().startAudioDeviceRecordTest(50), rtc::kWrongState);
}

TEST_F(DeviceTestsTest, PlaysBackWhatIsSaidAfterTheDelay) {
  for (const int32_t delay : {1, 11}) EXPECT_EQ(devices().startEchoTest(echo_test, delay), rtc::kInvalidParameter);
  ASSERT_EQ(devices().startEchoTest(echo_test, 10), rtc::kSuccess);
  ASSERT_TRUE(events.waitForLevel(-14));
  EXPECT_EQ(devices().stopEchoTest(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("echo test 2"));
  ASSERT_EQ(devices().startEchoTest(echo_test, 2), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("echo test 0"));
  EXPECT_EQ(devices().stopEchoTest(), rtc::kSuccess);
}

TEST_F(DeviceTestsTest, TellsWhatBecameOfWhatCannotBePlayedOrHeard) {
  EXPECT_EQ(devices().startAudioPlaybackDeviceTest("", 50), rtc::kInvalidParameter);
  EXPECT_EQ(devices().startAudioPlaybackDeviceTest("/nowhere/there.wav", 50), rtc::kNotFound);
  EXPECT_EQ(devices().startHardwareEchoDetection("/nowhere/there.wav"), rtc::kNotFound);
  EXPECT_EQ(devices().initAudioPlaybackDeviceForTest("pulse:none of that name"), rtc::kNotFound);
  EXPECT_EQ(devices().initAudioCaptureDeviceForTest(nullptr), rtc::kInvalidParameter);

  const std::string text = folder.file("text.wav");
  std::ofstream(text) << "no sound at all";
  ASSERT_EQ(devices().startAudioPlaybackDeviceTest(text.c_str(), 50), rtc::kSuccess);
  ASSERT_TRUE(events.waitFor("error " + std::to_string(rtc::kMediaFailure)));
  EXPECT_EQ(devices().stopAudioPlaybackDeviceTest(), rtc::kWrongState);

  const std::string missing = "file:" + folder.file("missing.wav");
  ASSERT_EQ(devices().initAudioCaptureDeviceForTest(missing.c_str()), rtc::kSuccess);
  ASSERT_EQ(devices().startEchoTest(echo_test, 2), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("echo test 3"));

  ASSERT_EQ(devices().initAudioCaptureDeviceForTest("test:sine"), rtc::kSuccess);
  ASSERT_EQ(devices().startHardwareEchoDetection(tone("0.5").c_str()), rtc::kSuccess);
  EXPECT_EQ(devices().stopHardwareEchoDetection(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("echo 0"));
  // The engine ends while one runs.
  ASSERT_EQ(devices().startHardwareEchoDetection(tone("0.5").c_str()), rtc::kSuccess);
}

}  // namespace
}  // namespace corvane::test
