// The room's existence, the local user's presence in it, and what concerns the room as a whole.
#include "rtc_room/owners.h"
#include "rtc_room/tables.h"

namespace corvane {
namespace {

void isRoomCreated(Call& call) {
  napi_get_boolean(call.env, roomOf(call).m_pRtcRoom != nullptr, &call.answer);
}

void getRoomId(Call& call) {
  call.say(kLogInfo, "+%s(%d");
  const bool exists = roomOf(call).m_pRtcRoom != nullptr;
  const std::string room_id = exists ? roomOf(call).m_roomId : std::string();
  call.say(kLogInfo, "-%s(%d), ret: %d room_id=%s", exists ? 0 : -1, room_id.c_str());
  napi_create_string_utf8(call.env, room_id.data(), room_id.size(), &call.answer);
}

void destroy(Call& call) {
  if (!refusesToEnd(call, call.wrapper)) call.result = roomOf(call).destroyRTCRoom();
}

rtc::RTCRoomConfig readRoomConfig(Reader& reader, napi_value value) {
  rtc::RTCRoomConfig config{};
  config.room_profile_type = reader.int32(value, "room_profile_type");
  config.is_auto_subscribe_audio = reader.boolean(value, "is_auto_subscribe_audio");
  config.is_auto_subscribe_video = reader.boolean(value, "is_auto_subscribe_video");
  config.is_auto_publish = reader.boolean(value, "is_auto_publish");
  napi_value remote_video = reader.get(value, "remote_video_config");
  config.remote_video_config.framerate = reader.int32(remote_video, "framerate");
  config.remote_video_config.resolution_width = reader.int32(remote_video, "resolution_width");
  config.remote_video_config.resolution_height = reader.int32(remote_video, "resolution_height");
  return config;
}

void joinRoom(Call& call) {
  Reader reader(call.env);
  Text token;
  Text uid;
  Text extra_info;
  reader.text(call[0], token);
  const rtc::RTCRoomConfig config = readRoomConfig(reader, call[2]);
  reader.text(call[1], "uid", uid);
  reader.text(call[1], "extra_info", extra_info);
  const rtc::RemoteVideoConfig& remote_video = config.remote_video_config;
  call.say(kLogInfo,
           "%s(%d), token: %s, uid: %s extraInfo: %s room profile =%d is_auto_subscribe_audio = %d "
           "is_auto_subscribe_video=%d is_auto_publish = %d framerate=%d resolution_height=%d resolution_width=%d",
           token.c_str(), uid.c_str(), extra_info.c_str(), config.room_profile_type,
           config.is_auto_subscribe_audio ? 1 : 0, config.is_auto_subscribe_video ? 1 : 0,
           config.is_auto_publish ? 1 : 0, remote_video.framerate, remote_video.resolution_height,
           remote_video.resolution_width);
  call.result = engineRoomOf(call).joinRoom(token.c_str(), {uid.c_str(), extra_info.c_str()}, config);
}

constexpr Row kRows[] = {
    bare("isRoomCreated", &isRoomCreated),
    bare("getRoomId", &getRoomId),
    bare("destroy", &destroy),
    special("joinRoom", &joinRoom, {Kind::kString, Kind::kObject, Kind::kObject}),
    plain<&rtc::IRTCRoom::leaveRoom>("leaveRoom"),
    plain<&rtc::IRTCRoom::setUserVisibility>("setUserVisibility").exitsWithArguments("-%s(%d), ret: %d bEnable = %d"),
    // Its exit line reads like a refusal whatever the result.
    plain<&rtc::IRTCRoom::setMultiDeviceAVSync>("setMultiDeviceAVSync")
        .testsArgumentsFirst()
        .exitsWithArguments("%s(%d), Param is invalid ret=%d audio_user_id=%s"),
    plain<&rtc::IRTCRoom::updateToken>("updateToken").refuses("%s(%d), Param is invalid"),
    plain<&rtc::IRTCRoom::setRoomExtraInfo>("setRoomExtraInfo")
        .refuses(0, "%s(%d) param is not valid, key")
        .refuses(1, "%s(%d) param is not valid, value")
        .says("+%s(%d) key: %s, value: %s"),
};

}  // namespace

std::span<const Row> roomLifecycleRows() {
  return kRows;
}

}  // namespace corvane
