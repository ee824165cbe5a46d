// Single pictures of local streams, and of remote ones that do not come.
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "corvane_rtc/snapshot.h"
#include "support/engine_test.h"

namespace corvane::test {
namespace {

struct Answer {
  int32_t task_id;
  int32_t stream_index;
  int32_t error_code;
  int32_t format = 0;
  int32_t width = 0;
  int32_t height = 0;
  std::vector<uint8_t> middle;
};

class SnapshotRecorder final : public rtc::ISnapshotResultCallback {
 public:
  void onTakeLocalSnapshotResult(int32_t task_id, int32_t stream_index, rtc::IVideoFrame* image,
                                 int32_t error_code) override {
    add(task_id, stream_index, image, error_code);
  }

  void onTakeRemoteSnapshotResult(int32_t task_id, const rtc::StreamKey& key, rtc::IVideoFrame* image,
                                  int32_t error_code) override {
    EXPECT_STREQ(key.room_id, "room");
    EXPECT_STREQ(key.user_id, "user");
    add(task_id, key.stream_index, image, error_code);
  }

  std::vector<Answer> waitFor(size_t count) {
    std::unique_lock lock(mutex_);
    EXPECT_TRUE(changed_.wait_for(lock, kPatience, [&] { return answers_.size() >= count; }));
    return answers_;
  }

  std::chrono::milliseconds delay{0};

 private:
  void add(int32_t task_id, int32_t stream_index, rtc::IVideoFrame* image, int32_t error_code) {
    Answer answer = {task_id, stream_index, error_code, 0, 0, 0, {}};
    if (image != nullptr) {
      answer.format = image->pixelFormat();
      answer.width = image->width();
      answer.height = image->height();
      EXPECT_EQ(image->planeStride(0), image->width() * 4);
      const uint8_t* middle =
          image->planeData(0) + image->planeStride(0) * (image->height() / 2) + 4L * (image->width() / 2);
      answer.middle.assign(middle, middle + 4);
    }
    std::this_thread::sleep_for(delay);
    {
      const std::lock_guard lock(mutex_);
      answers_.push_back(std::move(answer));
    }
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Answer> answers_;
};

class SnapshotTest : public EngineTest {
 protected:
  SnapshotRecorder recorder;
};

TEST_F(SnapshotTest, AnswersEachTaskOnceWithTheCamerasPicture) {
  // Asked before the camera delivers, and faster than the application takes them.
  recorder.delay = std::chrono::milliseconds(5);
  std::set<int32_t> asked;
  for (int task = 0; task < 3; ++task) asked.insert(engine->takeLocalSnapshot(rtc::kStreamIndexMain, &recorder));
  capture("test:red?width=322&height=181&fps=60");
  ASSERT_TRUE(sink.waitForFrames(3));
  for (int task = 0; task < 20; ++task) asked.insert(engine->takeLocalSnapshot(rtc::kStreamIndexMain, &recorder));
  ASSERT_EQ(asked.size(), 23U);
  EXPECT_GT(*asked.begin(), 0);

  const std::vector<Answer> answers = recorder.waitFor(asked.size());
  for (const Answer& answer : answers) {
    EXPECT_EQ(asked.erase(answer.task_id), 1U);
    EXPECT_EQ(answer.stream_index, rtc::kStreamIndexMain);
    EXPECT_EQ(answer.error_code, rtc::kSuccess);
    ASSERT_EQ(answer.format, rtc::kVideoPixelFormatARGB);
    EXPECT_EQ(answer.width, 322);
    EXPECT_EQ(answer.height, 181);
    EXPECT_LT(answer.middle[0], 6);
    EXPECT_LT(answer.middle[1], 6);
    EXPECT_GT(answer.middle[2], 249);
    EXPECT_EQ(answer.middle[3], 255);
  }
}

TEST_F(SnapshotTest, AnswersWhereThereIsNoPicture) {
  EXPECT_EQ(engine->takeLocalSnapshot(rtc::kStreamIndexMain, nullptr), rtc::kInvalidParameter);
  EXPECT_EQ(engine->takeLocalSnapshot(2, &recorder), rtc::kInvalidParameter);
  EXPECT_EQ(engine->takeLocalSnapshot(-1, &recorder), rtc::kInvalidParameter);
  const int32_t late = engine->takeLocalSnapshot(rtc::kStreamIndexScreen, &recorder);
  std::vector<Answer> answers = recorder.waitFor(1);
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0].task_id, late);
  EXPECT_EQ(answers[0].stream_index, rtc::kStreamIndexScreen);
  EXPECT_EQ(answers[0].error_code, rtc::kWrongState);
  EXPECT_EQ(answers[0].format, 0);
  EXPECT_EQ(engine->takeRemoteSnapshot({"room", "", 0}, &recorder), rtc::kInvalidParameter);
  EXPECT_EQ(engine->takeRemoteSnapshot({"room", "user", 2}, &recorder), rtc::kInvalidParameter);
  EXPECT_EQ(engine->takeRemoteSnapshot({"room", "user", 0}, nullptr), rtc::kInvalidParameter);
  // The engine's end answers what is left, before it returns.
  const int32_t left = engine->takeLocalSnapshot(rtc::kStreamIndexMain, &recorder);
  const int32_t remote = engine->takeRemoteSnapshot({"room", "user", rtc::kStreamIndexScreen}, &recorder);
  rtc::destroyRTCVideo();
  answers = recorder.waitFor(3);
  ASSERT_EQ(answers.size(), 3U);
  EXPECT_EQ(answers[1].task_id, left);
  EXPECT_EQ(answers[1].error_code, rtc::kWrongState);
  EXPECT_EQ(answers[2].task_id, remote);
  EXPECT_EQ(answers[2].stream_index, rtc::kStreamIndexScreen);
  EXPECT_EQ(answers[2].error_code, rtc::kWrongState);
}

}  // namespace
}  // namespace corvane::test
