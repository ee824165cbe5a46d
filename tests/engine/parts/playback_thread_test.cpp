#include "playback/playback_thread.h"

#include <gtest/gtest.h>

#include <future>
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

}  // namespace
}  // namespace corvane::rtc
