// The cameras there are, kept up to date as devices come and go.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/gst_pointers.h"

namespace corvane::rtc {

struct CameraEntry {
  std::string id;
  std::string name;
};

/// Everything but snapshot() on the engine thread.
class CameraList {
 public:
  /// `listed`: ids that are always among the cameras, after the machine's devices.
  CameraList(EngineContext& context, const std::vector<std::string>& listed);

  /// Looks for devices and goes on watching. `have_gstreamer` false: there are no devices.
  void start(bool have_gstreamer);
  void stop();

  /// Never empty. Waits for the first look, which start() ends. Any thread; on the engine's own only after start().
  std::vector<CameraEntry> snapshot() const;

  /// What formats a device of the machine delivers; null for one that is not there.
  GstPtr<GstCaps> formats(const std::string& id) const;

 private:
  struct Device {
    CameraEntry entry;
    GstPtr<GstDevice> device;
  };

  void onMessage(GstMessage* message);
  void add(GstPtr<GstDevice> device);
  void remove(GstDevice* device);
  void publish();

  EngineContext& context_;
  std::vector<CameraEntry> listed_;
  GstPtr<GstDeviceMonitor> monitor_;
  AttachedSource watch_;
  std::vector<Device> devices_;

  mutable std::mutex mutex_;
  mutable std::condition_variable looked_;
  bool has_looked_ = false;
  std::vector<CameraEntry> published_;
};

}  // namespace corvane::rtc
