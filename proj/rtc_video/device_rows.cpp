// Cameras, microphones and speakers: listing, choosing, volumes. Their tests have a table of their own.
#include "events/payload.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

using DeviceText = char[rtc::kDeviceTextSize];

napi_value deviceObject(napi_env env, const DeviceText& name, const DeviceText& id) {
  Payload device(env);
  device.put("device_name", makeText(env, name));
  device.put("device_id", makeText(env, id));
  return device.finish();
}

// Appends the collection's devices to the call's answer and releases the collection.
template <class Collection>
void answerDevices(Call& call, Collection* collection, const char* missing, const char* each) {
  if (collection == nullptr) {
    call.say(kLogInfo, missing);
    return;
  }
  const int32_t count = collection->getCount();
  for (int32_t i = 0; i < count; ++i) {
    DeviceText name = {};
    DeviceText id = {};
    collection->getDevice(i, name, id);
    // Texts end inside their buffers, whatever the engine wrote.
    name[rtc::kDeviceTextSize - 1] = '\0';
    id[rtc::kDeviceTextSize - 1] = '\0';
    call.say(kLogInfo, each, name, id);
    napi_set_element(call.env, call.answer, static_cast<uint32_t>(i), deviceObject(call.env, name, id));
  }
  collection->release();
  call.result = 0;
}

void answerAudioDevices(Call& call, rtc::IAudioDeviceCollection* collection) {
  answerDevices(call, collection, "%s(%d), audioDeviceCollection is nullptr", "%s(%d), deviceName:%s, deviceId: %s");
}

void enumerateAudioPlaybackDevices(Call& call) {
  auto* manager = find<rtc::IAudioDeviceManager>(call);
  if (manager != nullptr) answerAudioDevices(call, manager->enumerateAudioPlaybackDevices());
}

void enumerateAudioCaptureDevices(Call& call) {
  auto* manager = find<rtc::IAudioDeviceManager>(call);
  if (manager != nullptr) answerAudioDevices(call, manager->enumerateAudioCaptureDevices());
}

void enumerateVideoCaptureDevices(Call& call) {
  auto* manager = find<rtc::IVideoDeviceManager>(call);
  if (manager == nullptr) return;
  answerDevices(call, manager->enumerateVideoCaptureDevices(), "%s(%d), videoDeviceCollection is nullptr",
                "%s(%d), deviceName: %s, deviceId: %s");
}

// Getters with an out parameter: the answer is what the engine wrote there, unless it failed.
template <auto Operation>
struct Getter;

template <class Manager, int32_t (Manager::*Operation)(char*)>
struct Getter<Operation> {
  static void run(Call& call) {
    Manager* manager = find<Manager>(call);
    if (manager == nullptr) return;
    DeviceText id = {};
    call.result = (manager->*Operation)(id);
    id[rtc::kDeviceTextSize - 1] = '\0';
    call.say(kLogInfo, "%s(%d), deviceId: %s", id);
    if (call.result == 0) call.answer = makeText(call.env, id);
  }
};

template <int32_t (rtc::IAudioDeviceManager::*Operation)(bool&)>
struct Getter<Operation> {
  static void run(Call& call) {
    auto* manager = find<rtc::IAudioDeviceManager>(call);
    if (manager == nullptr) return;
    bool mute = false;
    call.result = (manager->*Operation)(mute);
    call.say(kLogInfo, "%s(%d), mute: %d", mute ? 1 : 0);
    if (call.result == 0) napi_get_boolean(call.env, mute, &call.answer);
  }
};

// A bare row's run: the exit line carries the volume, also that of a call which never got one.
template <int32_t (rtc::IAudioDeviceManager::*Operation)(uint32_t&)>
struct Getter<Operation> {
  static void run(Call& call) {
    call.say(kLogInfo, "+%s(%d)");
    uint32_t volume = 0;
    call.result = ask(call, volume);
    call.say(kLogInfo, "-%s(%d), volume: %d, ret: %d", static_cast<int>(volume), static_cast<int>(call.result));
    if (call.result == 0) napi_create_uint32(call.env, volume, &call.answer);
  }

 private:
  static int32_t ask(Call& call, uint32_t& volume) {
    call.owner = KavRTCVideo::findOwner(call);
    if (call.owner == nullptr) return -1;
    auto* manager = find<rtc::IAudioDeviceManager>(call);
    return manager == nullptr ? -1 : (manager->*Operation)(volume);
  }
};

// A row whose run is a Getter.
template <auto Operation>
consteval RowMaker<SpecialShape> getter(const char* name, int32_t line = __builtin_LINE()) {
  return special(name, &Getter<Operation>::run, {}, line);
}

template <auto Operation>
consteval RowMaker<SpecialShape> volumeGetter(const char* name, int32_t line = __builtin_LINE()) {
  return bare(name, &Getter<Operation>::run, line);
}

constexpr char kParamIsNotValid[] = "%s(%d), param is not valid";
constexpr char kFollowExit[] = "+%s(%d) ret: %d";

constexpr Row kRows[] = {
    special("enumerateVideoCaptureDevices", &enumerateVideoCaptureDevices).answers(Answer::kList),
    plain<&rtc::IVideoDeviceManager::setVideoCaptureDevice>("setVideoCaptureDevice").refuses(kParamIsNotValid),
    getter<&rtc::IVideoDeviceManager::getVideoCaptureDevice>("getVideoCaptureDevice").answers(Answer::kText),

    special("enumerateAudioPlaybackDevices", &enumerateAudioPlaybackDevices).answers(Answer::kList),
    special("enumerateAudioCaptureDevices", &enumerateAudioCaptureDevices).answers(Answer::kList),
    plain<&rtc::IAudioDeviceManager::setAudioPlaybackDevice>("setAudioPlaybackDevice").refuses(kParamIsNotValid),
    plain<&rtc::IAudioDeviceManager::setAudioCaptureDevice>("setAudioCaptureDevice").refuses(kParamIsNotValid),
    getter<&rtc::IAudioDeviceManager::getAudioPlaybackDevice>("getAudioPlaybackDevice").answers(Answer::kText),
    getter<&rtc::IAudioDeviceManager::getAudioCaptureDevice>("getAudioCaptureDevice").answers(Answer::kText),
    plain<&rtc::IAudioDeviceManager::followSystemPlaybackDevice>("followSystemPlaybackDevice").exits(kFollowExit),
    plain<&rtc::IAudioDeviceManager::followSystemCaptureDevice>("followSystemCaptureDevice").exits(kFollowExit),
    plain<&rtc::IAudioDeviceManager::enableFilterSilentDevice>("enableFilterSilentDevice"),

    plain<&rtc::IAudioDeviceManager::setAudioPlaybackDeviceVolume>("setAudioPlaybackDeviceVolume")
        .refuses(kParamIsNotValid),
    volumeGetter<&rtc::IAudioDeviceManager::getAudioPlaybackDeviceVolume>("getAudioPlaybackDeviceVolume"),
    plain<&rtc::IAudioDeviceManager::setAudioCaptureDeviceVolume>("setAudioCaptureDeviceVolume")
        .refuses(kParamIsNotValid),
    volumeGetter<&rtc::IAudioDeviceManager::getAudioCaptureDeviceVolume>("getAudioCaptureDeviceVolume"),
    plain<&rtc::IAudioDeviceManager::setAudioPlaybackDeviceMute>("setAudioPlaybackDeviceMute")
        .refuses(kParamIsNotValid),
    getter<&rtc::IAudioDeviceManager::getAudioPlaybackDeviceMute>("getAudioPlaybackDeviceMute"),
    plain<&rtc::IAudioDeviceManager::setAudioCaptureDeviceMute>("setAudioCaptureDeviceMute").refuses(kParamIsNotValid),
    getter<&rtc::IAudioDeviceManager::getAudioCaptureDeviceMute>("getAudioCaptureDeviceMute"),
};

}  // namespace

std::span<const Row> deviceRows() {
  return kRows;
}

}  // namespace corvane
