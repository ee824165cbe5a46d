'use strict';

// Parameters of the three large mixing methods, every value different, and what they become: `state` is what the engine
// reads from the parameter object, `lines` what the builder logs between its first and last line. `initial` has the
// values of keys that are left alone when they are missing or mistyped; all other keys are then 0, false or "", and the
// host complains. `orders` are the keys of one element of the list in each of the two passes.

const image = Buffer.from([1, 2, 3, 4, 5, 6, 7, 8]);
const position = { x: 1.5, y: -2.5, z: 3.5 };
const long = 'ein Text, der länger ist als jeder kurze '.repeat(8);

const liveRegion = {
  region_id: 'anna',
  room_id: 'räum-a',
  x: 0.125,
  y: 0.25,
  width: 0.5,
  height: 0.75,
  alpha: 0.875,
  corner_radius: 0.0625,
  i32_z_order: 11,
  local_user: true,
  screen_stream: true,
  content_control: 2,
  render_mode: 3,
  type: 1,
  data: image,
  data_param: { image_width: 2, image_height: 1 },
  spatial_position: position,
  apply_spatial_audio: true,
};

const live = {
  builder: 'buildLiveTranscodeParam',
  export: 'createTranscoderParam',
  missing: 'transcoderParam is nullptr',
  methods: { start: 'startLiveTranscoding', update: 'updateLiveTranscoding' },
  id: 'task_id',
  name: 'param',
  params: {
    room_id: 'räum',
    user_id: 'usér',
    uri: `rtmp://h/${long}`,
    app_data: '{"a":1}',
    expected_mix_type: 1,
    background_color: '#123456',
    audio_param: {
      i32_sample_rate: 48000,
      i32_channel_num: 2,
      i32_bitrate_kbps: 64,
      audio_codec_profile: 3,
      audio_codec_type: 4,
    },
    video_param: {
      i32_width: 640,
      i32_height: 360,
      i32_fps: 15,
      i32_gop: 5,
      i32_bitrate_kbps: 500,
      video_codec_type: 6,
      bFrame: true,
    },
    layout_regions: [
      liveRegion,
      { ...liveRegion, region_id: long, room_id: 'räum-b', type: 0, data: 'kein Bild', data_param: 5 },
    ],
  },
  engineKeys: { layout_regions: 'regions', bFrame: 'b_frame' },
  state: (params) => {
    const { bFrame, ...video } = params.video_param;
    const { layout_regions, ...rest } = params;
    return {
      ...rest,
      video_param: { ...video, b_frame: bFrame },
      regions: [
        { ...layout_regions[0], data_size: 8 },
        { ...layout_regions[1], data: null, data_size: 0, data_param: { image_width: 0, image_height: 0 } },
      ],
    };
  },
  lines: [
    `room_id: räum, user_id: usér, uri: rtmp://h/${long}, appData: {"a":1}, background_color: #123456, expected_mix_type: 1,`,
    'TranscoderAudioParam: , i32_sample_rate: 48000, i32_channel_num: 2, i32_bitrate_kbps: 64, audio_codec_profile: 3, audio_codec_type: 4',
    'TranscoderVideoParam: , i32_width: 640, i32_height: 360, i32_fps: 15, i32_gop: 5, i32_bitrate_kbps: 500, video_codec_type: 6,bFrame: 1',
    'region bg: #123456',
  ],
  initial: {},
  orders: [
    ['region_id', 'room_id'],
    [
      ...['x', 'y', 'width', 'height', 'alpha', 'corner_radius', 'i32_z_order', 'local_user', 'screen_stream'],
      ...['content_control', 'render_mode', 'type', 'data', 'data_param', 'image_width', 'image_height'],
      ...['spatial_position', 'x', 'y', 'z', 'apply_spatial_audio'],
    ],
  ],
};

const initialMixedRegion = {
  region_id: '',
  room_id: '',
  alternate_image_url: '',
  location_x: 0,
  location_y: 0,
  width: 360,
  height: 640,
  alpha: 1,
  corner_radius: 0,
  z_order: 0,
  is_local_user: false,
  stream_type: 0,
  media_type: 0,
  render_mode: 1,
  region_content_type: 0,
  alternate_image_fill_mode: 0,
  image_water_mark: null,
  image_water_mark_size: 0,
  image_water_mark_param: { image_width: 0, image_height: 0 },
  spatial_position: { x: 0, y: 0, z: 0 },
  apply_spatial_audio: true,
};

const mixedRegion = {
  region_id: 'anna',
  room_id: 'räum-a',
  alternate_image_url: long,
  location_x: -10,
  location_y: 20,
  width: 320,
  height: 180,
  alpha: 0.5,
  corner_radius: 0.25,
  z_order: 12,
  is_local_user: true,
  stream_type: 1,
  media_type: 2,
  render_mode: 3,
  region_content_type: 4,
  alternate_image_fill_mode: 5,
  image_water_mark: image,
  image_water_mark_param: { image_width: 2, image_height: 1 },
  spatial_position: position,
  apply_spatial_audio: false,
};

const mixed = {
  builder: 'buildMixedStreamConfig',
  export: 'createMixedStreamConfig',
  missing: 'mixedStreamConfig is nullptr',
  methods: { start: 'startPushMixedStreamToCDN', update: 'updatePushMixedStreamToCDN' },
  id: 'task_id',
  name: 'config',
  params: {
    is_support_client_push_stream: true,
    room_id: 'räum',
    user_id: 'usér',
    push_url: `rtmp://h/${long}`,
    user_config_extra_info: 'mehr',
    expected_mix_type: 1,
    background_color: '#123456',
    audio_config: { sample_rate: 48000, channels: 2, bitrate: 64, audio_profile: 3, audio_codec: 4 },
    video_config: { width: 640, height: 360, fps: 15, gop: 5, bitrate: 500, video_codec: 6, enable_bframe: true },
    client_mix_config: { use_audio_mixer: true, video_format: 7 },
    server_control_config: {
      enable_volume_indication: true,
      volume_indication_interval: 2.5,
      talk_volume: 8,
      is_add_volume_value: true,
      sei_content_mode: 9,
      sei_payload_type: 100,
      sei_payload_uuid: 'uüid',
      media_type: 10,
      push_stream_mode: 11,
    },
    background_image_url: 'https://h/b.png',
    layout_regions: [mixedRegion, {}],
  },
  engineKeys: { layout_regions: 'regions' },
  state: ({ layout_regions, ...rest }) => ({
    ...rest,
    regions: [{ ...layout_regions[0], image_water_mark_size: 8 }, initialMixedRegion],
  }),
  lines: [
    `room_id: räum, user_id: usér, push_url: rtmp://h/${long}, user_config_extra_info: mehr, background_color: #123456, expected_mix_type: 1, is_support_client_push_stream: 1`,
    'MixedStreamAudioConfig: , sample_rate: 48000, channels: 2, bitrate: 64, audio_profile: 3, audio_codec: 4',
    'MixedStreamVideoConfig: , width: 640, height: 360, fps: 15, gop: 5, bitrate: 500, video_codec: 6,enable_Bframe: 1',
    'mixedStreamClientMixConfig: , use_audio_mixer: 1, video_format: 7',
    'MixedStreamServerControlConfig: , enable_volume_indication:1, volume_indication_interval:2.500000, talk_volume:8, is_add_volume_value:1, sei_content_mode:9, sei_payload_type:100, sei_payload_uuid:uüid, media_type: 10, push_stream_mode: 11',
    'setBackgroundImageURL: , background_image_url: https://h/b.png',
    `MixedStreamLayoutRegionConfig: region_id:anna, room_id: räum-a, location_x:-10, location_y:20, width:320, height:180, alpha:0.500000, corner_radius:0.250000,z_order:12, is_local_user:1, stream_type:1,  media_type:2, render_mode:3, region_content_type:4, alternate_image_fill_mode:5, alternate_image_url:${long}`,
    'MixedStreamLayoutRegionConfig: region_id:, room_id: , location_x:0, location_y:0, width:360, height:640, alpha:1.000000, corner_radius:0.000000,z_order:0, is_local_user:0, stream_type:0,  media_type:0, render_mode:1, region_content_type:0, alternate_image_fill_mode:0, alternate_image_url:',
  ],
  initial: {
    is_support_client_push_stream: undefined,
    server_control_config: { sei_payload_uuid: '' },
    background_image_url: undefined,
    layout_regions: [initialMixedRegion],
  },
  orders: [
    ['region_id', 'room_id', 'alternate_image_url'],
    [
      ...['location_x', 'location_y', 'width', 'height', 'alpha', 'corner_radius', 'z_order', 'is_local_user'],
      ...['stream_type', 'media_type', 'render_mode', 'region_content_type', 'alternate_image_fill_mode'],
      ...['image_water_mark', 'image_water_mark_param', 'image_width', 'image_height'],
      ...['spatial_position', 'x', 'y', 'z', 'apply_spatial_audio'],
    ],
  ],
};

const initialPublicRegion = {
  room_id: '',
  user_id: '',
  alternate_image_uri: '',
  x: 0,
  y: 0,
  width: 1,
  height: 1,
  alpha: 1,
  z_order: 0,
  stream_type: 0,
  media_type: 0,
  render_mode: 1,
  source_crop: { location_x: 0, location_y: 0, width_proportion: 1, height_proportion: 1 },
};

const publicRegion = {
  room_id: 'räum-a',
  user_id: 'anna',
  alternate_image_uri: long,
  x: 0.125,
  y: 0.25,
  width: 0.5,
  height: 0.75,
  alpha: 0.875,
  z_order: 13,
  stream_type: 1,
  media_type: 2,
  render_mode: 3,
  source_crop: { location_x: 0.1, location_y: 0.2, width_proportion: 0.3, height_proportion: 0.4 },
};

const publicStream = {
  builder: 'buildPublicStreamParam',
  export: 'createPublicStreamParam',
  missing: 'publicStreamParam is nullptr',
  methods: { start: 'startPushPublicStream', update: 'updatePublicStreamParam' },
  id: 'public_stream_id',
  name: 'param',
  params: {
    interpolation_mode: 1,
    room_id: 'räum',
    background_image_uri: `https://h/${long}`,
    bg_color: '#654321',
    layout_mode: 2,
    audio_param: { sample_rate: 44100, channel_num: 2, bitrate_kbps: 96 },
    video_param: { width: 1280, height: 720, fps: 30, bitrate_kpbs: 1500 },
    layout_regions: [publicRegion, {}],
  },
  engineKeys: { layout_regions: 'regions', bitrate_kpbs: 'bitrate_kbps' },
  state: ({ layout_regions, video_param: { bitrate_kpbs, ...video }, ...rest }) => ({
    ...rest,
    options: { publicstream: 'started' },
    video_param: { ...video, bitrate_kbps: bitrate_kpbs },
    regions: [layout_regions[0], initialPublicRegion],
  }),
  lines: ['finish videoparam', 'layoutRegionsNum 2', 'interpolation_mode: 1, layout_mode: 2, layoutRegionsNum: 2'],
  initial: { layout_regions: [initialPublicRegion] },
  orders: [
    ['room_id', 'user_id', 'alternate_image_uri'],
    [
      ...['x', 'y', 'width', 'height', 'alpha', 'z_order', 'stream_type', 'media_type', 'render_mode', 'source_crop'],
      ...['location_x', 'location_y', 'width_proportion', 'height_proportion'],
    ],
  ],
};

module.exports = { live, mixed, publicStream, initialMixedRegion, initialPublicRegion };
