// The methods of KavRTCMediaPlayer, in the order in which the class carries them.
#pragma once

namespace corvane {

inline constexpr const char* kMediaPlayerMethodNames[] = {
    "open",
    "start",
    "stop",
    "pause",
    "resume",
    "setVolume",
    "getVolume",
    "getTotalDuration",
    "getPlaybackDuration",
    "getPosition",
    "setAudioPitch",
    "setPosition",
    "setAudioDualMonoMode",
    "getAudioTrackCount",
    "selectAudioTrack",
    "setPlaybackSpeed",
    "setProgressInterval",
    "setLoudness",
    "setEventHandler",
    "openWithCustomSource",
    "pushExternalAudioFrame",
};

}  // namespace corvane
