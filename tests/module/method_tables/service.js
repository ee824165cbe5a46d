'use strict';

// What goes over the network: messages, data inside streams, fallback, proxies, the engine's own settings.

const { args, family } = require('../support/method_row.js');
const { number, boolean, string, object, array, bytes } = args;

const hello = Buffer.from('grüße');

const settings = family({}, [
  ['setBusinessId', [string('geschäft')], { business_id: 'geschäft' }, { refusal: '@, Param is invalid' }],
  [
    'setRuntimeParameters',
    [string('{"a":1}')],
    { json_string: '{"a":1}' },
    { exit: '+@ ret: #', says: ['json string: {"a":1}'] },
  ],
  [
    'feedback',
    [
      number(-2),
      object({ problem_desc: 'es hakt', room_info: [{ room_id: 'r0', user_id: 'u0' }, { room_id: 'r1', user_id: 'u1' }] }),
    ],
    {
      type: 18446744073709551614n,
      info: {
        problem_desc: 'es hakt',
        room_info: [{ room_id: 'r0', user_id: 'u0' }, { room_id: 'r1', user_id: 'u1' }],
        room_info_count: 2,
      },
    },
    {
      refusal: ['@, Param is invalid, type', '@, Param is invalid, info'],
      says: [
        '@ i:0, room_id:r0, user_id:u0',
        '@ i:1, room_id:r1, user_id:u1',
        '@, type: 18446744073709551614, problem_desc: es hakt, size: 2',
      ],
    },
  ],
]);

const messages = family({ refusal: '@, Param is invalid' }, [
  ['login', [string('marke'), string('ich')], { token: 'marke', uid: 'ich' }, { exit: '-@' }],
  ['logout', [], {}, { exit: '-@' }],
  ['updateLoginToken', [string('marke-2')], { token: 'marke-2' }],
  ['setServerParams', [string('unterschrift'), string('https://h')], { signature: 'unterschrift', url: 'https://h' }],
  ['getPeerOnlineStatus', [string('du')], { peer_user_id: 'du' }],
  // Message ids are cut to their lower 32 bits, with a sign.
  [
    'sendUserMessageOutsideRoom',
    [string('du'), string('na'), number(1)],
    { uid: 'du', message: 'na', config: 1 },
    { gives: 4294967301, result: 5, says: ['@, message: na'] },
  ],
  [
    'sendUserBinaryMessageOutsideRoom',
    [string('du'), number(3), bytes(hello), number(2)],
    { uid: 'du', length: 3, message: hello.subarray(0, 3), config: 2 },
    { gives: 4294967295, result: -1, says: ['@, message: grüße'] },
  ],
  ['sendServerMessage', [string('hallo')], { message: 'hallo' }, { gives: 4294967301, says: ['@, message: hallo'] }],
  [
    'sendServerBinaryMessage',
    [number(7), bytes(hello)],
    { length: 7, message: hello },
    { gives: 9007199254740991, says: ['@, message: grüße'] },
  ],
]);

const sync = { stream_index: 1, repeat_count: 4, stream_type: 2 };

const data = family({}, [
  [
    'sendSEIMessage',
    [number(1), bytes(hello), number(5), number(1)],
    { stream_index: 1, message: hello, length: 7, repeat_count: 5, mode: 1 },
    {
      refusal: [
        '@ param is not valid, stream_index',
        '@ param is not valid, message',
        '@ param is not valid, repeat_count',
        '@ param is not valid, mode',
      ],
      says: ['@ stream_index: 1, message: grüße, repeat_count: 5, mode: 1 '],
      exit: '-@, ret: # ',
    },
  ],
  [
    'sendStreamSyncInfo',
    [bytes(hello), object(sync)],
    { data: hello, length: 7, config: sync },
    {
      gives: 8589934597,
      refusal: ['@, Param is invalid, data', '@, Param is invalid, config'],
      says: ['@, data: grüße, stream_index: 1, repeat_count: 4, stream_type: 2'],
    },
  ],
]);

const cloud = (n) => ({ cloud_proxy_ip: `10.0.0.${n}`, cloud_proxy_port: 1000 + n });
const local = (n) => ({
  local_proxy_ip: `192.168.0.${n}`,
  local_proxy_username: `name-${n}`,
  local_proxy_password: `wort-${n}`,
  local_proxy_type: n,
  local_proxy_port: 2000 + n,
});
const localLine = (i, n) =>
  `@, i: ${i}, local_proxy_type: ${n}, local_proxy_ip: 192.168.0.${n}, local_proxy_port: ${2000 + n}, ` +
  `local_proxy_username: name-${n}, local_proxy_password: wort-${n}  `;

const network = family({}, [
  ['setPublishFallbackOption', [number(1)], { option: 1 }],
  ['setSubscribeFallbackOption', [number(2)], { option: 2 }],
  [
    'setRemoteUserPriority',
    [string('r'), string('u'), number(100)],
    { room_id: 'r', user_id: 'u', priority: 100 },
  ],
  [
    'startNetworkDetection',
    [boolean(true), number(501), boolean(false), number(502)],
    { is_test_uplink: true, expected_uplink_bitrate: 501, is_test_downlink: false, expected_downlink_bitrate: 502 },
  ],
  ['stopNetworkDetection', [], {}],
  [
    'startCloudProxy',
    [array([cloud(1), cloud(2)])],
    { configurations: [cloud(1), cloud(2)], count: 2 },
    {
      refusal: '@, Param is invalid, configuration',
      says: [
        '@, i: 0 cloud_proxy_ip: 10.0.0.1, cloud_proxy_port: 1001  ',
        '@, i: 1 cloud_proxy_ip: 10.0.0.2, cloud_proxy_port: 1002  ',
      ],
    },
  ],
  ['stopCloudProxy', [], {}],
  [
    'setLocalProxy',
    [array([local(1), local(2)])],
    { configurations: [local(1), local(2)], count: 2 },
    { refusal: '@, Param is invalid, configurations', says: [localLine(0, 1), localLine(1, 2)] },
  ],
  ['getNetworkTimeInfo', [], {}, { gives: 1700000000123 }],
  ['setEncryptInfo', [number(2), string('geheim')], { encrypt_type: 2, key: 'geheim' }],
]);

module.exports = [...settings, ...messages, ...data, ...network];
