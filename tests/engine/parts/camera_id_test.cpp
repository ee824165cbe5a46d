#include "devices/camera_id.h"

#include <gtest/gtest.h>

#include "devices/device_text.h"

namespace corvane::rtc {
namespace {

TEST(CameraId, ReadsEveryKind) {
  EXPECT_EQ(std::get<ClipCamera>(parseCameraId("file:/a b/c?d=1.mp4")).path, "/a b/c?d=1.mp4");
  EXPECT_EQ(std::get<DeviceCamera>(parseCameraId(deviceCameraId("/dev/video3"))).device_file, "/dev/video3");
  const auto plain = std::get<TestCamera>(parseCameraId("test:"));
  EXPECT_EQ(plain.pattern, "smpte");
  const auto full = std::get<TestCamera>(parseCameraId("test:ball?fps=15&width=1920&height=1080"));
  EXPECT_EQ(full.pattern, "ball");
  EXPECT_EQ(full.width, 1920);
  EXPECT_EQ(full.height, 1080);
  EXPECT_EQ(full.fps, 15);
}

TEST(CameraId, RefusesEverythingElse) {
  for (const char* id :
       {"", "file", "file:", "/dev/video0", "v4l2:", "Test:", "test:?width=15", "test:?width=4097", "test:?fps=0",
        "test:?fps=121", "test:?width=64x", "test:?width=", "test:?=64", "test:?&", "test:?width=99999999999"}) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(parseCameraId(id))) << id;
  }
}

TEST(CameraId, NamesCameras) {
  EXPECT_EQ(cameraName("file:/clips/cat.mp4"), "cat.mp4");
  EXPECT_EQ(cameraName("file:cat.mp4"), "cat.mp4");
  EXPECT_EQ(cameraName("v4l2:/dev/video0"), "/dev/video0");
}

TEST(DeviceText, IsCutBetweenCharacters) {
  char buffer[kDeviceTextSize];
  copyDeviceText("camera", buffer);
  EXPECT_STREQ(buffer, "camera");
  // Each character takes three bytes, so that the last one fits by one byte in 511, and by none of them whole.
  std::string text;
  for (int index = 0; index < 200; ++index) text += "\xe4\xb8\xad";
  copyDeviceText("x" + text, buffer);
  EXPECT_EQ(std::string(buffer), "x" + text.substr(0, 510));
  copyDeviceText("xx" + text, buffer);
  EXPECT_EQ(std::string(buffer), "xx" + text.substr(0, 507));
}

}  // namespace
}  // namespace corvane::rtc
