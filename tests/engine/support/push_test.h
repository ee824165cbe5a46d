// What tests of pushed pictures share: the application as the source, and a sink that keeps what comes out.
#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "support/engine_test.h"
#include "support/pictures.h"

namespace corvane::test {

class PushTest : public EngineTest {
 protected:
  void SetUp() override {
    EngineTest::SetUp();
    ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeExternal), rtc::kSuccess);
    ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &shown, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  }

  int32_t push(const rtc::VideoFrameBuilder& builder) {
    rtc::IVideoFrame* frame = rtc::buildVideoFrame(builder);
    return frame != nullptr ? engine->pushExternalVideoFrame(frame) : rtc::kInvalidParameter;
  }

  /// What the engine makes of one picture, with the settings as they are.
  TestPicture show(TestPicture picture) {
    picture.timestamp_us = ++last_stamp_;
    EXPECT_EQ(push(picture.builder()), rtc::kSuccess);
    const auto found = shown.waitFor([this](const TestPicture& each) { return each.timestamp_us == last_stamp_; });
    EXPECT_TRUE(found.has_value());
    return found.value_or(std::move(picture));
  }

  /// Shows the picture until what comes of it fits: settings of the engine thread's count a little later.
  bool becomes(const TestPicture& picture, const std::function<bool(const TestPicture&)>& fits) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < deadline) {
      if (fits(show(picture))) return true;
    }
    return false;
  }

  PictureSink shown;

 private:
  int64_t last_stamp_ = 0;
};

}  // namespace corvane::test
