'use strict';
// One side of a long call. Told to `share`, it sends a camera, its screen, a tone, a sound effect and a music file, both
// over and over, and records what it sends; told to `watch`, it receives all of that and looks for gaps in the sound.
// Both tell once a second what they hold: memory, descriptors, threads.

const fs = require('node:fs');
const sdk = require('..');
const { CallMember } = require('../demo/call_member');

const options = JSON.parse(process.argv[2]);
const [cameraStream, screenStream] = [0, 1];
const everything = 3;
const forOthers = 1;
const playback = 1;
const mp4 = 1;
const soundAndPictures = 2;
const bytesPerMillisecond = 48 * 2;
const forEver = 0;

const seen = { frames: 0, screenFrames: 0, soundMs: 0, silentMs: 0, longestGapMs: 0, problems: [] };
const players = [];

function countSound(samples) {
  seen.soundMs += samples.length / bytesPerMillisecond;
  // A tone passes through zero and does not stay there: a millisecond of nothing but zeros is missing sound.
  for (let at = 0; at + bytesPerMillisecond <= samples.length; at += bytesPerMillisecond) {
    const silent = samples.subarray(at, at + bytesPerMillisecond).every((byte) => byte === 0);
    seen.silentMs = silent ? seen.silentMs + 1 : 0;
    seen.longestGapMs = Math.max(seen.longestGapMs, seen.silentMs);
  }
}

const member = new CallMember(options, {
  frames(group) {
    for (const { Type } of group) {
      if (Type === 'onRemoteVideoFrame') ++seen.frames;
      else if (Type === 'onRemoteScreenFrame') ++seen.screenFrames;
    }
  },
  onRemoteVideoSizeChanged({ key: { user_id, stream_index }, info: { width, height } }) {
    const stream_type = stream_index === screenStream ? 'onRemoteScreenFrame' : 'onRemoteVideoFrame';
    member.video.setRemoteVideoBuffer({ user_id, stream_type, width, height, plane_y: Buffer.alloc(width * height * 2) });
  },
  onPlaybackAudioFrame: ({ audio_frame }) => seen.listening && countSound(audio_frame.buffer),
  onRecordingStateUpdate({ state, error_code }) {
    if (state === 0) seen.problems.push(`the recording failed: ${error_code}`);
  },
  onRecordingProgressUpdate({ process: progress }) {
    seen.recordedMs = progress.duration;
  },
  onRoomStateChanged({ state, extra_info }) {
    if (state < 0) seen.problems.push(`room state ${state} ${extra_info}`);
  },
});
const { video } = member;

function held() {
  const status = fs.readFileSync('/proc/self/status', 'latin1');
  const kilobytes = (name) => Number(new RegExp(`^${name}:\\s+(\\d+) kB$`, 'm').exec(status)[1]);
  return {
    memory: kilobytes('RssAnon') / 1024, threads: Number(/^Threads:\s+(\d+)$/m.exec(status)[1]),
    descriptors: fs.readdirSync('/proc/self/fd').length,
  };
}

function playOver(effect, music) {
  const failed = ({ Type, Object: { error } }) => error > 0 && seen.problems.push(`${Type}: error ${error}`);
  const effects = new sdk.xoRTCAudioEffectPlayer(failed);
  const media = new sdk.xoRTCMediaPlayer(0, failed);
  players.push(effects, media);
  for (const player of players) player.setEventHandler();
  const type = forOthers;
  member.check('effect', effects.start(1, effect, { type, play_count: forEver, pitch: 0, start_pos: 0 }));
  member.check('music', media.open(music, {
    type, play_count: forEver, start_pos: 0, callback_on_progress_interval: '1000', sync_progress_to_record_frame: false,
    auto_play: true,
  }));
}

const tellHeld = () => setInterval(() => member.tell({ held: held() }), 1000);

member.serve({
  async share({ camera, folder, effect, music }) {
    member.check('setVideoCaptureDevice', video.setVideoCaptureDevice(camera));
    member.check('startVideoCapture', video.startVideoCapture());
    member.check('setAudioCaptureDevice', video.setAudioCaptureDevice('test:sine'));
    member.check('startAudioCapture', video.startAudioCapture());
    const [monitor] = video.getScreenCaptureSourceList();
    member.check('startScreenVideoCapture', video.startScreenVideoCapture(monitor, {
      region_rect: { x: 0, y: 0, width: 0, height: 0 }, capture_mouse_cursor: 1, filter_config: [],
      highlight_config: { enable_highlight: false, border_color: 0, border_width: 0 },
    }));
    await member.join();
    member.check('publishStream', member.room.publishStream(everything));
    member.check('publishScreen', member.room.publishScreen(2));
    member.check('startFileRecording', video.startFileRecording(0, { dir_path: folder, file_type: mp4 }, soundAndPictures));
    playOver(effect, music);
    tellHeld();
    member.tell({ sharing: true });
  },
  async watch({ sender }) {
    for (const stream_index of [cameraStream, screenStream]) {
      const key = { room_id: options.roomId, user_id: sender, stream_index };
      member.check('setRemoteVideoSink', video.setRemoteVideoSink(key, 1));
    }
    member.check('setAudioPlaybackDevice', video.setAudioPlaybackDevice('null:'));
    const format = { sample_rate: 48000, channel: 1, samples_per_call: 480 };
    member.check('enableAudioFrameCallback', video.enableAudioFrameCallback(playback, format));
    await member.join();
    tellHeld();
    member.tell({ watching: true });
  },
  listen() {
    seen.listening = true;
  },
  finish() {
    video.stopFileRecording(0);
    for (const player of players) (player.stopAll ?? player.stop).call(player);
    member.end({ summary: seen });
  },
});
