// Clips as cameras: whole, in order, over and over, at their own pace.
#include <algorithm>

#include "support/engine_test.h"

namespace corvane::test {
namespace {

struct Container {
  const char* name;
  const char* encoder;
};

class ClipTest : public EngineTest, public testing::WithParamInterface<Container> {};

// How many pictures there are in each pass of which the sink has seen start and end, by their brightness.
std::vector<size_t> wholePasses(const std::vector<SeenFrame>& frames) {
  std::vector<size_t> passes;
  size_t pictures = 0;
  for (size_t index = 0; index < frames.size(); ++index) {
    if (index > 0 && frames[index].middle[0] < frames[index - 1].middle[0]) {
      passes.push_back(pictures);
      pictures = 0;
    }
    ++pictures;
  }
  return passes;
}

TEST_P(ClipTest, PlaysEveryPictureOfEveryPassInOrderAndNeverFasterThanItWasMade) {
  const ClipRecipe recipe = {.encoder = GetParam().encoder};
  const std::string path = folder.file("clip");
  ASSERT_TRUE(makeClip(recipe, path));

  const auto started = std::chrono::steady_clock::now();
  capture("file:" + path);
  const auto enough = [](const std::vector<SeenFrame>& frames) { return wholePasses(frames).size() >= 3; };
  ASSERT_TRUE(sink.waitFor(enough));
  const auto took = std::chrono::steady_clock::now() - started;
  const std::vector<SeenFrame> frames = sink.frames();

  for (const size_t pictures : wholePasses(frames)) EXPECT_EQ(pictures, static_cast<size_t>(recipe.pictures));
  for (size_t index = 1; index < frames.size(); ++index) {
    // A millisecond for containers that round times to it.
    EXPECT_GE(frames[index].timestamp_us - frames[index - 1].timestamp_us, 1'000'000 / recipe.fps - 1001)
        << "at frame " << index;
    EXPECT_NE(frames[index].middle[0], frames[index - 1].middle[0]) << "frame " << index << " came twice";
  }
  // A clip that has fallen behind may hurry for a quarter of a second at most.
  const auto shortest = std::chrono::milliseconds(static_cast<int64_t>(frames.size() - 1) * 1000 / recipe.fps - 300);
  EXPECT_GE(took, shortest);
}

constexpr Container kContainers[] = {
    {"avi", "jpegenc ! avimux"},
    {"matroska", "jpegenc ! matroskamux"},
    {"mov", "jpegenc ! qtmux"},
    {"ogg", "theoraenc ! oggmux"},
    // Cannot be wound back: it has to be opened again for each pass.
    {"multipart", "jpegenc ! multipartmux"},
};
INSTANTIATE_TEST_SUITE_P(Containers, ClipTest, testing::ValuesIn(kContainers),
                         [](const auto& test) { return test.param.name; });

class ClipFormatTest : public EngineTest {};

TEST_F(ClipFormatTest, TurnsFullColourResolutionIntoI420) {
  const std::string path = folder.file("444.ogg");
  ASSERT_TRUE(makeClip({.encoder = "theoraenc ! oggmux", .format = "Y444"}, path));
  capture("file:" + path);
  ASSERT_TRUE(sink.waitForFrames(20));
  for (const SeenFrame& frame : sink.frames()) {
    EXPECT_EQ(frame.format, rtc::kVideoPixelFormatI420);
    EXPECT_EQ(frame.width, 64);
    EXPECT_EQ(frame.stride, 64);
  }
}

TEST_F(ClipFormatTest, PlaysTheVideoOfAClipWithSound) {
  const std::string path = folder.file("sound.mkv");
  ASSERT_TRUE(runPipeline("videotestsrc num-buffers=10 ! jpegenc ! matroskamux name=mux ! filesink location=" + path +
                          " audiotestsrc num-buffers=20 ! vorbisenc ! mux."));
  capture("file:" + path);
  ASSERT_TRUE(events.waitFor("first 0 320x240"));
  EXPECT_TRUE(sink.waitForFrames(25));
}

TEST_F(ClipFormatTest, MakesPixelsSquare) {
  const std::string path = folder.file("wide.mkv");
  ASSERT_TRUE(
      runPipeline("videotestsrc num-buffers=10 ! video/x-raw,width=160,height=120,pixel-aspect-ratio=2/1 ! "
                  "jpegenc ! matroskamux ! filesink location=" +
                  path));
  capture("file:" + path);
  EXPECT_TRUE(events.waitFor("first 0 320x120"));
}

struct BadClip {
  const char* name;
  std::function<bool(const std::string& path)> make;
  const char* device_event;  // after the id
  const char* stream_event;
  const char* error_event;
};

bool writeText(const std::string& path) {
  FILE* file = fopen(path.c_str(), "we");
  const bool written = file != nullptr && fputs("This is not a clip. ", file) >= 0;
  return file != nullptr && fclose(file) == 0 && written;
}

bool writeCutClip(const std::string& path) {
  // Without the index, which is at its end.
  if (!makeClip({.encoder = "jpegenc ! qtmux"}, path)) return false;
  std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
  return true;
}

class BadClipTest : public EngineTest, public testing::WithParamInterface<BadClip> {};

TEST_P(BadClipTest, IsReportedAndAnotherCameraWorks) {
  const std::string path = folder.file("clip");
  ASSERT_TRUE(GetParam().make(path));
  capture("file:" + path);
  EXPECT_TRUE(events.waitFor("device file:" + path + GetParam().device_event));
  EXPECT_TRUE(events.waitFor(GetParam().stream_event));
  EXPECT_TRUE(events.waitFor(GetParam().error_event));
  EXPECT_TRUE(sink.frames().empty());

  // Starting again tries the same camera again.
  ASSERT_EQ(engine->startVideoCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor(GetParam().error_event));

  // Capture was never stopped, so that a camera that works is started by being chosen.
  ASSERT_EQ(engine->getVideoDeviceManager()->setVideoCaptureDevice("test:"), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("stream 0 1 0"));
  EXPECT_TRUE(events.waitFor("first 0 640x360"));
  EXPECT_TRUE(sink.waitForFrames(3));
}

const BadClip kBadClips[] = {
    {"missing", [](const std::string&) { return true; }, " 3 4", "stream 0 3 4", "error -4"},
    {"folder", [](const std::string& path) { return std::filesystem::create_directory(path); }, " 3 3", "stream 0 3 5",
     "error -5"},
    {"text", writeText, " 3 7", "stream 0 3 5", "error -6"},
    {"empty", [](const std::string& path) { return runPipeline("fakesrc num-buffers=0 ! filesink location=" + path); },
     " 3 7", "stream 0 3 5", "error -6"},
    {"cut", writeCutClip, " 3 7", "stream 0 3 5", "error -6"},
    {"sound",
     [](const std::string& path) {
       return runPipeline("audiotestsrc num-buffers=20 ! vorbisenc ! oggmux ! filesink location=" + path);
     },
     " 3 7", "stream 0 3 5", "error -6"},
};
INSTANTIATE_TEST_SUITE_P(Faults, BadClipTest, testing::ValuesIn(kBadClips),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace corvane::test
