// How the engine's common records cross over from JavaScript objects: fields in the order of the record.
#pragma once

#include "binding/from.h"
#include "corvane_rtc/common.h"

namespace corvane {

/// {"room_id", "user_id", "stream_index"}
template <>
struct From<rtc::StreamKey> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  struct Held {
    Text room_id;
    Text user_id;
    int32_t stream_index = 0;
  };
  static void read(Reader& reader, napi_value value, Held& held) {
    reader.text(value, "room_id", held.room_id);
    reader.text(value, "user_id", held.user_id);
    held.stream_index = reader.int32(value, "stream_index");
  }
  static rtc::StreamKey pass(const Held& held) {
    return {held.room_id.c_str(), held.user_id.c_str(), held.stream_index};
  }
  static const void* said(const Held& held) { return &held; }
};

/// {"x", "y", "width", "height"}
template <>
struct From<rtc::Rectangle> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  using Held = rtc::Rectangle;
  static void read(Reader& reader, napi_value value, Held& held) {
    held.x = reader.int32(value, "x");
    held.y = reader.int32(value, "y");
    held.width = reader.int32(value, "width");
    held.height = reader.int32(value, "height");
  }
  static const rtc::Rectangle& pass(const Held& held) { return held; }
  static const void* said(const Held& held) { return &held; }
};

}  // namespace corvane
