// The methods of KavRTCAudioEffectPlayer, in the order in which the class carries them.
#pragma once

namespace corvane {

inline constexpr const char* kAudioEffectPlayerMethodNames[] = {
    "start",     "stop",         "stopAll",   "preload",     "unload",          "unloadAll",
    "pause",     "pauseAll",     "resume",    "resumeAll",   "setPosition",     "getPosition",
    "setVolume", "setVolumeAll", "getVolume", "getDuration", "setEventHandler",
};

}  // namespace corvane
