import sdk from './index.js';

export default sdk;
export const {
  xoRTCVideo,
  xoRTCRoom,
  xoRTCAudioEffectPlayer,
  xoRTCMediaPlayer,
  setLogConfig,
  getSDKVersion,
  getTimestampMs,
  getTimestampUs,
  getCurrentProcessId,
  getErrorDescription,
} = sdk;
