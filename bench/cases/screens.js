'use strict';
// What a screen of 1920x1080 costs the JavaScript thread over the embedded engine: a thumbnail from the call to its text,
// and what a dialog asks for that offers a choice.

const path = require('node:path');
const { startDisplay } = require('../../tests/engine/support/display');
const pictures = require('../pictures');

const build = path.join(__dirname, '..', '..', 'build', 'release');
const limitMs = 40;
const rounds = 30;

/** The milliseconds of the median call. */
function timeOf(work) {
  const times = Array.from({ length: rounds }, () => {
    const start = performance.now();
    work();
    return performance.now() - start;
  });
  return times.sort((a, b) => a - b)[rounds >> 1];
}

module.exports = async function screens() {
  const native = require(path.join(build, 'bench', 'bench_native.node'));
  const display = startDisplay('1920x1080');
  const sdk = require(path.join(build, 'corvane_meeting_sdk.node'));
  const { width, height } = pictures.size;
  const video = new sdk.xoRTCVideo();
  video.createRTCVideo('bench', () => {}, '{}');
  const [monitor] = video.getScreenCaptureSourceList();
  if (!native.paintDesktop(process.env.DISPLAY, pictures.screen(), width, height)) throw new Error('nothing to see');

  const row = (name, work, goal) => {
    work();
    const value = timeOf(work);
    return { name, unit: 'ms', value, limit: limitMs, ratio: value / limitMs, goal };
  };
  const thumbnail = (...bounds) => () => {
    const { data } = video.getThumbnail(monitor.type, monitor.source_id, ...bounds);
    if (!(data?.length > 10_000)) throw new Error('the thumbnail shows nothing');
  };
  const most = { kind: 'most', ratio: 1 };
  const rows = [
    row('thumbnail of a screen, sizes left out', thumbnail(), most),
    row('thumbnail of a screen, 320x180', thumbnail(320, 180), most),
    row('  as large as the screen', thumbnail(1920, 1080), null),
    row('list of sources', () => video.getScreenCaptureSourceList(), null),
  ];
  video.destroyRTCVideo();
  display.stop();
  return rows;
};
