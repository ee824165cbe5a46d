'use strict';

// Mixes and pushes that the service makes of streams. What the parameters of the large ones become has tests of its own.

const { args, family } = require('../support/method_row.js');
const { number, string, object, bytes, untested } = args;

const hello = Buffer.from('grüße');
const parmas = ['@, Param is invalid, task_id', '@, Param is invalid, parmas'];

const tasks = family({ refusal: parmas }, [
  ['startLiveTranscoding', [string('aufgabe'), object({})]],
  ['updateLiveTranscoding', [untested('aufgabe'), object({})], undefined, { refusal: '@, Param is invalid' }],
  ['startPushMixedStreamToCDN', [string('aufgabe'), object({})]],
  ['updatePushMixedStreamToCDN', [string('aufgabe'), object({})]],
  [
    'startPushSingleStreamToCDN',
    [string('aufgabe'), object({ room_id: 'räum', uri: 'rtmp://h/ü', user_id: 'usér', is_screen_stream: true })],
    {
      task_id: 'aufgabe',
      param: { room_id: 'räum', uri: 'rtmp://h/ü', user_id: 'usér', is_screen_stream: true },
      observer: true,
    },
    { refusal: ['@, Param is invalid, task_id', '@, Param is invalid, params'] },
  ],
]);

const publicStreams = family({ refusal: '@, Param is invalid' }, [
  ['startPushPublicStream', [string('öffentlich'), object({})]],
  ['updatePublicStreamParam', [string('öffentlich'), object({})]],
  ['stopPushPublicStream', [string('öffentlich')], { public_stream_id: 'öffentlich' }],
  ['startPlayPublicStream', [string('öffentlich')], { public_stream_id: 'öffentlich' }],
  ['stopPlayPublicStream', [string('öffentlich')], { public_stream_id: 'öffentlich' }],
  [
    'setPublicStreamAudioPlaybackVolume',
    [string('öffentlich'), number(77.9)],
    { public_stream_id: 'öffentlich', volume: 77 },
    {
      entry: null,
      says: ['+@ streamId: öffentlich, volume: 77'],
      refusal: ['@, Param is invalid, stream_id', '@, Param is invalid, volume'],
    },
  ],
  [
    'sendPublicStreamSEIMessage',
    [number(1), number(2), bytes(hello), number(3), number(4)],
    { stream_index: 1, channel_id: 2, message: hello, length: 7, repeat_count: 3, mode: 4 },
    {
      says: ['@ stream_index: 1, channel_id:2, message: grüße, repeat_count: 3, mode: 4'],
      refusal: '@ param is invalid, <0>, <1>, <2>, <3>, <4>',
    },
  ],
]);

module.exports = [...tasks, ...publicStreams];
