// Audio gain and level meter: makes the microphone louder or softer, and tells how loud everything is.
//
// Parameters, each a text for setPluginParameter():
//   "gain N"      decibels that are added to the microphone, -60 to 30; 0 at first. Peaks are cut at full scale
//   "meter FILE"  writes the levels into FILE ten times a second, one line of JSON:
//                 {"record":{"peak_db":-3.1,"rms_db":-12.7},"playback":null,"screen":null}
//                 in dB of full scale, those of the microphone after the gain; null without sound since the last line
//   "meter off"   stops that, as at first
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "corvane_plugin.h"
#include "level_report.h"

namespace audio_gain {
namespace {

using corvane::plugin::AudioFrame;

constexpr std::string_view kMeter = "meter ";

int16_t* samplesOf(const AudioFrame& frame) {
  return reinterpret_cast<int16_t*>(frame.data);
}

size_t sampleCount(const AudioFrame& frame) {
  return frame.data == nullptr ? 0 : static_cast<size_t>(std::max(0, frame.data_size)) / sizeof(int16_t);
}

// Sounds come while a parameter is set, so what both touch is atomic.
class AudioGain final : public corvane::plugin::IPlugin {
 public:
  bool init(const char* /*folder*/) override { return true; }
  void release() override { delete this; }

  bool setParameter(const char* parameter) override {
    const std::string_view text = parameter;
    if (text == "meter off") {
      report_.stop();
      return true;
    }
    if (text.starts_with(kMeter)) return report_.start(std::string(text.substr(kMeter.size())));
    double decibels = 0;
    if (std::sscanf(parameter, "gain %lf", &decibels) != 1 || !(decibels >= -60 && decibels <= 30)) return false;
    factor_ = static_cast<float>(std::pow(10, decibels / 20));
    return true;
  }

  void reserved3() override {}
  void reserved4() override {}

  void processVideoFrame(corvane::plugin::VideoFrame* /*frame*/) override {}

  void processRecordAudioFrame(AudioFrame* frame) override {
    const float factor = factor_;
    if (factor != 1) {
      int16_t* samples = samplesOf(*frame);
      const size_t count = sampleCount(*frame);
      for (size_t i = 0; i < count; ++i) {
        const float louder = std::clamp(static_cast<float>(samples[i]) * factor, -32768.0F, 32767.0F);
        samples[i] = static_cast<int16_t>(std::lrintf(louder));
      }
    }
    measure(kRecord, *frame);
  }

  void processPlaybackAudioFrame(AudioFrame* frame) override { measure(kPlayback, *frame); }
  void processRemoteUserAudioFrame(const corvane::plugin::StreamKey& /*stream*/, AudioFrame* /*frame*/) override {}
  void processScreenAudioFrame(AudioFrame* frame) override { measure(kScreen, *frame); }

 private:
  void measure(Sound sound, const AudioFrame& frame) {
    if (report_.isWanted()) report_.of(sound).add(samplesOf(frame), sampleCount(frame));
  }

  std::atomic<float> factor_{1};
  LevelReport report_;
};

}  // namespace
}  // namespace audio_gain

CORVANE_PLUGIN_EXPORT corvane::plugin::IPlugin* createVideoPlugin() {
  return new audio_gain::AudioGain;
}
