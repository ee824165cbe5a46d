// How the records of rooms cross over from JavaScript objects.
#pragma once

#include <deque>
#include <vector>

#include "binding/from.h"
#include "corvane_rtc/rtc_room.h"

namespace corvane {

/// {"x", "y", "z"}, with its log line.
rtc::Position ParsePostion(Reader& reader, napi_value value);  // NOLINT: the name that the line carries
/// {"forward", "right", "up"}, each {"x", "y", "z"}, with its log line.
rtc::HumanOrientation ParseHumanOrientation(Reader& reader, napi_value value);  // NOLINT: as above
/// {"position", "orientation"}
rtc::PositionInfo readPositionInfo(Reader& reader, napi_value value);

/// Shared by the records whose native form needs nothing kept beside it; `Read` makes it from an object.
template <class Record, Record (*Read)(Reader&, napi_value)>
struct FromRecord {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  using Held = Record;
  static void read(Reader& reader, napi_value value, Held& held) { held = Read(reader, value); }
  static const Record& pass(const Held& held) { return held; }
  static const void* said(const Held& held) { return &held; }
};

template <>
struct From<rtc::Position> : FromRecord<rtc::Position, &ParsePostion> {};
template <>
struct From<rtc::HumanOrientation> : FromRecord<rtc::HumanOrientation, &ParseHumanOrientation> {};
template <>
struct From<rtc::PositionInfo> : FromRecord<rtc::PositionInfo, &readPositionInfo> {};

/// {"forward_stream_dests": [{"room_id", "token"}]}
template <>
struct From<rtc::ForwardStreamConfiguration> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  struct Destination {
    Text room_id;
    Text token;
  };
  struct Held {
    std::deque<Destination> destinations;  // texts stay where they are
    std::vector<rtc::ForwardStreamInfo> infos;
  };
  static void read(Reader& reader, napi_value value, Held& held);
  static rtc::ForwardStreamConfiguration pass(const Held& held) {
    return {held.infos.data(), static_cast<int32_t>(held.infos.size())};
  }
  static const void* said(const Held& held) { return &held; }
};

}  // namespace corvane
