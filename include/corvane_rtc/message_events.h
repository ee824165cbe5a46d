// Constants in reports of login, of messages and of data inside streams.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

enum LoginErrorCode : int32_t {
  kLoginErrorOk = 0,
  kLoginErrorInvalidToken = 1,
  kLoginErrorInvalidUserId = 2,
  kLoginErrorServiceUnreachable = 3,
  kLoginErrorServiceRefused = 4,
};

enum LogoutReason : int32_t {
  kLogoutReasonLogout = 0,
  kLogoutReasonDuplicateLogin = 1,  ///< the same user logged in elsewhere
  kLogoutReasonConnectionLost = 2,  ///< the service could not be reached for too long
};

enum UserOnlineStatus : int32_t {
  kUserOnlineStatusOffline = 0,
  kUserOnlineStatusOnline = 1,
  kUserOnlineStatusUnknown = 2,  ///< the service could not tell
};

/// What became of a message that a send operation took: to a user, to a room or to the application's server.
enum MessageSendResult : int32_t {
  kMessageSendResultSuccess = 0,
  kMessageSendResultTimeout = 1,
  kMessageSendResultNetworkDisconnected = 2,
  kMessageSendResultNoReceiver = 3,
  kMessageSendResultTooLong = 4,   ///< more than 64 kB
  kMessageSendResultTooOften = 5,  ///< more messages a second than the service takes
  kMessageSendResultNotJoined = 6,
  kMessageSendResultNotLoggedIn = 7,
  kMessageSendResultServerParamsNotSet = 8,
  kMessageSendResultRefused = 9,  ///< by the service or the application's server
  kMessageSendResultUnknown = 10,
};

/// Whether a stream has begun or ceased to carry messages in its video.
enum SEIStreamEventType : int32_t {
  kSEIStreamEventAdded = 0,
  kSEIStreamEventRemoved = 1,
};

/// Who put a message into a public stream.
enum DataMessageSourceType : int32_t {
  kDataMessageSourceUser = 0,
  kDataMessageSourceSystem = 1,
};

/// Results of publishing and playing public streams.
enum PublicStreamErrorCode : int32_t {
  kPublicStreamErrorOk = 0,
  kPublicStreamErrorInvalidParameter = 1,
  kPublicStreamErrorNotFound = 2,  ///< nobody publishes a stream of this id
  kPublicStreamErrorTimeout = 3,
  kPublicStreamErrorRefused = 4,
  kPublicStreamErrorInternal = 5,
};

}  // namespace corvane::rtc
