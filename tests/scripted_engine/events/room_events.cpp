// The rows of the room handlers.

#include <array>
#include <span>

#include "corvane_rtc/rtc_room_events.h"
#include "events/event_row.h"
#include "events/registry.h"
#include "records/rooms.h"

namespace corvane::scripted {

namespace {

using rtc::IRTCRoomEventHandler;

constexpr auto kRows = std::to_array<EventRow>({
    event<&IRTCRoomEventHandler::onRoomStateChanged>("IRTCRoomEventHandler", "onRoomStateChanged", "room_id", "uid",
                                                     "state", "extra_info"),
    event<&IRTCRoomEventHandler::onLeaveRoom>("IRTCRoomEventHandler", "onLeaveRoom", "stats"),
    event<&IRTCRoomEventHandler::onUserJoined>("IRTCRoomEventHandler", "onUserJoined", "user_info", "elapsed"),
    event<&IRTCRoomEventHandler::onUserLeave>("IRTCRoomEventHandler", "onUserLeave", "uid", "reason"),
    event<&IRTCRoomEventHandler::onUserVisibilityChanged>("IRTCRoomEventHandler", "onUserVisibilityChanged",
                                                          "current_user_visibility", "error_code"),
    event<&IRTCRoomEventHandler::onSetRoomExtraInfoResult>("IRTCRoomEventHandler", "onSetRoomExtraInfoResult",
                                                           "task_id", "error_code"),
    event<&IRTCRoomEventHandler::onRoomExtraInfoUpdate>("IRTCRoomEventHandler", "onRoomExtraInfoUpdate", "key", "value",
                                                        "last_update_user_id", "last_update_time_ms"),
    event<&IRTCRoomEventHandler::onTokenWillExpire>("IRTCRoomEventHandler", "onTokenWillExpire"),
    event<&IRTCRoomEventHandler::onPublishPrivilegeTokenWillExpire>("IRTCRoomEventHandler",
                                                                    "onPublishPrivilegeTokenWillExpire"),
    event<&IRTCRoomEventHandler::onSubscribePrivilegeTokenWillExpire>("IRTCRoomEventHandler",
                                                                      "onSubscribePrivilegeTokenWillExpire"),
    event<&IRTCRoomEventHandler::onStreamStateChanged>("IRTCRoomEventHandler", "onStreamStateChanged", "room_id", "uid",
                                                       "state", "extra_info"),
    event<&IRTCRoomEventHandler::onUserPublishStream>("IRTCRoomEventHandler", "onUserPublishStream", "uid", "type"),
    event<&IRTCRoomEventHandler::onUserUnpublishStream>("IRTCRoomEventHandler", "onUserUnpublishStream", "uid", "type",
                                                        "reason"),
    event<&IRTCRoomEventHandler::onUserPublishScreen>("IRTCRoomEventHandler", "onUserPublishScreen", "uid", "type"),
    event<&IRTCRoomEventHandler::onUserUnpublishScreen>("IRTCRoomEventHandler", "onUserUnpublishScreen", "uid", "type",
                                                        "reason"),
    event<&IRTCRoomEventHandler::onStreamSubscribed>("IRTCRoomEventHandler", "onStreamSubscribed", "state_code",
                                                     "user_id", "info"),
    event<&IRTCRoomEventHandler::onVideoStreamBanned>("IRTCRoomEventHandler", "onVideoStreamBanned", "uid", "banned"),
    event<&IRTCRoomEventHandler::onAudioStreamBanned>("IRTCRoomEventHandler", "onAudioStreamBanned", "uid", "banned"),
    event<&IRTCRoomEventHandler::onAVSyncStateChange>("IRTCRoomEventHandler", "onAVSyncStateChange", "state"),
    event<&IRTCRoomEventHandler::onRoomStats>("IRTCRoomEventHandler", "onRoomStats", "stats"),
    event<&IRTCRoomEventHandler::onLocalStreamStats>("IRTCRoomEventHandler", "onLocalStreamStats", "stats"),
    event<&IRTCRoomEventHandler::onRemoteStreamStats>("IRTCRoomEventHandler", "onRemoteStreamStats", "stats"),
    event<&IRTCRoomEventHandler::onNetworkQuality>("IRTCRoomEventHandler", "onNetworkQuality", "local_quality",
                                                   "remote_qualities", "remote_quality_count"),
    event<&IRTCRoomEventHandler::onRoomMessageReceived>("IRTCRoomEventHandler", "onRoomMessageReceived", "uid",
                                                        "message"),
    event<&IRTCRoomEventHandler::onRoomBinaryMessageReceived>("IRTCRoomEventHandler", "onRoomBinaryMessageReceived",
                                                              "uid", "message", "size"),
    event<&IRTCRoomEventHandler::onUserMessageReceived>("IRTCRoomEventHandler", "onUserMessageReceived", "uid",
                                                        "message"),
    event<&IRTCRoomEventHandler::onUserBinaryMessageReceived>("IRTCRoomEventHandler", "onUserBinaryMessageReceived",
                                                              "uid", "message", "size"),
    event<&IRTCRoomEventHandler::onUserMessageSendResult>("IRTCRoomEventHandler", "onUserMessageSendResult", "msgid",
                                                          "error"),
    event<&IRTCRoomEventHandler::onRoomMessageSendResult>("IRTCRoomEventHandler", "onRoomMessageSendResult", "msgid",
                                                          "error"),
    event<&IRTCRoomEventHandler::onForwardStreamStateChanged>("IRTCRoomEventHandler", "onForwardStreamStateChanged",
                                                              "infos", "info_count"),
    event<&IRTCRoomEventHandler::onForwardStreamEvent>("IRTCRoomEventHandler", "onForwardStreamEvent", "infos",
                                                       "info_count"),
    event<&IRTCRoomEventHandler::onSubtitleStateChanged>("IRTCRoomEventHandler", "onSubtitleStateChanged", "state",
                                                         "error_code", "error_message"),
    event<&IRTCRoomEventHandler::onSubtitleMessageReceived>("IRTCRoomEventHandler", "onSubtitleMessageReceived",
                                                            "subtitles", "subtitle_count"),
});

}  // namespace

std::span<const EventRow> roomEvents() {
  return kRows;
}

}  // namespace corvane::scripted
