// Cameras as applications list and choose them.
#include <string>
#include <vector>

#include "support/engine_test.h"

namespace corvane::test {
namespace {

class DevicesTest : public EngineTest {
 protected:
  // id of each camera, with its name
  std::vector<std::pair<std::string, std::string>> cameras() {
    std::vector<std::pair<std::string, std::string>> found;
    rtc::IVideoDeviceCollection* collection = engine->getVideoDeviceManager()->enumerateVideoCaptureDevices();
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

  std::string chosen() {
    char id[rtc::kDeviceTextSize];
    EXPECT_EQ(engine->getVideoDeviceManager()->getVideoCaptureDevice(id), rtc::kSuccess);
    return id;
  }
};

TEST_F(DevicesTest, ListsTheTestPictureOnAnyMachineAndUsesTheFirstCameraByDefault) {
  const auto found = cameras();
  ASSERT_FALSE(found.empty());
  EXPECT_EQ(found.back(), std::make_pair(std::string("test:smpte"), std::string("Test picture (smpte)")));
  EXPECT_EQ(chosen(), found.front().first);
  EXPECT_EQ(engine->getVideoDeviceManager(), engine->getVideoDeviceManager());
}

TEST_F(DevicesTest, ListsTheCamerasOfTheParametersAndTheChosenOne) {
  rtc::destroyRTCVideo();
  create(R"({"cameras": ["file:/clips/caf\u00e9.mp4", "nonsense", 5, "test:ball"], "unknown": {"a": [1]}})");
  auto found = cameras();
  ASSERT_GE(found.size(), 3U);
  EXPECT_EQ(found[found.size() - 3].first, "file:/clips/caf\xc3\xa9.mp4");
  EXPECT_EQ(found[found.size() - 3].second, "caf\xc3\xa9.mp4");
  EXPECT_EQ(found[found.size() - 2].first, "test:ball");

  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice("file:/elsewhere.webm"), rtc::kSuccess);
  found = cameras();
  EXPECT_EQ(found.back().first, "file:/elsewhere.webm");
  EXPECT_EQ(chosen(), "file:/elsewhere.webm");
}

TEST_F(DevicesTest, LivesWithParametersThatAreNoJson) {
  for (const char* parameters : {"{", "[]", "nonsense", "{\"cameras\": 7}", "\xff\xfe", " "}) {
    rtc::destroyRTCVideo();
    create(parameters);
    EXPECT_EQ(cameras().back().first, "test:smpte") << parameters;
  }
}

TEST_F(DevicesTest, RefusesIdsOfNoCamera) {
  rtc::IVideoDeviceManager* manager = engine->getVideoDeviceManager();
  const std::string before = chosen();
  const std::string too_long = "file:/" + std::string(rtc::kDeviceTextSize, 'x');
  for (const char* id :
       {"", "test:nosuchpattern", "test:?width=0", "test:?width=x", "test:?colour=1", "test:?fps", too_long.c_str()}) {
    EXPECT_EQ(manager->setVideoCaptureDevice(id), rtc::kInvalidParameter) << id;
  }
  EXPECT_EQ(manager->setVideoCaptureDevice(nullptr), rtc::kInvalidParameter);
  for (const char* id : {"v4l2:/dev/video-none", "nonsense", "file:", "v4l2:"}) {
    EXPECT_EQ(manager->setVideoCaptureDevice(id), rtc::kNotFound) << id;
  }
  EXPECT_EQ(chosen(), before);
}

}  // namespace
}  // namespace corvane::test
