// players_bench LONG.wav SHORT.wav: how soon an effect is in the mix that a speaker takes, and what 32 of them cost.
// Prints one JSON object: milliseconds, and percent of one core.

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "core/gstreamer.h"
#include "players/players.h"

namespace corvane::rtc {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kStarts = 40;
constexpr int kEffects = 32;
constexpr std::chrono::seconds kMeasured(5);
constexpr AudioEffectPlayerConfig kEndless = {kPlayerOutputPlayoutAndPublish, -1, 0, 0};

class NoEvents final : public IRTCVideoEventHandler {};
NoEvents no_events;

/// A speaker without a device: takes 10 ms of the mix each 10 ms, and remembers when it heard something first.
class Speaker {
 public:
  explicit Speaker(SoundMixer& mixer) : mixer_(mixer) {
    thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
  }

  void listen() { heard_at_ = 0; }
  bool hearsNothing() const { return silent_blocks_ > 30; }
  /// 0 as long as nothing was heard.
  int64_t heardAt() const { return heard_at_; }

 private:
  void run(const std::stop_token& stop) {
    SoundBlock block;
    auto due = Clock::now();
    while (!stop.stop_requested()) {
      std::this_thread::sleep_until(due += milliseconds(10));
      mixer_.mix(block, 0);
      const auto samples = block.samples();
      const bool silent = std::all_of(samples.begin(), samples.end(), [](int16_t sample) { return sample == 0; });
      silent_blocks_ = silent ? silent_blocks_ + 1 : 0;
      if (!silent && heard_at_ == 0) heard_at_ = Clock::now().time_since_epoch().count();
    }
  }

  SoundMixer& mixer_;
  std::atomic<int64_t> heard_at_ = 0;
  std::atomic<int> silent_blocks_ = 0;
  std::jthread thread_;
};

struct Latency {
  double median, longest;
};

/// `path` is "" for what is preloaded.
Latency measureStart(EffectPlayer& effects, Speaker& speaker, const std::string& path) {
  std::vector<double> times;
  for (int start = 0; start < kStarts; ++start) {
    while (!speaker.hearsNothing()) std::this_thread::sleep_for(milliseconds(1));
    // At any moment of the speaker's and the players' rhythm.
    std::this_thread::sleep_for(std::chrono::microseconds(start * 1370 % 10'000));
    speaker.listen();
    const int64_t from = Clock::now().time_since_epoch().count();
    effects.start(1, path.c_str(), kEndless);
    while (speaker.heardAt() == 0) std::this_thread::sleep_for(std::chrono::microseconds(200));
    times.push_back(static_cast<double>(speaker.heardAt() - from) / 1e6);
    effects.stop(1);
  }
  std::sort(times.begin(), times.end());
  return {times[times.size() / 2], times.back()};
}

double processorSeconds() {
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Percent of one core, of the whole process.
double measureLoad(EffectPlayer& effects, const std::string& path) {
  for (int32_t id = 0; id < kEffects; ++id) effects.start(id, path.c_str(), kEndless);
  std::this_thread::sleep_for(std::chrono::seconds(1));
  const double before = processorSeconds();
  std::this_thread::sleep_for(kMeasured);
  const double spent = processorSeconds() - before;
  effects.stopAll();
  return spent / static_cast<double>(kMeasured.count()) * 100.0;
}

int measure(const std::string& long_path, const std::string& short_path) {
  std::string problem;
  if (!startGStreamer(problem)) {
    std::fprintf(stderr, "%s\n", problem.c_str());
    return 1;
  }
  EngineContext context{.log = EngineLog({}), .events = &no_events, .thread = {}};
  SoundMixer playback;
  SoundTaps microphone;
  SentSound sent(microphone);
  Players players(context, playback, sent);
  EffectPlayer& effects = players.effects();
  Speaker speaker(playback);

  for (int32_t id = 0; id < kEffects; ++id) {
    effects.preload(id, short_path.c_str());
    while (effects.getDuration(id) < 0) std::this_thread::sleep_for(milliseconds(1));
  }
  const Latency memory = measureStart(effects, speaker, "");
  const Latency file = measureStart(effects, speaker, long_path);
  const double memory_load = measureLoad(effects, "");
  const double file_load = measureLoad(effects, long_path);
  std::printf(
      "{\"memory_ms\": %.2f, \"memory_most_ms\": %.2f, \"file_ms\": %.2f, \"file_most_ms\": %.2f, \"memory_load\": "
      "%.2f, "
      "\"file_load\": %.2f}\n",
      memory.median, memory.longest, file.median, file.longest, memory_load, file_load);
  context.thread.finish([&] { players.shutDown(); });
  return 0;
}

}  // namespace
}  // namespace corvane::rtc

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  return corvane::rtc::measure(argv[1], argv[2]);
}
