// Clips as microphones: whole, over and over without a gap, and those that have no sound.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "support/engine_test.h"
#include "support/sound_recorder.h"

namespace corvane::test {
namespace {

// A quarter of a second of a tone of 1 kHz, 6 dB below full scale, in the left of two channels and the right alike.
std::string tone(const std::string& encoder, const std::string& path) {
  return "audiotestsrc num-buffers=25 samplesperbuffer=441 freq=1000 volume=0.5 ! "
         "audio/x-raw,format=S16LE,rate=44100,channels=2 ! " +
         encoder + " ! filesink location=" + path;
}

struct Encoding {
  const char* name;
  const char* encoder;
};

class SoundClipTest : public EngineTest, public testing::WithParamInterface<Encoding> {};

TEST_P(SoundClipTest, PlaysOverAndOverWithoutAGapAtItsOwnPitchAndLevel) {
  const std::string path = folder.file("clip");
  ASSERT_TRUE(runPipeline(tone(GetParam().encoder, path)));
  SoundRecorder recorder;
  const EndOfEngine end;
  engine->registerAudioFrameObserver(&recorder);
  engine->enableAudioFrameCallback(rtc::kAudioFrameMethodRecord, {});
  listen("file:" + path);
  report();
  ASSERT_TRUE(events.waitForReport([](const auto& infos) {
    if (infos.size() != 1) return false;
    const rtc::AudioPropertiesInfo& info = infos[0].audio_properties_info;
    const float* loudest = std::max_element(info.spectrum, info.spectrum + rtc::kAudioSpectrumSize);
    // 93.75 Hz a value.
    return std::abs(info.nonlinear_volume + 6) <= 1 &&
           std::abs(static_cast<double>(loudest - info.spectrum) - 1000 / 93.75) < 1.0 &&
           info.vad == rtc::kAudioVoiceActivityNone;
  }));

  // Four passes and more.
  ASSERT_TRUE(recorder.waitForFrames(110));
  const std::vector<SeenSound> frames = recorder.frames();
  size_t followed = 0;
  for (size_t index = 1; index < frames.size(); ++index) {
    EXPECT_EQ(frames[index].samples.size(), 480U);
    // What is due late on a busy machine may come late, but is told so.
    EXPECT_GE(frames[index].timestamp_us - frames[index - 1].timestamp_us, 10'000);
    followed += frames[index].timestamp_us - frames[index - 1].timestamp_us == 10'000 ? 1 : 0;
    // Encoders fade in and out at a clip's ends, for less than a frame.
    EXPECT_TRUE(index == 1 || std::max(frames[index].loudest(), frames[index - 1].loudest()) > 12'000) << index;
  }
  EXPECT_GE(followed, frames.size() / 2);
}

constexpr Encoding kEncodings[] = {
    {"wav", "wavenc"},
    {"ogg", "audioconvert ! vorbisenc ! oggmux"},
    {"flac", "flacenc"},
    {"avi", "avimux"},
};
INSTANTIATE_TEST_SUITE_P(Containers, SoundClipTest, testing::ValuesIn(kEncodings),
                         [](const auto& test) { return test.param.name; });

TEST_F(EngineTest, PlaysTheSoundOfAClipWithPictures) {
  const std::string path = folder.file("both.mkv");
  ASSERT_TRUE(runPipeline("videotestsrc num-buffers=10 ! jpegenc ! matroskamux name=mux ! filesink location=" + path +
                          " audiotestsrc num-buffers=40 volume=0.1 ! vorbisenc ! mux."));
  listen("file:" + path);
  report();
  EXPECT_TRUE(events.waitForLevel(-20));
  // As a camera at the same time.
  capture("file:" + path);
  EXPECT_TRUE(sink.waitForFrames(15));
  EXPECT_TRUE(events.waitForLevel(-20));
}

bool writeNoSound(const std::string& path) {
  FILE* file = fopen(path.c_str(), "we");
  const bool written = file != nullptr && fputs("This is no sound at all. ", file) >= 0;
  return file != nullptr && fclose(file) == 0 && written;
}

struct BadSound {
  const char* name;
  std::function<bool(const std::string& path)> make;
  const char* device_event;  // after the id
  const char* stream_event;
  const char* error_event;
};

class BadSoundTest : public EngineTest, public testing::WithParamInterface<BadSound> {};

TEST_P(BadSoundTest, IsReportedAndAnotherMicrophoneWorks) {
  const std::string path = folder.file("clip");
  ASSERT_TRUE(GetParam().make(path));
  listen("file:" + path);
  EXPECT_TRUE(events.waitFor("microphone file:" + path + GetParam().device_event));
  EXPECT_TRUE(events.waitFor(GetParam().stream_event));
  EXPECT_TRUE(events.waitFor(GetParam().error_event));
  // Starting again tries the same one again.
  ASSERT_EQ(engine->startAudioCapture(), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor(GetParam().error_event));
  // Capture was never stopped, so that a microphone that works is started by being chosen.
  ASSERT_EQ(engine->getAudioDeviceManager()->setAudioCaptureDevice("test:"), rtc::kSuccess);
  EXPECT_TRUE(events.waitFor("sound 1 0"));
  EXPECT_TRUE(events.waitFor("first sound 0"));
}

const BadSound kBadSounds[] = {
    {"missing", [](const std::string&) { return true; }, " 3 4", "sound 3 6", "error -4"},
    {"folder", [](const std::string& path) { return std::filesystem::create_directory(path); }, " 3 3", "sound 3 4",
     "error -5"},
    {"text", writeNoSound, " 3 7", "sound 3 4", "error -6"},
    {"empty", [](const std::string& path) { return runPipeline("fakesrc num-buffers=0 ! filesink location=" + path); },
     " 3 7", "sound 3 4", "error -6"},
    {"pictures", [](const std::string& path) { return makeClip({.encoder = "jpegenc ! avimux"}, path); }, " 3 7",
     "sound 3 4", "error -6"},
    {"headers",
     [](const std::string& path) {
       return runPipeline("audiotestsrc num-buffers=0 ! wavenc ! filesink location=" + path);
     },
     " 3 7", "sound 3 4", "error -6"},
};
INSTANTIATE_TEST_SUITE_P(Faults, BadSoundTest, testing::ValuesIn(kBadSounds),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace corvane::test
