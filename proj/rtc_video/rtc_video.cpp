#include "rtc_video/rtc_video.h"

#include <algorithm>
#include <mutex>
#include <sstream>
#include <vector>

#include "corvane_rtc/entry_points.h"
#include "corvane_rtc/ktv.h"
#include "log/log.h"
#include "log/standard_output.h"
#include "platform/platform.h"
#include "rtc_video/method_names.h"
#include "rtc_video/tables.h"
#include "video/transporter.h"

namespace corvane {
namespace {

// Every object that exists, oldest first. The engine library knows one engine at a time and ends it for all.
class Instances {
 public:
  void add(KavRTCVideo* video) {
    const std::lock_guard<std::mutex> lock(mutex_);
    videos_.push_back(video);
  }
  void remove(KavRTCVideo* video) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::erase(videos_, video);
  }
  KavRTCVideo* newest() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return videos_.empty() ? nullptr : videos_.back();
  }
  template <class Visit>
  void forEach(Visit visit) {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (KavRTCVideo* video : videos_) visit(*video);
  }

 private:
  std::mutex mutex_;
  std::vector<KavRTCVideo*> videos_;
};

Instances& instances() {
  static auto* const all = new Instances;  // environments end at any time, also at the process's end
  return *all;
}

}  // namespace

Napi::Function KavRTCVideo::define(Napi::Env env) {
  Napi::Function constructor = defineClass<KavRTCVideo>(env, "KavRTCVideo", kVideoMethodNames, videoTables());
  keepConstructor(constructor);
  return constructor;
}

void* KavRTCVideo::findOwner(const Call& call) {
  rtc::IRTCVideo* engine = videoOf(call).m_pRtcVideo;
  if (engine == nullptr) call.say(kLogInfo, "%s(%d), pRtcVideo is nullptr");
  return engine;
}

KavRTCVideo* KavRTCVideo::getInstance() {
  return instances().newest();
}

void KavRTCVideo::shareEventHandler() {
  const KavRTCVideo* newest = getInstance();
  KavRTCTransporter::instance().setEventHandler(newest == nullptr ? nullptr : newest->event_handler_.get());
}

void KavRTCVideo::endEngine() {
  // Not from inside the visit: engine threads that have to leave a plug-in may be after the list of objects themselves.
  std::vector<std::shared_ptr<PluginManager>> managers;
  instances().forEach([&managers](const KavRTCVideo& video) {
    if (video.plugin_manager_ != nullptr) managers.push_back(video.plugin_manager_);
  });
  for (const auto& manager : managers) manager->unregisterPlugin();
  rtc::destroyRTCVideo();
  instances().forEach([](KavRTCVideo& video) {
    video.m_pRtcVideo = nullptr;
    video.handlers_in_use_ = false;
  });
}

KavRTCVideo::KavRTCVideo(const Napi::CallbackInfo& info) : Napi::ObjectWrap<KavRTCVideo>(info) {
  instances().add(this);
  shareEventHandler();
  std::ostringstream trace;
  trace << "KavRTCVideo constructor: " << static_cast<void*>(this);
  printLine(trace.str());
}

KavRTCVideo::~KavRTCVideo() {
  LastReceiver<KavRTCVideo>::forget(this);
  const bool needs_teardown = m_pRtcVideo != nullptr;
  if (needs_teardown) destroyRTCVideo();
  std::ostringstream trace;
  trace << "KavRTCVideo destructure: " << static_cast<void*>(this) << " isDestroyRTCVideo:" << needs_teardown;
  printLine(trace.str());
  if (handlers_in_use_) endEngine();
  instances().remove(this);
  shareEventHandler();
  transcoding_observer_.reset();
  observer_.reset();
  event_handler_.reset();
}

int32_t KavRTCVideo::createRTCVideo(const Call& call) {
  Reader reader(call.env);
  Text app_id;
  Text parameters;
  reader.text(call[0], app_id);
  reader.text(call[2], parameters);
  call.say(kLogInfo, "%s(%d), appId:%s, params: %s", app_id.c_str(), parameters.c_str());
  createHandlers();

  m_pRtcVideo = rtc::createRTCVideo(app_id.c_str(), event_handler_.get(), parameters.c_str());
  if (m_pRtcVideo == nullptr) {
    call.say(kLogInfo, "%s(%d), CreateKavRTCVideo failed.");
    return -1;
  }
  handlers_in_use_ = true;
  if (plugin_manager_ == nullptr) plugin_manager_ = std::make_shared<PluginManager>();
  m_pRtcVideo->registerAudioFrameObserver(observer_.get());
  registerKtvHandlers(call);
  return 0;
}

void KavRTCVideo::createHandlers() {
  if (event_handler_ == nullptr) {
    event_handler_ = std::make_unique<KavRTCVideoEventHandler>();
    LogWrite(kLogInfo, "KavRTCVideoEventHandler constructor");
  }
  if (transcoding_observer_ == nullptr) {
    transcoding_observer_ = std::make_unique<KavRTCTranscodingObserver>();
    LogWrite(kLogInfo, "KavRTCTranscodingObserver constructor");
  }
  if (observer_ == nullptr) {
    observer_ = std::make_unique<KavRTCObserver>();
    LogWrite(kLogInfo, "KavRTCObserver constructor");
  }
  shareEventHandler();
}

void KavRTCVideo::registerKtvHandlers(const Call& call) {
  rtc::IKTVManager* manager = m_pRtcVideo->getKTVManager();
  if (manager == nullptr) {
    call.say(kLogWarning, "%s(%d), iKTVManagerPtr is nullptr");
    return;
  }
  manager->setEventHandler(observer_.get());
  rtc::IKTVPlayer* player = manager->getKTVPlayer();
  if (player == nullptr) {
    call.say(kLogWarning, "%s(%d), iKTVPlayerPtr is nullptr");
    return;
  }
  player->setEventHandler(observer_.get());
}

int32_t KavRTCVideo::destroyRTCVideo() {
  static constexpr char kName[] = "destroyRTCVideo";
  LogWrite(kLogInfo, "%s(%d), ", kName, __LINE__);
  printLine(kName);
  if (m_pRtcVideo == nullptr) return -1;

  endEngine();
  clearSinks();
  transcoding_observer_.reset();
  event_handler_.reset();
  shareEventHandler();
  observer_.reset();
  plugin_manager_.reset();
  LogWrite(kLogInfo, "%s(%d), ", kName, __LINE__);
  CloseDstFile();
  return 0;
}

namespace {

template <class Sinks>
void clearSinkList(const char* name, Sinks& sinks) {
  LogWrite(kLogInfo, "+%s(%d)", name, __LINE__);
  sinks.clear();
  LogWrite(kLogInfo, "-%s(%d), size: %d", name, __LINE__, static_cast<int>(sinks.size()));
}

}  // namespace

void KavRTCVideo::clearSinks() {
  clearSinkList("clearPublicSink", public_sinks_);
  clearSinkList("clearLocalSink", local_sinks_);
  clearSinkList("clearRemoteSink", remote_sinks_);
}

}  // namespace corvane
