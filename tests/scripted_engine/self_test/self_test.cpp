// The scripted engine's own checks must catch what they are there for: each test commits one fault, or races where a
// module could.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "commands.h"
#include "corvane_rtc/corvane_rtc.h"

namespace {

namespace rtc = corvane::rtc;

std::string command(const std::string& request) {
  std::string answer;
  scriptedEngineCommand(
      request.data(), request.size(),
      [](void* context, const char* text, size_t size) { static_cast<std::string*>(context)->assign(text, size); },
      &answer);
  return answer;
}

/// The number behind a key of an answer.
long count(const std::string& answer, const std::string& key) {
  const size_t at = answer.find("\"" + key + "\":");
  return at == std::string::npos ? -1 : std::stol(answer.substr(at + key.size() + 3));
}

bool has(const std::string& answer, const std::string& part) {
  return answer.find(part) != std::string::npos;
}

/// Keeps what it is called with, against the rules.
class Handler final : public rtc::IRTCVideoEventHandler {
 public:
  void onWarning(int32_t warn) override {
    last_warning = warn;
    ++warnings;
    std::this_thread::sleep_for(pause);
    inside_after_destroy = inside_after_destroy || destroyed;
  }
  void onLogReport(const char* log_type, const char* log_content) override {
    ++reports;
    null_seen = log_content == nullptr;
    kept = log_type;
  }
  void onUserBinaryMessageReceivedOutsideRoom(const char*, const uint8_t* message, int32_t size) override {
    bytes.assign(message, message + size);
  }
  void onUserMessageSendResultOutsideRoom(int64_t msgid, int32_t) override { last_id = msgid; }
  void onRemoteAudioPropertiesReport(const rtc::RemoteAudioPropertiesInfo* infos, int32_t number, int32_t) override {
    for (int32_t i = 0; i < number; ++i) {
      users.emplace_back(infos[i].stream_key.user_id);
      spectrum_end = infos[i].audio_properties_info.spectrum[256];
    }
  }

  std::atomic<int> warnings{0};
  std::atomic<int> last_warning{0};
  std::atomic<bool> destroyed{false};
  std::atomic<bool> inside_after_destroy{false};
  std::chrono::milliseconds pause{0};
  int reports = 0;
  bool null_seen = false;
  const char* kept = nullptr;
  std::vector<uint8_t> bytes;
  int64_t last_id = 0;
  std::vector<std::string> users;
  float spectrum_end = 0;
};

class Sink final : public rtc::IVideoSink {
 public:
  bool onFrame(rtc::IVideoFrame* frame) override {
    for (int i = 0; i < releases; ++i) {
      frame->release();
    }
    kept = frame;
    return releases == 1;
  }

  int releases = 1;
  rtc::IVideoFrame* kept = nullptr;
};

class ScriptedEngineTest : public testing::Test {
 protected:
  void SetUp() override {
    command(R"({"do":"reset"})");
    video_ = rtc::createRTCVideo("app", &handler_, "");
  }
  void TearDown() override {
    rtc::destroyRTCVideo();
    command(R"({"do":"reset"})");
  }
  std::string frames() { return command(R"({"do":"frames"})"); }

  Handler handler_;
  rtc::IRTCVideo* video_ = nullptr;
};

TEST_F(ScriptedEngineTest, CountsEveryMisuseOfAGivenFrame) {
  Sink sink;
  video_->setLocalVideoSink(0, &sink, rtc::kVideoPixelFormatI420);
  const auto push = [] { return command(R"({"do":"fire","event":"IVideoSink.onFrame","args":{"frame":{}}})"); };

  EXPECT_TRUE(has(push(), "true"));
  EXPECT_EQ(count(frames(), "violations"), 0);
  EXPECT_EQ(count(frames(), "live"), 0);

  sink.releases = 0;
  push();
  EXPECT_EQ(count(frames(), "live"), 1) << "a frame that is kept is still out";
  sink.kept->release();
  EXPECT_EQ(count(frames(), "live"), 0);
  EXPECT_EQ(sink.kept->width(), 64) << "a released frame is kept readable for a while";
  EXPECT_EQ(count(frames(), "touchedAfterRelease"), 1);

  sink.releases = 2;
  push();
  EXPECT_EQ(count(frames(), "releasedTwice"), 1);
  EXPECT_EQ(count(frames(), "givenReleased"), 3);
}

TEST_F(ScriptedEngineTest, CountsTheReleaseOfALentFrame) {
  class Processor final : public rtc::IVideoProcessor {
   public:
    rtc::IVideoFrame* processVideoFrame(rtc::IVideoFrame* frame) override {
      frame->planeData(0)[0] = 99;
      frame->release();
      return frame;
    }
  } processor;
  video_->registerVideoProcessor(&processor, {rtc::kVideoPixelFormatI420});
  const auto answer =
      command(R"({"do":"fire","event":"processVideoFrame","args":{"frame":{"width":2,"height":2}},"detailed":true})");
  EXPECT_TRUE(has(answer, R"("result":"same")")) << answer;
  EXPECT_TRUE(has(answer, R"({"$bytes":"Y)")) << "the changed byte, 99, is reported: " << answer;
  EXPECT_EQ(count(frames(), "lentReleased"), 1);
}

TEST_F(ScriptedEngineTest, OverwritesArgumentsAfterTheCallback) {
  command(R"({"do":"fire","event":"onLogReport","args":{"log_type":"abc","log_content":null}})");
  EXPECT_EQ(handler_.reports, 1);
  EXPECT_TRUE(handler_.null_seen);
#if !defined(__SANITIZE_ADDRESS__)
  EXPECT_EQ(static_cast<unsigned char>(handler_.kept[0]), 0xDD);
#endif
}

TEST_F(ScriptedEngineTest, CarriesBytesWideNumbersAndLists) {
  command(R"({"do":"fire","event":"onUserBinaryMessageReceivedOutsideRoom","args":{"message":{"$bytes":"YQBiAA=="}}})");
  EXPECT_EQ(handler_.bytes, (std::vector<uint8_t>{'a', 0, 'b', 0}));
  command(R"({"do":"fire","event":"onUserMessageSendResultOutsideRoom","args":{"msgid":{"$int":"9007199254740993"}}})");
  EXPECT_EQ(handler_.last_id, 9007199254740993);

  std::string spectrum = "0";
  for (int i = 1; i <= 256; ++i) {
    spectrum += "," + std::to_string(i);
  }
  command(R"({"do":"fire","event":"onRemoteAudioPropertiesReport","args":{"audio_properties_infos":[
      {"stream_key":{"user_id":"a"}},
      {"stream_key":{"user_id":"b"},"audio_properties_info":{"spectrum":[)" +
          spectrum + "]}}]}}");
  EXPECT_EQ(handler_.users, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(handler_.spectrum_end, 256);
}

TEST_F(ScriptedEngineTest, RefusesWhatTheHeadersDoNotHave) {
  for (const char* request :
       {R"({"do":"fire","event":"onNothing"})", R"({"do":"fire","event":"onWarning","args":{"wran":1}})",
        R"({"do":"fire","event":"onWarning","args":{"warn":"1"}})",
        R"({"do":"fire","event":"onWarning","args":{"warn":3000000000}})",
        R"({"do":"fire","event":"onWarning","args":[1,2]})",
        R"({"do":"fire","event":"onSysStats","args":{"stats":{"cores":1}}})",
        R"({"do":"fire","event":"IVideoSink.onFrame"})", R"({"do":"fly"})", "{"}) {
    EXPECT_TRUE(has(command(request), "error")) << request;
  }
  EXPECT_EQ(handler_.warnings, 0);
}

TEST_F(ScriptedEngineTest, DestroyingWaitsForCallbacksAndMakesNoMore) {
  handler_.pause = std::chrono::milliseconds(20);
  command(R"({"do":"fire","event":"onWarning","args":{"warn":1},"threads":4,"repeat":1000,"wait":false})");
  while (handler_.warnings < 4) {
    std::this_thread::yield();
  }
  rtc::destroyRTCVideo();
  handler_.destroyed = true;
  const int warnings = handler_.warnings;
  EXPECT_FALSE(has(command(R"({"do":"settle"})"), "error"));
  EXPECT_EQ(handler_.warnings, warnings);
  EXPECT_LT(warnings, 4000);
  EXPECT_FALSE(handler_.inside_after_destroy);
}

TEST_F(ScriptedEngineTest, CallsFromSeveralThreadsAreAllCountedAndNumbered) {
  const auto answer =
      command(R"({"do":"fire","event":"onWarning","args":{"warn":{"$index":1}},"threads":8,"repeat":500})");
  EXPECT_EQ(count(answer, "delivered"), 4000);
  EXPECT_EQ(handler_.warnings, 4000);
  EXPECT_EQ(handler_.last_warning, 500);
}

TEST_F(ScriptedEngineTest, SeesRegionsThatDiedTooEarlyAndParametersUsedTooLate) {
  rtc::ITranscoderParam* param = rtc::createTranscoderParam();
  rtc::TranscoderLayoutRegion region{};
  region.region_id = "user";
  param->setLayoutRegions(&region, 1);
  region.region_id = "gone";
  video_->startLiveTranscoding("task", param, nullptr);
  EXPECT_TRUE(has(command(R"({"do":"calls","name":"startLiveTranscoding"})"), "regions_changed"));
  param->release();
  param->release();
  const auto objects = command(R"({"do":"objects"})");
  EXPECT_EQ(count(objects, "releasedTwice"), 1);
  EXPECT_EQ(count(objects, "live"), 0);
}

TEST_F(ScriptedEngineTest, CountsCallsOnWhatHasEnded) {
  auto* devices = video_->getAudioDeviceManager();
  rtc::IRTCRoom* room = video_->createRTCRoom("r");
  EXPECT_EQ(video_->createRTCRoom("r"), nullptr) << "the id is taken";
  rtc::destroyRTCVideo();
  EXPECT_EQ(room->leaveRoom(), rtc::kWrongState) << "a room outlives its engine as a shell";
  EXPECT_EQ(count(command(R"({"do":"objects"})"), "endedCalls"), 0);
  devices->stopEchoTest();
  room->destroy();
  room->leaveRoom();
  EXPECT_EQ(count(command(R"({"do":"objects"})"), "endedCalls"), 2);
}

TEST_F(ScriptedEngineTest, AnswersWithholdsAndFillsOutParameters) {
  command(R"({"do":"withhold","name":"getKTVManager"})");
  EXPECT_EQ(video_->getKTVManager(), nullptr);
  command(R"({"do":"withhold","name":"IRTCVideo.getKTVManager","on":true})");
  command(R"({"do":"withhold","name":"getKTVManager","on":false})");
  EXPECT_EQ(video_->getKTVManager(), nullptr);

  auto* devices = video_->getAudioDeviceManager();
  uint32_t volume = 7;
  EXPECT_EQ(devices->getAudioPlaybackDeviceVolume(volume), 0);
  EXPECT_EQ(volume, 7U);
  command(R"({"do":"answer","name":"getAudioPlaybackDeviceVolume","value":{"result":-4,"volume":200}})");
  EXPECT_EQ(devices->getAudioPlaybackDeviceVolume(volume), -4);
  EXPECT_EQ(volume, 200U);

  std::string name;
  for (int i = 0; i < 256; ++i) {
    name += "é";
  }
  command(R"({"do":"answer","name":"enumerateAudioCaptureDevices","value":[{"device_name":")" + name +
          R"(","device_id":"id"}]})");
  auto* collection = devices->enumerateAudioCaptureDevices();
  ASSERT_EQ(collection->getCount(), 1);
  char device_name[rtc::kDeviceTextSize];
  char device_id[rtc::kDeviceTextSize];
  EXPECT_EQ(collection->getDevice(1, device_name, device_id), rtc::kInvalidParameter);
  EXPECT_EQ(collection->getDevice(0, device_name, device_id), 0);
  EXPECT_EQ(std::string(device_name), name.substr(0, 510)) << "cut between characters";
  collection->release();
}

TEST_F(ScriptedEngineTest, StreamsUseTheirFramesAgainAndLoseNone) {
  Sink sink;
  video_->setLocalVideoSink(0, &sink, rtc::kVideoPixelFormatI420);
  command(R"({"do":"startStreams","streams":[{"sink":"local:0"}],"fps":0,"count":500,"buffers":2,"maxBuffers":2})");
  while (has(command(R"({"do":"streams"})"), R"("finished":false)")) {
    std::this_thread::yield();
  }
  const auto report = command(R"({"do":"stopStreams"})");
  EXPECT_EQ(count(report, "pushed"), 500);
  EXPECT_EQ(count(report, "withoutFrame"), 0);
  EXPECT_EQ(count(frames(), "live"), 0);
  EXPECT_EQ(count(frames(), "violations"), 0);
}

}  // namespace
