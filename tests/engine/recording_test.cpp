// Recordings to files: what is in them, what is told of them, and what is left of those that are cut off.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include "support/engine_test.h"
#include "support/media_reader.h"
#include "support/push_test.h"

namespace corvane::test {
namespace {

constexpr int kTone = -20;  // dB of test:sine

struct Progress {
  int32_t duration;
  int64_t file_size;
};

/// "2 1 0 320x180" are type, state, error and size; "sound 2 0" is of a recording of sound alone.
class RecordingEvents final : public rtc::IRTCVideoEventHandler {
 public:
  void onRecordingStateUpdate(int32_t type, int32_t state, int32_t error, const rtc::RecordingInfo& info) override {
    const bool has_picture = type != rtc::kRecordingTypeAudioOnly;
    EXPECT_EQ(info.video_codec_type, has_picture ? rtc::kVideoCodecTypeH264 : rtc::kVideoCodecTypeUnknown);
    const std::lock_guard lock(mutex_);
    path_ = info.file_path;
    add(std::to_string(type) + " " + std::to_string(state) + " " + std::to_string(error) + " " +
        std::to_string(info.width) + "x" + std::to_string(info.height));
  }
  void onRecordingProgressUpdate(int32_t, const rtc::RecordingProgress& process,
                                 const rtc::RecordingInfo& info) override {
    const std::lock_guard lock(mutex_);
    EXPECT_EQ(path_, info.file_path);
    progress_.push_back({process.duration, process.file_size});
    add("progress " + std::to_string(progress_.size()));
  }
  void onAudioRecordingStateUpdate(int32_t state, int32_t error) override {
    const std::lock_guard lock(mutex_);
    add("sound " + std::to_string(state) + " " + std::to_string(error));
  }

  bool waitFor(const std::string& event) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPatience, [&] { return std::count(events_.begin(), events_.end(), event) > 0; });
  }
  /// The next recording's events are looked for from here on.
  void forget() {
    const std::lock_guard lock(mutex_);
    events_.clear();
    progress_.clear();
  }
  std::vector<std::string> all() {
    const std::lock_guard lock(mutex_);
    return events_;
  }
  std::vector<Progress> progress() {
    const std::lock_guard lock(mutex_);
    return progress_;
  }
  std::string path() {
    const std::lock_guard lock(mutex_);
    return path_;
  }

 private:
  void add(std::string event) {
    events_.push_back(std::move(event));
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> events_;
  std::vector<Progress> progress_;
  std::string path_;
};

class RecordingTest : public PushTest {
 protected:
  void SetUp() override {
    engine = rtc::createRTCVideo("test", &told, "");
    ASSERT_NE(engine, nullptr);
  }

  void open(const std::string& camera, const std::string& microphone = "test:sine") {
    capture(camera);
    listen(microphone);
    ASSERT_TRUE(sink.waitForFrames(1));
  }

  int32_t start(int32_t type, int32_t file = rtc::kRecordingFileTypeMP4) {
    return engine->startFileRecording(rtc::kStreamIndexMain, {folder.path().c_str(), file}, type);
  }

  int32_t startSound(const std::string& path, int32_t rate = 0, int32_t channels = 0,
                     int32_t source = rtc::kAudioRecordingSourceMicrophone) {
    return engine->startAudioRecording({path.c_str(), source, rate, channels, rtc::kAudioRecordingQualityMedium});
  }

  RecordingEvents told;
};

TEST_F(RecordingTest, WritesPictureAndSoundAndTellsOfIt) {
  open("test:white?width=320&height=180");
  ASSERT_EQ(start(rtc::kRecordingTypeVideoAndAudio), rtc::kSuccess);
  EXPECT_EQ(start(rtc::kRecordingTypeVideoAndAudio), rtc::kWrongState);
  ASSERT_TRUE(told.waitFor("progress 2"));
  ASSERT_EQ(engine->stopFileRecording(rtc::kStreamIndexMain), rtc::kSuccess);
  EXPECT_EQ(engine->stopFileRecording(rtc::kStreamIndexMain), rtc::kWrongState);
  ASSERT_TRUE(told.waitFor("2 2 0 320x180"));
  const std::vector<std::string> expected = {"2 1 0 320x180", "progress 1", "progress 2", "2 2 0 320x180"};
  EXPECT_EQ(told.all(), expected);
  const std::vector<Progress> progress = told.progress();
  EXPECT_GE(progress[0].duration, 1000);
  EXPECT_GT(progress[1].duration, progress[0].duration);
  EXPECT_GT(progress[1].file_size, progress[0].file_size);
  EXPECT_EQ(std::filesystem::path(told.path()).parent_path(), folder.path());

  const ReadMedia file = readMedia(told.path(), true, true);
  ASSERT_TRUE(file.complete);
  ASSERT_GT(file.pictures.size(), 30U);
  for (const ReadPicture& picture : file.pictures) {
    EXPECT_EQ(picture.width, 320);
    EXPECT_EQ(picture.height, 180);
    EXPECT_NEAR(picture.middle, 235, 3);
  }
  EXPECT_LT(file.pictures.front().time_ms, 100);
  EXPECT_NEAR(static_cast<double>(file.soundMs()), static_cast<double>(file.pictures.back().time_ms), 400);
  EXPECT_NEAR(file.level(300, 1500), kTone, 1);
}

struct Kind {
  int32_t type;
  int32_t file;
  const char* ending;
  bool picture;
  bool sound;
};

TEST_F(RecordingTest, WritesEachKindOneAfterAnother) {
  constexpr Kind kKinds[] = {
      {rtc::kRecordingTypeAudioOnly, rtc::kRecordingFileTypeAAC, ".aac", false, true},
      {rtc::kRecordingTypeAudioOnly, rtc::kRecordingFileTypeMP4, ".mp4", false, true},
      {rtc::kRecordingTypeVideoOnly, rtc::kRecordingFileTypeMP4, ".mp4", true, false},
  };
  open("test:white?width=320&height=180");
  for (const Kind& kind : kKinds) {
    told.forget();
    ASSERT_EQ(start(kind.type, kind.file), rtc::kSuccess);
    ASSERT_TRUE(told.waitFor("progress 1"));
    ASSERT_EQ(engine->stopFileRecording(rtc::kStreamIndexMain), rtc::kSuccess);
    const std::string type = std::to_string(kind.type);
    ASSERT_TRUE(told.waitFor(type + (kind.picture ? " 2 0 320x180" : " 2 0 0x0")));
    EXPECT_EQ(std::filesystem::path(told.path()).extension(), kind.ending);
    const ReadMedia file = readMedia(told.path(), kind.picture, kind.sound);
    EXPECT_TRUE(file.complete);
    EXPECT_EQ(file.pictures.size() > 10, kind.picture);
    if (kind.sound) {
      EXPECT_NEAR(file.level(300, 800), kTone, 1);
    }
  }
}

TEST_F(RecordingTest, GoesOnAsPicturesTurnStopAndComeAgain) {
  ASSERT_EQ(engine->setVideoSourceType(rtc::kStreamIndexMain, rtc::kVideoSourceTypeExternal), rtc::kSuccess);
  ASSERT_EQ(engine->setLocalVideoSink(rtc::kStreamIndexMain, &shown, rtc::kVideoPixelFormatI420), rtc::kSuccess);
  constexpr Quarters kBright = {{{200, 128, 128}, {200, 128, 128}, {200, 128, 128}, {200, 128, 128}}};
  ASSERT_EQ(start(rtc::kRecordingTypeVideoAndAudio), rtc::kSuccess);
  // It begins a little later, with whatever comes then.
  while (told.all().empty()) show(quartered(320, 180, kBright));
  ASSERT_TRUE(told.waitFor("2 1 0 320x180"));
  // Nothing comes for more than a second. There is no microphone at all.
  ASSERT_TRUE(told.waitFor("progress 1"));
  for (int picture = 0; picture < 5; ++picture) show(quartered(180, 320, kBright));
  TestPicture turned = quartered(180, 320, kBright);
  turned.rotation = 90;
  for (int picture = 0; picture < 5; ++picture) show(turned);
  ASSERT_EQ(engine->stopFileRecording(rtc::kStreamIndexMain), rtc::kSuccess);
  ASSERT_TRUE(told.waitFor("2 2 0 320x180"));

  const ReadMedia file = readMedia(told.path(), true, true);
  ASSERT_TRUE(file.complete);
  size_t upright = 0;
  for (size_t index = 0; index < file.pictures.size(); ++index) {
    const ReadPicture& picture = file.pictures[index];
    EXPECT_EQ(picture.width, 320);
    EXPECT_NEAR(picture.middle, 200, 8);
    EXPECT_TRUE(picture.corner < 40 || picture.corner > 190);
    upright += picture.corner < 40;
    EXPECT_LE(picture.time_ms - file.pictures[index - (index > 0)].time_ms, 1000);
  }
  EXPECT_GE(upright, 2U);
  EXPECT_GT(file.pictures.size(), 6U);
  EXPECT_GE(file.soundMs(), 1000);
}

TEST_F(RecordingTest, BeginsWithoutAPictureAndEndsWithTheEngine) {
  ASSERT_EQ(start(rtc::kRecordingTypeVideoAndAudio), rtc::kSuccess);
  ASSERT_TRUE(told.waitFor("2 1 0 1280x720"));
  ASSERT_EQ(startSound(folder.file("sound.wav")), rtc::kSuccess);
  ASSERT_TRUE(told.waitFor("sound 1 0"));
  rtc::destroyRTCVideo();
  EXPECT_TRUE(told.waitFor("2 2 0 1280x720"));
  EXPECT_TRUE(told.waitFor("sound 2 0"));
  const ReadMedia file = readMedia(told.path(), true, true);
  EXPECT_TRUE(file.complete);
  ASSERT_GE(file.pictures.size(), 1U);
  EXPECT_NEAR(file.pictures[0].middle, 16, 2);
}

TEST_F(RecordingTest, RefusesWhatCannotBe) {
  const std::string dir = folder.path();
  const auto with = [&](int32_t stream, const char* path, int32_t file, int32_t type) {
    return engine->startFileRecording(stream, {path, file}, type);
  };
  EXPECT_EQ(with(2, dir.c_str(), rtc::kRecordingFileTypeMP4, 0), rtc::kInvalidParameter);
  EXPECT_EQ(with(0, nullptr, rtc::kRecordingFileTypeMP4, 0), rtc::kInvalidParameter);
  EXPECT_EQ(with(0, "", rtc::kRecordingFileTypeMP4, 0), rtc::kInvalidParameter);
  EXPECT_EQ(with(0, dir.c_str(), 2, 0), rtc::kInvalidParameter);
  EXPECT_EQ(with(0, dir.c_str(), rtc::kRecordingFileTypeMP4, 3), rtc::kInvalidParameter);
  EXPECT_EQ(with(0, dir.c_str(), rtc::kRecordingFileTypeAAC, rtc::kRecordingTypeVideoOnly), rtc::kInvalidParameter);
  EXPECT_EQ(engine->stopFileRecording(0), rtc::kWrongState);
  EXPECT_EQ(engine->stopFileRecording(-1), rtc::kInvalidParameter);
  EXPECT_EQ(engine->stopAudioRecording(), rtc::kWrongState);

  const std::string wav = folder.file("sound.wav");
  EXPECT_EQ(startSound("sound.wav"), rtc::kInvalidParameter);
  EXPECT_EQ(startSound(folder.file("sound.mp3")), rtc::kInvalidParameter);
  EXPECT_EQ(startSound(wav, 47999), rtc::kInvalidParameter);
  EXPECT_EQ(startSound(wav, 48000, 3), rtc::kInvalidParameter);
  EXPECT_EQ(startSound(wav, 48000, 1, 3), rtc::kInvalidParameter);
  EXPECT_EQ(engine->startAudioRecording({nullptr, 0, 0, 0, 0}), rtc::kInvalidParameter);
  EXPECT_EQ(engine->startAudioRecording({wav.c_str(), 0, 0, 0, 4}), rtc::kInvalidParameter);
  EXPECT_TRUE(std::filesystem::is_empty(dir));

  // What only the disk knows comes as an event, and another recording may be tried.
  ASSERT_EQ(with(0, folder.file("none").c_str(), rtc::kRecordingFileTypeMP4, 0), rtc::kSuccess);
  EXPECT_TRUE(told.waitFor("0 0 -3 0x0"));
  ASSERT_EQ(with(0, "/sys/kernel", rtc::kRecordingFileTypeMP4, 0), rtc::kSuccess);
  EXPECT_TRUE(told.waitFor("0 0 -1 0x0"));
  ASSERT_EQ(startSound(folder.file("none/sound.wav")), rtc::kSuccess);
  EXPECT_TRUE(told.waitFor("sound 0 -3"));
}

/// While it lives, files of this process end at so many bytes, as on a disk that is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) : previous_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &limit_);
    const rlimit low = {bytes, limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &low);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &limit_);
    signal(SIGXFSZ, previous_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit limit_ = {};
  const sighandler_t previous_;
};

TEST_F(RecordingTest, KeepsWhatAFullDiskHasRoomFor) {
  open("test:snow?width=320&height=180");
  const FullDisk disk(300'000);
  ASSERT_EQ(startSound(folder.file("sound.wav")), rtc::kSuccess);
  ASSERT_EQ(start(rtc::kRecordingTypeVideoAndAudio), rtc::kSuccess);
  ASSERT_TRUE(told.waitFor("2 0 -3 320x180"));
  ASSERT_TRUE(told.waitFor("sound 0 -3"));
  EXPECT_EQ(engine->stopFileRecording(rtc::kStreamIndexMain), rtc::kWrongState);
  const ReadMedia file = readMedia(told.path(), true, true);
  EXPECT_TRUE(file.complete);
  EXPECT_GT(file.pictures.size(), 10U);
  const ReadMedia sound = readMedia(folder.file("sound.wav"), false, true);
  EXPECT_TRUE(sound.complete);
  EXPECT_GT(sound.soundMs(), 1400);
}

TEST_F(RecordingTest, EndsWithItsFolder) {
  ASSERT_EQ(start(rtc::kRecordingTypeAudioOnly), rtc::kSuccess);
  ASSERT_TRUE(told.waitFor("0 1 0 0x0"));
  std::filesystem::remove(told.path());
  EXPECT_TRUE(told.waitFor("0 0 -3 0x0"));
}

struct SoundKind {
  const char* name;
  int32_t rate;
  int32_t channels;
  int32_t found_rate;
  int32_t found_channels;
};

TEST_F(RecordingTest, WritesSoundAloneAsAsked) {
  constexpr SoundKind kKinds[] = {{"a.wav", 0, 0, 48000, 2},
                                  {"b.WAV", 16000, 1, 16000, 1},
                                  {"c.aac", 44100, 2, 44100, 2},
                                  {"d.aac", 8000, 1, 8000, 1}};
  listen("test:sine");
  for (const SoundKind& kind : kKinds) {
    told.forget();
    const std::string path = folder.file(kind.name);
    std::ofstream(path) << "what was there before";
    ASSERT_EQ(startSound(path, kind.rate, kind.channels, rtc::kAudioRecordingSourceMixed), rtc::kSuccess);
    EXPECT_EQ(startSound(path), rtc::kWrongState);
    ASSERT_TRUE(told.waitFor("sound 1 0"));
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    ASSERT_EQ(engine->stopAudioRecording(), rtc::kSuccess);
    ASSERT_TRUE(told.waitFor("sound 2 0"));
    const ReadMedia file = readMedia(path, false, true);
    EXPECT_TRUE(file.complete);
    EXPECT_EQ(file.sample_rate, kind.found_rate);
    EXPECT_EQ(file.channels, kind.found_channels);
    EXPECT_NEAR(file.level(300, 500), kTone, 1) << kind.name;
  }
}

constexpr const char* kFolderVariable = "CORVANE_TEST_RECORD_INTO";

// Runs in a process of its own, which is killed.
TEST_F(RecordingTest, DISABLED_RecordsUntilKilled) {
  const std::filesystem::path into = std::getenv(kFolderVariable);
  open("test:white?width=320&height=180");
  ASSERT_EQ(startSound(into / "sound.wav"), rtc::kSuccess);
  ASSERT_EQ(engine->startFileRecording(rtc::kStreamIndexMain, {into.c_str(), rtc::kRecordingFileTypeMP4},
                                       rtc::kRecordingTypeVideoAndAudio),
            rtc::kSuccess);
  ASSERT_TRUE(told.waitFor("progress 2"));
  raise(SIGKILL);
}

TEST(KilledRecordingTest, CanBePlayedUpToTheLastSecond) {
  const TemporaryFolder folder;
  const pid_t child = fork();
  if (child == 0) {
    setenv(kFolderVariable, folder.path().c_str(), 1);
    execl("/proc/self/exe", "tests", "--gtest_filter=*RecordsUntilKilled", "--gtest_also_run_disabled_tests", nullptr);
    _exit(1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  std::string recording;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
    if (entry.path().extension() == ".mp4") recording = entry.path();
  }
  const ReadMedia file = readMedia(recording, true, true);
  EXPECT_TRUE(file.complete);
  ASSERT_FALSE(file.pictures.empty());
  EXPECT_GE(file.pictures.back().time_ms, 900);
  EXPECT_GE(file.soundMs(), 900);
  EXPECT_NEAR(file.level(300, 800), kTone, 1);
  const ReadMedia sound = readMedia(folder.file("sound.wav"), false, true);
  EXPECT_TRUE(sound.complete);
  EXPECT_GE(sound.soundMs(), 900);
}

}  // namespace
}  // namespace corvane::test
