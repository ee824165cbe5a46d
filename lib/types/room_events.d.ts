// What a room reports.

import type { MediaStreamType, Open } from './common';
import type { MessageSendResult } from './messaging';
import type { RemoteUserPriority } from './network';
import type { UserInfo } from './room';
import type { LocalStreamStats, NetworkQualityStats, RemoteStreamStats, RoomStats } from './room_statistics';

/**
 * States of being in a room.
 * - `0` joined
 * - `-1` joining failed
 * - `-2` invalid token
 * - `-3` the token has expired
 * - `-4` the same user joined from elsewhere
 * - `-5` put out of the room
 * - `-6` the room was dismissed
 * - `-7` the connection was lost
 */
export type RoomState = Open<0 | -1 | -2 | -3 | -4 | -5 | -6 | -7>;

/**
 * States of publishing and subscribing.
 * - `0` all is well
 * - `-1` publishing failed
 * - `-2` subscribing failed
 * - `-3` no permission to publish
 * - `-4` no permission to subscribe
 * - `-5` too many streams
 */
export type StreamState = Open<0 | -1 | -2 | -3 | -4 | -5>;

/**
 * - `0` left
 * - `1` the connection was lost
 * - `2` became invisible
 * - `3` was put out
 */
export type UserLeaveReason = Open<0 | 1 | 2 | 3>;

/**
 * - `0` unpublished
 * - `1` publishing failed
 * - `2` the connection was lost
 * - `3` the token has expired
 * - `4` the user was put out
 * - `5` other
 */
export type StreamRemoveReason = Open<0 | 1 | 2 | 3 | 4 | 5>;

/**
 * Results of subscribing.
 * - `0` success
 * - `1` not in the room
 * - `2` stream not found
 * - `3` too many streams
 * - `4` failed
 */
export type SubscribeState = Open<0 | 1 | 2 | 3 | 4>;

/**
 * States of `setMultiDeviceAVSync`.
 * - `0` there is no sound to keep in step with
 * - `1` starting
 * - `2` in step
 */
export type AVSyncState = Open<0 | 1 | 2>;

/**
 * - `0` success
 * - `1` not joined
 * - `2` invalid key
 * - `3` value too long
 * - `4` too many keys
 * - `5` too often
 * - `6` other
 */
export type RoomExtraInfoError = Open<0 | 1 | 2 | 3 | 4 | 5 | 6>;

/**
 * - `0` started
 * - `1` stopped
 * - `2` error
 */
export type SubtitleState = Open<0 | 1 | 2>;

/**
 * - `0` none
 * - `1` not joined
 * - `2` service unavailable
 * - `3` service failed
 * - `4` invalid language
 */
export type SubtitleErrorCode = Open<0 | 1 | 2 | 3 | 4>;

/**
 * - `0` none
 * - `1` not joined
 * - `2` too many users
 * - `3` other
 */
export type UserVisibilityError = Open<0 | 1 | 2 | 3>;

/**
 * - `0` idle
 * - `1` success
 * - `2` failure
 */
export type ForwardStreamState = Open<0 | 1 | 2>;

/**
 * - `0` none
 * - `1` invalid argument
 * - `2` invalid token
 * - `3` refused
 * - `4` the other room put the user out
 * - `5` the service was lost
 */
export type ForwardStreamError = Open<0 | 1 | 2 | 3 | 4 | 5>;

/**
 * - `0` disconnected
 * - `1` connected
 * - `2` interrupted
 * - `3` the room was updated
 */
export type ForwardStreamEvent = Open<0 | 1 | 2 | 3>;

/** What is received of a stream. */
export interface SubscribeConfig {
  is_screen: boolean;
  sub_video: boolean;
  sub_audio: boolean;
  /** Layer asked for, 0 the largest. The key ends in a no-break space. */
  'video_index\u00a0': number;
  priority: Open<RemoteUserPriority>;
  /** Layer in time, 0 for all frames. */
  svc_layer: number;
  /** Frames a second asked for; 0 for any. */
  framerate: number;
  /** Pixels asked for; 0 for any. */
  sub_width: number;
  /** Pixels asked for; 0 for any. */
  sub_height: number;
  /** Layer received, 0 the largest; -1 for none. */
  sub_video_index: number;
}

/** How forwarding to one room stands. */
export interface ForwardStreamStateInfo {
  state: ForwardStreamState;
  error: ForwardStreamError;
  room_id: string;
}

/** What happened to the forwarding to one room. */
export interface ForwardStreamEventInfo {
  room_id: string;
  event: ForwardStreamEvent;
}

/** Something that was said. */
export interface SubtitleMessage {
  user_id: string;
  text: string;
  /** Language tag of the text, such as "en". */
  language: string;
  mode: Open<0 | 1>;
  /** Counts the messages of one user, from 1. */
  sequence: number;
  /** False while the sentence may still change. */
  definite: boolean;
}

/** Payloads of a room's events, by name. Binary messages arrive as text, up to their first zero byte. */
export interface RoomEventMap {
  /** `extra_info`: a JSON object with more about the change. */
  onRoomStateChanged: { room_id: string; uid: string; state: RoomState; extra_info: string };
  /** `extra_info`: a JSON object with more about the change. */
  onStreamStateChanged: { room_id: string; uid: string; state: StreamState; extra_info: string };
  /** Statistics of the whole stay. */
  onLeaveRoom: RoomStats;
  /** `elapsed`: milliseconds from the local user's joining. */
  onUserJoined: { user_info: UserInfo; elapsed: number };
  onUserLeave: { uid: string; reason: UserLeaveReason };
  /** Within 30 seconds. */
  onTokenWillExpire: {};
  onAVSyncStateChange: { state: AVSyncState };
  /** Every 2 seconds while in the room. */
  onRoomStats: RoomStats;
  /** Every 2 seconds, once for each stream. */
  onLocalStreamStats: LocalStreamStats;
  /** Every 2 seconds, once for each stream. */
  onRemoteStreamStats: RemoteStreamStats;
  onUserPublishStream: { uid: string; type: MediaStreamType };
  onUserUnpublishStream: { uid: string; type: MediaStreamType; reason: StreamRemoveReason };
  onUserPublishScreen: { uid: string; type: MediaStreamType };
  onUserUnpublishScreen: { uid: string; type: MediaStreamType; reason: StreamRemoveReason };
  onStreamSubscribed: { state_code: SubscribeState; user_id: string; info: SubscribeConfig };
  onVideoStreamBanned: { uid: string; banned: boolean };
  onAudioStreamBanned: { uid: string; banned: boolean };
  /** `uid`: the sender. */
  onRoomMessageReceived: { message: string; uid: string };
  /** `uid`: the sender. */
  onRoomBinaryMessageReceived: { message: string; uid: string };
  /** `uid`: the sender. */
  onUserMessageReceived: { uid: string; message: string };
  /** `uid`: the sender. */
  onUserBinaryMessageReceived: { message: string; uid: string };
  onUserMessageSendResult: { msgid: number; error: MessageSendResult };
  onRoomMessageSendResult: { msgid: number; error: MessageSendResult };
  onForwardStreamStateChanged: { infos: ForwardStreamStateInfo[]; info_count: number };
  onForwardStreamEvent: { infos: ForwardStreamEventInfo[]; info_count: number };
  /** Every 2 seconds. */
  onNetworkQuality: { localQuality: NetworkQualityStats; remoteQualities: NetworkQualityStats[] };
  /** Within 30 seconds. */
  onPublishPrivilegeTokenWillExpire: {};
  /** Within 30 seconds. */
  onSubscribePrivilegeTokenWillExpire: {};
  /** `task_id`: what `setRoomExtraInfo` returned. */
  onSetRoomExtraInfoResult: { task_id: number; error_code: RoomExtraInfoError };
  /** `last_update_time_ms`: milliseconds since 1970-01-01 UTC. */
  onRoomExtraInfoUpdate: { key: string; value: string; last_update_user_id: string; last_update_time_ms: number };
  onSubtitleStateChanged: { state: SubtitleState; error_code: SubtitleErrorCode; error_message: string };
  onSubtitleMessageReceived: { subtitles: SubtitleMessage[] };
  onUserVisibilityChanged: { current_user_visibility: boolean; error_code: UserVisibilityError };
}
