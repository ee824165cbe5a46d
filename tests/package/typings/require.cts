// The CommonJS entry without interoperability helpers: the exports object itself. Never run.
import sdk = require('corvane-meeting-sdk');

const engine: sdk.xoRTCVideo = new sdk.xoRTCVideo();
const callback: sdk.EngineCallback = (event) => event.type ?? event.Type;
engine.createRTCVideo(sdk.getSDKVersion(), callback, '');
// @ts-expect-error only the ES module has a default
sdk.default.getSDKVersion();
