#include "voice/voice_processor.h"

#include <webrtc/modules/audio_processing/include/audio_processing.h>
#include <webrtc/modules/interface/module_common_types.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "corvane_rtc/audio_config.h"

namespace corvane::rtc {

namespace {

using webrtc::AudioProcessing;
using webrtc::NoiseSuppression;

// Milliseconds between playing and hearing beyond which the library believes nothing.
constexpr int64_t kLongestDelay = 500;

// How loud the loudest of a voice becomes, in dB below full scale, and by how much one that is already at its level may
// be raised further.
constexpr int kPeak = 3;
constexpr int kCompression = 9;

// Automatic: the level of the background, in dB of full scale, from which on more is done against it.
constexpr float kSomeNoise = -65.0F;
constexpr float kMuchNoise = -50.0F;
constexpr float kSilence = -90.0F;
constexpr float kFloorRise = 0.03F;  // dB a block: what goes on for seconds is background
constexpr int32_t kLevelBlocks = 100;

NoiseSuppression::Level levelOf(int32_t mode, float floor_db) {
  if (mode == kAnsModeLow) return NoiseSuppression::kLow;
  if (mode == kAnsModeMedium) return NoiseSuppression::kModerate;
  if (mode == kAnsModeHigh) return NoiseSuppression::kHigh;
  if (floor_db < kSomeNoise) return NoiseSuppression::kLow;
  return floor_db < kMuchNoise ? NoiseSuppression::kModerate : NoiseSuppression::kHigh;
}

std::unique_ptr<AudioProcessing> makeProcessing() {
  webrtc::Config config;
  // Echoes of 128 ms, and delays that devices tell wrong.
  config.Set<webrtc::ExtendedFilter>(std::make_unique<webrtc::ExtendedFilter>(true).release());
  config.Set<webrtc::DelayAgnostic>(std::make_unique<webrtc::DelayAgnostic>(true).release());
  // It would turn the device's own volume.
  config.Set<webrtc::ExperimentalAgc>(std::make_unique<webrtc::ExperimentalAgc>(false).release());
  return std::unique_ptr<AudioProcessing>(AudioProcessing::Create(config));
}

void prepare(webrtc::AudioFrame& frame) {
  frame.samples_per_channel_ = kBlockFrames;
  frame.sample_rate_hz_ = kSoundRate;
  frame.num_channels_ = 1;
}

}  // namespace

struct VoiceProcessor::Library {
  const std::unique_ptr<AudioProcessing> processing = makeProcessing();
  webrtc::AudioFrame near;
  webrtc::AudioFrame far;
};

VoiceProcessor::VoiceProcessor()
    : library_(std::make_unique<Library>()), noise_mode_(kAnsModeDisable), floor_db_(kSilence) {
  prepare(library_->near);
  prepare(library_->far);
  AudioProcessing& processing = *library_->processing;
  processing.Initialize(kSoundRate, kSoundRate, kSoundRate, AudioProcessing::kMono, AudioProcessing::kMono,
                        AudioProcessing::kMono);
  processing.echo_cancellation()->set_suppression_level(webrtc::EchoCancellation::kHighSuppression);
  processing.gain_control()->set_mode(webrtc::GainControl::kAdaptiveDigital);
  processing.gain_control()->set_target_level_dbfs(kPeak);
  processing.gain_control()->set_compression_gain_db(kCompression);
  processing.gain_control()->enable_limiter(true);
}

VoiceProcessor::~VoiceProcessor() = default;

void VoiceProcessor::setEchoCancellation(bool on) {
  library_->processing->echo_cancellation()->Enable(on);
}

void VoiceProcessor::setNoiseSuppression(int32_t mode) {
  noise_mode_ = mode;
  const bool on = mode != kAnsModeDisable;
  library_->processing->noise_suppression()->set_level(levelOf(mode, floor_db_));
  library_->processing->noise_suppression()->Enable(on);
  // What is below any voice.
  library_->processing->high_pass_filter()->Enable(on);
}

void VoiceProcessor::setGainControl(bool on) {
  library_->processing->gain_control()->Enable(on);
}

void VoiceProcessor::hear(const PlayedBlock& played) {
  newest_played_us_ = played.time_us;
  std::copy(played.samples.begin(), played.samples.end(), library_->far.data_);
  library_->processing->AnalyzeReverseStream(&library_->far);
}

void VoiceProcessor::process(SoundBlock& block) {
  if (noise_mode_ == kAnsModeAutomatic) followNoise(block);
  constexpr int64_t kMicroseconds = 1000;
  // The newest block of the reference is heard this much later than what is captured here.
  const int64_t delay = std::clamp<int64_t>((newest_played_us_ - block.time_us) / kMicroseconds, 0, kLongestDelay);
  library_->processing->set_stream_delay_ms(static_cast<int>(delay));
  const auto samples = block.samples();
  std::copy(samples.begin(), samples.end(), library_->near.data_);
  if (library_->processing->ProcessStream(&library_->near) != AudioProcessing::kNoError) return;
  std::copy_n(library_->near.data_, samples.size(), samples.begin());
}

void VoiceProcessor::followNoise(const SoundBlock& block) {
  constexpr float kFullScale = 32768.0F;
  float power = 0.0F;
  for (const int16_t sample : block.samples()) {
    const float amplitude = static_cast<float>(sample) / kFullScale;
    power += amplitude * amplitude;
  }
  const float level = 10.0F * std::log10(power / kBlockFrames + 1e-9F);
  floor_db_ = std::clamp(level, kSilence, floor_db_ + kFloorRise);
  if (--until_level_ > 0) return;
  until_level_ = kLevelBlocks;
  NoiseSuppression& suppression = *library_->processing->noise_suppression();
  const NoiseSuppression::Level wanted = levelOf(noise_mode_, floor_db_);
  if (wanted != suppression.level()) suppression.set_level(wanted);
}

}  // namespace corvane::rtc
