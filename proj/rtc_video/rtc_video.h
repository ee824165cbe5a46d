// KavRTCVideo, the JavaScript class of the engine.
#pragma once

#include <napi.h>

#include <list>
#include <memory>
#include <string>

#include "binding/row.h"
#include "corvane_rtc/rtc_video.h"
#include "events/engine_handler.h"
#include "events/observer.h"
#include "events/transcoding_observer.h"
#include "plugin/plugin_manager.h"
#include "video/video_sinks.h"

namespace corvane {

/// Everything runs on the JavaScript thread.
class KavRTCVideo final : public Napi::ObjectWrap<KavRTCVideo> {
 public:
  static Napi::Function define(Napi::Env env);
  static void* findOwner(const Call& call);

  /// The most recently constructed object that still exists; null before the first. Rooms, players, sinks and
  /// handlers reach the engine through it.
  static KavRTCVideo* getInstance();

  explicit KavRTCVideo(const Napi::CallbackInfo& info);
  ~KavRTCVideo() override;

  int32_t createRTCVideo(const Call& call);
  int32_t destroyRTCVideo();

  void addSink(std::unique_ptr<LocalVideoSink> sink) { local_sinks_.push_back(std::move(sink)); }
  void addSink(std::unique_ptr<RemoteVideoSink> sink) { remote_sinks_.push_back(std::move(sink)); }
  void addSink(std::unique_ptr<PublicStreamVideoSink> sink) { public_sinks_.push_back(std::move(sink)); }
  size_t localSinkCount() const { return local_sinks_.size(); }
  size_t remoteSinkCount() const { return remote_sinks_.size(); }

  KavRTCObserver* observer() const { return observer_.get(); }
  KavRTCTranscodingObserver* transcodingObserver() const { return transcoding_observer_.get(); }
  /// Null before the first engine.
  PluginManager* pluginManager() const { return plugin_manager_.get(); }

  /// The engine; null until createRTCVideo() and after the teardown.
  rtc::IRTCVideo* m_pRtcVideo = nullptr;
  /// The MIDI file of the last setSingScoringConfig() that the engine accepted. Survives the engine.
  std::string midi_filepath;

 private:
  /// Gives the transporter the newest object's event handler, which is the one that counts.
  static void shareEventHandler();

  /// Unloads all plug-ins and ends the library's engine; no object may call it any more.
  static void endEngine();

  void createHandlers();
  void registerKtvHandlers(const Call& call);
  void clearSinks();

  /// An engine that was made with this object's handlers lives, though m_pRtcVideo may be null: a later attempt failed.
  bool handlers_in_use_ = false;
  std::list<std::unique_ptr<LocalVideoSink>> local_sinks_;
  std::list<std::unique_ptr<RemoteVideoSink>> remote_sinks_;
  std::list<std::unique_ptr<PublicStreamVideoSink>> public_sinks_;
  std::unique_ptr<KavRTCVideoEventHandler> event_handler_;
  std::unique_ptr<KavRTCObserver> observer_;
  std::unique_ptr<KavRTCTranscodingObserver> transcoding_observer_;
  /// Shared with whoever ends the engine, on whichever thread.
  std::shared_ptr<PluginManager> plugin_manager_;
};

/// The object behind a call of one of its methods.
inline KavRTCVideo& videoOf(const Call& call) {
  return *static_cast<KavRTCVideo*>(call.wrapper);
}
/// Its engine; only in rows whose engine test has passed.
inline rtc::IRTCVideo& engineOf(const Call& call) {
  return *static_cast<rtc::IRTCVideo*>(call.owner);
}

}  // namespace corvane
