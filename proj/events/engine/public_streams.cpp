// Public streams: what this engine pushes and plays, and the messages inside them.
#include "events/engine/payload_pieces.h"
#include "events/engine_handler.h"

namespace corvane {

void KavRTCVideoEventHandler::onPushPublicStreamResult(const char* room_id, const char* public_stream_id,
                                                       int32_t error_code) {
  const int32_t status = post(
      __func__, [room_id = owned(room_id), public_stream_id = owned(public_stream_id), error_code](Payload& payload) {
        payload.put("room_id", room_id);
        payload.put("public_stream_id", public_stream_id);
        payload.put("error_code", error_code);
      });
  LogWrite(kLogInfo, "%s(%d), status: %d, publicStreamId: %s, error_code: %d", __func__, __LINE__, status,
           shown(public_stream_id), error_code);
}

void KavRTCVideoEventHandler::onPlayPublicStreamResult(const char* public_stream_id, int32_t error_code) {
  const int32_t status = post(__func__, [public_stream_id = owned(public_stream_id), error_code](Payload& payload) {
    payload.put("public_stream_id", public_stream_id);
    payload.put("error_code", error_code);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, error_code:%d", __func__, __LINE__, status, error_code);
}

void KavRTCVideoEventHandler::onFirstPublicStreamAudioFrame(const char* public_stream_id) {
  const int32_t status = post(__func__, [public_stream_id = owned(public_stream_id)](Payload& payload) {
    payload.put("public_stream_id", public_stream_id);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onFirstPublicStreamVideoFrameDecoded(const char* public_stream_id,
                                                                   const rtc::VideoFrameInfo& info) {
  const int32_t status = post(__func__, [public_stream_id = owned(public_stream_id), info](Payload& payload) {
    payload.put("public_stream_id", public_stream_id);
    putFrameInfo(payload, info);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onPublicStreamSEIMessageReceived(const char* public_stream_id, const uint8_t* message,
                                                               int32_t message_length, int32_t source_type) {
  const int32_t status = post(__func__, [public_stream_id = owned(public_stream_id),
                                         message = owned(message, message_length), source_type](Payload& payload) {
    payload.put("public_stream_id", public_stream_id);
    payload.put("message", message);
    payload.put("source_type", source_type);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onPublicStreamSEIMessageReceivedWithChannel(const char* public_stream_id,
                                                                          int32_t channel_id, const uint8_t* message,
                                                                          int32_t message_length) {
  const int32_t status = post(__func__, [public_stream_id = owned(public_stream_id), channel_id,
                                         message = owned(message, message_length), message_length](Payload& payload) {
    payload.put("public_stream_id", public_stream_id);
    payload.put("channel_id", channel_id);
    payload.put("message", message);
    payload.put("message_length", message_length);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onPublicStreamDataMessageReceived(const char* public_stream_id, const uint8_t* message,
                                                                int32_t message_length, int32_t source_type) {
  const int32_t status = post(__func__, [public_stream_id = owned(public_stream_id),
                                         message = owned(message, message_length), source_type](Payload& payload) {
    payload.put("public_stream_id", public_stream_id);
    payload.put("message", message);
    payload.put("source_type", source_type);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
