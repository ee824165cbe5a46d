// Whether the first frame of a stream has been sent, or played.
#include "events/engine/payload_pieces.h"
#include "events/engine_handler.h"

namespace corvane {
namespace {

auto userStateRoom(const char* room_id, const rtc::RtcUser& user, int32_t state) {
  return [room_id = owned(room_id), user = OwnedUser(user), state](Payload& payload) {
    putUser(payload, user);
    payload.put("state", state);
    payload.put("room_id", room_id);
  };
}

// Reports of screen sound put the room first.
auto roomUserState(const char* room_id, const rtc::RtcUser& user, int32_t state) {
  return [room_id = owned(room_id), user = OwnedUser(user), state](Payload& payload) {
    payload.put("room_id", room_id);
    putUser(payload, user);
    payload.put("state", state);
  };
}

}  // namespace

void KavRTCVideoEventHandler::onAudioFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                           int32_t state) {
  const int32_t status = post(__func__, userStateRoom(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d, userId:%s meta_data: %s, state: %d", __func__, __LINE__, status,
           shown(user.user_id), shown(user.meta_data), state);
}

void KavRTCVideoEventHandler::onVideoFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                           int32_t state) {
  const int32_t status = post(__func__, userStateRoom(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d, userId: %s, meta_data: %s, state: %d", __func__, __LINE__, status,
           shown(user.user_id), shown(user.meta_data), state);
}

void KavRTCVideoEventHandler::onScreenAudioFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                                 int32_t state) {
  const int32_t status = post(__func__, roomUserState(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onScreenVideoFrameSendStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                                 int32_t state) {
  const int32_t status = post(__func__, userStateRoom(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d, userId:%s, meta_data: %s, state: %d", __func__, __LINE__, status,
           shown(user.user_id), shown(user.meta_data), state);
}

void KavRTCVideoEventHandler::onAudioFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                           int32_t state) {
  const int32_t status = post(__func__, userStateRoom(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d, userId:%s, meta_data: %s, state: %d", __func__, __LINE__, status,
           shown(user.user_id), shown(user.meta_data), state);
}

void KavRTCVideoEventHandler::onVideoFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                           int32_t state) {
  const int32_t status = post(__func__, userStateRoom(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d, userId:%s, meta_data: %s, state: %d", __func__, __LINE__, status,
           shown(user.user_id), shown(user.meta_data), state);
}

void KavRTCVideoEventHandler::onScreenAudioFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                                 int32_t state) {
  const int32_t status = post(__func__, roomUserState(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d", __func__, __LINE__, status);
}

void KavRTCVideoEventHandler::onScreenVideoFramePlayStateChanged(const char* room_id, const rtc::RtcUser& user,
                                                                 int32_t state) {
  const int32_t status = post(__func__, userStateRoom(room_id, user, state));
  LogWrite(kLogInfo, "%s(%d), status: %d, userId:%s, meta_data: %s, state: %d", __func__, __LINE__, status,
           shown(user.user_id), shown(user.meta_data), state);
}

}  // namespace corvane
