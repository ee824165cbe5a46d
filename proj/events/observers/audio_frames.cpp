// Raw audio. The lines are detail: there are a hundred frames a second of every kind.

#include "events/engine/payload_pieces.h"
#include "events/observer.h"
#include "events/observers/owned_audio_frame.h"
#include "events/observers/report.h"

namespace corvane {

// `event` is a literal: it is kept by pointer.
void KavRTCObserver::processAudioFrame(const char* event, const rtc::IAudioFrame* audio_frame) {
  if (audio_frame == nullptr) return refuseAudioFrame(__func__, __LINE__);
  auto deliver = [event, frame = OwnedAudioFrame(*audio_frame)](napi_env env, napi_value function) {
    LogWrite(kLogDetail, "[%s] , +callback", event);
    Payload payload(env, event);
    frame.put(payload);
    payload.deliver(function);
    LogWrite(kLogDetail, "[%s], -callback", event);
  };
  const int32_t status = KavRTCTransporter::instance().postEvent(EventRecord::callable(std::move(deliver)));
  LogWrite(kLogDetail, "-%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCObserver::refuseAudioFrame(const char* method, int32_t line) {
  if (null_frame_seen_.exchange(true, std::memory_order_relaxed)) return;
  LogWrite(kLogInfo, "-%s(%d), audio_frame is null_ptr: %d", method, line, 1);
}

void KavRTCObserver::onRecordAudioFrame(const rtc::IAudioFrame* audio_frame) {
  processAudioFrame("onRecordAudioFrame", audio_frame);
}

void KavRTCObserver::onPlaybackAudioFrame(const rtc::IAudioFrame* audio_frame) {
  processAudioFrame("onPlaybackAudioFrame", audio_frame);
}

void KavRTCObserver::onMixedAudioFrame(const rtc::IAudioFrame* audio_frame) {
  processAudioFrame("onMixedAudioFrame", audio_frame);
}

void KavRTCObserver::onRecordScreenAudioFrame(const rtc::IAudioFrame* audio_frame) {
  processAudioFrame("onRecordScreenAudioFrame", audio_frame);
}

void KavRTCObserver::onRemoteUserAudioFrame(const rtc::StreamKey& stream_info, const rtc::IAudioFrame* audio_frame) {
  if (audio_frame == nullptr) return refuseAudioFrame(__func__, __LINE__);
  report(
      __func__,
      [key = OwnedStreamKey(stream_info), frame = OwnedAudioFrame(*audio_frame)](Payload& payload) {
        putRoomUserIndex(payload, "stream_info", key);
        frame.put(payload);
      },
      kLogDetail);
}

}  // namespace corvane
