'use strict';

// Video capture and encoding, external sources, sinks, digital zoom, effects, and recordings.

const { args, family, managers, streamKey } = require('../support/method_row.js');
const { number, boolean, string, object, array } = args;

const layer = (n) => ({
  width: 640 + n,
  height: 360 + n,
  frame_rate: 15 + n,
  max_bitrate: 800 + n,
  min_bitrate: 200 + n,
  encoder_preference: n,
});
const cameraConfig = { capture_preference: 1, frame_rate: 1, height: 722, width: 1282 };
const screenConfig = { ...layer(2), frame_rate: 1 };

const capture = family({}, [
  ['setLowLightAdjusted', [number(2)], { mode: 2 }],
  ['startVideoCapture', [], {}],
  ['stopVideoCapture', [], {}],
  [
    'setVideoEncoderConfig',
    [array([layer(0), layer(1)])],
    { channel_solutions: [layer(0), layer(1)], count: 2 },
    { refusal: 'Param Invalid: @\n' },
  ],
  ['enableAlphaChannelVideoEncode', [number(1), number(2)], { stream_index: 1, alpha_layout: 2 }],
  ['disableAlphaChannelVideoEncode', [number(1)], { stream_index: 1 }],
  ['setLocalVideoMirrorType', [number(3)], { mirror_type: 3 }],
  [
    'setScreenVideoEncoderConfig',
    [object(screenConfig)],
    { screen_solution: screenConfig },
    {
      refusal: '@ param is not valid, screen_solution',
      says: [
        '@ width: 642, heght: 362, frame_rate: 1, max_bitrate: 802, min_bitrate: 202, encoder_preference: 2',
      ],
    },
  ],
  [
    'setMaxVideoEncoderConfig',
    [object(layer(3))],
    { max_solution: layer(3) },
    { refusal: '@ param is not valid' },
  ],
  [
    'setVideoCaptureConfig',
    [object(cameraConfig)],
    { config: cameraConfig },
    { refusal: '@ param is not valid' },
  ],
  ['enableSimulcastMode', [boolean(true)], { enable: true }],
  [
    'setDummyCaptureImagePath',
    [string('/tmp/bild.png')],
    { file_path: '/tmp/bild.png' },
    { refusal: '@ param is not valid' },
  ],
  ['setVideoCaptureRotation', [number(270)], { rotation: 270 }, { refusal: '@ param is not valid' }],
  ['setRemoteVideoSuperResolution', [object(streamKey), number(1)], { stream_key: streamKey, mode: 1 }],
  [
    'setVideoSourceType',
    [number(1), number(0)],
    { stream_index: 1, type: 0 },
    { refusal: '@ param is not valid, <0>, <1>', says: ['@ stream_index:1, type:0'] },
  ],
  ['setAudioSourceType', [number(1)], { type: 1 }, { refusal: '@ param is not valid, <0>', says: ['@ type:1'] }],
]);

// The engine is asked for I420 whatever the application wants.
const sinks = family({ exit: '@, ret: #' }, [
  [
    'setLocalVideoSink',
    [number(1), number(5)],
    { stream_index: 1, sink: true, required_format: 1 },
    { says: ['LocalVideoSink constructor', '+@ size: 1, format: 5'] },
  ],
  [
    'unsetLocalVideoSink',
    [number(1)],
    { stream_index: 1, sink: null, required_format: 1 },
    { call: 'IRTCVideo.setLocalVideoSink', says: ['+@ size: 1'] },
  ],
  [
    'setRemoteVideoSink',
    [object(streamKey), number(5)],
    { stream_key: streamKey, sink: true, required_format: 1 },
    { says: ['RemoteVideoSink constructor', '+@ size: 1, format: 5'] },
  ],
  [
    'unsetRemoteVideoSink',
    [object(streamKey)],
    { stream_key: streamKey, sink: null, required_format: 1 },
    { call: 'IRTCVideo.setRemoteVideoSink' },
  ],
  [
    'setPublicStreamVideoSink',
    [string('öffentlich'), number(5)],
    { public_stream_id: 'öffentlich', sink: true, required_format: 1 },
    { says: ['PublicStreamVideoSink constructor'] },
  ],
  [
    'unsetPublicStreamVideoSink',
    [string('öffentlich')],
    { public_stream_id: 'öffentlich', sink: null, required_format: 1 },
    { call: 'IRTCVideo.setPublicStreamVideoSink', refusal: '@, Param is invalid' },
  ],
  ['setVideoSinkApplyRotation', [boolean(true)], undefined, { exit: '-@, ret: #' }],
  ['setLocalVideoBuffer', [object({})], undefined, { exit: '-@, ret: #', refusal: '@, Param is invalid' }],
  ['setRemoteVideoBuffer', [object({})], undefined, { exit: '-@, ret: #', refusal: '@, Param is invalid' }],
]);

const zoom = family({}, [
  [
    'setVideoDigitalZoomConfig',
    [number(1), number(2.75)],
    { type: 1, size: 2.75 },
    {
      refusal: ['@, Param is invalid, ZoomConfigType', '@, Param is invalid, size'],
      says: ['@ type: 1, size: 2'],
    },
  ],
  [
    'setVideoDigitalZoomControl',
    [number(6)],
    { direction: 6 },
    { refusal: '@, Param is invalid, ZoomDirectionType' },
  ],
  [
    'startVideoDigitalZoomControl',
    [number(5)],
    { direction: 5 },
    { refusal: '@, Param is invalid, ZoomDirectionType' },
  ],
  ['stopVideoDigitalZoomControl', [], {}],
]);

const background = { source_type: 1, source_path: '/tmp/strand.jpg', source_color: 0xff336699 };
const place = (n) => ({ width: 0.1 * n, height: 0.2 * n, x: 0.05 * n, y: 0.15 * n });
const watermark = {
  visible_in_preview: true,
  position_in_landscape_mode: place(1),
  position_in_portrait_mode: place(2),
};

const effects = family({ owner: 'IVideoEffect', managers: [managers.effects] }, [
  [
    'enableVirtualBackground',
    [string('/tmp/model'), object(background)],
    { bg_sticker_path: '/tmp/model', source: background },
    { refusal: ['Param Invalid: @, bg_sticker_path', 'Param Invalid: @, source'] },
  ],
  ['disableVirtualBackground', [], {}],
  [
    'setVideoWatermark',
    [number(1), string('/tmp/logo.png'), object(watermark)],
    { stream_index: 1, image_path: '/tmp/logo.png', config: watermark },
  ],
  ['clearVideoWatermark', [number(1)], { stream_index: 1 }],
  ['enableVideoEffect', [], {}],
  ['disableVideoEffect', [], {}],
  ['enableEffectBeauty', [boolean(true)], { enable: true }],
  ['setBeautyIntensity', [number(2), number(0.75)], { beauty_mode: 2, intensity: 0.75 }],
  ['setEffectNodes', [string('/tmp/effekt')], { effect_node_path: '/tmp/effekt' }],
  [
    'updateEffectNode',
    [string('/tmp/effekt'), string('schlüssel'), number(0.125)],
    { effect_node_path: '/tmp/effekt', node_key: 'schlüssel', node_value: 0.125 },
    {
      refusal: [
        'Param Invalid: @, effectNodePath',
        'Param Invalid: @, nodeKey',
        'Param Invalid: @, nodeValue',
      ],
    },
  ],
  ['setColorFilter', [string('/tmp/filter')], { filter_path: '/tmp/filter' }],
  ['setColorFilterIntensity', [number(0.5)], { intensity: 0.5 }],
  [
    'enableFaceDetection',
    [number(40), string('/tmp/gesicht')],
    { interval_ms: 40, face_model_path: '/tmp/gesicht', observer: true },
    { entry: null, says: ['+@, interval_ms: 40, faceModelPath: /tmp/gesicht'] },
  ],
  ['disableFaceDetection', [], {}],
]);

const sound = { absolute_file_name: '/tmp/ton.wav', frame_source: 2, sample_rate: 44100, channel: 1, quality: 3 };

const recordings = family({}, [
  ['stopFileRecording', [number(1)], { stream_index: 1 }],
  [
    'startAudioRecording',
    [object(sound)],
    { config: sound },
    {
      refusal: '@,  Param is invalid',
      says: ['@, absolute_file_name: /tmp/ton.wav,frame_source: 2, sample_rate: 44100, channel: 1, quality: 3'],
    },
  ],
  ['stopAudioRecording', [], {}],
  ['takeLocalSnapshot', [number(1)], { stream_index: 1, callback: true }],
  ['takeRemoteSnapshot', [object(streamKey)], { stream_key: streamKey, callback: true }],
]);

module.exports = [...capture, ...sinks, ...zoom, ...effects, ...recordings];
