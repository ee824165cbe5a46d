// Managers of devices, mixing and effects.
#pragma once

#include "core/attachments.h"
#include "core/scripted_object.h"
#include "corvane_rtc/audio_mixing.h"
#include "corvane_rtc/device_manager.h"
#include "corvane_rtc/video_effect.h"
#include "objects/releasable.h"
#include "records/audio.h"
#include "records/video.h"

namespace corvane::scripted {

class AudioDeviceManager final : public rtc::IAudioDeviceManager, public ScriptedObject {
 public:
  AudioDeviceManager() : ScriptedObject("IAudioDeviceManager") {}

  rtc::IAudioDeviceCollection* enumerateAudioPlaybackDevices() override {
    return enumerate<rtc::IAudioDeviceCollection>("IAudioDeviceCollection", "enumerateAudioPlaybackDevices");
  }
  rtc::IAudioDeviceCollection* enumerateAudioCaptureDevices() override {
    return enumerate<rtc::IAudioDeviceCollection>("IAudioDeviceCollection", "enumerateAudioCaptureDevices");
  }
  int32_t setAudioPlaybackDevice(const char* device_id) override {
    return call("setAudioPlaybackDevice", arg("device_id", device_id));
  }
  int32_t setAudioCaptureDevice(const char* device_id) override {
    return call("setAudioCaptureDevice", arg("device_id", device_id));
  }
  int32_t getAudioPlaybackDevice(char device_id[rtc::kDeviceTextSize]) override {
    return callOut("getAudioPlaybackDevice", TextOut{"device_id", device_id, rtc::kDeviceTextSize});
  }
  int32_t getAudioCaptureDevice(char device_id[rtc::kDeviceTextSize]) override {
    return callOut("getAudioCaptureDevice", TextOut{"device_id", device_id, rtc::kDeviceTextSize});
  }
  int32_t followSystemPlaybackDevice(bool followed) override {
    return call("followSystemPlaybackDevice", arg("followed", followed));
  }
  int32_t followSystemCaptureDevice(bool followed) override {
    return call("followSystemCaptureDevice", arg("followed", followed));
  }
  int32_t enableFilterSilentDevice(bool enable) override {
    return call("enableFilterSilentDevice", arg("enable", enable));
  }
  int32_t setAudioPlaybackDeviceVolume(uint32_t volume) override {
    return call("setAudioPlaybackDeviceVolume", arg("volume", volume));
  }
  int32_t getAudioPlaybackDeviceVolume(uint32_t& volume) override {
    return callOut("getAudioPlaybackDeviceVolume", out("volume", volume));
  }
  int32_t setAudioCaptureDeviceVolume(uint32_t volume) override {
    return call("setAudioCaptureDeviceVolume", arg("volume", volume));
  }
  int32_t getAudioCaptureDeviceVolume(uint32_t& volume) override {
    return callOut("getAudioCaptureDeviceVolume", out("volume", volume));
  }
  int32_t setAudioPlaybackDeviceMute(bool mute) override {
    return call("setAudioPlaybackDeviceMute", arg("mute", mute));
  }
  int32_t getAudioPlaybackDeviceMute(bool& mute) override {
    return callOut("getAudioPlaybackDeviceMute", out("mute", mute));
  }
  int32_t setAudioCaptureDeviceMute(bool mute) override { return call("setAudioCaptureDeviceMute", arg("mute", mute)); }
  int32_t getAudioCaptureDeviceMute(bool& mute) override {
    return callOut("getAudioCaptureDeviceMute", out("mute", mute));
  }
  int32_t initAudioPlaybackDeviceForTest(const char* device_id) override {
    return call("initAudioPlaybackDeviceForTest", arg("device_id", device_id));
  }
  int32_t initAudioCaptureDeviceForTest(const char* device_id) override {
    return call("initAudioCaptureDeviceForTest", arg("device_id", device_id));
  }
  int32_t startAudioPlaybackDeviceTest(const char* test_audio_file_path, uint32_t indication_interval) override {
    return call("startAudioPlaybackDeviceTest", arg("test_audio_file_path", test_audio_file_path),
                arg("indication_interval", indication_interval));
  }
  int32_t stopAudioPlaybackDeviceTest() override { return call("stopAudioPlaybackDeviceTest"); }
  int32_t startAudioDeviceRecordTest(int32_t indication_interval) override {
    return call("startAudioDeviceRecordTest", arg("indication_interval", indication_interval));
  }
  int32_t stopAudioDeviceRecordAndPlayTest() override { return call("stopAudioDeviceRecordAndPlayTest"); }
  int32_t stopAudioDevicePlayTest() override { return call("stopAudioDevicePlayTest"); }
  int32_t startEchoTest(const rtc::EchoTestConfig& config, int32_t delay_time) override {
    return call("startEchoTest", arg("config", config), arg("delay_time", delay_time));
  }
  int32_t stopEchoTest() override { return call("stopEchoTest"); }
  int32_t startHardwareEchoDetection(const char* test_audio_file_path) override {
    return call("startHardwareEchoDetection", arg("test_audio_file_path", test_audio_file_path));
  }
  int32_t stopHardwareEchoDetection() override { return call("stopHardwareEchoDetection"); }
  int32_t enableVocalInstrumentBalance(bool enable) override {
    return call("enableVocalInstrumentBalance", arg("enable", enable));
  }

 private:
  template <class I>
  I* enumerate(const char* collection, const char* operation) const {
    note(operation);
    const auto devices = answer(operation);
    if (isWithheld(operation) || (devices && devices->isNull())) {
      return nullptr;
    }
    return new DeviceCollection<I>(collection, devices.value_or(Value()));
  }
};

class VideoDeviceManager final : public rtc::IVideoDeviceManager, public ScriptedObject {
 public:
  VideoDeviceManager() : ScriptedObject("IVideoDeviceManager") {}

  rtc::IVideoDeviceCollection* enumerateVideoCaptureDevices() override {
    return enumerate<rtc::IVideoDeviceCollection>("IVideoDeviceCollection", "enumerateVideoCaptureDevices");
  }
  int32_t setVideoCaptureDevice(const char* device_id) override {
    return call("setVideoCaptureDevice", arg("device_id", device_id));
  }
  int32_t getVideoCaptureDevice(char device_id[rtc::kDeviceTextSize]) override {
    return callOut("getVideoCaptureDevice", TextOut{"device_id", device_id, rtc::kDeviceTextSize});
  }

 private:
  template <class I>
  I* enumerate(const char* collection, const char* operation) const {
    note(operation);
    const auto devices = answer(operation);
    if (isWithheld(operation) || (devices && devices->isNull())) {
      return nullptr;
    }
    return new DeviceCollection<I>(collection, devices.value_or(Value()));
  }
};

class AudioMixingManager final : public rtc::IAudioMixingManager, public ScriptedObject {
 public:
  AudioMixingManager() : ScriptedObject("IAudioMixingManager") {}

  void startAudioMixing(int32_t mix_id, const char* file_path, const rtc::AudioMixingConfig& config) override {
    note("startAudioMixing", arg("mix_id", mix_id), arg("file_path", file_path), arg("config", config));
  }
  int32_t stopAudioMixing(int32_t mix_id) override { return call("stopAudioMixing", arg("mix_id", mix_id)); }
  int32_t pauseAudioMixing(int32_t mix_id) override { return call("pauseAudioMixing", arg("mix_id", mix_id)); }
  int32_t resumeAudioMixing(int32_t mix_id) override { return call("resumeAudioMixing", arg("mix_id", mix_id)); }
  int32_t stopAllAudioMixing() override { return call("stopAllAudioMixing"); }
  int32_t pauseAllAudioMixing() override { return call("pauseAllAudioMixing"); }
  int32_t resumeAllAudioMixing() override { return call("resumeAllAudioMixing"); }
  int32_t preloadAudioMixing(int32_t mix_id, const char* file_path) override {
    return call("preloadAudioMixing", arg("mix_id", mix_id), arg("file_path", file_path));
  }
  int32_t unloadAudioMixing(int32_t mix_id) override { return call("unloadAudioMixing", arg("mix_id", mix_id)); }
  int32_t setAudioMixingVolume(int32_t mix_id, int32_t volume, int32_t type) override {
    return call("setAudioMixingVolume", arg("mix_id", mix_id), arg("volume", volume), arg("type", type));
  }
  int32_t setAudioMixingPosition(int32_t mix_id, int32_t position) override {
    return call("setAudioMixingPosition", arg("mix_id", mix_id), arg("position", position));
  }
  int32_t setAudioMixingDualMonoMode(int32_t mix_id, int32_t mode) override {
    return call("setAudioMixingDualMonoMode", arg("mix_id", mix_id), arg("mode", mode));
  }
  int32_t setAudioMixingPitch(int32_t mix_id, int32_t pitch) override {
    return call("setAudioMixingPitch", arg("mix_id", mix_id), arg("pitch", pitch));
  }
  int32_t setAudioMixingPlaybackSpeed(int32_t mix_id, int32_t speed) override {
    return call("setAudioMixingPlaybackSpeed", arg("mix_id", mix_id), arg("speed", speed));
  }
  int32_t setAudioMixingLoudness(int32_t mix_id, double loudness) override {
    return call("setAudioMixingLoudness", arg("mix_id", mix_id), arg("loudness", loudness));
  }
  int32_t setAudioMixingProgressInterval(int32_t mix_id, int32_t interval) override {
    return call("setAudioMixingProgressInterval", arg("mix_id", mix_id), arg("interval", interval));
  }
  int32_t selectAudioTrack(int32_t mix_id, int32_t audio_track_index) override {
    return call("selectAudioTrack", arg("mix_id", mix_id), arg("audio_track_index", audio_track_index));
  }
  int32_t getAudioMixingDuration(int32_t mix_id) override {
    return call("getAudioMixingDuration", arg("mix_id", mix_id));
  }
  int32_t getAudioMixingCurrentPosition(int32_t mix_id) override {
    return call("getAudioMixingCurrentPosition", arg("mix_id", mix_id));
  }
  int32_t getAudioMixingPlaybackDuration(int32_t mix_id) override {
    return call("getAudioMixingPlaybackDuration", arg("mix_id", mix_id));
  }
  int32_t getAudioTrackCount(int32_t mix_id) override { return call("getAudioTrackCount", arg("mix_id", mix_id)); }
};

class VideoEffect final : public rtc::IVideoEffect, public ScriptedObject {
 public:
  VideoEffect() : ScriptedObject("IVideoEffect") {}

  int32_t enableVideoEffect() override { return call("enableVideoEffect"); }
  int32_t disableVideoEffect() override { return call("disableVideoEffect"); }
  int32_t setEffectNodes(const char* effect_node_path) override {
    return call("setEffectNodes", arg("effect_node_path", effect_node_path));
  }
  int32_t updateEffectNode(const char* effect_node_path, const char* node_key, double node_value) override {
    return call("updateEffectNode", arg("effect_node_path", effect_node_path), arg("node_key", node_key),
                arg("node_value", node_value));
  }
  int32_t setColorFilter(const char* filter_path) override {
    return call("setColorFilter", arg("filter_path", filter_path));
  }
  int32_t setColorFilterIntensity(double intensity) override {
    return call("setColorFilterIntensity", arg("intensity", intensity));
  }
  int32_t enableEffectBeauty(bool enable) override { return call("enableEffectBeauty", arg("enable", enable)); }
  int32_t setBeautyIntensity(int32_t beauty_mode, double intensity) override {
    return call("setBeautyIntensity", arg("beauty_mode", beauty_mode), arg("intensity", intensity));
  }
  int32_t enableVirtualBackground(const char* bg_sticker_path, const rtc::VirtualBackgroundSource& source) override {
    return call("enableVirtualBackground", arg("bg_sticker_path", bg_sticker_path), arg("source", source));
  }
  int32_t disableVirtualBackground() override { return call("disableVirtualBackground"); }
  int32_t enableFaceDetection(int32_t interval_ms, const char* face_model_path,
                              rtc::IFaceDetectionObserver* observer) override {
    Attachments::instance().attach("IFaceDetectionObserver", {}, observer, nullptr, Attachments::kWait);
    return call("enableFaceDetection", arg("interval_ms", interval_ms), arg("face_model_path", face_model_path),
                arg("observer", observer));
  }
  int32_t disableFaceDetection() override {
    Attachments::instance().attach("IFaceDetectionObserver", {}, nullptr, nullptr, Attachments::kWait);
    return call("disableFaceDetection");
  }
  int32_t setVideoWatermark(int32_t stream_index, const char* image_path, const rtc::WatermarkConfig& config) override {
    return call("setVideoWatermark", arg("stream_index", stream_index), arg("image_path", image_path),
                arg("config", config));
  }
  int32_t clearVideoWatermark(int32_t stream_index) override {
    return call("clearVideoWatermark", arg("stream_index", stream_index));
  }
};

}  // namespace corvane::scripted
