// The C entry points, the engine's log, and operations that the engine lacks.
#include <cstring>
#include <fstream>
#include <regex>
#include <thread>

#include "corvane_rtc/rtc_room_events.h"
#include "corvane_rtc/stream_mixing.h"
#include "support/engine_test.h"

namespace corvane::test {
namespace {

using EntryPointsTest = EngineTest;

// What all log files in a folder hold.
std::string logText(const std::filesystem::path& folder) {
  std::string text;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream file(entry.path());
    text.append(std::istreambuf_iterator<char>(file), {});
  }
  return text;
}

size_t occurrences(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(EntryPointsTest, DescribesItselfAndItsErrors) {
  EXPECT_TRUE(std::regex_match(rtc::getSDKVersion(), std::regex(R"(\d+\.\d+\.\d+(-\w+)?)")));
  for (const int32_t code : {rtc::kSuccess, rtc::kFailure, rtc::kInvalidParameter, rtc::kWrongState, rtc::kNotFound,
                             rtc::kDeviceFailure, rtc::kMediaFailure, rtc::kNotSupported}) {
    EXPECT_GT(strlen(rtc::getErrorDescription(code)), 10U) << code;
  }
  EXPECT_STREQ(rtc::getErrorDescription(12345), "");
}

TEST_F(EntryPointsTest, EndsAllEnginesAtOnce) {
  rtc::IRTCVideo* first = engine;
  capture("test:");
  EventRecorder second_events;
  RecordingSink second_sink;
  const EndOfEngine end;
  rtc::IRTCVideo* second = rtc::createRTCVideo("second", &second_events, "");
  ASSERT_NE(second, nullptr);
  EXPECT_NE(second, first);
  second->setLocalVideoSink(rtc::kStreamIndexMain, &second_sink, rtc::kVideoPixelFormatI420);
  second->startVideoCapture();
  ASSERT_TRUE(sink.waitForFrames(3));
  ASSERT_TRUE(second_sink.waitForFrames(3));
  rtc::destroyRTCVideo();
  const size_t frames = sink.frames().size() + second_sink.frames().size();
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(sink.frames().size() + second_sink.frames().size(), frames);
  rtc::destroyRTCVideo();  // with none left
  EXPECT_EQ(rtc::createRTCVideo(nullptr, nullptr, ""), nullptr);
}

TEST_F(EntryPointsTest, WorksWithoutAHandlerAndWithoutParameters) {
  rtc::IRTCVideo* silent = rtc::createRTCVideo("silent", nullptr, nullptr);
  ASSERT_NE(silent, nullptr);
  silent->getVideoDeviceManager()->setVideoCaptureDevice("file:/none");
  EXPECT_EQ(silent->startVideoCapture(), rtc::kSuccess);
  EXPECT_EQ(silent->setLocalVideoSink(rtc::kStreamIndexMain, &sink, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  silent->getVideoDeviceManager()->setVideoCaptureDevice("test:");
  EXPECT_TRUE(sink.waitForFrames(2));
}

TEST_F(EntryPointsTest, LogsWhatHappensToTheEnginesMadeAfterwards) {
  ASSERT_EQ(rtc::setLogConfig({folder.path().c_str(), rtc::kLogLevelInfo, 1, "mine"}), rtc::kSuccess);
  EXPECT_EQ(logText(folder.path()), "");
  rtc::destroyRTCVideo();
  create("{broken");
  engine->getVideoDeviceManager()->setVideoCaptureDevice("file:/nowhere/clip.mp4");
  engine->startVideoCapture();
  ASSERT_TRUE(events.waitFor("error -4"));
  EXPECT_EQ(engine->setBusinessId("a"), rtc::kNotSupported);
  EXPECT_EQ(engine->setBusinessId("b"), rtc::kNotSupported);
  EXPECT_EQ(engine->login("token", "me"), rtc::kNotSupported);
  rtc::destroyRTCVideo();

  const std::string log = logText(folder.path());
  EXPECT_EQ(occurrences(log, " W parameters: "), 1U) << log;
  EXPECT_EQ(occurrences(log, " E camera file:/nowhere/clip.mp4 failed: /nowhere/clip.mp4: No such file"), 1U) << log;
  EXPECT_EQ(occurrences(log, " W setBusinessId: "), 1U) << log;
  EXPECT_EQ(occurrences(log, " W login: "), 1U) << log;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    EXPECT_TRUE(std::regex_match(entry.path().filename().string(), std::regex(R"(mine_corvane_rtc_.*\.log)")));
  }
  // Engines of later tests log no more.
  ASSERT_EQ(rtc::setLogConfig({folder.path().c_str(), rtc::kLogLevelNone, 1, ""}), rtc::kSuccess);
}

TEST_F(EntryPointsTest, RefusesLogsThatCannotBe) {
  const char* here = folder.path().c_str();
  EXPECT_EQ(rtc::setLogConfig({"", 0, 1, ""}), rtc::kInvalidParameter);
  EXPECT_EQ(rtc::setLogConfig({nullptr, 0, 1, nullptr}), rtc::kInvalidParameter);
  EXPECT_EQ(rtc::setLogConfig({here, 4, 1, ""}), rtc::kInvalidParameter);
  EXPECT_EQ(rtc::setLogConfig({here, -2, 1, ""}), rtc::kInvalidParameter);
  EXPECT_EQ(rtc::setLogConfig({here, 0, 0, ""}), rtc::kInvalidParameter);
  EXPECT_EQ(rtc::setLogConfig({here, 0, 101, ""}), rtc::kInvalidParameter);
  EXPECT_EQ(rtc::setLogConfig({here, 0, 1, "a/b"}), rtc::kInvalidParameter);
  EXPECT_EQ(rtc::setLogConfig({folder.file("none").c_str(), 0, 1, ""}), rtc::kNotFound);
}

TEST_F(EntryPointsTest, AnswersForWhatItLacks) {
  EXPECT_EQ(engine->getKTVManager(), nullptr);
  EXPECT_EQ(engine->getScreenCaptureSourceList(), nullptr);
  EXPECT_EQ(engine->getNetworkTimeInfo(), 0);
  EXPECT_EQ(engine->sendServerMessage("m"), rtc::kNotSupported);

  const uint8_t pixels[4] = {1, 2, 3, 4};
  rtc::VideoFrameBuilder builder = {};
  builder.pixel_format = rtc::kVideoPixelFormatRGBA;
  builder.data[0] = pixels;
  builder.linesize[0] = 4;
  builder.width = builder.height = 1;
  // A frame that was not released would be told by the leak checker.
  EXPECT_EQ(engine->pushExternalVideoFrame(rtc::buildVideoFrame(builder)), rtc::kWrongState);
  EXPECT_EQ(engine->pushExternalVideoFrame(nullptr), rtc::kInvalidParameter);

  rtc::ITranscoderParam* param = rtc::createTranscoderParam();
  ASSERT_NE(param, nullptr);
  EXPECT_EQ(engine->startLiveTranscoding("task", param, nullptr), rtc::kNotSupported);
  param->release();
}

TEST_F(EntryPointsTest, RoomsOutliveTheirEngine) {
  rtc::destroyRTCVideo();
  create(R"({"service": "ws://127.0.0.1:1"})");
  EXPECT_EQ(engine->createRTCRoom(nullptr), nullptr);
  EXPECT_EQ(engine->createRTCRoom(""), nullptr);
  EXPECT_EQ(engine->createRTCRoom("not \xFF UTF-8"), nullptr);
  rtc::IRTCRoom* room = engine->createRTCRoom("room");
  ASSERT_NE(room, nullptr);
  EXPECT_EQ(engine->createRTCRoom("room"), nullptr) << "the id is taken";
  rtc::IRTCRoom* ended = engine->createRTCRoom("ended");
  ASSERT_NE(ended, nullptr);
  ended->destroy();
  rtc::IRTCRoom* again = engine->createRTCRoom("ended");
  ASSERT_NE(again, nullptr) << "the id is free again";

  struct Handler final : rtc::IRTCRoomEventHandler {
  } handler;
  EXPECT_EQ(room->setRTCRoomEventHandler(&handler), rtc::kSuccess);
  EXPECT_EQ(room->joinRoom("", {"user", ""}, {}), rtc::kSuccess);
  rtc::destroyRTCVideo();
  EXPECT_EQ(room->joinRoom("", {"user", ""}, {}), rtc::kWrongState);
  EXPECT_EQ(room->publishStream(rtc::kMediaStreamBoth), rtc::kWrongState);
  EXPECT_EQ(room->sendRoomMessage("m"), rtc::kWrongState);
  EXPECT_EQ(room->setRTCRoomEventHandler(nullptr), rtc::kWrongState);
  EXPECT_EQ(room->publishScreen(rtc::kMediaStreamBoth), rtc::kWrongState);
  ASSERT_NE(room->getRangeAudio(), nullptr);
  EXPECT_EQ(room->getRangeAudio()->enableRangeAudio(true), rtc::kWrongState);
  room->destroy();
  again->destroy();
}

TEST_F(EntryPointsTest, BuildsVideoFramesOfItsOwn) {
  // 3x3, so that the colour planes are 2x2, in rows of 5 and 3 bytes.
  std::vector<uint8_t> y = {1, 2, 3, 0, 0, 4, 5, 6, 0, 0, 7, 8, 9};
  std::vector<uint8_t> u = {10, 11, 0, 12, 13};
  std::vector<uint8_t> v = {20, 21, 0, 22, 23};
  rtc::VideoFrameBuilder builder = {};
  builder.pixel_format = rtc::kVideoPixelFormatI420;
  builder.data[0] = y.data();
  builder.data[1] = u.data();
  builder.data[2] = v.data();
  builder.linesize[0] = 5;
  builder.linesize[1] = builder.linesize[2] = 3;
  builder.width = builder.height = 3;
  builder.rotation = 270;
  builder.timestamp_us = 1234567890123;
  rtc::IVideoFrame* frame = rtc::buildVideoFrame(builder);
  ASSERT_NE(frame, nullptr);
  std::fill(y.begin(), y.end(), 99);
  EXPECT_EQ(frame->frameType(), rtc::kVideoFrameRawMemory);
  EXPECT_EQ(frame->pixelFormat(), rtc::kVideoPixelFormatI420);
  EXPECT_EQ(frame->rotation(), 270);
  EXPECT_EQ(frame->timestampUs(), 1234567890123);
  EXPECT_EQ(std::vector<uint8_t>(frame->planeData(0), frame->planeData(0) + 9),
            (std::vector<uint8_t>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(frame->planeStride(2), 2);
  EXPECT_EQ(std::vector<uint8_t>(frame->planeData(2), frame->planeData(2) + 4), (std::vector<uint8_t>{20, 21, 22, 23}));
  EXPECT_EQ(frame->planeData(3), nullptr);
  frame->release();

  const auto refused = [&](auto change) {
    rtc::VideoFrameBuilder bad = builder;
    change(bad);
    return rtc::buildVideoFrame(bad) == nullptr;
  };
  EXPECT_TRUE(refused([](auto& b) { b.pixel_format = 2; }));
  EXPECT_TRUE(refused([](auto& b) { b.width = 0; }));
  EXPECT_TRUE(refused([](auto& b) { b.height = 1 << 30; }));
  EXPECT_TRUE(refused([](auto& b) { b.rotation = 45; }));
  EXPECT_TRUE(refused([](auto& b) { b.data[1] = nullptr; }));
  EXPECT_TRUE(refused([](auto& b) { b.linesize[0] = 2; }));
}

TEST_F(EntryPointsTest, BuildsAudioFramesWithAndWithoutACopy) {
  std::vector<uint8_t> samples = {1, 2, 3, 4};
  rtc::AudioFrameBuilder builder = {48000, 2, 77, samples.data(), 4, true};
  rtc::IAudioFrame* copy = rtc::buildAudioFrame(builder);
  builder.deep_copy = false;
  rtc::IAudioFrame* view = rtc::buildAudioFrame(builder);
  ASSERT_NE(copy, nullptr);
  ASSERT_NE(view, nullptr);
  samples[0] = 9;
  EXPECT_EQ(copy->data()[0], 1);
  EXPECT_EQ(view->data(), samples.data());
  EXPECT_EQ(copy->dataSize(), 4);
  EXPECT_EQ(copy->sampleRate(), 48000);
  EXPECT_EQ(copy->channels(), 2);
  EXPECT_EQ(copy->timestampUs(), 77);
  EXPECT_FALSE(copy->isMuted());
  copy->release();
  view->release();

  for (const rtc::AudioFrameBuilder& bad : {rtc::AudioFrameBuilder{0, 1, 0, samples.data(), 4, true},
                                            {48000, 3, 0, samples.data(), 4, true},
                                            {48000, 2, 0, nullptr, 4, true},
                                            {48000, 2, 0, samples.data(), 3, true},
                                            {48000, 2, 0, samples.data(), 1LL << 40, true}}) {
    EXPECT_EQ(rtc::buildAudioFrame(bad), nullptr);
  }
}

}  // namespace
}  // namespace corvane::test
