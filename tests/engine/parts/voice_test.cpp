#include "players/voice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "corvane_rtc/media_player.h"
#include "players/loudness.h"
#include "players/pcm_queue.h"

namespace corvane::rtc {
namespace {

constexpr int64_t kBlockMs = 10;

/// Both channels from sample(frame).
template <class F>
std::shared_ptr<PcmMemory> memoryOf(int64_t ms, F&& sample) {
  auto memory = std::make_shared<PcmMemory>();
  for (int64_t frame = 0; frame < framesOf(ms); ++frame) {
    const auto [left, right] = sample(frame);
    memory->samples.push_back(static_cast<int16_t>(left));
    memory->samples.push_back(static_cast<int16_t>(right));
  }
  return memory;
}

std::pair<int, int> countMs(int64_t frame) {
  const int count = static_cast<int>(frame / 48) + 1;
  return {count, -count};
}

std::pair<int, int> tone(int64_t frame, double frequency, double amplitude) {
  const int sample =
      static_cast<int>(amplitude * std::sin(2.0 * std::numbers::pi * frequency * static_cast<double>(frame) / 48000.0));
  return {sample, sample};
}

/// Renders a voice block by block, with nobody to keep time.
class VoiceTest : public testing::Test {
 protected:
  void play(std::shared_ptr<PcmSource> source) {
    voice_ = std::make_unique<Voice>(
        std::move(source), settings_,
        Voice::Events{.ended = [] {}, .progress = [this](int64_t ms) { progress_.push_back(ms); }});
  }

  /// False at the end.
  bool render() {
    playout_ = {};
    publish_ = {};
    return voice_->render(playout_, publish_);
  }

  /// Of the left channel, to the end.
  std::vector<int> renderAll() {
    std::vector<int> heard;
    while (render()) {
      for (size_t index = 0; index < playout_.samples.size(); index += 2) heard.push_back(playout_.samples[index]);
    }
    return heard;
  }

  VoiceSettings settings_;
  std::unique_ptr<Voice> voice_;
  VoiceSum playout_;
  VoiceSum publish_;
  std::vector<int64_t> progress_;
};

TEST_F(VoiceTest, RepeatsWithoutAGapAndTellsWhereItIs) {
  settings_.progress_ms = 20;
  auto source = std::make_shared<PcmMemorySource>(memoryOf(35, countMs), 2, 0);
  play(source);
  const std::vector<int> heard = renderAll();
  ASSERT_EQ(heard.size(), static_cast<size_t>(framesOf(70)));
  for (size_t frame = 0; frame < heard.size(); ++frame) {
    ASSERT_EQ(heard[frame], static_cast<int>(frame / 48) % 35 + 1) << frame;
  }
  EXPECT_EQ(progress_, (std::vector<int64_t>{20, 5, 25}));
  EXPECT_EQ(voice_->playedMs(), 70);

  // A seek counts within the pass that plays; what is beyond the last block's end is silence.
  source = std::make_shared<PcmMemorySource>(memoryOf(35, countMs), 1, framesOf(5));
  play(source);
  ASSERT_TRUE(render());
  EXPECT_EQ(playout_.samples[0], 6);
  EXPECT_EQ(voice_->positionMs(), 15);
  source->seek(framesOf(30));
  EXPECT_EQ(voice_->positionMs(), 30);
  ASSERT_TRUE(render());
  EXPECT_EQ(playout_.samples[0], 31);
  EXPECT_EQ(playout_.samples[958], 0);
  EXPECT_FALSE(render());
}

TEST_F(VoiceTest, IsHeardWhereItIsAskedToBe) {
  const auto memory = memoryOf(10 * kBlockMs, [](int64_t) { return std::pair(1000, -300); });
  struct Case {
    int32_t outputs, dual_mono;
    float own_gain, playout_gain, publish_gain;
    std::array<int, 2> playout, publish;
  };
  const Case cases[] = {
      {kPlayerOutputPlayout, kPlayerDualMonoAuto, 1.0F, 1.0F, 1.0F, {1000, -300}, {0, 0}},
      {kPlayerOutputPublish, kPlayerDualMonoLeft, 1.0F, 1.0F, 1.0F, {0, 0}, {1000, 1000}},
      {kPlayerOutputPlayoutAndPublish, kPlayerDualMonoRight, 2.0F, 0.5F, 1.0F, {-300, -300}, {-600, -600}},
      {kPlayerOutputPlayoutAndPublish, kPlayerDualMonoMix, 1.0F, 2.0F, 0.0F, {1400, 1400}, {0, 0}},
  };
  for (const Case& one : cases) {
    settings_ = {.outputs = one.outputs,
                 .playout_gain = one.playout_gain,
                 .publish_gain = one.publish_gain,
                 .dual_mono = one.dual_mono,
                 .own_gain = one.own_gain};
    play(std::make_shared<PcmMemorySource>(memory, 1, 0));
    ASSERT_TRUE(render());
    for (size_t channel = 0; channel < 2; ++channel) {
      EXPECT_EQ(playout_.samples[channel], one.playout[channel]);
      EXPECT_EQ(publish_.samples[channel], one.publish[channel]);
    }
    EXPECT_EQ(playout_.used, one.outputs != kPlayerOutputPublish);
    EXPECT_EQ(publish_.used, one.outputs != kPlayerOutputPlayout);
  }
}

int risesThroughZero(const std::vector<int>& samples, size_t from, size_t to) {
  int count = 0;
  for (size_t index = from + 1; index < to; ++index) count += samples[index - 1] < 0 && samples[index] >= 0 ? 1 : 0;
  return count;
}

TEST_F(VoiceTest, ChangesPitchAndSpeedEachWithoutTheOther) {
  const auto memory = memoryOf(2000, [](int64_t frame) { return tone(frame, 400.0, 10000.0); });
  struct Case {
    int32_t pitch, speed;
    double seconds, frequency;
  };
  for (const Case& one : {Case{12, 100, 2.0, 800.0}, Case{0, 200, 1.0, 400.0}, Case{-12, 50, 4.0, 200.0}}) {
    settings_ = {.pitch = one.pitch, .speed = one.speed};
    play(std::make_shared<PcmMemorySource>(memory, 1, 0));
    const std::vector<int> heard = renderAll();
    const double seconds = static_cast<double>(heard.size()) / 48000.0;
    EXPECT_NEAR(seconds, one.seconds, 0.06);
    const size_t from = heard.size() / 4;
    const double measured = risesThroughZero(heard, from, 3 * from) / (static_cast<double>(2 * from) / 48000.0);
    EXPECT_NEAR(measured, one.frequency, one.frequency * 0.03) << "pitch " << one.pitch << ", speed " << one.speed;
  }
}

TEST_F(VoiceTest, TurnedWhilePlayingTellsThePositionThatIsHeard) {
  play(std::make_shared<PcmMemorySource>(memoryOf(4000, countMs), 1, 0));
  for (int block = 0; block < 10; ++block) ASSERT_TRUE(render());
  settings_.speed = 200;
  voice_->set(settings_);
  for (int block = 0; block < 100; ++block) ASSERT_TRUE(render());
  // A tenth of a second as it is, one second twice as fast.
  EXPECT_NEAR(static_cast<double>(voice_->positionMs()), 2100.0, 120.0);
  EXPECT_EQ(voice_->playedMs(), 1100);
}

TEST_F(VoiceTest, ComesCloseToTheLoudnessAskedFor) {
  // A tone of 997 Hz at full scale in one channel is at -3.01 LUFS, in both at 0.
  LoudnessMeter meter;
  const auto full = memoryOf(1000, [](int64_t frame) { return tone(frame, 997.0, 32767.0); });
  EXPECT_FALSE(meter.loudness().has_value());
  meter.hear(full->samples);
  EXPECT_NEAR(meter.loudness().value_or(-100.0), 0.0, 0.1);

  settings_.loudness = -20.0F;
  play(std::make_shared<PcmMemorySource>(memoryOf(2000, [](int64_t frame) { return tone(frame, 997.0, 1000.0); }), 1,
                                         0));
  const std::vector<int> heard = renderAll();
  const int loudest = *std::max_element(heard.end() - 48000, heard.end());
  EXPECT_NEAR(20.0 * std::log10(loudest / 32768.0), -20.0, 0.5);
}

TEST(PcmQueue, KnowsItsPlaceThroughPassesSeeksAndTheEnd) {
  PcmQueue queue;
  std::vector<int16_t> samples(960, 1);
  std::vector<int16_t> taken(960);
  ASSERT_TRUE(queue.write(samples, 4800));
  EXPECT_EQ(queue.position(), 4800);
  queue.beginPass();
  ASSERT_TRUE(queue.write(samples, 0));
  EXPECT_EQ(queue.read({taken.data(), 480}), 480U);
  EXPECT_EQ(queue.position(), 5040);
  EXPECT_EQ(queue.read({taken.data(), 960}), 960U);
  EXPECT_EQ(queue.position(), 240);

  queue.announceSeek(9600);
  EXPECT_EQ(queue.position(), 9600);
  queue.beginFlush();
  EXPECT_FALSE(queue.write(samples, 720));
  queue.endFlush();
  EXPECT_EQ(queue.position(), 9600);
  EXPECT_EQ(queue.read(taken), 0U);
  ASSERT_TRUE(queue.write(samples, 9620));
  EXPECT_EQ(queue.position(), 9620);
  queue.announceSeek(100);
  queue.cancelSeek();
  EXPECT_EQ(queue.position(), 9620);

  queue.end();
  EXPECT_FALSE(queue.ended());
  EXPECT_EQ(queue.read(taken), 960U);
  EXPECT_TRUE(queue.ended());
  // What is pushed goes in whole or not at all.
  std::vector<int16_t> long_sound(40000, 1);
  EXPECT_TRUE(queue.tryWrite(long_sound));
  EXPECT_FALSE(queue.tryWrite(long_sound));
  queue.close();
  EXPECT_FALSE(queue.write(samples, 0));
}

}  // namespace
}  // namespace corvane::rtc
