// Rooms and players as an application writes them. Never run.
import { xoRTCAudioEffectPlayer, xoRTCMediaPlayer, xoRTCRoom, type RTCRoomConfig } from 'corvane-meeting-sdk';

const room = new xoRTCRoom('room', () => undefined);
const there: boolean = room.isRoomCreated();
const id: string = room.getRoomId();
const config: RTCRoomConfig = {
  room_profile_type: 0,
  is_auto_publish: true,
  is_auto_subscribe_audio: true,
  is_auto_subscribe_video: there,
  remote_video_config: { framerate: 15, resolution_width: 640, resolution_height: 360 },
};
room.joinRoom('token', { uid: id, extra_info: '' }, config);
room.setRemoteVideoConfig('user', { framerate: 15 });
room.subscribeStream('user', 3);
room.sendUserBinaryMessage('user', 2, new Uint8Array(2), 0);
room.startForwardStreamToRooms({ forward_stream_dests: [{ room_id: 'other', token: 'token' }] });
room.setNoAttenuationFlags(['team']);
const forward = { x: 1, y: 0, z: 0 };
room.updateSelfPosition({
  position: { x: 0, y: 0, z: 0 },
  orientation: { forward, right: { x: 0, y: 1, z: 0 }, up: { x: 0, y: 0, z: 1 } },
});

// @ts-expect-error a room has an id and a callback
new xoRTCRoom('room');
// @ts-expect-error ids are texts
new xoRTCRoom(5, () => undefined);
// @ts-expect-error joining needs all three
room.joinRoom('token', { uid: id, extra_info: '' });
// @ts-expect-error every key is read
room.joinRoom('token', { uid: id }, config);
// @ts-expect-error there is no medium 0
room.publishStream(0);
// @ts-expect-error the count of bytes comes before the bytes
room.sendRoomBinaryMessage(new Uint8Array(2), 2);
// @ts-expect-error the rooms stand under a key
room.startForwardStreamToRooms([{ room_id: 'other', token: 'token' }]);
// @ts-expect-error an orientation has three directions
room.updateSelfOrientation({ forward });
// @ts-expect-error flags are a list
room.setNoAttenuationFlags('team');

const effects = new xoRTCAudioEffectPlayer(() => undefined);
effects.start(1, 'a.wav', { type: 0, play_count: 1, pitch: 0, start_pos: 0 });
// @ts-expect-error all four keys are required
effects.start(1, 'a.wav', { type: 0, play_count: 1, pitch: 0 });
// @ts-expect-error volumes are per effect
effects.setVolume(100);

const player = new xoRTCMediaPlayer(0, () => undefined);
const beginning = { type: 0, play_count: 1, start_pos: 0 } as const;
const opening = { ...beginning, sync_progress_to_record_frame: false, auto_play: true };
player.open('a.mp3', { ...opening, callback_on_progress_interval: '500' });
player.setProgressInterval('500');
player.pushExternalAudioFrame({ sample_rate: 48000, channel: 2, timestamp_ms: 0, data: new Int16Array(960) });
// @ts-expect-error the interval travels as text
player.open('a.mp3', { ...opening, callback_on_progress_interval: 500 });
// @ts-expect-error the interval travels as text
player.setProgressInterval(500);
// @ts-expect-error the volume of both together is not known
player.getVolume(2);
