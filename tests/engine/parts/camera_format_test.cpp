#include "devices/camera_format.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane::rtc {
namespace {

// A common camera: small pictures raw, large ones compressed, the largest raw only at a crawl.
constexpr const char* kCamera =
    "video/x-raw,format=YUY2,width=1920,height=1080,framerate={(fraction)5/1};"
    "video/x-raw,format=YUY2,width=640,height=480,framerate={(fraction)30/1,(fraction)15/1};"
    "image/jpeg,width=1280,height=720,framerate={(fraction)30/1};"
    "image/jpeg,width=1920,height=1080,framerate={(fraction)30/1,(fraction)60/1};"
    "video/x-h264,width=1920,height=1080,framerate=30/1";

std::string choose(const char* offered, const PictureShape& wanted) {
  gst_init(nullptr, nullptr);
  const GstPtr<GstCaps> caps(gst_caps_from_string(offered));
  const GstPtr<GstCaps> chosen = chooseCameraFormat(caps.get(), wanted);
  if (chosen == nullptr) return "none";
  const GstStructure* format = gst_caps_get_structure(chosen.get(), 0);
  int width = 0;
  int height = 0;
  int rate = 0;
  int per = 1;
  gst_structure_get_int(format, "width", &width);
  gst_structure_get_int(format, "height", &height);
  gst_structure_get_fraction(format, "framerate", &rate, &per);
  return std::string(gst_structure_get_name(format)) + " " + std::to_string(width) + "x" + std::to_string(height) +
         " " + std::to_string(rate / per);
}

TEST(CameraFormat, ServesWhatIsWantedWithTheLeastWork) {
  EXPECT_EQ(choose(kCamera, {}), "image/jpeg 1280x720 30");
  EXPECT_EQ(choose(kCamera, {640, 480, 15}), "video/x-raw 640x480 15");
  EXPECT_EQ(choose(kCamera, {320, 240, 30}), "video/x-raw 640x480 30");
  EXPECT_EQ(choose(kCamera, {1920, 1080, 30}), "image/jpeg 1920x1080 30");
  EXPECT_EQ(choose(kCamera, {1920, 1080, 5}), "video/x-raw 1920x1080 5");
  EXPECT_EQ(choose(kCamera, {1920, 1080, 0}), "image/jpeg 1920x1080 30");
}

TEST(CameraFormat, TakesRangesAndCamerasThatDoNotTellTheirRate) {
  EXPECT_EQ(choose("video/x-raw,format=NV12,width=[16,1920],height=[16,1080],framerate=[1/1,60/1]", {800, 600, 25}),
            "video/x-raw 800x600 25");
  EXPECT_EQ(choose("video/x-raw,format=NV12,width=320,height=240", {}), "video/x-raw 320x240 0");
}

TEST(CameraFormat, FindsNoneWhereNoneCanBeUsed) {
  EXPECT_EQ(choose("video/x-h264,width=1920,height=1080,framerate=30/1", {}), "none");
  EXPECT_EQ(choose("EMPTY", {}), "none");
}

}  // namespace
}  // namespace corvane::rtc
