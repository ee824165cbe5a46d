#include "objects/video.h"

#include "core/attachments.h"
#include "corvane_rtc/snapshot.h"
#include "corvane_rtc/stream_mixing_events.h"
#include "frames/audio_frame.h"
#include "frames/video_frame.h"
#include "objects/rooms.h"

namespace corvane::scripted {

namespace {

std::string textOf(const char* text) {
  return text == nullptr ? "" : text;
}

std::string remoteSinkId(const rtc::StreamKey& key) {
  return "remote:" + textOf(key.room_id) + "/" + textOf(key.user_id) + "/" + std::to_string(key.stream_index);
}

template <class P, class I>
Value describeParam(I* param) {
  return param == nullptr ? Value() : static_cast<P*>(param)->describe();
}

}  // namespace

void Video::endAll() {
  for (ScriptedObject* part : std::initializer_list<ScriptedObject*>{
           this, &audio_devices_, &video_devices_, &audio_mixing_, &video_effect_, &sing_scoring_, &effect_player_}) {
    part->end();
  }
  ktv_.endAll();
  for (const auto& [id, player] : media_players_) {
    player->end();
  }
}

// Rooms and players.

rtc::IRTCRoom* Video::createRTCRoom(const char* room_id) {
  note("createRTCRoom", arg("room_id", room_id));
  return isWithheld("createRTCRoom") ? nullptr : Rooms::instance().make(textOf(room_id));
}

rtc::IMediaPlayer* Video::getMediaPlayer(int32_t player_id) {
  note("getMediaPlayer", arg("player_id", player_id));
  if (isWithheld("getMediaPlayer")) {
    return nullptr;
  }
  auto& player = media_players_[player_id];
  if (player == nullptr) {
    player = std::make_unique<MediaPlayer>(player_id);
  }
  return player.get();
}

// Observers, processors and sinks. Only processors are promised that nobody is inside when the call returns.

int32_t Video::registerAudioFrameObserver(rtc::IAudioFrameObserver* observer) {
  Attachments::instance().attach("IAudioFrameObserver", {}, observer, nullptr);
  return call("registerAudioFrameObserver", arg("observer", observer));
}

int32_t Video::registerAudioFrameProcessor(rtc::IAudioFrameProcessor* processor) {
  Attachments::instance().attach("IAudioFrameProcessor", {}, processor, nullptr, Attachments::kWait);
  return call("registerAudioFrameProcessor", arg("processor", processor));
}

int32_t Video::registerVideoProcessor(rtc::IVideoProcessor* processor, const rtc::VideoPreprocessorConfig& config) {
  Attachments::instance().attach("IVideoProcessor", {}, processor, nullptr, Attachments::kWait);
  return call("registerVideoProcessor", arg("processor", processor), arg("config", config));
}

int32_t Video::setLocalVideoSink(int32_t stream_index, rtc::IVideoSink* sink, int32_t required_format) {
  Attachments::instance().attach("IVideoSink", "local:" + std::to_string(stream_index), sink, nullptr);
  return call("setLocalVideoSink", arg("stream_index", stream_index), arg("sink", sink),
              arg("required_format", required_format));
}

int32_t Video::setRemoteVideoSink(const rtc::StreamKey& stream_key, rtc::IVideoSink* sink, int32_t required_format) {
  Attachments::instance().attach("IVideoSink", remoteSinkId(stream_key), sink, nullptr);
  return call("setRemoteVideoSink", arg("stream_key", stream_key), arg("sink", sink),
              arg("required_format", required_format));
}

int32_t Video::setPublicStreamVideoSink(const char* public_stream_id, rtc::IVideoSink* sink, int32_t required_format) {
  Attachments::instance().attach("IVideoSink", "public:" + textOf(public_stream_id), sink, nullptr);
  return call("setPublicStreamVideoSink", arg("public_stream_id", public_stream_id), arg("sink", sink),
              arg("required_format", required_format));
}

int32_t Video::takeLocalSnapshot(int32_t stream_index, rtc::ISnapshotResultCallback* callback) {
  const int32_t task_id =
      callForId<int32_t>("takeLocalSnapshot", arg("stream_index", stream_index), arg("callback", callback));
  Attachments::instance().attach("ISnapshotResultCallback", std::to_string(task_id), callback, nullptr);
  return task_id;
}

int32_t Video::takeRemoteSnapshot(const rtc::StreamKey& stream_key, rtc::ISnapshotResultCallback* callback) {
  const int32_t task_id =
      callForId<int32_t>("takeRemoteSnapshot", arg("stream_key", stream_key), arg("callback", callback));
  Attachments::instance().attach("ISnapshotResultCallback", std::to_string(task_id), callback, nullptr);
  return task_id;
}

// Frames that the module pushes.

int32_t Video::pushExternalAudioFrame(rtc::IAudioFrame* frame) {
  return call("pushExternalAudioFrame", arg("frame", describeFrameOrNull(frame)));
}

int32_t Video::pushExternalVideoFrame(rtc::IVideoFrame* frame) {
  const int32_t result =
      call("pushExternalVideoFrame", arg("frame", frame == nullptr ? Value() : describeFrame(*frame)));
  if (frame != nullptr) {
    frame->release();
  }
  return result;
}

// Screens.

rtc::IScreenCaptureSourceList* Video::getScreenCaptureSourceList() {
  note("getScreenCaptureSourceList");
  const auto sources = answer("getScreenCaptureSourceList");
  if (isWithheld("getScreenCaptureSourceList") || (sources && sources->isNull())) {
    return nullptr;
  }
  return new ScreenSources(sources.value_or(Value()));
}

rtc::IVideoFrame* Video::answerFrame(const char* operation) const {
  const auto spec = answer(operation);
  if (!spec || spec->isNull() || isWithheld(operation)) {
    return nullptr;
  }
  auto frame = std::make_unique<ScriptedVideoFrame>(readVideoFrameSpec(*spec));
  frame->handOut(ScriptedVideoFrame::kBuilt);
  return frame.release();
}

rtc::IVideoFrame* Video::getThumbnail(int32_t type, int64_t source_id, int32_t max_width, int32_t max_height) {
  note("getThumbnail", arg("type", type), arg("source_id", source_id), arg("max_width", max_width),
       arg("max_height", max_height));
  return answerFrame("getThumbnail");
}

rtc::IVideoFrame* Video::getWindowAppIcon(int64_t source_id, int32_t max_width, int32_t max_height) {
  note("getWindowAppIcon", arg("source_id", source_id), arg("max_width", max_width), arg("max_height", max_height));
  return answerFrame("getWindowAppIcon");
}

// Mixing and pushing. An observer is known by its task.

int32_t Video::startLiveTranscoding(const char* task_id, rtc::ITranscoderParam* param,
                                    rtc::ITranscodingObserver* observer) {
  Attachments::instance().attach("ITranscodingObserver", textOf(task_id), observer, nullptr);
  return call("startLiveTranscoding", arg("task_id", task_id), arg("param", describeParam<TranscoderParam>(param)),
              arg("observer", observer));
}

int32_t Video::updateLiveTranscoding(const char* task_id, rtc::ITranscoderParam* param) {
  return call("updateLiveTranscoding", arg("task_id", task_id), arg("param", describeParam<TranscoderParam>(param)));
}

int32_t Video::startPushMixedStreamToCDN(const char* task_id, rtc::IMixedStreamConfig* config,
                                         rtc::ITranscodingObserver* observer) {
  Attachments::instance().attach("ITranscodingObserver", textOf(task_id), observer, nullptr);
  return call("startPushMixedStreamToCDN", arg("task_id", task_id),
              arg("config", describeParam<MixedStreamConfig>(config)), arg("observer", observer));
}

int32_t Video::updatePushMixedStreamToCDN(const char* task_id, rtc::IMixedStreamConfig* config) {
  return call("updatePushMixedStreamToCDN", arg("task_id", task_id),
              arg("config", describeParam<MixedStreamConfig>(config)));
}

int32_t Video::startPushSingleStreamToCDN(const char* task_id, const rtc::PushSingleStreamParam& param,
                                          rtc::IPushSingleStreamToCDNObserver* observer) {
  Attachments::instance().attach("IPushSingleStreamToCDNObserver", textOf(task_id), observer, nullptr);
  return call("startPushSingleStreamToCDN", arg("task_id", task_id), arg("param", param), arg("observer", observer));
}

int32_t Video::startPushPublicStream(const char* public_stream_id, rtc::IPublicStreamParam* param) {
  return call("startPushPublicStream", arg("public_stream_id", public_stream_id),
              arg("param", describeParam<PublicStreamParam>(param)));
}

int32_t Video::updatePublicStreamParam(const char* public_stream_id, rtc::IPublicStreamParam* param) {
  return call("updatePublicStreamParam", arg("public_stream_id", public_stream_id),
              arg("param", describeParam<PublicStreamParam>(param)));
}

}  // namespace corvane::scripted
