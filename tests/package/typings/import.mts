// The ES module entry: every export by name, and all of them as the default. Never run.
import sdk, {
  getCurrentProcessId,
  getSDKVersion,
  getTimestampMs,
  xoRTCAudioEffectPlayer,
  xoRTCMediaPlayer,
  xoRTCRoom,
  xoRTCVideo,
  type CorvaneLoadError,
  type EngineEvent,
} from 'corvane-meeting-sdk';

const classes: [typeof sdk.xoRTCVideo, typeof sdk.xoRTCRoom] = [xoRTCVideo, xoRTCRoom];
const texts: string[] = [getSDKVersion(), sdk.getSDKVersion(), getCurrentProcessId(), sdk.getTimestampMs().toFixed()];
const engine: sdk.xoRTCVideo = new sdk.xoRTCVideo();
engine.createRTCVideo('app', (event: EngineEvent) => texts.push(String(event.Type)), '');
// @ts-expect-error the default holds no default
sdk.default.getSDKVersion();
// @ts-expect-error a number
texts.push(getTimestampMs());

const failure = (error: CorvaneLoadError): string => {
  if (error.code === 'ERR_CORVANE_ENGINE_NOT_FOUND') return error.pathsTried.join();
  // @ts-expect-error no such code
  return error.code === 'ENOENT' ? error.platform : error.library;
};

export { classes, failure, xoRTCAudioEffectPlayer, xoRTCMediaPlayer };
