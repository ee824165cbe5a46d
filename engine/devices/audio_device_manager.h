// Microphones and speakers as applications see them.
#pragma once

#include <cstdint>
#include <string>

#include "corvane_rtc/device_manager.h"
#include "devices/audio_device_list.h"
#include "devices/device_tests.h"

namespace corvane::rtc {

class AudioDeviceManager final : public IAudioDeviceManager {
 public:
  /// Told on the caller's thread.
  class Listener {
   public:
    /// "" follows the machine's default.
    virtual void onAudioDeviceChosen(AudioDeviceKind kind, const std::string& id) = 0;
    virtual void onAudioDeviceVolume(AudioDeviceKind kind, int32_t volume, bool muted) = 0;
    /// Says once that the operation is not offered, and returns what it answers.
    virtual int32_t notSupported(const char* operation) = 0;

   protected:
    ~Listener() = default;
  };

  /// All outlive this.
  AudioDeviceManager(const AudioDeviceList& devices, DeviceTests& tests, Listener& listener);

  IAudioDeviceCollection* enumerateAudioPlaybackDevices() override;
  IAudioDeviceCollection* enumerateAudioCaptureDevices() override;

  int32_t setAudioPlaybackDevice(const char* device_id) override;
  int32_t setAudioCaptureDevice(const char* device_id) override;
  int32_t getAudioPlaybackDevice(char device_id[kDeviceTextSize]) override;
  int32_t getAudioCaptureDevice(char device_id[kDeviceTextSize]) override;
  int32_t followSystemPlaybackDevice(bool followed) override;
  int32_t followSystemCaptureDevice(bool followed) override;
  int32_t enableFilterSilentDevice(bool enable) override;

  int32_t setAudioPlaybackDeviceVolume(uint32_t volume) override;
  int32_t getAudioPlaybackDeviceVolume(uint32_t& volume) override;
  int32_t setAudioCaptureDeviceVolume(uint32_t volume) override;
  int32_t getAudioCaptureDeviceVolume(uint32_t& volume) override;
  int32_t setAudioPlaybackDeviceMute(bool mute) override;
  int32_t getAudioPlaybackDeviceMute(bool& mute) override;
  int32_t setAudioCaptureDeviceMute(bool mute) override;
  int32_t getAudioCaptureDeviceMute(bool& mute) override;

  int32_t initAudioPlaybackDeviceForTest(const char* device_id) override;
  int32_t initAudioCaptureDeviceForTest(const char* device_id) override;
  int32_t startAudioPlaybackDeviceTest(const char* test_audio_file_path, uint32_t indication_interval) override;
  int32_t stopAudioPlaybackDeviceTest() override;
  int32_t startAudioDeviceRecordTest(int32_t indication_interval) override;
  int32_t stopAudioDeviceRecordAndPlayTest() override;
  int32_t stopAudioDevicePlayTest() override;
  int32_t startEchoTest(const EchoTestConfig& config, int32_t delay_time) override;
  int32_t stopEchoTest() override;
  int32_t startHardwareEchoDetection(const char* test_audio_file_path) override;
  int32_t stopHardwareEchoDetection() override;
  int32_t enableVocalInstrumentBalance(bool enable) override;

 private:
  // Microphones or speakers, as far as the application has a say in them.
  struct Side {
    AudioDeviceKind kind;
    std::string chosen;  // "" follows the machine's default
    uint32_t volume;
    bool muted;
  };

  IAudioDeviceCollection* enumerate(const Side& side) const;
  /// kSuccess for an id that can be chosen.
  int32_t check(const Side& side, const std::string& id) const;
  int32_t choose(Side& side, const char* device_id);
  int32_t current(const Side& side, char* device_id) const;
  int32_t follow(Side& side, bool followed);
  int32_t setVolume(Side& side, uint32_t volume);
  int32_t setMute(Side& side, bool mute);

  const AudioDeviceList& devices_;
  DeviceTests& tests_;
  Listener& listener_;
  bool filters_silent_ = false;
  Side microphone_;
  Side speaker_;
};

}  // namespace corvane::rtc
