// Messages outside rooms, and data that travels inside streams. Messages hold at most 64 kB.

import type { Open, Result, StreamIndex, StreamKey, TypedArray } from './common';

/**
 * How a message to one user travels.
 * - `0` reliable, in order
 * - `1` unreliable, in order
 * - `2` unreliable, in any order
 */
export type MessageConfig = 0 | 1 | 2;

/**
 * How many messages one video frame may carry.
 * - `0` one: a newer message replaces one that has not been sent yet
 * - `1` several: messages queue up in the next frame
 */
export type SEICountPerFrame = 0 | 1;

/** - `0` sound */
export type SyncInfoStreamType = 0;

/** How `sendStreamSyncInfo` sends its data. All keys are required. */
export interface StreamSyncInfoConfig {
  stream_index: StreamIndex;
  /** Further packets that carry it, 0 to 25. */
  repeat_count: number;
  stream_type: SyncInfoStreamType;
}

/** Message ids are above 0; failures are negative and bring no event. */
export interface MessagingMethods {
  /** Reports `onLoginResult`. */
  login(token: string, uid: string): Result;
  logout(): Result;
  updateLoginToken(token: string): Result;
  /** Names the application's own message server. Reports `onServerParamsSetResult`. */
  setServerParams(signature: string, url: string): Result;
  /** Answered by `onGetPeerOnlineStatus`. */
  getPeerOnlineStatus(peerUserId: string): Result;
  /** @returns the message id's low 32 bits as a signed number, or a negative result */
  sendUserMessageOutsideRoom(uid: string, message: string, config: MessageConfig): number;
  /**
   * @param length bytes of `message` to send
   * @returns the message id's low 32 bits as a signed number, or a negative result
   */
  sendUserBinaryMessageOutsideRoom(uid: string, length: number, message: TypedArray, config: MessageConfig): number;
  /** @returns the message id, or a negative result */
  sendServerMessage(message: string): number;
  /** @param length bytes of `message` to send @returns the message id, or a negative result */
  sendServerBinaryMessage(length: number, message: TypedArray): number;

  /**
   * Sends data inside the video.
   * @param message 1 to 4096 bytes
   * @param repeatCount further frames that carry it, 0 to 30
   */
  sendSEIMessage(streamIndex: StreamIndex, message: TypedArray, repeatCount: number, mode: SEICountPerFrame): Result;
  /**
   * Sends data in step with the sound.
   * @param data 1 to 255 bytes
   * @returns 0 or above, or a negative result
   */
  sendStreamSyncInfo(data: TypedArray, config: StreamSyncInfoConfig): number;
}

/**
 * - `0` success
 * - `1` invalid token
 * - `2` invalid user id
 * - `3` the service cannot be reached
 * - `4` the service refused
 */
export type LoginErrorCode = Open<0 | 1 | 2 | 3 | 4>;

/**
 * - `0` asked for
 * - `1` the same user logged in elsewhere
 * - `2` the service could not be reached for too long
 */
export type LogoutReason = Open<0 | 1 | 2>;

/**
 * - `0` offline
 * - `1` online
 * - `2` the service could not tell
 */
export type UserOnlineStatus = Open<0 | 1 | 2>;

/**
 * What became of a message.
 * - `0` success
 * - `1` timed out
 * - `2` the network is down
 * - `3` no receiver
 * - `4` more than 64 kB
 * - `5` more messages a second than the service takes
 * - `6` not in the room
 * - `7` not logged in
 * - `8` `setServerParams` has not been called
 * - `9` refused by the service or the application's server
 * - `10` unknown
 */
export type MessageSendResult = Open<0 | 1 | 2 | 3 | 4 | 5 | 6 | 7 | 8 | 9 | 10>;

/** - `0` the stream carries messages now - `1` no longer */
export type SEIStreamEventType = Open<0 | 1>;

/** Binary messages reach JavaScript as text, up to their first zero byte. */
export interface MessagingEvents {
  /** `elapsed`: milliseconds since `login`. */
  onLoginResult: { uid: string; error_code: LoginErrorCode; elapsed: number };
  onLogout: { reason: LogoutReason };
  /** `error`: 0, or the HTTP status of the application's server. */
  onServerParamsSetResult: { error: number };
  onGetPeerOnlineStatus: { peer_user_id: string; status: UserOnlineStatus };
  onUserMessageReceivedOutsideRoom: { uid: string; message: string };
  onUserBinaryMessageReceivedOutsideRoom: { uid: string; message: string };
  onUserMessageSendResultOutsideRoom: { msgid: number; error: MessageSendResult };
  /** `msg`: the server's answer. */
  onServerMessageSendResult: { msgid: number; error: MessageSendResult; msg: string };
  onSEIMessageReceived: { stream_key: StreamKey; message: string };
  onSEIStreamUpdate: { stream_key: StreamKey; type: SEIStreamEventType };
  onStreamSyncInfoReceived: { stream_key: StreamKey; stream_type: Open<0>; data: string };
}
