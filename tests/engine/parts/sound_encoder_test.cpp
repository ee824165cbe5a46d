// How much a second of encoded sound is.
#include "media/sound_encoder.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "core/gstreamer.h"
#include "support/signals.h"

namespace corvane::rtc {
namespace {

class NoEvents final : public IRTCVideoEventHandler {};

struct Failures final : SoundEncoder::Listener {
  void onSoundEncoderFailed(const std::string& reason) override { ADD_FAILURE() << reason; }
};

/// Adds up packets.
class Packets final : public EncodedTap {
 public:
  void onEncoded(GstBuffer* buffer) override {
    {
      const std::lock_guard lock(mutex_);
      bytes_ += gst_buffer_get_size(buffer);
      ++count_;
    }
    changed_.notify_all();
  }
  bool waitFor(size_t count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return count_ >= count; });
  }
  size_t mean() {
    const std::lock_guard lock(mutex_);
    return bytes_ / count_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  size_t bytes_ = 0;
  size_t count_ = 0;
};

TEST(SoundEncoder, MakesPacketsOfTheBitrateAskedFor) {
  std::string problem;
  ASSERT_TRUE(startGStreamer(problem)) << problem;
  NoEvents events;
  Failures failures;
  EngineContext context = {.log = EngineLog({}), .events = &events, .thread = {}};
  SoundEncoder encoder(context, failures);
  const test::Signal music = test::sum(test::vowel(140.0), test::noise(0.2));
  SoundBlock block;
  for (const int32_t bitrate : {24'000, 48'000, 96'000}) {
    encoder.set({.bitrate = bitrate, .is_wideband = bitrate == 24'000});
    Packets packets;
    encoder.taps().add(packets);
    for (size_t packet = 0; packet < 60; ++packet) {
      for (int half = 0; half < 2; ++half) {
        for (size_t sample = 0; sample < kBlockFrames; ++sample) {
          block.storage[sample] =
              static_cast<int16_t>(32767.0 * music(block.time_us * 48 / 1000 + static_cast<int64_t>(sample)));
        }
        encoder.onSound(block);
        block.time_us += 10'000;
      }
      ASSERT_TRUE(packets.waitFor(packet));
    }
    encoder.taps().remove(packets);
    // 20 ms each.
    const double found = static_cast<double>(packets.mean()) * 8.0 * 50.0;
    EXPECT_NEAR(found, bitrate, bitrate * 0.2);
  }
  context.thread.finish([] {});
}

}  // namespace
}  // namespace corvane::rtc
