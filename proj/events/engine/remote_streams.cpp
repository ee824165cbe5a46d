// Other users' streams.
#include "events/engine/payload_pieces.h"
#include "events/engine_handler.h"

namespace corvane {
namespace {

auto userInRoom(const char* room_id, const char* user_id) {
  return [room_id = owned(room_id), user_id = owned(user_id)](Payload& payload) {
    payload.put("user_id", user_id);
    payload.put("room_id", room_id);
  };
}

auto streamState(const rtc::StreamKey& key, int32_t state, int32_t reason) {
  return [key = OwnedStreamKey(key), state, reason](Payload& payload) {
    putRoomIndexUser(payload, "key", key);
    payload.put("state", state);
    payload.put("reason", reason);
  };
}

auto streamPicture(const rtc::StreamKey& key, const rtc::VideoFrameInfo& info) {
  return [key = OwnedStreamKey(key), info](Payload& payload) {
    putUserRoomIndex(payload, "key", key);
    putFrameInfo(payload, info);
  };
}

}  // namespace

void KavRTCVideoEventHandler::onUserStartVideoCapture(const char* room_id, const char* user_id) {
  const int32_t status = post(__func__, userInRoom(room_id, user_id));
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, user_id:%s", __func__, __LINE__, status, shown(room_id),
           shown(user_id));
}

void KavRTCVideoEventHandler::onUserStopVideoCapture(const char* room_id, const char* user_id) {
  const int32_t status = post(__func__, userInRoom(room_id, user_id));
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, user_id:%s", __func__, __LINE__, status, shown(room_id),
           shown(user_id));
}

void KavRTCVideoEventHandler::onUserStartAudioCapture(const char* room_id, const char* user_id) {
  const int32_t status = post(__func__, userInRoom(room_id, user_id));
  LogWrite(kLogInfo, "%s(%d), status: %d, user_id:%s", __func__, __LINE__, status, shown(user_id));
}

void KavRTCVideoEventHandler::onUserStopAudioCapture(const char* room_id, const char* user_id) {
  const int32_t status = post(__func__, userInRoom(room_id, user_id));
  LogWrite(kLogInfo, "%s(%d), status: %d, user_id:%s", __func__, __LINE__, status, shown(user_id));
}

void KavRTCVideoEventHandler::onRemoteAudioStateChanged(const rtc::StreamKey& key, int32_t state, int32_t reason) {
  const int32_t status = post(__func__, streamState(key, state, reason));
  LogWrite(kLogInfo, "%s(%d), status: %d, streamIndex: %d, roomId: %s, uid: %s", __func__, __LINE__, status,
           key.stream_index, shown(key.room_id), shown(key.user_id));
}

void KavRTCVideoEventHandler::onRemoteVideoStateChanged(const rtc::StreamKey& key, int32_t state, int32_t reason) {
  const int32_t status = post(__func__, streamState(key, state, reason));
  LogWrite(kLogInfo, "%s(%d), status: %d, streamIndex: %d, roomId: %s, uid: %s", __func__, __LINE__, status,
           key.stream_index, shown(key.room_id), shown(key.user_id));
}

void KavRTCVideoEventHandler::onFirstRemoteAudioFrame(const rtc::StreamKey& key) {
  const int32_t status = post(__func__, [key = OwnedStreamKey(key)](Payload& payload) {
    payload.put("room_id", key.room_id);
    payload.put("stream_index", key.stream_index);
    payload.put("user_id", key.user_id);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d, streamIndex=%d, roomId = %s, uid = %s", __func__, __LINE__, status,
           key.stream_index, shown(key.room_id), shown(key.user_id));
}

void KavRTCVideoEventHandler::onFirstRemoteVideoFrameDecoded(const rtc::StreamKey& key,
                                                             const rtc::VideoFrameInfo& info) {
  const int32_t status = post(__func__, streamPicture(key, info));
  LogWrite(kLogInfo, "%s(%d) status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onFirstRemoteVideoFrameRendered(const rtc::StreamKey& key,
                                                              const rtc::VideoFrameInfo& info) {
  const int32_t status = post(__func__, streamPicture(key, info));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onRemoteVideoSizeChanged(const rtc::StreamKey& key, const rtc::VideoFrameInfo& info) {
  const int32_t status = post(__func__, streamPicture(key, info));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onRemoteVideoSuperResolutionModeChanged(const rtc::StreamKey& stream_key, int32_t mode,
                                                                      int32_t reason) {
  const int32_t status = post(__func__, [stream_key = OwnedStreamKey(stream_key), mode, reason](Payload& payload) {
    putRoomUserIndex(payload, "stream_key", stream_key);
    payload.put("mode", mode);
    payload.put("reason", reason);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
