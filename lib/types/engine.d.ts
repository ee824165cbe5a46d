// The engine's class. Its methods stand with their subjects.

import type { AudioMethods } from './audio';
import type { AudioMixingMethods } from './audio_mixing';
import type { DeviceMethods } from './devices';
import type { EffectMethods } from './effects';
import type { SinkMethods } from './frames';
import type { MusicLibraryMethods, MusicPlayerMethods, SingScoringMethods } from './karaoke';
import type { LifecycleMethods } from './lifecycle';
import type { MessagingMethods } from './messaging';
import type { NetworkMethods } from './network';
import type { PluginMethods } from './plugins';
import type { PublicStreamMethods } from './public_streams';
import type { RecordingMethods } from './recording';
import type { ScreenMethods } from './screen';
import type { StreamMixingMethods } from './stream_mixing';
import type { VideoMethods } from './video';

/**
 * The engine. The object constructed last is the one that rooms and players work with. Constructing it makes no engine
 * yet: `createRTCVideo` does, and every other method answers -1 (or "", [], {}) before.
 *
 * No method throws on purpose. A record with a missing or mistyped key is read as far as it goes, and the call throws
 * the conversion's error after it was made.
 */
export class KavRTCVideo {
  constructor();
}

export interface KavRTCVideo
  extends LifecycleMethods,
    PluginMethods,
    AudioMethods,
    AudioMixingMethods,
    DeviceMethods,
    VideoMethods,
    SinkMethods,
    ScreenMethods,
    EffectMethods,
    NetworkMethods,
    MessagingMethods,
    RecordingMethods,
    StreamMixingMethods,
    PublicStreamMethods,
    MusicLibraryMethods,
    MusicPlayerMethods,
    SingScoringMethods {}
