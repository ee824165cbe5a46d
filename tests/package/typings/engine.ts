// The engine's methods as an application writes them, and the mistakes that the compiler has to find. Never run.
import {
  getErrorDescription,
  getTimestampUs,
  setLogConfig,
  xoRTCVideo,
  type EncodedImage,
  type MixedStreamConfig,
  type PublicStreamParam,
  type StreamKey,
} from 'corvane-meeting-sdk';

const engine: xoRTCVideo = new xoRTCVideo();
const created: number = engine.createRTCVideo('app', () => undefined, '{}');
const key: StreamKey = { room_id: 'room', user_id: 'user', stream_index: 0 };

// Module functions.
const description: string = getErrorDescription(created) + getTimestampUs().toFixed();
setLogConfig({ log_path: '/tmp', log_level: -1, log_file_size: 10, log_filename_prefix: description });
// @ts-expect-error the size is a number of MB
setLogConfig({ log_path: '/tmp', log_level: 0, log_file_size: '10', log_filename_prefix: '' });
// @ts-expect-error there is no level 4
setLogConfig({ log_path: '/tmp', log_level: 4, log_file_size: 10, log_filename_prefix: '' });
// @ts-expect-error a code is a number
getErrorDescription('5');

// Construction and life.
// @ts-expect-error the constructor takes nothing
new xoRTCVideo('app');
// @ts-expect-error the parameters are required
engine.createRTCVideo('app', () => undefined);
// @ts-expect-error the callback comes second
engine.createRTCVideo('app', '{}', () => undefined);
// @ts-expect-error no such method
engine.createEngine();
const nothing: void = engine.test1();

// Numbers, switches, texts.
engine.setPlaybackVolume(50);
engine.muteAudioCapture(0, true);
engine.setAnsMode(4);
engine.setRemoteAudioPlaybackVolume(key, 100);
engine.login('token', 'user');
// @ts-expect-error a volume is a number
engine.setPlaybackVolume('50');
// @ts-expect-error the stream comes first
engine.muteAudioCapture(true, 0);
// @ts-expect-error there are modes 0 to 4
engine.setAnsMode(5);
// @ts-expect-error a stream has three names
engine.setRemoteAudioPlaybackVolume({ room_id: 'room', user_id: 'user' }, 100);
// @ts-expect-error both texts are required
engine.login('token');

// Records and lists.
const size = { width: 640, height: 360, frame_rate: 15 };
const layer = { ...size, max_bitrate: -1, min_bitrate: 0, encoder_preference: 1 } as const;
engine.setVideoEncoderConfig([layer, layer]);
engine.setScreenVideoEncoderConfig(layer);
engine.setLocalProxy([]);
engine.startEchoTest({ audio_properties_report_interval: 0, uid: 'u', room_id: 'r', token: 't' }, 2);
// @ts-expect-error one record is no list
engine.setVideoEncoderConfig(layer);
// @ts-expect-error keys are spelled with underscores
engine.setVideoCaptureConfig({ capturePreference: 1, frameRate: 15, height: 360, width: 640 });
// @ts-expect-error every key of the record is read
engine.setVideoCaptureConfig({ capture_preference: 1, frame_rate: 15, height: 360 });

// Binary data.
engine.sendSEIMessage(0, Buffer.from('text'), 1, 0);
engine.sendSEIMessage(0, new Uint16Array(2), 1, 0);
engine.sendServerBinaryMessage(4, new Float64Array(1));
// @ts-expect-error text is no typed array
engine.sendSEIMessage(0, 'text', 1, 0);
// @ts-expect-error neither is its memory
engine.sendSEIMessage(0, new ArrayBuffer(4), 1, 0);

// Results that are no codes.
const camera: string | undefined = engine.enumerateVideoCaptureDevices()[0]?.device_id;
engine.setVideoCaptureDevice(camera ?? engine.getVideoCaptureDevice());
const thumbnail = engine.getThumbnail(2, 1);
// @ts-expect-error there may be no picture
const blind: EncodedImage = thumbnail;
if (thumbnail.data !== undefined) {
  const seen: EncodedImage = thumbnail;
  seen.width.toFixed();
}
const pitch = engine.getStandardPitchInfo(0);
// @ts-expect-error there may be no such note
pitch.duration.toFixed();
if (pitch.start_time !== undefined) pitch.duration.toFixed();
const source = engine.getScreenCaptureSourceList()[0];
if (source) {
  engine.startScreenVideoCapture(source, {
    region_rect: source.region_rect,
    capture_mouse_cursor: 0,
    filter_config: [source.source_id],
    highlight_config: { enable_highlight: true, border_color: 0xff0000, border_width: 2 },
  });
}

// Mixing: keys with odd spellings, regions with defaults, regions that show images.
const video = { width: 640, height: 360, fps: 15 };
const publicStream: PublicStreamParam = {
  interpolation_mode: 0,
  room_id: 'room',
  background_image_uri: '',
  bg_color: '#000000',
  layout_mode: 2,
  audio_param: { sample_rate: 48000, channel_num: 2, bitrate_kbps: 64 },
  video_param: { ...video, bitrate_kpbs: 500 },
  layout_regions: [{}, { user_id: 'user', width: 0.5, source_crop: { location_x: 0.5 } }],
};
engine.startPushPublicStream('stream', publicStream);
// @ts-expect-error the video's bitrate is spelled differently
engine.startPushPublicStream('stream', { ...publicStream, video_param: { ...video, bitrate_kbps: 500 } });
declare const mix: MixedStreamConfig;
engine.startPushMixedStreamToCDN('task', { ...mix, layout_regions: [{ region_id: 'user' }] });
// @ts-expect-error a mixed region's place is location_x and location_y
engine.startPushMixedStreamToCDN('task', { ...mix, layout_regions: [{ x: 0, y: 0 }] });
// @ts-expect-error the mix has a room
engine.startPushMixedStreamToCDN('task', { ...mix, room_id: undefined });

const region = {
  region_id: 'user',
  room_id: 'room',
  ...{ x: 0, y: 0, width: 1, height: 1, alpha: 1, corner_radius: 0, i32_z_order: 0 },
  ...{ local_user: true, screen_stream: false, apply_spatial_audio: false },
  content_control: 0,
  render_mode: 1,
  spatial_position: { x: 0, y: 0, z: 0 },
} as const;
const transcoding = {
  ...{ room_id: 'room', user_id: 'user', uri: 'rtmp://host/a', app_data: '', background_color: '#000000' },
  expected_mix_type: 0,
  audio_param: {
    ...{ i32_sample_rate: 48000, i32_channel_num: 2, i32_bitrate_kbps: 64 },
    audio_codec_profile: 0,
    audio_codec_type: 0,
  },
  video_param: {
    ...{ i32_width: 640, i32_height: 360, i32_fps: 15, i32_gop: 2, i32_bitrate_kbps: 500 },
    video_codec_type: 0,
    bFrame: false,
  },
} as const;
const image = { type: 1, data: new Uint8Array(4), data_param: { image_width: 1, image_height: 1 } } as const;
const regions = [{ ...region, type: 0 } as const, { ...region, ...image }];
engine.startLiveTranscoding('task', { ...transcoding, layout_regions: regions });
// @ts-expect-error an image region has an image
engine.startLiveTranscoding('task', { ...transcoding, layout_regions: [{ ...region, type: 1 }] });

// Buffers for frames.
engine.setLocalVideoBuffer({ stream_type: 'onLocalVideoFrame', width: 2, height: 2, plane_y: Buffer.alloc(6) });
engine.setRemoteVideoBuffer({
  user_id: 'user',
  stream_type: 'onRemoteScreenFrame',
  ...{ width: 2, height: 2, plane_y: new Uint8Array(6) },
});
// @ts-expect-error a local buffer is for a local stream
engine.setLocalVideoBuffer({ stream_type: 'onRemoteVideoFrame', width: 2, height: 2, plane_y: Buffer.alloc(6) });

export { blind, nothing };
