// An observer and processor of raw sound that keeps what it is given, for tests to wait for.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

#include "corvane_rtc/audio_config.h"
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
  using Change = std::function<void(std::vector<int16_t>& samples)>;

  /// `change`, if any, is given the samples of each frame to process. `method`: AudioFrameMethod; others are left
  /// alone.
  explicit SoundRecorder(Change change = nullptr, int32_t method = rtc::kAudioFrameMethodRecord);

  void onRecordAudioFrame(const rtc::IAudioFrame* frame) override { see(rtc::kAudioFrameMethodRecord, *frame); }
  void onPlaybackAudioFrame(const rtc::IAudioFrame* frame) override { see(rtc::kAudioFrameMethodPlayback, *frame); }
  void onRemoteUserAudioFrame(const rtc::StreamKey&, const rtc::IAudioFrame* frame) override {
    see(rtc::kAudioFrameMethodRemoteUser, *frame);
  }
  void onMixedAudioFrame(const rtc::IAudioFrame* frame) override { see(rtc::kAudioFrameMethodMixed, *frame); }
  void onRecordScreenAudioFrame(const rtc::IAudioFrame* frame) override {
    see(rtc::kAudioFrameMethodRecordScreen, *frame);
  }

  int32_t onProcessRecordAudioFrame(rtc::IAudioFrame* frame) override {
    return process(rtc::kAudioFrameMethodRecord, *frame);
  }
  int32_t onProcessPlayBackAudioFrame(rtc::IAudioFrame* frame) override {
    return process(rtc::kAudioFrameMethodPlayback, *frame);
  }
  int32_t onProcessRemoteUserAudioFrame(const rtc::StreamKey&, rtc::IAudioFrame* frame) override {
    return process(rtc::kAudioFrameMethodRemoteUser, *frame);
  }
  int32_t onProcessScreenAudioFrame(rtc::IAudioFrame* frame) override {
    return process(rtc::kAudioFrameMethodRecordScreen, *frame);
  }

  bool waitFor(const std::function<bool(const std::vector<SeenSound>&)>& enough);
  bool waitForFrames(size_t count);
  std::vector<SeenSound> frames();
  void forget();

 private:
  void see(int32_t method, const rtc::IAudioFrame& frame);
  int32_t process(int32_t method, rtc::IAudioFrame& frame);

  const Change change_;
  const int32_t method_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<SeenSound> frames_;
};

}  // namespace corvane::test
