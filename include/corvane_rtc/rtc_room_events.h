// What a room reports.
#pragma once

#include "corvane_rtc/common.h"
#include "corvane_rtc/room_statistics.h"
#include "corvane_rtc/rtc_room.h"

namespace corvane::rtc {

/// States of being in a room. Failures are negative; extra_info tells more.
enum RoomState : int32_t {
  kRoomStateJoined = 0,
  kRoomStateJoinFailed = -1,
  kRoomStateInvalidToken = -2,
  kRoomStateTokenExpired = -3,
  kRoomStateDuplicateLogin = -4,  ///< the same user joined from elsewhere
  kRoomStateKickedOut = -5,
  kRoomStateRoomDismissed = -6,
  kRoomStateConnectionLost = -7,
};

/// States of publishing and subscribing in a room. Failures are negative; extra_info tells more.
enum StreamState : int32_t {
  kStreamStateOk = 0,
  kStreamStatePublishFailed = -1,
  kStreamStateSubscribeFailed = -2,
  kStreamStateNoPublishPermission = -3,
  kStreamStateNoSubscribePermission = -4,
  kStreamStateTooManyStreams = -5,
};

enum UserLeaveReason : int32_t {
  kUserLeaveReasonQuit = 0,
  kUserLeaveReasonDropped = 1,    ///< the connection was lost
  kUserLeaveReasonInvisible = 2,  ///< the user became invisible
  kUserLeaveReasonKickedOut = 3,
};

enum StreamRemoveReason : int32_t {
  kStreamRemoveReasonUnpublish = 0,
  kStreamRemoveReasonPublishFailed = 1,
  kStreamRemoveReasonConnectionLost = 2,
  kStreamRemoveReasonTokenExpired = 3,
  kStreamRemoveReasonKickedOut = 4,
  kStreamRemoveReasonOther = 5,
};

/// Results of subscribing.
enum SubscribeState : int32_t {
  kSubscribeStateSuccess = 0,
  kSubscribeStateNotInRoom = 1,
  kSubscribeStateStreamNotFound = 2,
  kSubscribeStateTooManyStreams = 3,
  kSubscribeStateFailed = 4,
};

/// States of setMultiDeviceAVSync().
enum AVSyncState : int32_t {
  kAVSyncStateStreamRemoved = 0,  ///< there is no sound to keep in step with
  kAVSyncStateToVideoStarted = 1,
  kAVSyncStateInSync = 2,
};

enum RoomExtraInfoError : int32_t {
  kRoomExtraInfoErrorOk = 0,
  kRoomExtraInfoErrorNotJoined = 1,
  kRoomExtraInfoErrorInvalidKey = 2,
  kRoomExtraInfoErrorValueTooLong = 3,
  kRoomExtraInfoErrorTooManyKeys = 4,
  kRoomExtraInfoErrorTooOften = 5,
  kRoomExtraInfoErrorOther = 6,
};

enum SubtitleState : int32_t {
  kSubtitleStateStarted = 0,
  kSubtitleStateStopped = 1,
  kSubtitleStateError = 2,
};

enum SubtitleErrorCode : int32_t {
  kSubtitleErrorOk = 0,
  kSubtitleErrorNotJoined = 1,
  kSubtitleErrorServiceUnavailable = 2,
  kSubtitleErrorServiceFailed = 3,
  kSubtitleErrorInvalidLanguage = 4,
};

enum UserVisibilityError : int32_t {
  kUserVisibilityErrorOk = 0,
  kUserVisibilityErrorNotJoined = 1,
  kUserVisibilityErrorTooManyUsers = 2,
  kUserVisibilityErrorOther = 3,
};

/// Handler of one room, given to IRTCRoom::setRTCRoomEventHandler(). Override what is of interest; the rest does
/// nothing.
///
/// Threads: called on threads of the library, possibly on several at once; reports on one user, stream, task or
/// message come one after the other and in order. A callback returns soon and calls no engine operation.
/// Lifetime: texts, bytes, records, lists and what they point to are valid during the callback only.
/// The handler lives until it is replaced or IRTCRoom::destroy() has returned; nothing is called afterwards.
class IRTCRoomEventHandler {
 public:
  // The room and its users.

  /// state: RoomState. extra_info: a JSON object with more about the change.
  virtual void onRoomStateChanged([[maybe_unused]] const char* room_id, [[maybe_unused]] const char* uid,
                                  [[maybe_unused]] int32_t state, [[maybe_unused]] const char* extra_info) {}
  /// stats: of the whole stay.
  virtual void onLeaveRoom([[maybe_unused]] const RoomStats& stats) {}
  /// elapsed: milliseconds from the local user's joining.
  virtual void onUserJoined([[maybe_unused]] const UserInfo& user_info, [[maybe_unused]] int32_t elapsed) {}
  virtual void onUserLeave([[maybe_unused]] const char* uid, [[maybe_unused]] int32_t reason) {}  ///< UserLeaveReason
  /// error_code: UserVisibilityError.
  virtual void onUserVisibilityChanged([[maybe_unused]] bool current_user_visibility,
                                       [[maybe_unused]] int32_t error_code) {}
  /// task_id: what setRoomExtraInfo() returned, error_code: RoomExtraInfoError.
  virtual void onSetRoomExtraInfoResult([[maybe_unused]] int32_t task_id, [[maybe_unused]] int32_t error_code) {}
  /// last_update_time_ms: milliseconds since 1970 UTC.
  virtual void onRoomExtraInfoUpdate([[maybe_unused]] const char* key, [[maybe_unused]] const char* value,
                                     [[maybe_unused]] const char* last_update_user_id,
                                     [[maybe_unused]] int64_t last_update_time_ms) {}

  // Tokens that run out within 30 seconds: for the room, for publishing, for subscribing.

  virtual void onTokenWillExpire() {}
  virtual void onPublishPrivilegeTokenWillExpire() {}
  virtual void onSubscribePrivilegeTokenWillExpire() {}

  // Streams. type: MediaStreamType, of what has begun or ended.

  /// state: StreamState. extra_info: a JSON object with more about the change.
  virtual void onStreamStateChanged([[maybe_unused]] const char* room_id, [[maybe_unused]] const char* uid,
                                    [[maybe_unused]] int32_t state, [[maybe_unused]] const char* extra_info) {}
  virtual void onUserPublishStream([[maybe_unused]] const char* uid, [[maybe_unused]] int32_t type) {}
  /// reason: StreamRemoveReason.
  virtual void onUserUnpublishStream([[maybe_unused]] const char* uid, [[maybe_unused]] int32_t type,
                                     [[maybe_unused]] int32_t reason) {}
  virtual void onUserPublishScreen([[maybe_unused]] const char* uid, [[maybe_unused]] int32_t type) {}
  /// reason: StreamRemoveReason.
  virtual void onUserUnpublishScreen([[maybe_unused]] const char* uid, [[maybe_unused]] int32_t type,
                                     [[maybe_unused]] int32_t reason) {}
  /// state_code: SubscribeState.
  virtual void onStreamSubscribed([[maybe_unused]] int32_t state_code, [[maybe_unused]] const char* user_id,
                                  [[maybe_unused]] const SubscribeConfig& info) {}
  virtual void onVideoStreamBanned([[maybe_unused]] const char* uid, [[maybe_unused]] bool banned) {}
  virtual void onAudioStreamBanned([[maybe_unused]] const char* uid, [[maybe_unused]] bool banned) {}
  virtual void onAVSyncStateChange([[maybe_unused]] int32_t state) {}  ///< AVSyncState

  // Statistics, every 2 seconds while in the room.

  virtual void onRoomStats([[maybe_unused]] const RoomStats& stats) {}
  virtual void onLocalStreamStats([[maybe_unused]] const LocalStreamStats& stats) {}    ///< once for each stream
  virtual void onRemoteStreamStats([[maybe_unused]] const RemoteStreamStats& stats) {}  ///< once for each stream
  /// The list may be empty.
  virtual void onNetworkQuality([[maybe_unused]] const NetworkQualityStats& local_quality,
                                [[maybe_unused]] const NetworkQualityStats* remote_qualities,
                                [[maybe_unused]] int32_t remote_quality_count) {}

  // Messages. uid: the sender; size in bytes, binary messages are not terminated.

  virtual void onRoomMessageReceived([[maybe_unused]] const char* uid, [[maybe_unused]] const char* message) {}
  virtual void onRoomBinaryMessageReceived([[maybe_unused]] const char* uid, [[maybe_unused]] const uint8_t* message,
                                           [[maybe_unused]] int32_t size) {}
  virtual void onUserMessageReceived([[maybe_unused]] const char* uid, [[maybe_unused]] const char* message) {}
  virtual void onUserBinaryMessageReceived([[maybe_unused]] const char* uid, [[maybe_unused]] const uint8_t* message,
                                           [[maybe_unused]] int32_t size) {}
  /// msgid: what the send operation returned, error: MessageSendResult.
  virtual void onUserMessageSendResult([[maybe_unused]] int64_t msgid, [[maybe_unused]] int32_t error) {}
  /// msgid: what the send operation returned, error: MessageSendResult.
  virtual void onRoomMessageSendResult([[maybe_unused]] int64_t msgid, [[maybe_unused]] int32_t error) {}

  // Forwarding to other rooms. The lists may be empty.

  virtual void onForwardStreamStateChanged([[maybe_unused]] const ForwardStreamStateInfo* infos,
                                           [[maybe_unused]] int32_t info_count) {}
  virtual void onForwardStreamEvent([[maybe_unused]] const ForwardStreamEventInfo* infos,
                                    [[maybe_unused]] int32_t info_count) {}

  // Subtitles.

  /// state: SubtitleState, error_code: SubtitleErrorCode.
  virtual void onSubtitleStateChanged([[maybe_unused]] int32_t state, [[maybe_unused]] int32_t error_code,
                                      [[maybe_unused]] const char* error_message) {}
  virtual void onSubtitleMessageReceived([[maybe_unused]] const SubtitleMessage* subtitles,
                                         [[maybe_unused]] int32_t subtitle_count) {}

 protected:
  ~IRTCRoomEventHandler() = default;
};

}  // namespace corvane::rtc
