// Streams in the room: published, subscribed to, banned, kept in step.
#include "rtc_room/room_callback.h"

namespace corvane {
namespace {

auto published(const char* uid, int32_t type) {
  return [uid = owned(uid), type](Payload& payload) {
    payload.put("uid", uid);
    payload.put("type", type);
  };
}

auto unpublished(const char* uid, int32_t type, int32_t reason) {
  return [uid = owned(uid), type, reason](Payload& payload) {
    payload.put("uid", uid);
    payload.put("type", type);
    payload.put("reason", reason);
  };
}

auto streamBanned(const char* uid, bool banned) {
  return [uid = owned(uid), banned](Payload& payload) {
    payload.put("uid", uid);
    payload.put("banned", banned);
  };
}

}  // namespace

void KavRTCRoomCallback::onStreamStateChanged(const char* room_id, const char* uid, int32_t state,
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

void KavRTCRoomCallback::onUserPublishStream(const char* uid, int32_t type) {
  const int32_t status = post(__func__, published(uid, type));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserUnpublishStream(const char* uid, int32_t type, int32_t reason) {
  const int32_t status = post(__func__, unpublished(uid, type, reason));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserPublishScreen(const char* uid, int32_t type) {
  const int32_t status = post(__func__, published(uid, type));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onUserUnpublishScreen(const char* uid, int32_t type, int32_t reason) {
  const int32_t status = post(__func__, unpublished(uid, type, reason));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onStreamSubscribed(int32_t state_code, const char* user_id, const rtc::SubscribeConfig& info) {
  const int32_t status = post(__func__, [state_code, user_id = owned(user_id), info](Payload& payload) {
    payload.put("state_code", state_code);
    payload.put("user_id", user_id);
    payload.object("info", [&](Payload& object) {
      object.put("is_screen", info.is_screen);
      object.put("sub_video", info.sub_video);
      object.put("sub_audio", info.sub_audio);
      // Applications know this key with the no-break space at its end.
      object.put("video_index\xC2\xA0", info.video_index);
      object.put("priority", info.priority);
      object.put("svc_layer", info.svc_layer);
      object.put("framerate", info.framerate);
      object.put("sub_width", info.sub_width);
      object.put("sub_height", info.sub_height);
      object.put("sub_video_index", info.sub_video_index);
    });
  });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onVideoStreamBanned(const char* uid, bool banned) {
  const int32_t status = post(__func__, streamBanned(uid, banned));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onAudioStreamBanned(const char* uid, bool banned) {
  const int32_t status = post(__func__, streamBanned(uid, banned));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCRoomCallback::onAVSyncStateChange(int32_t state) {
  const int32_t status = post(__func__, [state](Payload& payload) { payload.put("state", state); });
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

}  // namespace corvane
