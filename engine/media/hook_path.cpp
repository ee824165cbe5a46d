#include "media/hook_path.h"

#include <algorithm>

namespace corvane::rtc {

namespace {

constexpr int32_t kMinRate = 8000;
constexpr int32_t kMaxRate = 96000;
// Of one frame, as parts of a second.
constexpr int32_t kShortest = 1000;
constexpr int32_t kLongest = 10;
constexpr int32_t kUsual = 100;

// Filters for other rates hold sound back by their length; at most this much, there and back.
constexpr int32_t kFilterFrames = 192;

SoundFormat blockFormat(int32_t channels) {
  return {kSoundRate, channels};
}

}  // namespace

std::optional<FrameShape> readFrameShape(const AudioFormat& asked, int32_t channels) {
  FrameShape shape = {};
  shape.format.sample_rate = asked.sample_rate == 0 ? kSoundRate : asked.sample_rate;
  shape.format.channels = asked.channel == 0 ? channels : asked.channel;
  if (shape.format.sample_rate < kMinRate || shape.format.sample_rate > kMaxRate || shape.format.channels < 1 ||
      shape.format.channels > kMaxSoundChannels) {
    return std::nullopt;
  }
  const int32_t rate = shape.format.sample_rate;
  shape.frames = asked.samples_per_call == 0 ? rate / kUsual : asked.samples_per_call;
  if (shape.frames < rate / kShortest || shape.frames > rate / kLongest) return std::nullopt;
  return shape;
}

OutgoingPath::OutgoingPath(int32_t block_channels, const FrameShape& shape)
    : shape_(shape),
      native_(shape.format == blockFormat(block_channels) && shape.frames == kBlockFrames),
      converter_(blockFormat(block_channels), shape.format) {
  // Two frames, or one and what a block comes to: no more is ever pending.
  const size_t block_samples = static_cast<size_t>(shape.format.sample_rate / kUsual + kFilterFrames) *
                               static_cast<size_t>(shape.format.channels);
  pending_.reserve(2 * std::max(frameSamples(), block_samples));
}

void OutgoingPath::append(const SoundBlock& block) {
  converter_.convert(block.samples(), pending_);
}

int64_t OutgoingPath::durationUs(size_t samples) const {
  const auto frames = static_cast<int64_t>(samples) / shape_.format.channels;
  return frames * 1'000'000 / shape_.format.sample_rate;
}

ProcessingPath::ProcessingPath(int32_t block_channels, const FrameShape& shape)
    : out_(block_channels, shape), back_(shape.format, blockFormat(block_channels)) {
  if (out_.isNative()) return;
  // Silence goes ahead for as long as a frame is gathered and the filters hold back, so that every block can be filled.
  const bool same_rate = shape.format.sample_rate == kSoundRate;
  const bool divides = same_rate && kBlockFrames % shape.frames == 0;
  const int64_t gathered = static_cast<int64_t>(shape.frames) * kSoundRate / shape.format.sample_rate;
  const int64_t ahead = (divides ? 0 : gathered) + (same_rate ? 0 : kFilterFrames);
  const auto channels = static_cast<size_t>(block_channels);
  processed_.reserve((2 * static_cast<size_t>(gathered) + kBlockFrames + 2 * kFilterFrames) * channels);
  processed_.assign(static_cast<size_t>(ahead) * channels, 0);
}

void ProcessingPath::putBack(SoundBlock& block) {
  const auto samples = block.samples();
  const size_t ready = std::min(processed_.size(), samples.size());
  std::copy_n(processed_.begin(), ready, samples.begin());
  std::fill(samples.begin() + static_cast<ptrdiff_t>(ready), samples.end(), int16_t{0});
  processed_.erase(processed_.begin(), processed_.begin() + static_cast<ptrdiff_t>(ready));
}

}  // namespace corvane::rtc
