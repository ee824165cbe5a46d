// PluginManager: one processing plug-in at a time, between the engine's hooks and the plug-in's library.
#pragma once

#include <cstdint>
#include <mutex>

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/rtc_video.h"
#include "corvane_rtc/video_frame.h"
#include "plugin/plugin_library.h"
#include "plugin/video_path.h"

namespace corvane {

/// Plug-ins come, go and are set on the JavaScript thread; the hooks run on the engine's threads.
class PluginManager final : public rtc::IVideoProcessor, public rtc::IAudioFrameProcessor {
 public:
  PluginManager() = default;
  /// The engine has ended, or unregisterPlugin() was called.
  ~PluginManager() = default;
  PluginManager(const PluginManager&) = delete;
  PluginManager& operator=(const PluginManager&) = delete;

  /// Loads a plug-in and puts it into the engine's hooks. 0 or -1.
  int32_t registerPlugin(const char* path, rtc::IRTCVideo& engine);
  /// Takes it out of the hooks of the engine that it was put into, which must live, and unloads it. 0, or -1 without
  /// one.
  int32_t unregisterPlugin();
  int32_t enableVideoPlugin(bool enable);
  int32_t setParameter(const char* parameter);

  rtc::IVideoFrame* processVideoFrame(rtc::IVideoFrame* frame) override;

  int32_t onProcessRecordAudioFrame(rtc::IAudioFrame* audio_frame) override;
  int32_t onProcessPlayBackAudioFrame(rtc::IAudioFrame* audio_frame) override;
  int32_t onProcessRemoteUserAudioFrame(const rtc::StreamKey& stream_info, rtc::IAudioFrame* audio_frame) override;
  int32_t onProcessScreenAudioFrame(rtc::IAudioFrame* audio_frame) override;

 private:
  int32_t unregister();
  bool load(const char* path);
  bool attach(rtc::IRTCVideo& engine);
  void detach();

  template <class Process>
  int32_t processAudio(const rtc::IAudioFrame* audio_frame, Process process) const;

  /// Held while a plug-in comes or goes: the engine may be ended on another thread.
  std::mutex coming_and_going_;
  PluginSlot plugin_;
  PluginLibrary library_;
  VideoPath video_{plugin_};
  /// In whose hooks the plug-in is: not the object's engine any more when that was created anew.
  rtc::IRTCVideo* engine_ = nullptr;
};

}  // namespace corvane
