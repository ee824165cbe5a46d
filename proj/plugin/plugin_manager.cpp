#include "plugin/plugin_manager.h"

#include "corvane_rtc/video_frame.h"
#include "log/log.h"
#include "plugin/plugin_logs.h"

namespace corvane {

int32_t PluginManager::registerPlugin(const char* path, rtc::IRTCVideo& engine) {
  const std::lock_guard<std::mutex> lock(coming_and_going_);
  if (!load(path)) return -1;
  if (attach(engine)) return 0;
  unregister();
  return -1;
}

bool PluginManager::load(const char* path) {
  static constexpr char kCaller[] = "registerPlugin";
  const std::lock_guard<std::mutex> lock(plugin_.mutex);
  if (*path == '\0') {
    LogWrite(kLogInfo, "%s::%s(%d), parameter is empty, registerPlugin failed.", kPluginManagerName, kCaller, __LINE__);
    return false;
  }
  if (plugin_.instance != nullptr) {
    LogWrite(kLogInfo, "%s::%s(%d), plugin has exist.", kPluginManagerName, kCaller, __LINE__);
    return false;
  }
  library_ = PluginLibrary::load(path);
  if (library_.instance == nullptr) return false;
  plugin_.instance = library_.instance;
  video_.forgetFirstOutput();
  video_.enable(false);
  return true;
}

// False when the engine offers neither hook: the plug-in would never be called.
bool PluginManager::attach(rtc::IRTCVideo& engine) {
  engine_ = &engine;
  video_.createConsumerThread();
  const int32_t video = engine.registerVideoProcessor(this, {rtc::kVideoPixelFormatI420});
  const int32_t audio = engine.registerAudioFrameProcessor(this);
  if (video == rtc::kSuccess && audio == rtc::kSuccess) return true;
  LogWrite(kLogWarning, "%s::%s(%d), registerVideoProcessor: %d, registerAudioFrameProcessor: %d", kPluginManagerName,
           "registerPlugin", __LINE__, video, audio);
  return video == rtc::kSuccess || audio == rtc::kSuccess;
}

// When it returns, no thread is inside the plug-in or will come: the engine promises that of its hooks.
void PluginManager::detach() {
  // First of all, so that the engine's thread does not wait for a picture.
  video_.releaseConsumerThread();
  engine_->registerVideoProcessor(nullptr, {rtc::kVideoPixelFormatUnknown});
  engine_->registerAudioFrameProcessor(nullptr);
  engine_ = nullptr;
}

int32_t PluginManager::unregisterPlugin() {
  const std::lock_guard<std::mutex> lock(coming_and_going_);
  return unregister();
}

int32_t PluginManager::unregister() {
  static constexpr char kCaller[] = "unregisterPlugin";
  if (plugin_.instance == nullptr) return -1;
  // Without the lock, for which the consumer may be waiting.
  detach();
  const std::lock_guard<std::mutex> lock(plugin_.mutex);
  LogWrite(kLogInfo, "%s::%s(%d) start.", kPluginManagerName, kCaller, __LINE__);
  video_.forgetFirstOutput();
  plugin_.instance = nullptr;
  library_.unload();
  LogWrite(kLogInfo, "%s::%s(%d) end.", kPluginManagerName, kCaller, __LINE__);
  return 0;
}

int32_t PluginManager::enableVideoPlugin(bool enable) {
  LogWrite(kLogInfo, "%s::%s(%d) enable:%d.", kPluginManagerName, __func__, __LINE__, static_cast<int>(enable));
  if (plugin_.instance == nullptr) {
    LogWrite(kLogInfo, "%s::%s(%d), enableVideoPlugin failed. instance is null", kPluginManagerName, __func__,
             __LINE__);
    return -1;
  }
  video_.enable(enable);
  return 0;
}

int32_t PluginManager::setParameter(const char* parameter) {
  LogWrite(kLogInfo, "%s::%s(%d) ", kPluginManagerName, __func__, __LINE__);
  const std::lock_guard<std::mutex> lock(plugin_.mutex);
  plugin::IPlugin* instance = plugin_.instance;
  return instance != nullptr && instance->setParameter(parameter) ? 0 : -1;
}

rtc::IVideoFrame* PluginManager::processVideoFrame(rtc::IVideoFrame* frame) {
  return video_.process(frame);
}

}  // namespace corvane
