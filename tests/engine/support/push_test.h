// What tests of pushed pictures share: the application as the source, and a sink that keeps what comes out.
#pragma once

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
  void TearDown() override { rtc::destroyRTCVideo(); }

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

  PictureSink shown;

 private:
  int64_t last_stamp_ = 0;
};

}  // namespace corvane::test
