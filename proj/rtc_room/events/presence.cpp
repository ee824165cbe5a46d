// The room itself, who is in it, and tokens that run out.
#include "rtc_room/events/room_stats.h"
#include "rtc_room/room_callback.h"

namespace corvane {

void KavRTCRoomCallback::onRoomStateChanged(const char* room_id, const char* uid, int32_t state,
                                            const char* extra_info) {
  const int32_t status = post(
      __func__, [room_id = owned(room_id), uid = owned(uid), state, extra_info = owned(extra_info)](Payload& payload) {
        payload.put("room_id", room_id);
        payload.put("uid", uid);
        payload.put("state", state);
        payload.put("extra_info", extra_info);
      });
  LogWrite(kLogInfo, "%s(%d), status: %d, state: %d", __func__, __LINE__, status, state);
}

void KavRTCRoomCallback::onLeaveRoom(const rtc::RoomStats& stats) {
  const int32_t status = post(__func__, [stats](Payload& payload) { putRoomStats(payload, stats); });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserJoined(const rtc::UserInfo& user_info, int32_t elapsed) {
  const int32_t status =
      post(__func__, [uid = owned(user_info.uid), extra_info = owned(user_info.extra_info), elapsed](Payload& payload) {
        payload.object("user_info", [&](Payload& object) {
          object.put("uid", uid);
          object.put("extra_info", extra_info);
        });
        payload.put("elapsed", elapsed);
      });
  LogWrite(kLogInfo, "%s(%d), status: %d, userId: %s", __func__, __LINE__, status, shown(user_info.uid));
}

void KavRTCRoomCallback::onUserLeave(const char* uid, int32_t reason) {
  const int32_t status = post(__func__, [uid = owned(uid), reason](Payload& payload) {
    payload.put("uid", uid);
    payload.put("reason", reason);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserVisibilityChanged(bool current_user_visibility, int32_t error_code) {
  const int32_t status = post(__func__, [current_user_visibility, error_code](Payload& payload) {
    payload.put("current_user_visibility", current_user_visibility);
    payload.put("error_code", error_code);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onSetRoomExtraInfoResult(int32_t task_id, int32_t error_code) {
  const int32_t status = post(__func__, [task_id, error_code](Payload& payload) {
    payload.put("task_id", task_id);
    payload.put("error_code", error_code);
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onRoomExtraInfoUpdate(const char* key, const char* value, const char* last_update_user_id,
                                               int64_t last_update_time_ms) {
  const int32_t status =
      post(__func__, [key = owned(key), value = owned(value), last_update_user_id = owned(last_update_user_id),
                      last_update_time_ms](Payload& payload) {
        payload.put("key", key);
        payload.put("value", value);
        payload.put("last_update_user_id", last_update_user_id);
        payload.put("last_update_time_ms", last_update_time_ms);
      });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onTokenWillExpire() {
  const int32_t status = post(__func__, [](Payload&) {});
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onPublishPrivilegeTokenWillExpire() {
  const int32_t status = post(__func__, [](Payload&) {});
  LogWrite(kLogInfo, "%s(%d) status:%d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onSubscribePrivilegeTokenWillExpire() {
  const int32_t status = post(__func__, [](Payload&) {});
  LogWrite(kLogInfo, "%s(%d) status:%d", __func__, __LINE__, status);
}

}  // namespace corvane
