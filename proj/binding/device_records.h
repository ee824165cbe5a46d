// How the records of devices cross over from JavaScript objects: fields in the order of the record.
#pragma once

#include "binding/from.h"
#include "corvane_rtc/device_manager.h"

namespace corvane {

/// {"audio_properties_report_interval", "uid", "room_id", "token"}
template <>
struct From<rtc::EchoTestConfig> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  struct Held {
    int32_t audio_properties_report_interval = 0;
    Text uid;
    Text room_id;
    Text token;
  };
  static void read(Reader& reader, napi_value value, Held& held) {
    held.audio_properties_report_interval = reader.int32(value, "audio_properties_report_interval");
    reader.text(value, "uid", held.uid);
    reader.text(value, "room_id", held.room_id);
    reader.text(value, "token", held.token);
  }
  static rtc::EchoTestConfig pass(const Held& held) {
    return {held.audio_properties_report_interval, held.uid.c_str(), held.room_id.c_str(), held.token.c_str()};
  }
  static const void* said(const Held& held) { return &held; }
};

}  // namespace corvane
