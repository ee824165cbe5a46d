#include "devices/camera_list.h"

#include <algorithm>
#include <utility>

#include "core/bus_watch.h"
#include "devices/camera_id.h"

namespace corvane::rtc {

namespace {

// The device file of a Video4Linux camera, "" for any other device.
std::string deviceFile(GstDevice* device) {
  const GstPtr<GstStructure> properties(gst_device_get_properties(device));
  if (properties == nullptr) return {};
  for (const char* name : {"device.path", "api.v4l2.path"}) {
    const char* path = gst_structure_get_string(properties.get(), name);
    if (path != nullptr && std::string_view(path).starts_with("/dev/video")) return path;
  }
  return {};
}

}  // namespace

CameraList::CameraList(EngineContext& context, const std::vector<std::string>& listed) : context_(context) {
  for (const std::string& id : listed) {
    if (std::holds_alternative<std::monostate>(parseCameraId(id))) {
      context_.log.warning("\"%s\" is no camera's id and is not listed", id.c_str());
    } else {
      listed_.push_back({id, cameraName(id)});
    }
  }
  listed_.push_back({std::string(kDefaultTestCamera), cameraName(kDefaultTestCamera)});
}

void CameraList::start(bool have_gstreamer) {
  if (have_gstreamer) {
    monitor_.reset(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor_.get(), "Video/Source", nullptr);
    const GstPtr<GstBus> bus(gst_device_monitor_get_bus(monitor_.get()));
    watch_ = watchBus<&CameraList::onMessage>(bus.get(), context_.thread, this);
    if (!gst_device_monitor_start(monitor_.get())) context_.log.info("no provider of cameras on this machine");
    GList* devices = gst_device_monitor_get_devices(monitor_.get());
    for (GList* item = devices; item != nullptr; item = item->next) {
      add(GstPtr<GstDevice>(GST_DEVICE(item->data)));
    }
    g_list_free(devices);
  }
  publish();
  context_.log.info("%zu cameras on this machine", devices_.size());
}

void CameraList::stop() {
  watch_.reset();
  if (monitor_ != nullptr) gst_device_monitor_stop(monitor_.get());
  monitor_.reset();
  devices_.clear();
}

std::vector<CameraEntry> CameraList::snapshot() const {
  std::unique_lock lock(mutex_);
  looked_.wait(lock, [this] { return has_looked_; });
  return published_;
}

GstPtr<GstCaps> CameraList::formats(const std::string& id) const {
  const auto found = std::find_if(devices_.begin(), devices_.end(), [&](const Device& d) { return d.entry.id == id; });
  return GstPtr<GstCaps>(found != devices_.end() ? gst_device_get_caps(found->device.get()) : nullptr);
}

void CameraList::onMessage(GstMessage* message) {
  GstDevice* device = nullptr;
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_DEVICE_ADDED) {
    gst_message_parse_device_added(message, &device);
    add(GstPtr<GstDevice>(device));
  } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_DEVICE_REMOVED) {
    gst_message_parse_device_removed(message, &device);
    remove(device);
    gst_object_unref(device);
  }
}

void CameraList::add(GstPtr<GstDevice> device) {
  const std::string file = deviceFile(device.get());
  if (file.empty()) return;
  const std::string id = deviceCameraId(file);
  // The first look and the watch may both tell of a device that comes just then.
  if (std::any_of(devices_.begin(), devices_.end(), [&](const Device& d) { return d.entry.id == id; })) return;
  const GstPtr<gchar> name(gst_device_get_display_name(device.get()));
  devices_.push_back({{id, name.get()}, std::move(device)});
  context_.log.info("camera %s is there: %s", id.c_str(), name.get());
  if (!has_looked_) return;
  publish();
  context_.events->onVideoDeviceStateChanged(id.c_str(), kVideoDeviceTypeCapture, kMediaDeviceStateAdded,
                                             kMediaDeviceErrorOk);
}

void CameraList::remove(GstDevice* device) {
  const std::string id = deviceCameraId(deviceFile(device));
  if (std::erase_if(devices_, [&](const Device& d) { return d.entry.id == id; }) == 0) return;
  publish();
  context_.log.info("camera %s is gone", id.c_str());
  context_.events->onVideoDeviceStateChanged(id.c_str(), kVideoDeviceTypeCapture, kMediaDeviceStateRemoved,
                                             kMediaDeviceErrorOk);
}

void CameraList::publish() {
  std::vector<CameraEntry> cameras;
  for (const Device& device : devices_) cameras.push_back(device.entry);
  cameras.insert(cameras.end(), listed_.begin(), listed_.end());
  {
    const std::lock_guard lock(mutex_);
    published_ = std::move(cameras);
    has_looked_ = true;
  }
  looked_.notify_all();
}

}  // namespace corvane::rtc
