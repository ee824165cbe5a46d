#include "support/sound_recorder.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "support/recorders.h"

namespace corvane::test {

int32_t SeenSound::loudest() const {
  int32_t peak = 0;
  for (const int16_t sample : samples) peak = std::max(peak, std::abs(static_cast<int32_t>(sample)));
  return peak;
}

SoundRecorder::SoundRecorder(Change change, int32_t method) : change_(std::move(change)), method_(method) {}

int32_t SoundRecorder::process(int32_t method, rtc::IAudioFrame& frame) {
  see(method, frame);
  if (change_ == nullptr || method != method_) return 0;
  auto* data = reinterpret_cast<int16_t*>(frame.data());
  std::vector<int16_t> samples(data, data + frame.dataSize() / 2);
  change_(samples);
  std::copy(samples.begin(), samples.end(), data);
  return 0;
}

bool SoundRecorder::waitFor(const std::function<bool(const std::vector<SeenSound>&)>& enough) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, [&] { return enough(frames_); });
}

bool SoundRecorder::waitForFrames(size_t count) {
  return waitFor([count](const std::vector<SeenSound>& frames) { return frames.size() >= count; });
}

std::vector<SeenSound> SoundRecorder::frames() {
  const std::lock_guard lock(mutex_);
  return frames_;
}

void SoundRecorder::forget() {
  const std::lock_guard lock(mutex_);
  frames_.clear();
}

void SoundRecorder::see(int32_t method, const rtc::IAudioFrame& frame) {
  if (method != method_) return;
  const auto* samples = reinterpret_cast<const int16_t*>(frame.data());
  {
    const std::lock_guard lock(mutex_);
    frames_.push_back({frame.sampleRate(), frame.channels(), frame.timestampUs(), frame.isMuted(),
                       std::vector<int16_t>(samples, samples + frame.dataSize() / 2)});
  }
  changed_.notify_all();
}

}  // namespace corvane::test
