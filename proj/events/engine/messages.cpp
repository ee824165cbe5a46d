// Login, messages outside rooms, and data inside streams.
#include <string>

#include "events/engine/payload_pieces.h"
#include "events/engine_handler.h"

namespace corvane {

void KavRTCVideoEventHandler::onLoginResult(const char* uid, int32_t error_code, int32_t elapsed) {
  const int32_t status = post(__func__, [uid = owned(uid), error_code, elapsed](Payload& payload) {
    payload.put("uid", uid);
    payload.put("error_code", error_code);
    payload.put("elapsed", elapsed);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, uid:%s error_code:%d lapsed:%d", __func__, __LINE__, status, shown(uid),
           error_code, elapsed);
}

void KavRTCVideoEventHandler::onLogout(int32_t reason) {
  const int32_t status = post(__func__, [reason](Payload& payload) { payload.put("reason", reason); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, reason:%d", __func__, __LINE__, status, reason);
}

void KavRTCVideoEventHandler::onServerParamsSetResult(int32_t error) {
  const int32_t status = post(__func__, [error](Payload& payload) { payload.put("error", error); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, error:%d", __func__, __LINE__, status, error);
}

void KavRTCVideoEventHandler::onGetPeerOnlineStatus(const char* peer_user_id, int32_t status) {
  const int32_t post_status = post(__func__, [peer_user_id = owned(peer_user_id), status](Payload& payload) {
    payload.put("peer_user_id", peer_user_id);
    payload.put("status", status);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, peer_uid:%s, status:%d", __func__, __LINE__, post_status,
           shown(peer_user_id), status);
}

void KavRTCVideoEventHandler::onUserMessageReceivedOutsideRoom(const char* uid, const char* message) {
  const int32_t status = post(__func__, [uid = owned(uid), message = owned(message)](Payload& payload) {
    payload.put("uid", uid);
    payload.put("message", message);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, uid:%s, message:%s", __func__, __LINE__, status, shown(uid),
           shown(message));
}

void KavRTCVideoEventHandler::onUserBinaryMessageReceivedOutsideRoom(const char* uid, const uint8_t* message,
                                                                     int32_t size) {
  const std::string bytes = owned(message, size);
  const int32_t status = post(__func__, [uid = owned(uid), bytes](Payload& payload) {
    payload.put("uid", uid);
    payload.put("message", bytes);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, uid:%s, size:%d, message:%s", __func__, __LINE__, status, shown(uid), size,
           bytes.c_str());
}

void KavRTCVideoEventHandler::onUserMessageSendResultOutsideRoom(int64_t msgid, int32_t error) {
  const int32_t status = post(__func__, [msgid, error](Payload& payload) {
    payload.put("msgid", msgid);
    payload.put("error", error);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, msgid:%d, error:%d", __func__, __LINE__, status, static_cast<int>(msgid),
           error);
}

void KavRTCVideoEventHandler::onServerMessageSendResult(int64_t msgid, int32_t error, const char* msg) {
  const int32_t status = post(__func__, [msgid, error, msg = owned(msg)](Payload& payload) {
    payload.put("msgid", msgid);
    payload.put("error", error);
    payload.put("msg", msg);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, msgid:%d, error:%d, msg:%s", __func__, __LINE__, status,
           static_cast<int>(msgid), error, shown(msg));
}

void KavRTCVideoEventHandler::onSEIMessageReceived(const rtc::StreamKey& stream_key, const uint8_t* message,
                                                   int32_t length) {
  const std::string bytes = owned(message, length);
  const int32_t status = post(__func__, [stream_key = OwnedStreamKey(stream_key), bytes](Payload& payload) {
    putRoomIndexUser(payload, "stream_key", stream_key);
    payload.put("message", bytes);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, user_id:%s, stream_index:%d, length:%d, msg:%s", __func__,
           __LINE__, status, shown(stream_key.room_id), shown(stream_key.user_id), stream_key.stream_index, length,
           bytes.c_str());
}

void KavRTCVideoEventHandler::onSEIStreamUpdate(const rtc::StreamKey& stream_key, int32_t type) {
  const int32_t status = post(__func__, [stream_key = OwnedStreamKey(stream_key), type](Payload& payload) {
    putRoomIndexUser(payload, "stream_key", stream_key);
    payload.put("type", type);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, user_id:%s, stream_index:%d, type:%d", __func__, __LINE__,
           status, shown(stream_key.room_id), shown(stream_key.user_id), stream_key.stream_index, type);
}

void KavRTCVideoEventHandler::onStreamSyncInfoReceived(const rtc::StreamKey& stream_key, int32_t stream_type,
                                                       const uint8_t* data, int32_t size) {
  const int32_t status = post(
      __func__, [stream_key = OwnedStreamKey(stream_key), stream_type, bytes = owned(data, size)](Payload& payload) {
        putRoomUserIndex(payload, "stream_key", stream_key);
        payload.put("stream_type", stream_type);
        payload.put("data", bytes);
      });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, user_id:%s", __func__, __LINE__, status,
           shown(stream_key.room_id), shown(stream_key.user_id));
}

}  // namespace corvane
