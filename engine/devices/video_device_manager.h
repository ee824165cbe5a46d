// The cameras as applications see them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "corvane_rtc/device_manager.h"
#include "devices/camera_list.h"

namespace corvane::rtc {

class VideoDeviceManager final : public IVideoDeviceManager {
 public:
  /// `cameras` outlives this. `on_choice` is told each camera that the application chooses.
  VideoDeviceManager(const CameraList& cameras, std::function<void(const std::string& id)> on_choice);

  IVideoDeviceCollection* enumerateVideoCaptureDevices() override;
  int32_t setVideoCaptureDevice(const char* device_id) override;
  int32_t getVideoCaptureDevice(char device_id[kDeviceTextSize]) override;

 private:
  const CameraList& cameras_;
  const std::function<void(const std::string& id)> on_choice_;
  std::string chosen_;  // "" until the application chooses: then the first camera there is
};

}  // namespace corvane::rtc
