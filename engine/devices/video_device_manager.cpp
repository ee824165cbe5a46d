#include "devices/video_device_manager.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "devices/camera_id.h"
#include "devices/device_text.h"

namespace corvane::rtc {

namespace {

class CameraCollection final : public IVideoDeviceCollection {
 public:
  explicit CameraCollection(std::vector<CameraEntry> cameras) : cameras_(std::move(cameras)) {}

  int32_t getCount() override { return static_cast<int32_t>(cameras_.size()); }

  int32_t getDevice(int32_t index, char device_name[kDeviceTextSize], char device_id[kDeviceTextSize]) override {
    if (index < 0 || index >= getCount() || device_name == nullptr || device_id == nullptr) return kInvalidParameter;
    copyDeviceText(cameras_[static_cast<size_t>(index)].name, device_name);
    copyDeviceText(cameras_[static_cast<size_t>(index)].id, device_id);
    return kSuccess;
  }

  void release() override { delete this; }

 private:
  const std::vector<CameraEntry> cameras_;
};

}  // namespace

VideoDeviceManager::VideoDeviceManager(const CameraList& cameras, std::function<void(const std::string& id)> on_choice)
    : cameras_(cameras), on_choice_(std::move(on_choice)) {}

IVideoDeviceCollection* VideoDeviceManager::enumerateVideoCaptureDevices() {
  std::vector<CameraEntry> cameras = cameras_.snapshot();
  // Clips and test pictures are there by being chosen; a device that has been pulled out is not.
  const bool listed = std::any_of(cameras.begin(), cameras.end(), [this](const auto& c) { return c.id == chosen_; });
  const bool is_device = std::holds_alternative<DeviceCamera>(parseCameraId(chosen_));
  if (!chosen_.empty() && !listed && !is_device) cameras.push_back({chosen_, cameraName(chosen_)});
  return std::make_unique<CameraCollection>(std::move(cameras)).release();
}

int32_t VideoDeviceManager::setVideoCaptureDevice(const char* device_id) {
  const std::string id = device_id != nullptr ? device_id : "";
  // An id has to fit the buffer in which getVideoCaptureDevice() hands it back.
  if (id.empty() || id.size() >= kDeviceTextSize) return kInvalidParameter;
  const CameraId camera = parseCameraId(id);
  if (std::holds_alternative<std::monostate>(camera)) return id.starts_with("test:") ? kInvalidParameter : kNotFound;
  if (const auto* device = std::get_if<DeviceCamera>(&camera)) {
    if (access(device->device_file.c_str(), F_OK) != 0) return kNotFound;
  }
  // A clip may come to be there before capture starts, so whether it is there shows only then.
  chosen_ = id;
  on_choice_(id);
  return kSuccess;
}

int32_t VideoDeviceManager::getVideoCaptureDevice(char device_id[kDeviceTextSize]) {
  if (device_id == nullptr) return kInvalidParameter;
  copyDeviceText(chosen_.empty() ? cameras_.snapshot().front().id : chosen_, device_id);
  return kSuccess;
}

}  // namespace corvane::rtc
