// How places and directions cross over from JavaScript objects.
#pragma once

#include "binding/from.h"
#include "corvane_rtc/position.h"
#include "corvane_rtc/spatial_audio.h"

namespace corvane {

/// {"x", "y", "z"}, with its log line.
rtc::Position ParsePostion(Reader& reader, napi_value value);  // NOLINT: the name that the line carries
/// {"forward", "right", "up"}, each {"x", "y", "z"}, with its log line.
rtc::HumanOrientation ParseHumanOrientation(Reader& reader, napi_value value);  // NOLINT: as above
/// {"position", "orientation"}
rtc::PositionInfo readPositionInfo(Reader& reader, napi_value value);

template <>
struct From<rtc::Position> : FlatRecord<rtc::Position> {
  static void read(Reader& reader, napi_value value, Held& held) { held = ParsePostion(reader, value); }
};

template <>
struct From<rtc::HumanOrientation> : FlatRecord<rtc::HumanOrientation> {
  static void read(Reader& reader, napi_value value, Held& held) { held = ParseHumanOrientation(reader, value); }
};

template <>
struct From<rtc::PositionInfo> : FlatRecord<rtc::PositionInfo> {
  static void read(Reader& reader, napi_value value, Held& held) { held = readPositionInfo(reader, value); }
};

}  // namespace corvane
