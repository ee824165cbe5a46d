// The microphones and speakers there are, kept up to date as devices come and go.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/gst_pointers.h"
#include "corvane_rtc/device_events.h"

namespace corvane::rtc {

enum class AudioDeviceKind { kMicrophone, kSpeaker };

struct AudioDeviceEntry {
  std::string id = {};
  std::string name = {};
  bool is_default = false;  ///< the machine's
  bool is_echo = false;     ///< a microphone that hears what a speaker plays
  bool is_silent = false;   ///< a speaker that nobody hears, or a microphone without sound
};

/// Everything but snapshot() and defaultId() on the engine thread.
class AudioDeviceList {
 public:
  /// `microphones`: ids that are always among the microphones, after the machine's devices.
  AudioDeviceList(EngineContext& context, const std::vector<std::string>& microphones);

  /// Looks for devices and goes on watching; `on_change` is told when devices, or which is the default, have changed.
  /// `have_gstreamer` false: there are no devices.
  void start(bool have_gstreamer, std::function<void()> on_change);
  void stop();

  /// Any thread; on the engine's own only after start(). They wait for the first look, which start() ends.
  /// Microphones may be none; the last speaker is "null:".
  std::vector<AudioDeviceEntry> snapshot(AudioDeviceKind kind) const;
  /// What is used where nothing was chosen: the machine's default, else the first, but no microphone that hears a
  /// speaker unless the machine says so. "" for none.
  std::string defaultId(AudioDeviceKind kind) const;

 private:
  struct Device {
    AudioDeviceKind kind;
    AudioDeviceEntry entry;
  };

  void look();
  void onMessage(GstMessage* message);
  void add(const Device& device);
  void remove(const Device& device);
  void change(const Device& device);
  void report(const Device& device, MediaDeviceState state);
  void publish();
  void announce();
  std::vector<Device>::iterator find(const Device& device);

  static Device describe(GstDevice* device);

  EngineContext& context_;
  std::vector<Device> listed_;
  GstPtr<GstDeviceMonitor> monitor_;
  AttachedSource watch_;
  std::function<void()> on_change_;
  AttachedSource announcement_;
  std::vector<Device> devices_;

  mutable std::mutex mutex_;
  mutable std::condition_variable looked_;
  bool has_looked_ = false;
  std::vector<Device> published_;
};

}  // namespace corvane::rtc
