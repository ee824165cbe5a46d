// A room as applications call it. Operations are short: they check, post to the engine thread and return.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "api/room_door.h"
#include "api/room_sound_space.h"
#include "corvane_rtc/rtc_room.h"
#include "rooms/room.h"

namespace corvane::rtc {

/// Whether the text can be the id of a room or a user: UTF-8, 1 to 128 bytes.
bool isRoomOrUserId(const char* id);

/// Belongs to the application until destroy(). An engine that has ended leaves it without anything behind it.
class RtcRoom final : public IRTCRoom {
 public:
  RtcRoom(std::shared_ptr<RoomDoor> door, std::string id);
  RtcRoom(const RtcRoom&) = delete;
  RtcRoom& operator=(const RtcRoom&) = delete;

  void destroy() override;
  int32_t setRTCRoomEventHandler(IRTCRoomEventHandler* room_event_handler) override;

  // Presence.

  int32_t joinRoom(const char* token, const UserInfo& user_info, const RTCRoomConfig& room_config) override;
  int32_t leaveRoom() override;
  int32_t setUserVisibility(bool enable) override;
  int32_t setMultiDeviceAVSync(const char* audio_user_id) override;
  int32_t updateToken(const char* token) override;
  int32_t setRoomExtraInfo(const char* key, const char* value) override;

  // Streams of the local user.

  int32_t publishStream(int32_t media_type) override;
  int32_t unpublishStream(int32_t media_type) override;
  int32_t publishScreen(int32_t media_type) override;
  int32_t unpublishScreen(int32_t media_type) override;

  // Streams of others.

  int32_t setRemoteVideoConfig(const char* user_id, const RemoteVideoConfig& config) override;
  int32_t subscribeStream(const char* user_id, int32_t media_type) override;
  int32_t unsubscribeStream(const char* user_id, int32_t media_type) override;
  int32_t subscribeScreen(const char* user_id, int32_t media_type) override;
  int32_t unsubscribeScreen(const char* user_id, int32_t media_type) override;
  int32_t subscribeAllStreams(int32_t media_type) override;
  int32_t unsubscribeAllStreams(int32_t media_type) override;
  int32_t pauseAllSubscribedStream(int32_t media_type) override;
  int32_t resumeAllSubscribedStream(int32_t media_type) override;
  int32_t setRemoteRoomAudioPlaybackVolume(int32_t volume) override;
  int32_t setAudioSelectionConfig(int32_t audio_selection_priority) override;

  // Messages.

  int64_t sendUserMessage(const char* uid, const char* message, int32_t config) override;
  int64_t sendUserBinaryMessage(const char* uid, int32_t length, const uint8_t* message, int32_t config) override;
  int64_t sendRoomMessage(const char* message) override;
  int64_t sendRoomBinaryMessage(int32_t size, const uint8_t* message) override;

  // Forwarding.

  int32_t startForwardStreamToRooms(const ForwardStreamConfiguration& configuration) override;
  int32_t updateForwardStreamToRooms(const ForwardStreamConfiguration& configuration) override;
  int32_t stopForwardStreamToRooms() override;
  int32_t pauseForwardStreamToAllRooms() override;
  int32_t resumeForwardStreamToAllRooms() override;

  // Subtitles.

  int32_t startSubtitle(const SubtitleConfig& config) override;
  int32_t stopSubtitle() override;

  // Sound in space.

  IRangeAudio* getRangeAudio() override { return &space_; }
  ISpatialAudio* getSpatialAudio() override { return &space_; }

 private:
  ~RtcRoom() = default;

  int32_t notSupported(const char* operation);
  /// Runs the task on the engine thread; kWrongState when the engine has ended.
  int32_t post(std::function<void(Room&)> task);
  /// The same, for a room that is or is being joined.
  int32_t postInRoom(std::function<void(Room&)> task);
  int64_t send(const char* to, std::string body, bool is_binary);
  int32_t forward(const ForwardStreamConfiguration& configuration, bool started);
  int32_t postForwarding(std::function<void(Forwarding&)> task);
  bool isForwarding() const { return forwarding_ != nullptr && forwarding_ == in_room_; }

  const std::shared_ptr<RoomDoor> door_;
  const std::string id_;
  std::shared_ptr<std::atomic<bool>> in_room_;  // of the last joinRoom(): false once it failed, or the stay was ended
  std::shared_ptr<std::atomic<bool>> forwarding_;  // the stay during which forwarding was started
  int64_t last_message_ = 0;
  int32_t last_task_ = 0;
  RoomSoundSpace space_;
};

}  // namespace corvane::rtc
