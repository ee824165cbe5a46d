#include "corvane_rtc/entry_points.h"

#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "core/scripted_object.h"
#include "frames/audio_frame.h"
#include "frames/video_frame.h"
#include "objects/engine.h"
#include "objects/mix_params.h"

namespace corvane::scripted {

namespace {

/// Records the library's functions, which belong to no interface.
class Library final : public ScriptedObject {
 public:
  Library() : ScriptedObject("") {}
  using ScriptedObject::answer;
  using ScriptedObject::call;
  using ScriptedObject::isWithheld;
  using ScriptedObject::note;

  /// Texts live as long as the library.
  const char* text(const char* operation, const char* otherwise) const {
    static std::mutex mutex;
    static auto* texts = new std::set<std::string>;
    const auto answer = this->answer(operation);
    if (!answer) {
      return otherwise;
    }
    Arena arena;
    const char* text = arena.text(*answer);
    if (text == nullptr) {
      return nullptr;
    }
    const std::lock_guard lock(mutex);
    return texts->insert(text).first->c_str();
  }

  template <class P, class I>
  I* param(const char* operation) const {
    note(operation);
    return isWithheld(operation) ? nullptr : new P;
  }
};

const Library& library() {
  static const Library library;
  return library;
}

}  // namespace

}  // namespace corvane::scripted

namespace corvane::rtc {

using scripted::arg;
using scripted::library;

IRTCVideo* createRTCVideo(const char* app_id, IRTCVideoEventHandler* handler, const char* parameters) {
  library().note("createRTCVideo", arg("app_id", app_id), arg("handler", handler), arg("parameters", parameters));
  return library().isWithheld("createRTCVideo") ? nullptr : scripted::Engine::instance().make(handler);
}

void destroyRTCVideo() {
  library().note("destroyRTCVideo");
  scripted::Engine::instance().destroy();
}

int32_t setLogConfig(const LogConfig& log_config) {
  return library().call("setLogConfig", arg("log_config", log_config));
}

const char* getSDKVersion() {
  library().note("getSDKVersion");
  return library().text("getSDKVersion", "0.0.0-scripted");
}

const char* getErrorDescription(int32_t code) {
  library().note("getErrorDescription", arg("code", code));
  return library().text("getErrorDescription", "");
}

IVideoFrame* buildVideoFrame(const VideoFrameBuilder& builder) {
  library().note("buildVideoFrame", arg("builder", scripted::describeBuilder(builder)));
  if (library().isWithheld("buildVideoFrame") || builder.width <= 0 || builder.height <= 0) {
    return nullptr;
  }
  auto frame = std::make_unique<scripted::ScriptedVideoFrame>(builder);
  frame->handOut(scripted::ScriptedVideoFrame::kBuilt);
  return frame.release();
}

IAudioFrame* buildAudioFrame(const AudioFrameBuilder& builder) {
  library().note("buildAudioFrame", arg("builder", scripted::describeBuilder(builder)));
  if (library().isWithheld("buildAudioFrame") || builder.data == nullptr || builder.data_size < 0) {
    return nullptr;
  }
  return new scripted::ScriptedAudioFrame(builder);
}

ITranscoderParam* createTranscoderParam() {
  return library().param<scripted::TranscoderParam, ITranscoderParam>("createTranscoderParam");
}

IMixedStreamConfig* createMixedStreamConfig() {
  return library().param<scripted::MixedStreamConfig, IMixedStreamConfig>("createMixedStreamConfig");
}

IPublicStreamParam* createPublicStreamParam() {
  return library().param<scripted::PublicStreamParam, IPublicStreamParam>("createPublicStreamParam");
}

}  // namespace corvane::rtc
