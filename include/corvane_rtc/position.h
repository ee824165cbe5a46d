// A place in a room's space, shared by range audio and spatial audio.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// A place in the application's own coordinates. One unit is what the ranges of hearing are given in.
struct Position {
  float x;
  float y;
  float z;
};

}  // namespace corvane::rtc
