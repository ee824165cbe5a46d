// The local user's own streams.
#include "events/engine/payload_pieces.h"
#include "events/engine_handler.h"

namespace corvane {

void KavRTCVideoEventHandler::onLocalAudioStateChanged(int32_t state, int32_t error) {
  const int32_t status = post(__func__, [state, error](Payload& payload) {
    payload.put("state", state);
    payload.put("error", error);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, state:%d, error:%d", __func__, __LINE__, status, state, error);
}

void KavRTCVideoEventHandler::onLocalVideoStateChanged(int32_t stream_index, int32_t state, int32_t error) {
  const int32_t status = post(__func__, [stream_index, state, error](Payload& payload) {
    payload.put("streamIndex", stream_index);
    payload.put("state", state);
    payload.put("error", error);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d, streamIndex: %d, state: %d, error: %d", __func__, __LINE__, status,
           stream_index, state, error);
}

void KavRTCVideoEventHandler::onFirstLocalAudioFrame(int32_t index) {
  const int32_t status = post(__func__, [index](Payload& payload) { payload.put("index", index); });
  LogWrite(kLogInfo, "%s(%d), status: %d, streamIndex=%d", __func__, __LINE__, status, index);
}

void KavRTCVideoEventHandler::onFirstLocalVideoFrameCaptured(int32_t index, const rtc::VideoFrameInfo& info) {
  const int32_t status = post(__func__, [index, info](Payload& payload) {
    payload.put("index", index);
    putFrameInfo(payload, info);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onLocalVideoSizeChanged(int32_t index, const rtc::VideoFrameInfo& info) {
  const int32_t status = post(__func__, [index, info](Payload& payload) {
    payload.put("index", index);
    putFrameInfo(payload, info);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
