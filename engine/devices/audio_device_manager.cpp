#include "devices/audio_device_manager.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "devices/audio_device_id.h"
#include "devices/device_text.h"

namespace corvane::rtc {

namespace {

constexpr uint32_t kFullVolume = 255;

class DeviceCollection final : public IAudioDeviceCollection {
 public:
  explicit DeviceCollection(std::vector<AudioDeviceEntry> devices) : devices_(std::move(devices)) {}

  int32_t getCount() override { return static_cast<int32_t>(devices_.size()); }

  int32_t getDevice(int32_t index, char device_name[kDeviceTextSize], char device_id[kDeviceTextSize]) override {
    if (index < 0 || index >= getCount() || device_name == nullptr || device_id == nullptr) return kInvalidParameter;
    copyDeviceText(devices_[static_cast<size_t>(index)].name, device_name);
    copyDeviceText(devices_[static_cast<size_t>(index)].id, device_id);
    return kSuccess;
  }

  void release() override { delete this; }

 private:
  const std::vector<AudioDeviceEntry> devices_;
};

enum class IdKind { kNone, kDevice, kOther };

template <class Id>
IdKind kindOf(const Id& id) {
  if (std::holds_alternative<std::monostate>(id)) return IdKind::kNone;
  return std::holds_alternative<SoundDevice>(id) ? IdKind::kDevice : IdKind::kOther;
}

// Clips, test sounds and no speaker are there by being chosen; devices are there when they are listed.
IdKind kindOf(AudioDeviceKind kind, const std::string& id) {
  return kind == AudioDeviceKind::kMicrophone ? kindOf(parseMicrophoneId(id)) : kindOf(parseSpeakerId(id));
}

bool isListed(const std::vector<AudioDeviceEntry>& devices, const std::string& id) {
  return std::any_of(devices.begin(), devices.end(), [&](const AudioDeviceEntry& entry) { return entry.id == id; });
}

std::string textOf(const char* text) {
  return text != nullptr ? text : "";
}

}  // namespace

AudioDeviceManager::AudioDeviceManager(const AudioDeviceList& devices, DeviceTests& tests, Listener& listener)
    : devices_(devices),
      tests_(tests),
      listener_(listener),
      microphone_{AudioDeviceKind::kMicrophone, {}, kFullVolume, false},
      speaker_{AudioDeviceKind::kSpeaker, {}, kFullVolume, false} {}

// Listing and choosing.

IAudioDeviceCollection* AudioDeviceManager::enumerateAudioPlaybackDevices() {
  return enumerate(speaker_);
}

IAudioDeviceCollection* AudioDeviceManager::enumerateAudioCaptureDevices() {
  return enumerate(microphone_);
}

int32_t AudioDeviceManager::setAudioPlaybackDevice(const char* device_id) {
  return choose(speaker_, device_id);
}

int32_t AudioDeviceManager::setAudioCaptureDevice(const char* device_id) {
  return choose(microphone_, device_id);
}

int32_t AudioDeviceManager::getAudioPlaybackDevice(char device_id[kDeviceTextSize]) {
  return current(speaker_, device_id);
}

int32_t AudioDeviceManager::getAudioCaptureDevice(char device_id[kDeviceTextSize]) {
  return current(microphone_, device_id);
}

int32_t AudioDeviceManager::followSystemPlaybackDevice(bool followed) {
  return follow(speaker_, followed);
}

int32_t AudioDeviceManager::followSystemCaptureDevice(bool followed) {
  return follow(microphone_, followed);
}

IAudioDeviceCollection* AudioDeviceManager::enumerate(const Side& side) const {
  std::vector<AudioDeviceEntry> devices = devices_.snapshot(side.kind);
  if (filters_silent_) {
    std::erase_if(devices,
                  [&](const AudioDeviceEntry& device) { return device.is_silent && device.id != side.chosen; });
  }
  const bool is_other = !side.chosen.empty() && kindOf(side.kind, side.chosen) == IdKind::kOther;
  if (is_other && !isListed(devices, side.chosen)) {
    devices.push_back({.id = side.chosen, .name = microphoneName(side.chosen)});
  }
  return std::make_unique<DeviceCollection>(std::move(devices)).release();
}

int32_t AudioDeviceManager::check(const Side& side, const std::string& id) const {
  // An id has to fit the buffer in which it is handed back.
  if (id.empty() || id.size() >= kDeviceTextSize) return kInvalidParameter;
  const IdKind kind = kindOf(side.kind, id);
  if (kind == IdKind::kNone) {
    return side.kind == AudioDeviceKind::kMicrophone && id.starts_with("test:") ? kInvalidParameter : kNotFound;
  }
  // A clip may come to be there before capture starts, so whether it is there shows only then.
  return kind == IdKind::kDevice && !isListed(devices_.snapshot(side.kind), id) ? kNotFound : kSuccess;
}

int32_t AudioDeviceManager::choose(Side& side, const char* device_id) {
  const std::string id = textOf(device_id);
  if (const int32_t status = check(side, id); status != kSuccess) return status;
  side.chosen = id;
  listener_.onAudioDeviceChosen(side.kind, id);
  return kSuccess;
}

int32_t AudioDeviceManager::current(const Side& side, char* device_id) const {
  if (device_id == nullptr) return kInvalidParameter;
  const std::string id = side.chosen.empty() ? devices_.defaultId(side.kind) : side.chosen;
  if (id.empty()) return kNotFound;
  copyDeviceText(id, device_id);
  return kSuccess;
}

int32_t AudioDeviceManager::follow(Side& side, bool followed) {
  if (followed) {
    side.chosen.clear();
    listener_.onAudioDeviceChosen(side.kind, {});
    return kSuccess;
  }
  if (!side.chosen.empty()) return kSuccess;
  const std::string id = devices_.defaultId(side.kind);
  if (id.empty()) return kNotFound;
  side.chosen = id;
  listener_.onAudioDeviceChosen(side.kind, id);
  return kSuccess;
}

int32_t AudioDeviceManager::enableFilterSilentDevice(bool enable) {
  filters_silent_ = enable;
  return kSuccess;
}

// Volumes.

int32_t AudioDeviceManager::setAudioPlaybackDeviceVolume(uint32_t volume) {
  return setVolume(speaker_, volume);
}

int32_t AudioDeviceManager::getAudioPlaybackDeviceVolume(uint32_t& volume) {
  volume = speaker_.volume;
  return kSuccess;
}

int32_t AudioDeviceManager::setAudioCaptureDeviceVolume(uint32_t volume) {
  return setVolume(microphone_, volume);
}

int32_t AudioDeviceManager::getAudioCaptureDeviceVolume(uint32_t& volume) {
  volume = microphone_.volume;
  return kSuccess;
}

int32_t AudioDeviceManager::setAudioPlaybackDeviceMute(bool mute) {
  return setMute(speaker_, mute);
}

int32_t AudioDeviceManager::getAudioPlaybackDeviceMute(bool& mute) {
  mute = speaker_.muted;
  return kSuccess;
}

int32_t AudioDeviceManager::setAudioCaptureDeviceMute(bool mute) {
  return setMute(microphone_, mute);
}

int32_t AudioDeviceManager::getAudioCaptureDeviceMute(bool& mute) {
  mute = microphone_.muted;
  return kSuccess;
}

int32_t AudioDeviceManager::setVolume(Side& side, uint32_t volume) {
  if (volume > kFullVolume) return kInvalidParameter;
  if (std::exchange(side.volume, volume) != volume) {
    listener_.onAudioDeviceVolume(side.kind, static_cast<int32_t>(volume), side.muted);
  }
  return kSuccess;
}

int32_t AudioDeviceManager::setMute(Side& side, bool mute) {
  if (std::exchange(side.muted, mute) != mute) {
    listener_.onAudioDeviceVolume(side.kind, static_cast<int32_t>(side.volume), mute);
  }
  return kSuccess;
}

// Trying out devices.

int32_t AudioDeviceManager::initAudioPlaybackDeviceForTest(const char* device_id) {
  const std::string id = textOf(device_id);
  const int32_t status = check(speaker_, id);
  return status == kSuccess ? tests_.useSpeaker(id) : status;
}

int32_t AudioDeviceManager::initAudioCaptureDeviceForTest(const char* device_id) {
  const std::string id = textOf(device_id);
  const int32_t status = check(microphone_, id);
  return status == kSuccess ? tests_.useMicrophone(id) : status;
}

int32_t AudioDeviceManager::startAudioPlaybackDeviceTest(const char* test_audio_file_path,
                                                         uint32_t indication_interval) {
  return tests_.startPlaying(textOf(test_audio_file_path), indication_interval);
}

int32_t AudioDeviceManager::stopAudioPlaybackDeviceTest() {
  return tests_.stopPlaying();
}

int32_t AudioDeviceManager::startAudioDeviceRecordTest(int32_t indication_interval) {
  return tests_.startRecording(indication_interval);
}

int32_t AudioDeviceManager::stopAudioDeviceRecordAndPlayTest() {
  return tests_.replay();
}

int32_t AudioDeviceManager::stopAudioDevicePlayTest() {
  return tests_.stopReplaying();
}

int32_t AudioDeviceManager::startEchoTest(const EchoTestConfig& config, int32_t delay_time) {
  constexpr int32_t kShortestDelay = 2;
  constexpr int32_t kLongestDelay = 10;
  constexpr int32_t kShortestInterval = 100;
  const int32_t interval = config.audio_properties_report_interval;
  if (delay_time < kShortestDelay || delay_time > kLongestDelay || (interval > 0 && interval < kShortestInterval)) {
    return kInvalidParameter;
  }
  return tests_.startEchoTest(interval, delay_time);
}

int32_t AudioDeviceManager::stopEchoTest() {
  return tests_.stopEchoTest();
}

int32_t AudioDeviceManager::startHardwareEchoDetection(const char* test_audio_file_path) {
  return tests_.startEchoDetection(textOf(test_audio_file_path));
}

int32_t AudioDeviceManager::stopHardwareEchoDetection() {
  return tests_.stopEchoDetection();
}

// What is not offered.

int32_t AudioDeviceManager::enableVocalInstrumentBalance(bool /*enable*/) {
  return listener_.notSupported(__func__);
}

}  // namespace corvane::rtc
