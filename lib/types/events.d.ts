// What the callbacks are called with. One union for each channel, told apart by `Type`.

import type { AudioFrameEvents, AudioReportEvents } from './audio';
import type { AudioMixingEvents } from './audio_mixing';
import type { DeviceEvents } from './devices';
import type { EffectEvents } from './effects';
import type { GroupVideoFrame } from './frames';
import type { KaraokeEvents } from './karaoke';
import type { LifecycleEvents } from './lifecycle';
import type { MessagingEvents } from './messaging';
import type { NetworkEvents } from './network';
import type { AudioEffectPlayerEventMap, MediaPlayerEventMap } from './players';
import type { PublicStreamEvents } from './public_streams';
import type { RecordingEvents, SnapshotEvents } from './recording';
import type { RoomEventMap } from './room_events';
import type { StreamMixingEvents } from './stream_mixing';
import type { FirstFrameEvents, LocalStreamEvents, RemoteStreamEvents } from './video';

/** One event: its name and its payload. */
export interface RtcEvent<Name extends string, Payload> {
  Type: Name;
  Object: Payload;
  /** Never there: it tells an event from a batch of frames. */
  type?: undefined;
}

/** The union of all events in a map of payloads by name. */
export type EventOf<Payloads> = { [Name in keyof Payloads & string]: RtcEvent<Name, Payloads[Name]> }[keyof Payloads &
  string];

/** Payloads of the engine's and its observers' events, by name. */
export interface EngineEventMap
  extends LifecycleEvents,
    AudioReportEvents,
    AudioFrameEvents,
    AudioMixingEvents,
    DeviceEvents,
    LocalStreamEvents,
    RemoteStreamEvents,
    FirstFrameEvents,
    EffectEvents,
    NetworkEvents,
    MessagingEvents,
    RecordingEvents,
    SnapshotEvents,
    StreamMixingEvents,
    PublicStreamEvents,
    KaraokeEvents {}

/**
 * What the callback of `createRTCVideo` gets: an event, told apart by `Type`, or a batch of video frames, whose `type`
 * is "GroupVideoFrame".
 */
export type EngineEvent = EventOf<EngineEventMap> | GroupVideoFrame;

/** What the callback of a room gets. */
export type RoomEvent = EventOf<RoomEventMap>;

/** What the callback of an audio effect player gets. */
export type AudioEffectPlayerEvent = EventOf<AudioEffectPlayerEventMap>;

/** What the callback of a media player gets. */
export type MediaPlayerEvent = EventOf<MediaPlayerEventMap>;

export type EngineCallback = (event: EngineEvent) => void;
export type RoomCallback = (event: RoomEvent) => void;
export type AudioEffectPlayerCallback = (event: AudioEffectPlayerEvent) => void;
export type MediaPlayerCallback = (event: MediaPlayerEvent) => void;
