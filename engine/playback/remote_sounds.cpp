#include "playback/remote_sounds.h"

#include <utility>

#include "corvane_rtc/common.h"

namespace corvane::rtc {

RemoteSound::RemoteSound(RemoteHooks& hooks, SoundMixer& mixer, std::string room, std::string user,
                         int32_t stream_index)
    : hooks_(hooks),
      room_(std::move(room)),
      user_(std::move(user)),
      stream_index_(stream_index),
      input_(mixer.addInput(SoundMixer::Origin::kRemote)) {}

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
  input_->push(place_.apply(block_));
  // The last, so that whatever it does to its frame harms nobody.
  if (OutgoingPath* path = observing_.follow(hooks_.observer, block.channels)) {
    hooks_.receivers.observer.call([&](IAudioFrameObserver& observer) {
      path->take(block_, [&](const LentAudioFrame& frame) { observer.onRemoteUserAudioFrame(key(), &frame); });
    });
  }
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
  auto sound = std::make_shared<RemoteSound>(hooks_, mixer_, room, user, stream_index);
  sound->measure(meters_);
  sounds_.push_back(sound);
  return sound;
}

void RemoteSounds::measure(const std::optional<SoundMeterSettings>& settings) {
  meters_ = settings;
  forEach([&](RemoteSound& sound) { sound.measure(settings); });
}

}  // namespace corvane::rtc
