// An event handler and a sink that keep what they are given, for tests to wait for.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "corvane_rtc/rtc_video_events.h"
#include "corvane_rtc/video_frame.h"

namespace corvane::test {

/// Longer than anything takes on a machine that works, however busy.
inline constexpr std::chrono::seconds kPatience(30);

/// Keeps the events of capture as texts: "device test:smpte 1 0", "screen-device window:7 1 0", "stream 0 1 0", "first
/// 0 640x360", "size 0 320x180", "error -4"; of sound "microphone test:sine 1 0", "speaker null: 4 0", "sound 1 0",
/// "first sound 0", "volume 1 128 0", "warning test:silence 1 2", "played 51", "echo test 0", "echo 3". Numbers are
/// those of the published headers.
class EventRecorder final : public rtc::IRTCVideoEventHandler {
 public:
  void onError(int32_t err) override;
  void onVideoDeviceStateChanged(const char* device_id, int32_t device_type, int32_t device_state,
                                 int32_t device_error) override;
  void onLocalVideoStateChanged(int32_t stream_index, int32_t state, int32_t error) override;
  void onFirstLocalVideoFrameCaptured(int32_t index, const rtc::VideoFrameInfo& info) override;
  void onLocalVideoSizeChanged(int32_t index, const rtc::VideoFrameInfo& info) override;
  void onAudioDeviceStateChanged(const char* device_id, int32_t device_type, int32_t device_state,
                                 int32_t device_error) override;
  void onAudioDeviceWarning(const char* device_id, int32_t device_type, int32_t device_warning) override;
  void onAudioDeviceVolumeChanged(int32_t device_type, int32_t volume, bool muted) override;
  void onLocalAudioStateChanged(int32_t state, int32_t error) override;
  void onFirstLocalAudioFrame(int32_t index) override;
  void onAudioPlaybackDeviceTestVolume(int32_t volume) override { add("played " + std::to_string(volume)); }
  void onEchoTestResult(int32_t result) override { add("echo test " + std::to_string(result)); }
  void onHardwareEchoDetectionResult(int32_t result) override { add("echo " + std::to_string(result)); }
  void onLocalAudioPropertiesReport(const rtc::LocalAudioPropertiesInfo* infos, int32_t count) override;
  void onRemoteAudioPropertiesReport(const rtc::RemoteAudioPropertiesInfo* infos, int32_t count,
                                     int32_t total_remote_volume) override;

  /// Whether `event` comes, or has come since it was last waited for.
  bool waitFor(const std::string& event);
  std::vector<std::string> all();
  size_t count();

  /// Whether a report of local sound comes, after those that were waited for, that is as wanted.
  bool waitForReport(const std::function<bool(const std::vector<rtc::LocalAudioPropertiesInfo>&)>& wanted);
  /// The same: one entry, of so many dB, give or take one.
  bool waitForLevel(int32_t decibels);
  size_t remoteReports();

 private:
  void add(std::string event);

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> events_;
  std::deque<std::string> unseen_;
  std::deque<std::vector<rtc::LocalAudioPropertiesInfo>> reports_;
  size_t remote_reports_ = 0;
};

/// What a sink notes of a frame.
struct SeenFrame {
  int32_t format;
  int32_t width;
  int32_t height;
  int32_t stride;  ///< of the first plane
  int64_t timestamp_us;
  std::vector<uint8_t> middle;  ///< four bytes of the first plane from the middle pixel on
};

/// Notes each frame. Keeps the first `hold` unreleased until takeHeld() or releaseHeld(); releases the others at once.
class RecordingSink final : public rtc::IVideoSink {
 public:
  explicit RecordingSink(size_t hold = 0) : hold_(hold) {}
  ~RecordingSink() { releaseHeld(); }
  RecordingSink(const RecordingSink&) = delete;
  RecordingSink& operator=(const RecordingSink&) = delete;

  bool onFrame(rtc::IVideoFrame* frame) override;

  bool waitFor(const std::function<bool(const std::vector<SeenFrame>&)>& enough);
  bool waitForFrames(size_t count);
  std::vector<SeenFrame> frames();
  std::vector<rtc::IVideoFrame*> takeHeld();
  void releaseHeld();

 private:
  const size_t hold_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<SeenFrame> frames_;
  std::deque<rtc::IVideoFrame*> held_;
};

}  // namespace corvane::test
