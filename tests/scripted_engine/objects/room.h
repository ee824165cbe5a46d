// Rooms and sound in space.
#pragma once

#include <string>

#include "core/attachments.h"
#include "core/scripted_object.h"
#include "corvane_rtc/range_audio.h"
#include "corvane_rtc/rtc_room.h"
#include "corvane_rtc/rtc_room_events.h"
#include "corvane_rtc/spatial_audio.h"
#include "records/audio.h"
#include "records/rooms.h"

namespace corvane::scripted {

class RangeAudio final : public rtc::IRangeAudio, public ScriptedObject {
 public:
  explicit RangeAudio(const std::string& room_id) : ScriptedObject("IRangeAudio", room_id) {}

  int32_t enableRangeAudio(bool enable) override { return call("enableRangeAudio", arg("enable", enable)); }
  int32_t updateReceiveRange(const rtc::ReceiveRange& range) override {
    return call("updateReceiveRange", arg("range", range));
  }
  int32_t updatePosition(const rtc::Position& position) override {
    return call("updatePosition", arg("position", position));
  }
  int32_t setAttenuationModel(int32_t type, float coefficient) override {
    return call("setAttenuationModel", arg("type", type), arg("coefficient", coefficient));
  }
  int32_t setNoAttenuationFlags(const char* const* flags, int32_t count) override {
    return call("setNoAttenuationFlags", list("flags", flags, count), arg("count", count));
  }
};

class SpatialAudio final : public rtc::ISpatialAudio, public ScriptedObject {
 public:
  explicit SpatialAudio(const std::string& room_id) : ScriptedObject("ISpatialAudio", room_id) {}

  int32_t enableSpatialAudio(bool enable) override { return call("enableSpatialAudio", arg("enable", enable)); }
  int32_t updatePosition(const rtc::Position& position) override {
    return call("updatePosition", arg("position", position));
  }
  int32_t updateSelfOrientation(const rtc::HumanOrientation& orientation) override {
    return call("updateSelfOrientation", arg("orientation", orientation));
  }
  int32_t updateSelfPosition(const rtc::PositionInfo& info) override {
    return call("updateSelfPosition", arg("info", info));
  }
  int32_t disableRemoteOrientation() override { return call("disableRemoteOrientation"); }
  int32_t updateListenerPosition(const rtc::Position& position) override {
    return call("updateListenerPosition", arg("position", position));
  }
  int32_t updateListenerOrientation(const rtc::HumanOrientation& orientation) override {
    return call("updateListenerOrientation", arg("orientation", orientation));
  }
  int32_t updateRemotePosition(const char* uid, const rtc::PositionInfo& info) override {
    return call("updateRemotePosition", arg("uid", uid), arg("info", info));
  }
  int32_t removeRemotePosition(const char* uid) override { return call("removeRemotePosition", arg("uid", uid)); }
  int32_t removeAllRemotePosition() override { return call("removeAllRemotePosition"); }
};

class Room final : public rtc::IRTCRoom, public ScriptedObject {
 public:
  explicit Room(const std::string& room_id)
      : ScriptedObject("IRTCRoom", room_id), range_audio_(room_id), spatial_audio_(room_id) {}

  /// The engine has gone: everything but destroy() fails.
  void outliveEngine() {
    for (ScriptedObject* part : std::initializer_list<ScriptedObject*>{this, &range_audio_, &spatial_audio_}) {
      part->answerFromNowOn(rtc::kWrongState);
    }
  }

  void destroy() override;
  int32_t setRTCRoomEventHandler(rtc::IRTCRoomEventHandler* room_event_handler) override {
    Attachments::instance().attach("IRTCRoomEventHandler", id(), room_event_handler, this, Attachments::kWait);
    return call("setRTCRoomEventHandler", arg("room_event_handler", room_event_handler));
  }
  int32_t joinRoom(const char* token, const rtc::UserInfo& user_info, const rtc::RTCRoomConfig& room_config) override {
    return call("joinRoom", arg("token", token), arg("user_info", user_info), arg("room_config", room_config));
  }
  int32_t leaveRoom() override { return call("leaveRoom"); }
  int32_t setUserVisibility(bool enable) override { return call("setUserVisibility", arg("enable", enable)); }
  int32_t setMultiDeviceAVSync(const char* audio_user_id) override {
    return call("setMultiDeviceAVSync", arg("audio_user_id", audio_user_id));
  }
  int32_t updateToken(const char* token) override { return call("updateToken", arg("token", token)); }
  int32_t setRoomExtraInfo(const char* key, const char* value) override {
    return callForId<int32_t>("setRoomExtraInfo", arg("key", key), arg("value", value));
  }
  int32_t publishStream(int32_t media_type) override { return call("publishStream", arg("media_type", media_type)); }
  int32_t unpublishStream(int32_t media_type) override {
    return call("unpublishStream", arg("media_type", media_type));
  }
  int32_t publishScreen(int32_t media_type) override { return call("publishScreen", arg("media_type", media_type)); }
  int32_t unpublishScreen(int32_t media_type) override {
    return call("unpublishScreen", arg("media_type", media_type));
  }
  int32_t setRemoteVideoConfig(const char* user_id, const rtc::RemoteVideoConfig& config) override {
    return call("setRemoteVideoConfig", arg("user_id", user_id), arg("config", config));
  }
  int32_t subscribeStream(const char* user_id, int32_t media_type) override {
    return call("subscribeStream", arg("user_id", user_id), arg("media_type", media_type));
  }
  int32_t unsubscribeStream(const char* user_id, int32_t media_type) override {
    return call("unsubscribeStream", arg("user_id", user_id), arg("media_type", media_type));
  }
  int32_t subscribeScreen(const char* user_id, int32_t media_type) override {
    return call("subscribeScreen", arg("user_id", user_id), arg("media_type", media_type));
  }
  int32_t unsubscribeScreen(const char* user_id, int32_t media_type) override {
    return call("unsubscribeScreen", arg("user_id", user_id), arg("media_type", media_type));
  }
  int32_t subscribeAllStreams(int32_t media_type) override {
    return call("subscribeAllStreams", arg("media_type", media_type));
  }
  int32_t unsubscribeAllStreams(int32_t media_type) override {
    return call("unsubscribeAllStreams", arg("media_type", media_type));
  }
  int32_t pauseAllSubscribedStream(int32_t media_type) override {
    return call("pauseAllSubscribedStream", arg("media_type", media_type));
  }
  int32_t resumeAllSubscribedStream(int32_t media_type) override {
    return call("resumeAllSubscribedStream", arg("media_type", media_type));
  }
  int32_t setRemoteRoomAudioPlaybackVolume(int32_t volume) override {
    return call("setRemoteRoomAudioPlaybackVolume", arg("volume", volume));
  }
  int32_t setAudioSelectionConfig(int32_t audio_selection_priority) override {
    return call("setAudioSelectionConfig", arg("audio_selection_priority", audio_selection_priority));
  }
  int64_t sendUserMessage(const char* uid, const char* message, int32_t config) override {
    return callForId<int64_t>("sendUserMessage", arg("uid", uid), arg("message", message), arg("config", config));
  }
  int64_t sendUserBinaryMessage(const char* uid, int32_t length, const uint8_t* message, int32_t config) override {
    return callForId<int64_t>("sendUserBinaryMessage", arg("uid", uid), arg("length", length),
                              list("message", message, length), arg("config", config));
  }
  int64_t sendRoomMessage(const char* message) override {
    return callForId<int64_t>("sendRoomMessage", arg("message", message));
  }
  int64_t sendRoomBinaryMessage(int32_t size, const uint8_t* message) override {
    return callForId<int64_t>("sendRoomBinaryMessage", arg("size", size), list("message", message, size));
  }
  int32_t startForwardStreamToRooms(const rtc::ForwardStreamConfiguration& configuration) override {
    return call("startForwardStreamToRooms", arg("configuration", configuration));
  }
  int32_t updateForwardStreamToRooms(const rtc::ForwardStreamConfiguration& configuration) override {
    return call("updateForwardStreamToRooms", arg("configuration", configuration));
  }
  int32_t stopForwardStreamToRooms() override { return call("stopForwardStreamToRooms"); }
  int32_t pauseForwardStreamToAllRooms() override { return call("pauseForwardStreamToAllRooms"); }
  int32_t resumeForwardStreamToAllRooms() override { return call("resumeForwardStreamToAllRooms"); }
  int32_t startSubtitle(const rtc::SubtitleConfig& config) override {
    return call("startSubtitle", arg("config", config));
  }
  int32_t stopSubtitle() override { return call("stopSubtitle"); }
  rtc::IRangeAudio* getRangeAudio() override { return offer<rtc::IRangeAudio>("getRangeAudio", &range_audio_); }
  rtc::ISpatialAudio* getSpatialAudio() override {
    return offer<rtc::ISpatialAudio>("getSpatialAudio", &spatial_audio_);
  }

 private:
  RangeAudio range_audio_;
  SpatialAudio spatial_audio_;
};

}  // namespace corvane::scripted
