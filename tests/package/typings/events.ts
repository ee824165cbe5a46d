// Callbacks as an application writes them: every channel is one union, told apart by `Type`. Never run.
import {
  xoRTCAudioEffectPlayer,
  xoRTCMediaPlayer,
  xoRTCRoom,
  xoRTCVideo,
  type EngineEvent,
  type EngineEventMap,
  type FrameEvent,
  type RoomEvent,
  type RoomEventMap,
  type StreamKey,
} from 'corvane-meeting-sdk';

const engine = new xoRTCVideo();

function onFrame(frame: FrameEvent): void {
  switch (frame.Type) {
    case 'onLocalVideoFrame': {
      const where: string = frame.Object.user_id;
      if (frame.Object.format === 1) {
        // @ts-expect-error the pixels may be in the registered buffer
        const pixels: Buffer = frame.Object.plane_y;
        where.concat(String(pixels), String(frame.Object.offset_y));
      } else {
        const pixels: Buffer = frame.Object.rgba;
        pixels.readUInt8(frame.Object.rgba_size - 1);
        // @ts-expect-error pixels have no planes
        frame.Object.plane_size_y.toFixed();
      }
      break;
    }
    case 'onPublicStreamVideoFrame':
      if (frame.Object.format === 1) frame.Object.plane_y.readUInt8(0);
      break;
    case 'onLocalScreenFrame':
    case 'onRemoteVideoFrame':
    case 'onRemoteScreenFrame':
    case 'onMixingVideoFrame':
      break;
    default: {
      const none: never = frame;
      throw none;
    }
  }
}

function onEngineEvent(event: EngineEvent): void {
  if (event.type === 'GroupVideoFrame') {
    event.group.forEach(onFrame);
    // @ts-expect-error a batch has no payload
    event.Object.toString();
    return;
  }
  switch (event.Type) {
    case 'onError': {
      const code: number = event.Object.err;
      code.toFixed();
      // @ts-expect-error that is the warning's key
      event.Object.warn.toFixed();
      break;
    }
    case 'onLocalVideoSizeChanged': {
      const { index, info } = event.Object;
      const plane_y = Buffer.alloc((info.width * info.height * 3) / 2);
      const stream_type = index === 0 ? 'onLocalVideoFrame' : 'onLocalScreenFrame';
      engine.setLocalVideoBuffer({ stream_type, width: info.width, height: info.height, plane_y });
      break;
    }
    case 'onRemoteVideoStateChanged': {
      const key: StreamKey = event.Object.key;
      engine.setRemoteVideoSink(key, 5);
      if (event.Object.state === 2) event.Object.reason.toFixed();
      break;
    }
    case 'onLocalVideoStateChanged':
      event.Object.streamIndex.toFixed();
      // @ts-expect-error this event spells it differently
      event.Object.stream_index.toFixed();
      break;
    case 'onFaceDetectResult':
      event.Object.rect.map((face) => face.width * face.heigth);
      // @ts-expect-error spelled otherwise
      event.Object.rect.map((face) => face.width * face.height);
      break;
    case 'onTakeLocalSnapshotResult': {
      // @ts-expect-error a failed snapshot has no image
      const image: string = event.Object.image;
      image.trim();
      break;
    }
    case 'onRemoteUserAudioFrame':
      event.Object.audio_frame.buffer.readInt16LE(0);
      event.Object.stream_info.user_id.trim();
      break;
    case 'onNetworkTimeSynchronized':
      // @ts-expect-error there is nothing in it
      event.Object.time.toFixed();
      break;
    // @ts-expect-error a room's event does not come here
    case 'onRoomStateChanged':
      break;
    // @ts-expect-error frames come in batches
    case 'onLocalVideoFrame':
      break;
    default:
      break;
  }
}

function onRoomEvent(event: RoomEvent): void {
  switch (event.Type) {
    case 'onStreamSubscribed':
      event.Object.info['video_index\u00a0'].toFixed();
      // @ts-expect-error the key has one more character
      event.Object.info.video_index.toFixed();
      break;
    case 'onLocalStreamStats': {
      const jittery: boolean = event.Object.video_stats.jitter;
      // @ts-expect-error a boolean in the local statistics
      const jitter: number = event.Object.video_stats.jitter;
      String([jittery, jitter]);
      break;
    }
    case 'onRemoteStreamStats': {
      const jitter: number = event.Object.video_stats.jitter;
      jitter.toFixed();
      break;
    }
    case 'onNetworkQuality':
      event.Object.remoteQualities.map((user) => [user.uid, user.tx_quality]);
      break;
    // @ts-expect-error the engine's event does not come here
    case 'onError':
      break;
    default:
      break;
  }
}

engine.createRTCVideo('app', onEngineEvent, '');
// @ts-expect-error another channel's callback
engine.createRTCVideo('app', onRoomEvent, '');
const room = new xoRTCRoom('room', onRoomEvent);
// @ts-expect-error another channel's callback
new xoRTCRoom('room', onEngineEvent);
new xoRTCAudioEffectPlayer((event) => event.Object.effect_id.toFixed());
new xoRTCMediaPlayer(0, (event) => {
  if (event.Type === 'onMediaPlayerPlayingProgress') {
    BigInt(event.Object.progress);
    // @ts-expect-error 64 bits travel as text
    event.Object.progress.toFixed();
  }
});
// @ts-expect-error the id comes first
new xoRTCMediaPlayer((event) => event.Type, 0);

// Payloads by name, for an application's own dispatch.
type Handlers = { [Name in keyof EngineEventMap]?: (payload: EngineEventMap[Name]) => void };
const handlers: Handlers = {
  onWarning: ({ warn }) => warn.toFixed(),
  onLoginResult: ({ elapsed }) => elapsed.toFixed(),
};
// @ts-expect-error no such event
const mistaken: Handlers = { onWarnings: () => undefined };
const joined: RoomEventMap['onUserJoined'] = { user_info: { uid: 'user', extra_info: '' }, elapsed: 5 };

export { handlers, joined, mistaken, room };
