#include "playback/remote_sounds.h"

#include <utility>

#include "corvane_rtc/common.h"

namespace corvane::rtc {

namespace {

float powerOf(const SoundBlock& block) {
  float sum = 0;
  for (const int16_t sample : block.samples()) sum += static_cast<float>(sample) * static_cast<float>(sample);
  return sum / static_cast<float>(block.samples().size());
}

}  // namespace

RemoteSound::RemoteSound(RemoteHooks& hooks, SoundMixer& mixer, SoundSelection& selection, std::string room,
                         std::string user, int32_t stream_index)
    : hooks_(hooks),
      room_(std::move(room)),
      user_(std::move(user)),
      stream_index_(stream_index),
      input_(mixer.addInput(SoundMixer::Origin::kRemote)) {
  if (stream_index == kStreamIndexMain) voice_.emplace(selection);
}

RemoteSound::~RemoteSound() {
  measure(std::nullopt);
}

template <class Path>
Path* RemoteSound::Way<Path>::follow(const HookSwitch<const AudioFormat>& hook, int32_t channels) {
  std::shared_ptr<const AudioFormat> format = hook.path();
  if (format != format_ || channels != channels_) {
    path_.reset();
    if (format != nullptr) path_.emplace(channels, *readFrameShape(*format, channels));
    format_ = std::move(format);
    channels_ = channels;
  }
  return path_ ? &*path_ : nullptr;
}

void RemoteSound::push(const SoundBlock& block) {
  block_ = block;
  if (ProcessingPath* path = processing_.follow(hooks_.processor, block.channels)) {
    hooks_.receivers.processor.call([&](IAudioFrameProcessor& processor) {
      path->process(block_, [&](LentAudioFrame& frame) { processor.onProcessRemoteUserAudioFrame(key(), &frame); });
    });
  }
  taps_.deliver(block_);
  play(place_.apply(block_));
  // The last, so that whatever it does to its frame harms nobody.
  if (OutgoingPath* path = observing_.follow(hooks_.observer, block.channels)) {
    hooks_.receivers.observer.call([&](IAudioFrameObserver& observer) {
      path->take(block_, [&](const LentAudioFrame& frame) { observer.onRemoteUserAudioFrame(key(), &frame); });
    });
  }
}

void RemoteSound::play(const SoundBlock& block) {
  const bool was_heard = std::exchange(heard_, !voice_ || voice_->isHeard(powerOf(block_), block_.time_us));
  if (heard_ == was_heard) {
    if (heard_) input_->push(block);
    return;
  }
  // One block, so that nobody hears a click.
  SoundBlock fading = block;
  const std::span<int16_t> samples = fading.samples();
  const auto channels = static_cast<size_t>(fading.channels);
  for (size_t at = 0; at < samples.size(); ++at) {
    const size_t frame = at / channels;
    const float passed = static_cast<float>(frame) / static_cast<float>(kBlockFrames);
    samples[at] = static_cast<int16_t>(static_cast<float>(samples[at]) * (heard_ ? passed : 1 - passed));
  }
  input_->push(fading);
}

void RemoteSound::measure(const std::optional<SoundMeterSettings>& settings) {
  if (meter_) taps_.remove(*meter_);
  meter_.reset();
  if (!settings) return;
  meter_.emplace(*settings);
  taps_.add(*meter_);
}

std::optional<AudioPropertiesInfo> RemoteSound::takeProperties() {
  return meter_ ? meter_->take() : std::nullopt;
}

int32_t RemoteSounds::turnOn(HookSwitch<const AudioFormat>& hook, const AudioFormat& format) {
  if (!readFrameShape(format, 1)) return kInvalidParameter;
  hook.on(std::make_shared<const AudioFormat>(format));
  return kSuccess;
}

std::shared_ptr<RemoteSound> RemoteSounds::add(const std::string& room, const std::string& user, int32_t stream_index) {
  auto sound = std::make_shared<RemoteSound>(hooks_, mixer_, selection_, room, user, stream_index);
  sound->measure(meters_);
  forgetEnded();
  sounds_.push_back(sound);
  return sound;
}

void RemoteSounds::measure(const std::optional<SoundMeterSettings>& settings) {
  meters_ = settings;
  forEach([&](RemoteSound& sound) { sound.measure(settings); });
}

}  // namespace corvane::rtc
