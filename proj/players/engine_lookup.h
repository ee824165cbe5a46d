// How the players reach the engine: anew on every call, so that they survive its end and its replacement.
#pragma once

#include "binding/row.h"
#include "corvane_rtc/rtc_video.h"

namespace corvane {

/// The lines of one player class for what is missing, in the order of the search.
struct LookupLines {
  const char* no_instance;
  const char* no_engine;
  const char* no_player;
};

/// The engine, or null with its line. `name` is the method's or, in a constructor, the class's.
rtc::IRTCVideo* findEngine(const LookupLines& lines, const char* name, int32_t line);

/// The engine, or null without a word.
rtc::IRTCVideo* engineIfAny();

inline constexpr char kPlayerExit[] = "%s(%d), ret: %d";

}  // namespace corvane
