// One room: joining, publishing, subscribing, messages, forwarding, subtitles.

import type { MediaStreamType, Result, TypedArray } from './common';
import type { RoomCallback } from './events';
import type { MessageConfig } from './messaging';
import type { SoundInSpaceMethods } from './sound_in_space';

/**
 * What a room is for. Chooses how sound is encoded and how much delay is accepted for smoothness.
 * - `0` communication
 * - `1` live broadcasting
 * - `2` game
 * - `3` cloud game: least delay
 * - `4` meeting
 * - `5` music: best sound
 */
export type RoomProfileType = 0 | 1 | 2 | 3 | 4 | 5;

/** Who a user is in a room. All keys are required. */
export interface UserInfo {
  /** Letters, digits, '_', '-', '@', '.'; 1 to 128 bytes, unique in the room. */
  uid: string;
  /** Told to the others, up to 200 bytes. */
  extra_info: string;
}

/** The largest picture wanted of a remote user. 0 leaves a value to the publisher. */
export interface RemoteVideoConfig {
  /** Frames a second. */
  framerate: number;
  /** Pixels. */
  resolution_width: number;
  /** Pixels. */
  resolution_height: number;
}

/** How a room is joined. All keys are required. */
export interface RTCRoomConfig {
  room_profile_type: RoomProfileType;
  /** Publishes camera and microphone once they capture. */
  is_auto_publish: boolean;
  /** Subscribes to the sound of everyone who publishes. */
  is_auto_subscribe_audio: boolean;
  /** Subscribes to the video of everyone who publishes. */
  is_auto_subscribe_video: boolean;
  remote_video_config: RemoteVideoConfig;
}

/** One room that streams are forwarded to. */
export interface ForwardStreamInfo {
  room_id: string;
  /** Of the local user for that room. */
  token: string;
}

/** The rooms that the local streams are forwarded to. */
export interface ForwardStreamConfiguration {
  forward_stream_dests: ForwardStreamInfo[];
}

/**
 * Whose sound is heard when more users talk than the room mixes.
 * - `0` the loudest
 * - `1` the local user is heard in any case
 */
export type AudioSelectionPriority = 0 | 1;

/**
 * - `0` what is said, in the language spoken
 * - `1` what is said, and translated into the target language
 */
export type SubtitleMode = 0 | 1;

/** What subtitles are wanted. All keys are required. */
export interface SubtitleConfig {
  mode: SubtitleMode;
  /** Language tag, such as "en"; counts for translation only. */
  target_language: string;
}

/**
 * One room of the engine. A room that could not be made is an object all the same: `isRoomCreated` answers false and
 * every other method refuses. Rooms are to be destroyed before the engine.
 *
 * Destroying any room silences the events of all other rooms until another one is made.
 */
export class KavRTCRoom {
  /**
   * The engine must exist.
   * @param roomId the room's id
   * @param callback gets the room's events
   */
  constructor(roomId: string, callback: RoomCallback);

  /** Whether there is a room: false after a failed construction and after `destroy`. */
  isRoomCreated(): boolean;
  /** @returns the room's id; "" when there is no room */
  getRoomId(): string;
  /** Leaves the room if need be and ends it. */
  destroy(): Result;

  /** Reports `onRoomStateChanged`. */
  joinRoom(token: string, userInfo: UserInfo, roomConfig: RTCRoomConfig): Result;
  /** Reports `onLeaveRoom`. */
  leaveRoom(): Result;
  /** Invisible users receive but are not announced and cannot publish. Reports `onUserVisibilityChanged`. */
  setUserVisibility(enable: boolean): Result;
  /** Keeps the local video in step with the sound of a user on another device. @param audioUserId "" ends it */
  setMultiDeviceAVSync(audioUserId: string): Result;
  updateToken(token: string): Result;

  /** What is left out counts as 0. */
  setRemoteVideoConfig(userId: string, config: Partial<RemoteVideoConfig>): Result;
  publishStream(mediaType: MediaStreamType): Result;
  unpublishStream(mediaType: MediaStreamType): Result;
  publishScreen(mediaType: MediaStreamType): Result;
  unpublishScreen(mediaType: MediaStreamType): Result;
  /** Reports `onStreamSubscribed`. */
  subscribeStream(userId: string, mediaType: MediaStreamType): Result;
  /** Reports `onStreamSubscribed`. */
  unsubscribeStream(userId: string, mediaType: MediaStreamType): Result;
  /** Reports `onStreamSubscribed`. */
  subscribeScreen(userId: string, mediaType: MediaStreamType): Result;
  /** Reports `onStreamSubscribed`. */
  unsubscribeScreen(userId: string, mediaType: MediaStreamType): Result;
  /** Nothing arrives; subscriptions stay. */
  pauseAllSubscribedStream(mediaType: MediaStreamType): Result;
  resumeAllSubscribedStream(mediaType: MediaStreamType): Result;
  subscribeAllStreams(mediaType: MediaStreamType): Result;
  unsubscribeAllStreams(mediaType: MediaStreamType): Result;

  // Messages hold at most 64 kB.

  /** @returns 0, not the message's id; `onUserMessageSendResult` carries the id */
  sendUserMessage(uid: string, message: string, config: MessageConfig): Result;
  /** @param length bytes of `message` to send @returns the message's id (above 0), or a negative result */
  sendUserBinaryMessage(uid: string, length: number, message: TypedArray, config: MessageConfig): number;
  /** @returns the message's id (above 0), or a negative result */
  sendRoomMessage(message: string): number;
  /** @param size bytes of `message` to send @returns the message's id (above 0), or a negative result */
  sendRoomBinaryMessage(size: number, message: TypedArray): number;

  /** Forwards the local streams. Reports `onForwardStreamStateChanged` and `onForwardStreamEvent`. */
  startForwardStreamToRooms(configuration: ForwardStreamConfiguration): Result;
  /** Replaces the whole list. */
  updateForwardStreamToRooms(configuration: ForwardStreamConfiguration): Result;
  stopForwardStreamToRooms(): Result;
  pauseForwardStreamToAllRooms(): Result;
  resumeForwardStreamToAllRooms(): Result;

  /** Volume of the whole room. @param volume percent, 0 to 400 */
  setRemoteRoomAudioPlaybackVolume(volume: number): Result;
  setAudioSelectionConfig(audioSelectionPriority: AudioSelectionPriority): Result;
  /**
   * Up to 10 pairs in a room.
   * @param key up to 10 bytes
   * @param value up to 128 bytes
   * @returns the task id that `onSetRoomExtraInfoResult` repeats (0 or above), or a negative result
   */
  setRoomExtraInfo(key: string, value: string): number;
  /** Reports `onSubtitleStateChanged`. */
  startSubtitle(config: SubtitleConfig): Result;
  stopSubtitle(): Result;
}

export interface KavRTCRoom extends SoundInSpaceMethods {}
