// Microphones and speakers as applications list and choose them.
#include <string>
#include <utility>
#include <vector>

#include "support/engine_test.h"

namespace corvane::test {
namespace {

using Listing = std::vector<std::pair<std::string, std::string>>;  // id, name

class AudioDevicesTest : public EngineTest {
 protected:
  static Listing listing(rtc::IAudioDeviceCollection* collection) {
    Listing found;
    if (collection == nullptr) return found;
    char name[rtc::kDeviceTextSize];
    char id[rtc::kDeviceTextSize];
    for (int32_t index = 0; index < collection->getCount(); ++index) {
      EXPECT_EQ(collection->getDevice(index, name, id), rtc::kSuccess);
      found.emplace_back(id, name);
    }
    EXPECT_EQ(collection->getDevice(-1, name, id), rtc::kInvalidParameter);
    EXPECT_EQ(collection->getDevice(collection->getCount(), name, id), rtc::kInvalidParameter);
    collection->release();
    return found;
  }

  rtc::IAudioDeviceManager& devices() { return *engine->getAudioDeviceManager(); }
  Listing microphones() { return listing(devices().enumerateAudioCaptureDevices()); }
  Listing speakers() { return listing(devices().enumerateAudioPlaybackDevices()); }

  std::string microphone() {
    char id[rtc::kDeviceTextSize] = "unchanged";
    const int32_t result = devices().getAudioCaptureDevice(id);
    return result == rtc::kSuccess ? id : std::to_string(result) + " " + id;
  }
};

TEST_F(AudioDevicesTest, ListsThoseOfTheParametersAndTheChosenOne) {
  const size_t machines = microphones().size();
  rtc::destroyRTCVideo();
  create(R"({"microphones": ["file:/clips/caf\u00e9.wav", "nonsense", 5, "test:ticks"]})");
  ASSERT_EQ(microphones().size(), machines + 2);
  EXPECT_EQ(microphones()[machines],
            std::make_pair(std::string("file:/clips/caf\xc3\xa9.wav"), std::string("caf\xc3\xa9.wav")));
  EXPECT_EQ(microphones()[machines + 1].second, "Test sound (ticks)");
  if (machines == 0) {
    EXPECT_EQ(microphone(), "file:/clips/caf\xc3\xa9.wav");
  }

  ASSERT_EQ(devices().setAudioCaptureDevice("test:sine?level=-3"), rtc::kSuccess);
  EXPECT_EQ(microphones().back().first, "test:sine?level=-3");
  EXPECT_EQ(microphone(), "test:sine?level=-3");
  ASSERT_EQ(devices().followSystemCaptureDevice(true), rtc::kSuccess);
  EXPECT_EQ(microphone(), microphones().front().first);
  EXPECT_EQ(engine->getAudioDeviceManager(), engine->getAudioDeviceManager());
}

TEST_F(AudioDevicesTest, SaysSoWhereThereIsNoMicrophone) {
  if (!microphones().empty()) GTEST_SKIP() << "this machine has a microphone";
  EXPECT_EQ(microphone(), "-4 unchanged");
  EXPECT_EQ(devices().followSystemCaptureDevice(false), rtc::kNotFound);
  ASSERT_EQ(engine->startAudioCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("microphone  3 4"));
  EXPECT_TRUE(events.waitFor("sound 3 6"));
  EXPECT_TRUE(events.waitFor("error -4"));
  ASSERT_EQ(devices().setAudioCaptureDevice("test:"), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("first sound 0"));
}

TEST_F(AudioDevicesTest, HasASpeakerThatNobodyHears) {
  ASSERT_FALSE(speakers().empty());
  EXPECT_EQ(speakers().back(), std::make_pair(std::string("null:"), std::string("No speaker")));
  char id[rtc::kDeviceTextSize];
  ASSERT_EQ(devices().getAudioPlaybackDevice(id), rtc::kSuccess);
  EXPECT_EQ(id, speakers().front().first);
  ASSERT_EQ(devices().setAudioPlaybackDevice("null:"), rtc::kSuccess);
  ASSERT_EQ(devices().getAudioPlaybackDevice(id), rtc::kSuccess);
  EXPECT_STREQ(id, "null:");
}

TEST_F(AudioDevicesTest, LeavesOutSilentDevicesOnceAskedTo) {
  rtc::destroyRTCVideo();
  create(R"({"microphones": ["test:silence", "test:sine"]})");
  const auto lists = [](const Listing& devices, const std::string& id) {
    return std::any_of(devices.begin(), devices.end(), [&](const auto& device) { return device.first == id; });
  };
  EXPECT_TRUE(lists(microphones(), "test:silence"));
  ASSERT_EQ(devices().enableFilterSilentDevice(true), rtc::kSuccess);
  EXPECT_FALSE(lists(microphones(), "test:silence"));
  EXPECT_TRUE(lists(microphones(), "test:sine"));
  EXPECT_FALSE(lists(speakers(), "null:"));
  // What was chosen is there all the same.
  ASSERT_EQ(devices().setAudioPlaybackDevice("null:"), rtc::kSuccess);
  EXPECT_TRUE(lists(speakers(), "null:"));
  ASSERT_EQ(devices().enableFilterSilentDevice(false), rtc::kSuccess);
  EXPECT_TRUE(lists(microphones(), "test:silence"));
}

TEST_F(AudioDevicesTest, RefusesIdsOfNoDevice) {
  const std::string before = microphone();
  const std::string too_long = "file:/" + std::string(rtc::kDeviceTextSize, 'x');
  for (const char* id :
       {"", "test:nosuchwave", "test:?frequency=19", "test:?level=1", "test:?level", too_long.c_str()}) {
    EXPECT_EQ(devices().setAudioCaptureDevice(id), rtc::kInvalidParameter) << id;
  }
  EXPECT_EQ(devices().setAudioCaptureDevice(nullptr), rtc::kInvalidParameter);
  EXPECT_EQ(devices().getAudioCaptureDevice(nullptr), rtc::kInvalidParameter);
  for (const char* id : {"pulse:none", "alsa:none", "nonsense", "file:", "null:", "v4l2:/dev/video0"}) {
    EXPECT_EQ(devices().setAudioCaptureDevice(id), rtc::kNotFound) << id;
  }
  for (const char* id : {"pulse:none", "file:/clip.wav", "test:", "null:x"}) {
    EXPECT_EQ(devices().setAudioPlaybackDevice(id), rtc::kNotFound) << id;
  }
  EXPECT_EQ(microphone(), before);
}

TEST_F(AudioDevicesTest, KeepsVolumesAndMuteStates) {
  uint32_t volume = 7;
  bool muted = true;
  ASSERT_EQ(devices().getAudioPlaybackDeviceVolume(volume), rtc::kSuccess);
  ASSERT_EQ(devices().getAudioPlaybackDeviceMute(muted), rtc::kSuccess);
  EXPECT_EQ(volume, 255U);
  EXPECT_FALSE(muted);
  ASSERT_EQ(devices().setAudioPlaybackDeviceVolume(10), rtc::kSuccess);
  ASSERT_EQ(devices().setAudioPlaybackDeviceMute(true), rtc::kSuccess);
  ASSERT_EQ(devices().setAudioCaptureDeviceVolume(20), rtc::kSuccess);
  ASSERT_EQ(devices().setAudioCaptureDeviceVolume(20), rtc::kSuccess);
  EXPECT_EQ(devices().setAudioCaptureDeviceVolume(256), rtc::kInvalidParameter);
  EXPECT_EQ(devices().setAudioPlaybackDeviceVolume(4'000'000'000U), rtc::kInvalidParameter);
  ASSERT_TRUE(events.waitFor("volume 1 20 0"));
  EXPECT_EQ(events.all(), (std::vector<std::string>{"volume 0 10 0", "volume 0 10 1", "volume 1 20 0"}));
  ASSERT_EQ(devices().getAudioPlaybackDeviceVolume(volume), rtc::kSuccess);
  EXPECT_EQ(volume, 10U);
  ASSERT_EQ(devices().getAudioCaptureDeviceVolume(volume), rtc::kSuccess);
  EXPECT_EQ(volume, 20U);
  ASSERT_EQ(devices().getAudioPlaybackDeviceMute(muted), rtc::kSuccess);
  EXPECT_TRUE(muted);
  ASSERT_EQ(devices().getAudioCaptureDeviceMute(muted), rtc::kSuccess);
  EXPECT_FALSE(muted);
}

}  // namespace
}  // namespace corvane::test
