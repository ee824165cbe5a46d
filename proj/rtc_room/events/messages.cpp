// Messages to the room and to the local user, and what became of those sent.
#include "rtc_room/room_callback.h"

namespace corvane {
namespace {

auto sendResult(int64_t msgid, int32_t error) {
  return [msgid, error](Payload& payload) {
    payload.put("msgid", msgid);
    payload.put("error", error);
  };
}

auto binaryMessage(const char* uid, const uint8_t* message, int32_t size) {
  return [message = owned(message, size), uid = owned(uid)](Payload& payload) {
    payload.put("message", message);
    payload.put("uid", uid);
  };
}

}  // namespace

void KavRTCRoomCallback::onRoomMessageReceived(const char* uid, const char* message) {
  const int32_t status = post(__func__, [message = owned(message), uid = owned(uid)](Payload& payload) {
    payload.put("message", message);
    payload.put("uid", uid);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onRoomBinaryMessageReceived(const char* uid, const uint8_t* message, int32_t size) {
  const int32_t status = post(__func__, binaryMessage(uid, message, size));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserMessageReceived(const char* uid, const char* message) {
  const int32_t status = post(__func__, [uid = owned(uid), message = owned(message)](Payload& payload) {
    payload.put("uid", uid);
    payload.put("message", message);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserBinaryMessageReceived(const char* uid, const uint8_t* message, int32_t size) {
  const int32_t status = post(__func__, binaryMessage(uid, message, size));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserMessageSendResult(int64_t msgid, int32_t error) {
  const int32_t status = post(__func__, sendResult(msgid, error));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onRoomMessageSendResult(int64_t msgid, int32_t error) {
  const int32_t status = post(__func__, sendResult(msgid, error));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
