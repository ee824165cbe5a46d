// An observer and processor of raw sound that keeps what it is given, for tests to wait for.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

#include "corvane_rtc/audio_frame.h"

namespace corvane::test {

struct SeenSound {
  int32_t sample_rate;
  int32_t channels;
  int64_t timestamp_us;
  bool muted;
  std::vector<int16_t> samples;

  int32_t loudest() const;
};

class SoundRecorder final : public rtc::IAudioFrameObserver, public rtc::IAudioFrameProcessor {
 public:
  /// `change`, if any, is given the samples of each frame to process.
  explicit SoundRecorder(std::function<void(std::vector<int16_t>& samples)> change = nullptr);

  void onRecordAudioFrame(const rtc::IAudioFrame* frame) override { note(*frame); }
  void onPlaybackAudioFrame(const rtc::IAudioFrame*) override {}
  void onRemoteUserAudioFrame(const rtc::StreamKey&, const rtc::IAudioFrame*) override {}
  void onMixedAudioFrame(const rtc::IAudioFrame*) override {}
  void onRecordScreenAudioFrame(const rtc::IAudioFrame*) override {}

  int32_t onProcessRecordAudioFrame(rtc::IAudioFrame* frame) override;
  int32_t onProcessPlayBackAudioFrame(rtc::IAudioFrame*) override { return 0; }
  int32_t onProcessRemoteUserAudioFrame(const rtc::StreamKey&, rtc::IAudioFrame*) override { return 0; }
  int32_t onProcessScreenAudioFrame(rtc::IAudioFrame*) override { return 0; }

  bool waitFor(const std::function<bool(const std::vector<SeenSound>&)>& enough);
  bool waitForFrames(size_t count);
  std::vector<SeenSound> frames();
  void forget();

 private:
  void note(const rtc::IAudioFrame& frame);

  const std::function<void(std::vector<int16_t>& samples)> change_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<SeenSound> frames_;
};

}  // namespace corvane::test
