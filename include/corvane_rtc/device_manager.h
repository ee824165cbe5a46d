// Microphones, speakers and cameras: listing, choosing, volumes and tests.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Bytes of every buffer for a device's name or id, with the zero at the end. Longer texts are cut between characters.
inline constexpr int32_t kDeviceTextSize = 512;

/// The microphones or speakers there were at one moment. Owned by the caller until release(); any one thread at a time.
class IAudioDeviceCollection {
 public:
  virtual int32_t getCount() = 0;
  /// kInvalidParameter outside 0 to getCount() - 1; the buffers are then unchanged.
  virtual int32_t getDevice(int32_t index, char device_name[kDeviceTextSize], char device_id[kDeviceTextSize]) = 0;
  virtual void release() = 0;

 protected:
  ~IAudioDeviceCollection() = default;
};

/// The cameras there were at one moment. Owned by the caller until release(); any one thread at a time.
class IVideoDeviceCollection {
 public:
  virtual int32_t getCount() = 0;
  /// kInvalidParameter outside 0 to getCount() - 1; the buffers are then unchanged.
  virtual int32_t getDevice(int32_t index, char device_name[kDeviceTextSize], char device_id[kDeviceTextSize]) = 0;
  virtual void release() = 0;

 protected:
  ~IVideoDeviceCollection() = default;
};

/// What an echo test needs: it talks to the service in a room of its own.
struct EchoTestConfig {
  int32_t audio_properties_report_interval;  ///< milliseconds between volume reports, at least 100; 0 for none
  const char* uid;
  const char* room_id;
  const char* token;
};

/// Microphones and speakers. Belongs to the engine; threads as for IRTCVideo.
/// Getters leave their out parameter unchanged on failure. kNotFound: no device has the id, or there is none at all.
class IAudioDeviceManager {
 public:
  virtual IAudioDeviceCollection* enumerateAudioPlaybackDevices() = 0;  ///< null on failure
  virtual IAudioDeviceCollection* enumerateAudioCaptureDevices() = 0;   ///< null on failure

  // Choosing. A chosen device ends following the system's default.

  virtual int32_t setAudioPlaybackDevice(const char* device_id) = 0;
  virtual int32_t setAudioCaptureDevice(const char* device_id) = 0;
  virtual int32_t getAudioPlaybackDevice(char device_id[kDeviceTextSize]) = 0;
  virtual int32_t getAudioCaptureDevice(char device_id[kDeviceTextSize]) = 0;
  virtual int32_t followSystemPlaybackDevice(bool followed) = 0;  ///< uses the system's default as it changes
  virtual int32_t followSystemCaptureDevice(bool followed) = 0;
  virtual int32_t enableFilterSilentDevice(bool enable) = 0;  ///< lists no devices that cannot make a sound

  // Volumes of the devices themselves, 0 to 255.

  virtual int32_t setAudioPlaybackDeviceVolume(uint32_t volume) = 0;
  virtual int32_t getAudioPlaybackDeviceVolume(uint32_t& volume) = 0;
  virtual int32_t setAudioCaptureDeviceVolume(uint32_t volume) = 0;
  virtual int32_t getAudioCaptureDeviceVolume(uint32_t& volume) = 0;
  virtual int32_t setAudioPlaybackDeviceMute(bool mute) = 0;
  virtual int32_t getAudioPlaybackDeviceMute(bool& mute) = 0;
  virtual int32_t setAudioCaptureDeviceMute(bool mute) = 0;
  virtual int32_t getAudioCaptureDeviceMute(bool& mute) = 0;

  // Tests, one at a time: kWrongState while another runs. Intervals in milliseconds between volume reports.

  virtual int32_t initAudioPlaybackDeviceForTest(const char* device_id) = 0;
  virtual int32_t initAudioCaptureDeviceForTest(const char* device_id) = 0;
  /// Plays a WAV, MP3 or AAC file over and over. Reports onAudioPlaybackDeviceTestVolume.
  virtual int32_t startAudioPlaybackDeviceTest(const char* test_audio_file_path, uint32_t indication_interval) = 0;
  virtual int32_t stopAudioPlaybackDeviceTest() = 0;
  virtual int32_t startAudioDeviceRecordTest(int32_t indication_interval) = 0;
  virtual int32_t stopAudioDeviceRecordAndPlayTest() = 0;  ///< ends the recording and plays it
  virtual int32_t stopAudioDevicePlayTest() = 0;
  /// Plays back what is said after `delay_time` seconds, 2 to 10. Reports onEchoTestResult.
  virtual int32_t startEchoTest(const EchoTestConfig& config, int32_t delay_time) = 0;
  virtual int32_t stopEchoTest() = 0;
  /// Plays a file and listens for it. Reports onHardwareEchoDetectionResult. Outside rooms only.
  virtual int32_t startHardwareEchoDetection(const char* test_audio_file_path) = 0;
  virtual int32_t stopHardwareEchoDetection() = 0;

  /// Brings the loudness of music from mixing and players and that of the local voice into line.
  virtual int32_t enableVocalInstrumentBalance(bool enable) = 0;

 protected:
  ~IAudioDeviceManager() = default;
};

/// Cameras. Belongs to the engine; threads as for IRTCVideo.
class IVideoDeviceManager {
 public:
  virtual IVideoDeviceCollection* enumerateVideoCaptureDevices() = 0;  ///< null on failure
  virtual int32_t setVideoCaptureDevice(const char* device_id) = 0;    ///< also while capturing
  virtual int32_t getVideoCaptureDevice(char device_id[kDeviceTextSize]) = 0;

 protected:
  ~IVideoDeviceManager() = default;
};

}  // namespace corvane::rtc
