// Start-up: registers the module, defines its classes and adds its functions.
#include <napi.h>

#include "module/module_functions.h"
#include "players/audio_effect_player.h"
#include "players/media_player.h"
#include "rtc_room/rtc_room.h"
#include "rtc_video/rtc_video.h"

namespace {

napi_value initialize(napi_env raw_env, napi_value raw_exports) {
  const Napi::Env env(raw_env);
  Napi::Object exports(env, raw_exports);
  const Napi::Function video = corvane::KavRTCVideo::define(env);
  const Napi::Function room = corvane::KavRTCRoom::define(env);
  const Napi::Function effect_player = corvane::KavRTCAudioEffectPlayer::define(env);
  const Napi::Function media_player = corvane::KavRTCMediaPlayer::define(env);
  exports.Set("xoRTCVideo", video);
  exports.Set("xoRTCRoom", room);
  exports.Set("xoRTCAudioEffectPlayer", effect_player);
  exports.Set("xoRTCMediaPlayer", media_player);
  corvane::addModuleFunctions(env, exports);
  return exports;
}

napi_module registration = {1, 0, "proj/module", &initialize, "corvane_meeting_sdk", nullptr, {nullptr}};

void registerModule() {
  napi_module_register(&registration);
}

}  // namespace

// The module's one exported symbol is itself the entry of the loader's initialiser table, so that loading the library
// registers the module.
#if defined(_WIN32)
#define CORVANE_INITIALISER __attribute__((section(".CRT$XCU"), used)) __declspec(dllexport)
#else
#define CORVANE_INITIALISER __attribute__((section(".init_array"), used, visibility("default")))
#endif

extern "C" {
CORVANE_INITIALISER void (*_register_corvane_meeting_sdk_)() = &registerModule;  // NOLINT: the host looks for this name
}
