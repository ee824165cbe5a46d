'use strict';

// The methods of a room; rows are described in support/method_table.js.

const { Row } = require('../support/method_table');

const room = (operation) => `IRTCRoom.${operation}`;
const range = (operation) => `IRangeAudio.${operation}`;
const spatial = (operation) => `ISpatialAudio.${operation}`;

const PARAM_IS_INVALID = '@, Param is invalid';
const NOT_VALID = '@ param is not valid';
const withoutComma = (result) => `-@ ret: ${result}`;

// Positions are chosen so that floats hold them exactly.
const POSITION = { x: 1.5, y: -2.75, z: 3 };
const POSITION_LINE = 'ParsePostion(#) param is not valid x: 1 y: -2 z: 3';
const ORIENTATION = {
  forward: { x: 1, y: 0.5, z: 0.25 },
  right: { x: -1, y: -0.5, z: -0.25 },
  up: { x: 2.5, y: -3.5, z: 4 },
};
const ORIENTATION_LINE =
  'ParseHumanOrientation(#), forward: {x: 1.000000, y: 0.500000, z: 0.250000}, ' +
  'right: { x: -1.000000, y: -0.500000, z: -0.250000}, up: {x: 2, y: -3, z: 4}';
const INFO = { position: POSITION, orientation: ORIENTATION };

const mediaType = { kinds: 'n', args: [3], gets: { media_type: 3 } };
const publishing = { ...mediaType, says: ['+@ mediatype: 3'], refusal: PARAM_IS_INVALID };
const subscribing = {
  kinds: 'sn',
  args: ['alice', 2],
  gets: { user_id: 'alice', media_type: 2 },
  says: ['+@ user_id: alice mediatype: 2'],
  refusal: PARAM_IS_INVALID,
  exit: withoutComma,
};
const pausing = {
  ...mediaType,
  refusal: NOT_VALID,
  exit: (result, read) => `-@, ret: ${result} controlType = ${read ? 3 : 0}`,
};
const subscribingAll = { ...mediaType, says: ['+@  mediatype: 3'], refusal: '@ param is not valid ' };
const forwarding = {
  kinds: 'o',
  args: [{ forward_stream_dests: [{ room_id: 'r1', token: 't1' }, { room_id: 'r2', token: 't2' }] }],
  gets: {
    configuration: {
      forward_stream_dests: [
        { room_id: 'r1', token: 't1' },
        { room_id: 'r2', token: 't2' },
      ],
      count: 2,
    },
  },
  refusal: NOT_VALID,
};
const enabling = {
  kinds: 'b',
  args: [true],
  gets: { enable: true },
  exit: (result, read) => `@  enable: ${read ? 1 : 0} ret: ${result}`,
};
const BIG = 2 ** 40 + 1;

/** Rows by the part of the engine room that they call. */
const ROOM_ROWS = [
  {
    name: 'joinRoom',
    kinds: 'soo',
    args: [
      'token',
      { uid: 'alice', extra_info: '{}' },
      {
        room_profile_type: 4,
        is_auto_publish: true,
        is_auto_subscribe_audio: false,
        is_auto_subscribe_video: true,
        remote_video_config: { framerate: 15, resolution_width: 640, resolution_height: 360 },
      },
    ],
    gets: {
      token: 'token',
      user_info: { uid: 'alice', extra_info: '{}' },
      room_config: {
        room_profile_type: 4,
        is_auto_publish: true,
        is_auto_subscribe_audio: false,
        is_auto_subscribe_video: true,
        remote_video_config: { framerate: 15, resolution_width: 640, resolution_height: 360 },
      },
    },
    says: [
      '@, token: token, uid: alice extraInfo: {} room profile =4 is_auto_subscribe_audio = 0 ' +
        'is_auto_subscribe_video=1 is_auto_publish = 1 framerate=15 resolution_height=360 resolution_width=640',
    ],
  },
  { name: 'leaveRoom' },
  {
    name: 'setUserVisibility',
    kinds: 'b',
    args: [true],
    gets: { enable: true },
    exit: (result, read) => `-@, ret: ${result} bEnable = ${read ? 1 : 0}`,
  },
  { name: 'updateToken', kinds: 's', args: ['next'], gets: { token: 'next' }, refusal: PARAM_IS_INVALID },
  {
    name: 'setRemoteVideoConfig',
    kinds: 'so',
    args: ['bob', { framerate: 15, resolution_width: 640, resolution_height: 360 }],
    gets: { user_id: 'bob', config: { framerate: 15, resolution_width: 640, resolution_height: 360 } },
    says: ['@, user_id: bob framerate=15 resolution_height=360 resolution_width=640'],
    refusal: PARAM_IS_INVALID,
  },
  { name: 'publishStream', ...publishing },
  { name: 'unpublishStream', ...publishing },
  { name: 'publishScreen', ...publishing, exit: withoutComma },
  { name: 'unpublishScreen', ...publishing, exit: withoutComma },
  { name: 'subscribeStream', ...subscribing },
  { name: 'unsubscribeStream', ...subscribing },
  { name: 'subscribeScreen', ...subscribing },
  { name: 'unsubscribeScreen', ...subscribing },
  { name: 'pauseAllSubscribedStream', ...pausing },
  { name: 'resumeAllSubscribedStream', ...pausing },
  { name: 'subscribeAllStreams', ...subscribingAll },
  { name: 'unsubscribeAllStreams', ...subscribingAll },
  {
    name: 'setAudioSelectionConfig',
    kinds: 'n',
    args: [1],
    gets: { audio_selection_priority: 1 },
    says: ['+@ audio_selection_priority: 1'],
    refusal: NOT_VALID,
  },
  {
    name: 'setRoomExtraInfo',
    kinds: 'ss',
    args: ['colour', 'red'],
    gets: { key: 'colour', value: 'red' },
    says: ['+@ key: colour, value: red'],
    refusal: ['@ param is not valid, key', '@ param is not valid, value'],
  },
  {
    name: 'startSubtitle',
    kinds: 'o',
    args: [{ mode: 1, target_language: 'en' }],
    gets: { config: { mode: 1, target_language: 'en' } },
    says: ['+@ mode: 1, target_language: en'],
  },
  { name: 'stopSubtitle' },
  {
    name: 'sendUserMessage',
    kinds: 'ssn',
    args: ['bob', 'hello', 2],
    gets: { uid: 'bob', message: 'hello', config: 2 },
    gives: BIG,
    result: 0,
    entry: null,
    says: ['+@ uid=bob messgae=hello config=2', `-@, res: ${BIG} `],
    exit: (result) => `-@,  ret: ${result} `,
  },
  {
    name: 'sendUserBinaryMessage',
    kinds: 'sntn',
    args: ['bob', 3, Buffer.from('abc'), 2],
    gets: { uid: 'bob', length: 3, message: Buffer.from('abc'), config: 2 },
    gives: BIG,
    entry: null,
    says: ['+@ uid=bob length=3 message=abc config=2'],
    exit: (result) => `-@ res: ${result}`,
  },
  {
    name: 'sendRoomMessage',
    kinds: 's',
    args: ['hello'],
    gets: { message: 'hello' },
    gives: BIG,
    entry: null,
    says: ['+@ message=hello '],
    exit: (result) => `-@ res: ${result}`,
  },
  {
    name: 'sendRoomBinaryMessage',
    kinds: 'nt',
    args: [3, Buffer.from('abc')],
    gets: { size: 3, message: Buffer.from('abc') },
    gives: BIG,
    entry: null,
    says: ['+@ size=3 message=abc '],
    exit: (result) => `-@,  res: ${result}`,
  },
  { name: 'startForwardStreamToRooms', ...forwarding, exit: (result) => `-@, ret: ${result}  ` },
  { name: 'updateForwardStreamToRooms', ...forwarding, exit: (result) => `-@, ret: ${result} ` },
  { name: 'stopForwardStreamToRooms' },
  { name: 'pauseForwardStreamToAllRooms' },
  { name: 'resumeForwardStreamToAllRooms' },
  {
    name: 'setRemoteRoomAudioPlaybackVolume',
    kinds: 'n',
    args: [150],
    gets: { volume: 150 },
    says: ['+@, voluem: 150'],
    refusal: '@, param is not valid, volume',
    level: 'W',
    exit: (result) => `@  ret: ${result}`,
  },
].map((row) => new Row(row, { call: room(row.name) }));

const RANGE_ROWS = [
  { name: 'enableRangeAudio', ...enabling },
  {
    name: 'updateReceiveRange',
    kinds: 'o',
    args: [{ min: 5, max: 50 }],
    gets: { range: { min: 5, max: 50 } },
    says: ['@ max: 50 min: 5'],
    exit: (result) => `@   ret: ${result}`,
  },
  {
    name: 'updateRangePosition',
    kinds: 'o',
    args: [{ x: 1.9, y: -2.9, z: 3 }],
    call: range('updatePosition'),
    gets: { position: { x: 1, y: -2, z: 3 } },
    says: ['@ x: 1 y: -2 z: 3'],
  },
  {
    name: 'setAttenuationModel',
    kinds: 'nn',
    args: [2, 0.75],
    gets: { type: 2, coefficient: 0.75 },
    says: ['@ param is not valid enable: 1 type: 2 cofficient: 0.750000'],
  },
  {
    name: 'setNoAttenuationFlags',
    kinds: 'a',
    args: [['red', 'blue']],
    gets: { flags: ['red', 'blue'], count: 2 },
    says: ['+@, i: 0, flag: red', '+@, i: 1, flag: blue'],
    refusal: '@ param is not valid, flags',
  },
].map((row) => new Row(row, { call: range(row.name) }));

const SPATIAL_ROWS = [
  { name: 'enableSpatialAudio', ...enabling },
  {
    name: 'updateSpatialPosition',
    kinds: 'o',
    args: [POSITION],
    call: spatial('updatePosition'),
    gets: { position: POSITION },
    says: [POSITION_LINE],
    exit: (result) => `@  ${result}`,
  },
  {
    name: 'updateSelfOrientation',
    kinds: 'o',
    args: [ORIENTATION],
    gets: { orientation: ORIENTATION },
    says: [ORIENTATION_LINE],
  },
  { name: 'disableRemoteOrientation' },
  { name: 'removeAllRemotePosition' },
].map((row) => new Row(row, { call: spatial(row.name) }));

/** These look at their arguments before they fetch the interface. */
const SPATIAL_ROWS_ARGUMENTS_FIRST = [
  {
    name: 'updateListenerPosition',
    kinds: 'o',
    args: [POSITION],
    gets: { position: POSITION },
    says: [POSITION_LINE],
    refusal: '@ param is not valid, pos',
  },
  {
    name: 'updateListenerOrientation',
    kinds: 'o',
    args: [ORIENTATION],
    gets: { orientation: ORIENTATION },
    says: [ORIENTATION_LINE],
    refusal: '@ param is not valid, orientation',
  },
  {
    name: 'updateSelfPosition',
    kinds: 'o',
    args: [INFO],
    gets: { info: INFO },
    says: [POSITION_LINE, ORIENTATION_LINE],
    refusal: '@ param is not valid, orientation',
  },
  {
    name: 'updateRemotePosition',
    kinds: 'so',
    args: ['bob', INFO],
    gets: { uid: 'bob', info: INFO },
    says: ['+@, uid: bob', POSITION_LINE, ORIENTATION_LINE],
    refusal: ['@ param is not valid, uid', '@ param is not valid, orientation'],
  },
  {
    name: 'removeRemotePosition',
    kinds: 's',
    args: ['bob'],
    gets: { uid: 'bob' },
    says: ['+@, uid: bob'],
    refusal: '@ param is not valid, uid',
  },
].map((row) => new Row(row, { call: spatial(row.name) }));

/** The one method that looks at its argument before it looks for the room. */
const SYNC_ROW = new Row({
  name: 'setMultiDeviceAVSync',
  kinds: 's',
  args: ['bob'],
  call: room('setMultiDeviceAVSync'),
  gets: { audio_user_id: 'bob' },
  exit: (result, read) => `@, Param is invalid ret=${result} audio_user_id=${read ? 'bob' : ''}`,
});

const SPATIAL_ALL = [...SPATIAL_ROWS, ...SPATIAL_ROWS_ARGUMENTS_FIRST];
const ROWS = [...ROOM_ROWS, ...RANGE_ROWS, ...SPATIAL_ALL];
const OTHER_METHODS = ['isRoomCreated', 'getRoomId', 'destroy', SYNC_ROW.name];

module.exports = {
  ROOM_ROWS,
  RANGE_ROWS,
  SPATIAL_ROWS,
  SPATIAL_ROWS_ARGUMENTS_FIRST,
  SPATIAL_ALL,
  SYNC_ROW,
  ROWS,
  OTHER_METHODS,
  ORIENTATION,
};
