#include "players/voice.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "corvane_rtc/media_player.h"

namespace corvane::rtc {

namespace {

constexpr size_t kBlockSamples = static_cast<size_t>(kBlockFrames) * kPcmChannels;
// A quiet recording is not turned up until its noise is all that is heard.
constexpr double kMaxCorrection = 20.0;  // dB

void foldChannels(std::span<int16_t> samples, int32_t mode) {
  if (mode == kPlayerDualMonoAuto) return;
  for (size_t index = 0; index + 1 < samples.size(); index += 2) {
    const int32_t left = samples[index];
    const int32_t right = samples[index + 1];
    int32_t both = left;
    if (mode == kPlayerDualMonoRight) both = right;
    if (mode == kPlayerDualMonoMix) both = std::clamp(left + right, -32768, 32767);
    samples[index] = samples[index + 1] = static_cast<int16_t>(both);
  }
}

void addTo(VoiceSum& sum, SoundBlock block, SoundGain& applied, float gain) {
  applied.apply(block, gain);
  const auto samples = std::as_const(block).samples();
  for (size_t index = 0; index < samples.size(); ++index) sum.samples[index] += samples[index];
  sum.used = true;
}

}  // namespace

void VoiceSettings::setGain(int32_t type, float gain) {
  if (type != kPlayerOutputPublish) playout_gain = gain;
  if (type != kPlayerOutputPlayout) publish_gain = gain;
}

bool VoiceSettings::toPlayout() const {
  return outputs != kPlayerOutputPublish;
}

bool VoiceSettings::toPublish() const {
  return outputs != kPlayerOutputPlayout;
}

Voice::Voice(std::shared_ptr<PcmSource> source, const VoiceSettings& settings, Events events)
    : source_(std::move(source)), events_(std::move(events)), settings_(settings), since_progress_(0) {}

void Voice::set(const VoiceSettings& settings) {
  const std::lock_guard lock(mutex_);
  settings_ = settings;
}

void Voice::onSeek() {
  const std::lock_guard lock(mutex_);
  if (stretcher_ != nullptr) stretcher_->clear();
  stretcher_flushed_ = false;
}

int64_t Voice::positionMs() const {
  const std::lock_guard lock(mutex_);
  const int64_t held = stretcher_ != nullptr ? stretcher_->held() : 0;
  return msOf(std::max<int64_t>(0, source_->position() - held));
}

int64_t Voice::playedMs() const {
  const std::lock_guard lock(mutex_);
  return msOf(played_frames_);
}

size_t Voice::fill(SoundBlock& block) {
  if (stretcher_ == nullptr) {
    if (settings_.pitch == 0 && settings_.speed == 100) return source_->read(block.samples());
    stretcher_ = std::make_unique<Stretcher>();
  }
  // It stays once it was needed: what it holds would be missing.
  stretcher_->set(settings_.pitch, settings_.speed);
  ahead_.resize(kBlockSamples);
  while (stretcher_->available() < kBlockSamples) {
    const size_t count = source_->read(ahead_);
    if (count > 0) {
      stretcher_->put({ahead_.data(), count});
    } else if (source_->ended() && !std::exchange(stretcher_flushed_, true)) {
      stretcher_->flush();
    } else {
      break;
    }
  }
  return stretcher_->take(block.samples());
}

void Voice::shape(SoundBlock& block) {
  foldChannels(block.samples(), settings_.dual_mono);
  double gain = settings_.own_gain;
  if (settings_.loudness != 0.0F) {
    if (!meter_) meter_.emplace();
    meter_->hear(block.samples());
    if (const std::optional<double> heard = meter_->loudness()) {
      const double correction = std::clamp(settings_.loudness - *heard, -kMaxCorrection, kMaxCorrection);
      gain *= std::pow(10.0, correction / 20.0);
    }
  }
  applied_own_.apply(block, static_cast<float>(gain));
}

bool Voice::render(VoiceSum& playout, VoiceSum& publish) {
  SoundBlock block;
  block.channels = kMaxSoundChannels;
  int64_t progress = -1;
  {
    const std::lock_guard lock(mutex_);
    const size_t count = fill(block);
    if (count == 0) return !source_->ended();
    std::fill(block.samples().begin() + static_cast<ptrdiff_t>(count), block.samples().end(), int16_t{0});
    shape(block);
    if (settings_.toPlayout()) addTo(playout, block, applied_playout_, settings_.playout_gain);
    if (settings_.toPublish()) addTo(publish, block, applied_publish_, settings_.publish_gain);
    played_frames_ += kBlockFrames;
    since_progress_ += kBlockFrames;
    if (settings_.progress_ms > 0 && since_progress_ >= framesOf(settings_.progress_ms)) {
      since_progress_ = 0;
      const int64_t held = stretcher_ != nullptr ? stretcher_->held() : 0;
      progress = msOf(std::max<int64_t>(0, source_->position() - held));
    }
  }
  if (progress >= 0) events_.progress(progress);
  return true;
}

}  // namespace corvane::rtc
