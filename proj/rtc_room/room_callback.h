// Passes what one room reports on to the application: every event is posted on the room's channel and logged.
// The methods are spread over events/, one file for each group below.
//
// Threads: the engine's own, several at once; nothing that the engine lends is kept.
#pragma once

#include <cstdint>
#include <utility>

#include "corvane_rtc/rtc_room_events.h"
#include "events/channel.h"
#include "log/log.h"
#include "rtc_room/room_gate.h"

namespace corvane {

class KavRTCRoomCallback final : public rtc::IRTCRoomEventHandler {
 public:
  /// The channel belongs to the room and outlives its handler.
  explicit KavRTCRoomCallback(const Channel* channel) : channel_(channel) {}
  ~KavRTCRoomCallback() = default;
  KavRTCRoomCallback(const KavRTCRoomCallback&) = delete;
  KavRTCRoomCallback& operator=(const KavRTCRoomCallback&) = delete;

  /// Queues an event for the room's channel; 11 when the rooms' gate is closed.
  int32_t postEvent(EventRecord record) {
    return isRoomGateOpen() ? channel_->post(std::move(record)) : kPostCancelled;
  }

  // presence.cpp: the room, its users and tokens
  void onRoomStateChanged(const char* room_id, const char* uid, int32_t state, const char* extra_info) override;
  void onLeaveRoom(const rtc::RoomStats& stats) override;
  void onUserJoined(const rtc::UserInfo& user_info, int32_t elapsed) override;
  void onUserLeave(const char* uid, int32_t reason) override;
  void onUserVisibilityChanged(bool current_user_visibility, int32_t error_code) override;
  void onSetRoomExtraInfoResult(int32_t task_id, int32_t error_code) override;
  void onRoomExtraInfoUpdate(const char* key, const char* value, const char* last_update_user_id,
                             int64_t last_update_time_ms) override;
  void onTokenWillExpire() override;
  void onPublishPrivilegeTokenWillExpire() override;
  void onSubscribePrivilegeTokenWillExpire() override;

  // streams.cpp
  void onStreamStateChanged(const char* room_id, const char* uid, int32_t state, const char* extra_info) override;
  void onUserPublishStream(const char* uid, int32_t type) override;
  void onUserUnpublishStream(const char* uid, int32_t type, int32_t reason) override;
  void onUserPublishScreen(const char* uid, int32_t type) override;
  void onUserUnpublishScreen(const char* uid, int32_t type, int32_t reason) override;
  void onStreamSubscribed(int32_t state_code, const char* user_id, const rtc::SubscribeConfig& info) override;
  void onVideoStreamBanned(const char* uid, bool banned) override;
  void onAudioStreamBanned(const char* uid, bool banned) override;
  void onAVSyncStateChange(int32_t state) override;

  // statistics.cpp
  void onRoomStats(const rtc::RoomStats& stats) override;
  void onLocalStreamStats(const rtc::LocalStreamStats& stats) override;
  void onRemoteStreamStats(const rtc::RemoteStreamStats& stats) override;
  void onNetworkQuality(const rtc::NetworkQualityStats& local_quality, const rtc::NetworkQualityStats* remote_qualities,
                        int32_t remote_quality_count) override;

  // messages.cpp
  void onRoomMessageReceived(const char* uid, const char* message) override;
  void onRoomBinaryMessageReceived(const char* uid, const uint8_t* message, int32_t size) override;
  void onUserMessageReceived(const char* uid, const char* message) override;
  void onUserBinaryMessageReceived(const char* uid, const uint8_t* message, int32_t size) override;
  void onUserMessageSendResult(int64_t msgid, int32_t error) override;
  void onRoomMessageSendResult(int64_t msgid, int32_t error) override;

  // forwarding.cpp
  void onForwardStreamStateChanged(const rtc::ForwardStreamStateInfo* infos, int32_t info_count) override;
  void onForwardStreamEvent(const rtc::ForwardStreamEventInfo* infos, int32_t info_count) override;

  // subtitles.cpp
  void onSubtitleStateChanged(int32_t state, int32_t error_code, const char* error_message) override;
  void onSubtitleMessageReceived(const rtc::SubtitleMessage* subtitles, int32_t subtitle_count) override;

 private:
  // Posts the event and answers the post's status. `event` must be a literal or __func__.
  template <class Fill>
  int32_t post(const char* event, Fill fill) {
    return postEvent(EventRecord::event(event, std::move(fill)));
  }

  const Channel* channel_;
};

}  // namespace corvane
