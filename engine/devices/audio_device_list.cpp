#include "devices/audio_device_list.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <utility>

#include "core/bus_watch.h"
#include "devices/audio_device_id.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kSettleTime(50);

const char* nameOf(AudioDeviceKind kind) {
  return kind == AudioDeviceKind::kMicrophone ? "microphone" : "speaker";
}

// What an element would open that is made for the device; "" for a kind of device that the engine does not know.
std::string deviceId(GstDevice* device) {
  const GstPtr<GstElement> element(gst_device_create_element(device, nullptr));
  if (element == nullptr) return {};
  gst_object_ref_sink(element.get());
  if (g_object_class_find_property(G_OBJECT_GET_CLASS(element.get()), "device") == nullptr) return {};
  gchar* name = nullptr;
  g_object_get(element.get(), "device", &name, nullptr);
  const GstPtr<gchar> owned(name);
  GstElementFactory* factory = gst_element_get_factory(element.get());
  if (name == nullptr || factory == nullptr) return {};
  return soundDeviceId(GST_OBJECT_NAME(factory), name);
}

// What a sound server has in place of the devices that a machine lacks, and microphones that were asked to be silent.
bool isSilent(const std::string& id) {
  if (id == "pulse:auto_null" || id == "pulse:auto_null.monitor") return true;
  const MicrophoneId microphone = parseMicrophoneId(id);
  const auto* test = std::get_if<TestMicrophone>(&microphone);
  return test != nullptr && test->wave == "silence";
}

}  // namespace

AudioDeviceList::AudioDeviceList(EngineContext& context, const std::vector<std::string>& microphones)
    : context_(context) {
  for (const std::string& id : microphones) {
    if (std::holds_alternative<std::monostate>(parseMicrophoneId(id))) {
      context_.log.warning("\"%s\" is no microphone's id and is not listed", id.c_str());
    } else {
      listed_.push_back(
          {AudioDeviceKind::kMicrophone, {.id = id, .name = microphoneName(id), .is_silent = isSilent(id)}});
    }
  }
  listed_.push_back(
      {AudioDeviceKind::kSpeaker, {.id = std::string(kNullSpeaker), .name = "No speaker", .is_silent = true}});
}

void AudioDeviceList::start(bool have_gstreamer, std::function<void()> on_change) {
  on_change_ = std::move(on_change);
  if (have_gstreamer) {
    monitor_.reset(gst_device_monitor_new());
    gst_device_monitor_add_filter(monitor_.get(), "Audio/Source", nullptr);
    gst_device_monitor_add_filter(monitor_.get(), "Audio/Sink", nullptr);
    const GstPtr<GstBus> bus(gst_device_monitor_get_bus(monitor_.get()));
    watch_ = watchBus<&AudioDeviceList::onMessage>(bus.get(), context_.thread, this);
    if (!gst_device_monitor_start(monitor_.get())) context_.log.info("no provider of sound devices on this machine");
    look();
  }
  publish();
  context_.log.info("%zu microphones and speakers on this machine", devices_.size());
}

void AudioDeviceList::stop() {
  announcement_.reset();
  watch_.reset();
  if (monitor_ != nullptr) gst_device_monitor_stop(monitor_.get());
  monitor_.reset();
  devices_.clear();
}

void AudioDeviceList::look() {
  gchar** names = gst_device_monitor_get_providers(monitor_.get());
  for (gchar** name = names; name != nullptr && *name != nullptr; ++name) {
    const GstPtr<GstDeviceProvider> provider(gst_device_provider_factory_get_by_name(*name));
    if (provider == nullptr) continue;
    // One that watches but cannot start has no server to ask; asking it all the same loses memory each time.
    const bool watches = gst_device_provider_can_monitor(provider.get()) != FALSE;
    if (watches && !gst_device_provider_start(provider.get())) continue;
    GList* devices = gst_device_provider_get_devices(provider.get());
    for (GList* item = devices; item != nullptr; item = item->next) {
      const GstPtr<GstDevice> device(GST_DEVICE(item->data));
      const bool is_sound =
          gst_device_has_classes(device.get(), "Audio/Source") || gst_device_has_classes(device.get(), "Audio/Sink");
      if (is_sound) add(describe(device.get()));
    }
    g_list_free(devices);
    if (watches) gst_device_provider_stop(provider.get());
  }
  g_strfreev(names);
}

std::vector<AudioDeviceEntry> AudioDeviceList::snapshot(AudioDeviceKind kind) const {
  std::vector<AudioDeviceEntry> entries;
  std::unique_lock lock(mutex_);
  looked_.wait(lock, [this] { return has_looked_; });
  for (const Device& device : published_) {
    if (device.kind == kind) entries.push_back(device.entry);
  }
  return entries;
}

std::string AudioDeviceList::defaultId(AudioDeviceKind kind) const {
  const std::vector<AudioDeviceEntry> entries = snapshot(kind);
  auto found = std::find_if(entries.begin(), entries.end(), [](const auto& entry) { return entry.is_default; });
  if (found == entries.end()) {
    found = std::find_if(entries.begin(), entries.end(), [](const auto& entry) { return !entry.is_echo; });
  }
  return found != entries.end() ? found->id : std::string();
}

void AudioDeviceList::onMessage(GstMessage* message) {
  GstDevice* device = nullptr;
  switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_DEVICE_ADDED:
      gst_message_parse_device_added(message, &device);
      add(describe(device));
      break;
    case GST_MESSAGE_DEVICE_REMOVED:
      gst_message_parse_device_removed(message, &device);
      remove(describe(device));
      break;
    case GST_MESSAGE_DEVICE_CHANGED:
      gst_message_parse_device_changed(message, &device, nullptr);
      change(describe(device));
      break;
    default:
      return;
  }
  gst_object_unref(device);
}

void AudioDeviceList::add(const Device& device) {
  // The first look and the watch may both tell of a device that comes just then.
  if (device.entry.id.empty() || find(device) != devices_.end()) return;
  context_.log.info("%s %s is there: %s", nameOf(device.kind), device.entry.id.c_str(), device.entry.name.c_str());
  devices_.push_back(device);
  if (!has_looked_) return;
  publish();
  report(device, kMediaDeviceStateAdded);
  announce();
}

void AudioDeviceList::remove(const Device& device) {
  const auto found = find(device);
  if (found == devices_.end()) return;
  devices_.erase(found);
  publish();
  context_.log.info("%s %s is gone", nameOf(device.kind), device.entry.id.c_str());
  report(device, kMediaDeviceStateRemoved);
  announce();
}

void AudioDeviceList::change(const Device& device) {
  const auto found = find(device);
  if (found == devices_.end()) return;
  found->entry = device.entry;
  publish();
  announce();
}

void AudioDeviceList::report(const Device& device, MediaDeviceState state) {
  const AudioDeviceType type =
      device.kind == AudioDeviceKind::kMicrophone ? kAudioDeviceTypeCapture : kAudioDeviceTypeRender;
  context_.events->onAudioDeviceStateChanged(device.entry.id.c_str(), type, state, kMediaDeviceErrorOk);
}

void AudioDeviceList::publish() {
  std::vector<Device> devices = devices_;
  // Those that hear a speaker are rarely what somebody looks for among the microphones.
  std::stable_partition(devices.begin(), devices.end(), [](const Device& device) { return !device.entry.is_echo; });
  devices.insert(devices.end(), listed_.begin(), listed_.end());
  {
    const std::lock_guard lock(mutex_);
    published_ = std::move(devices);
    has_looked_ = true;
  }
  looked_.notify_all();
}

void AudioDeviceList::announce() {
  // A default that moves is told in two messages, one for each device, and a headset comes as several devices.
  announcement_ = context_.thread.after(kSettleTime, [this] { on_change_(); });
}

std::vector<AudioDeviceList::Device>::iterator AudioDeviceList::find(const Device& device) {
  return std::find_if(devices_.begin(), devices_.end(), [&](const Device& other) {
    return other.kind == device.kind && other.entry.id == device.entry.id;
  });
}

AudioDeviceList::Device AudioDeviceList::describe(GstDevice* device) {
  Device described = {
      .kind = gst_device_has_classes(device, "Source") ? AudioDeviceKind::kMicrophone : AudioDeviceKind::kSpeaker,
      .entry = {.id = deviceId(device)}};
  described.entry.is_silent = isSilent(described.entry.id);
  const GstPtr<gchar> name(gst_device_get_display_name(device));
  described.entry.name = name.get();
  if (const GstPtr<GstStructure> properties{gst_device_get_properties(device)}) {
    gboolean is_default = FALSE;
    gst_structure_get_boolean(properties.get(), "is-default", &is_default);
    described.entry.is_default = is_default != FALSE;
    const char* device_class = gst_structure_get_string(properties.get(), "device.class");
    described.entry.is_echo = device_class != nullptr && std::string_view(device_class) == "monitor";
  }
  return described;
}

}  // namespace corvane::rtc
