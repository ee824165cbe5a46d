#include "playback/playback_thread.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>

#include "core/gstreamer.h"

namespace corvane::rtc {
namespace {

struct CountingTap final : SoundTap {
  void onSound(const SoundBlock& /*block*/) override {
    if (++blocks == 10) enough.set_value();
  }
  int blocks = 0;
  std::promise<void> enough;
};

// A device that cannot be opened, and one whose element is not there: both are told of, and what is mixed goes on.
TEST(PlaybackThread, TellsOfASpeakerThatFailsAndMixesOn) {
  std::string problem;
  ASSERT_TRUE(startGStreamer(problem)) << problem;
  for (const char* element : {"alsasink", "nosuchsink"}) {
    SoundMixer mixer;
    SoundHooks hooks;
    SoundTaps microphone;
    PlayedSound sound(mixer, hooks, microphone);
    CountingTap tap;
    mixer.taps().add(tap);
    const auto source = mixer.addInput();
    std::promise<CaptureFault> failed;
    PlaybackThread thread(sound);
    thread.play(SoundDevice{"", element, "no:such,device"},
                {
                    .started = [] { ADD_FAILURE() << "a speaker that is not there has started"; },
                    .failed = [&](const CaptureFault& fault) { failed.set_value(fault); },
                    .idle = [] { ADD_FAILURE() << "there is a source"; },
                });
    EXPECT_FALSE(failed.get_future().get().text.empty()) << element;
    tap.enough.get_future().wait();
    thread.rest();
  }
}

struct Hang {
  std::promise<void> let_go;
  std::shared_future<void> over = let_go.get_future().share();
  std::promise<void> ended;
};

class HangingOutput final : public SoundOutput {
 public:
  HangingOutput(Hang& hang, bool in_open) : hang_(hang), in_open_(in_open) {}
  ~HangingOutput() override {
    hang_.over.wait();
    hang_.ended.set_value();
  }

  std::optional<CaptureFault> open() override {
    if (in_open_) hang_.over.wait();
    return std::nullopt;
  }
  bool wait(const std::stop_token&) override { return false; }
  int64_t heardAtUs() const override { return 0; }
  void play(const SoundBlock&) override {}
  std::optional<CaptureFault> fault() override { return CaptureFault{.text = "stalled"}; }

 private:
  Hang& hang_;
  const bool in_open_;
};

TEST(PlaybackThread, LeavesASpeakerThatHangsBehind) {
  for (const bool in_open : {false, true}) {
    Hang hang;
    SoundMixer mixer;
    SoundHooks hooks;
    SoundTaps microphone;
    PlayedSound sound(mixer, hooks, microphone);
    CountingTap tap;
    mixer.taps().add(tap);
    std::promise<void> failed;
    {
      const auto make = [&](const SpeakerId& speaker) -> std::unique_ptr<SoundOutput> {
        if (std::holds_alternative<NullSpeaker>(speaker)) return makeSoundOutput(speaker);
        return std::make_unique<HangingOutput>(hang, in_open);
      };
      using std::chrono_literals::operator""ms;
      PlaybackThread thread(sound, make, {20ms, 20ms});
      thread.play(SoundDevice{}, {.started = [] { ADD_FAILURE() << "a speaker that hangs has started"; },
                                  .failed = [&](const CaptureFault&) { failed.set_value(); },
                                  .idle = [] {}});
      failed.get_future().wait();
      tap.enough.get_future().wait();
    }
    hang.let_go.set_value();
    hang.ended.get_future().wait();
  }
}

}  // namespace
}  // namespace corvane::rtc
