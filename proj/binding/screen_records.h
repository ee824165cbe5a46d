// How the records of screen sharing cross over from JavaScript objects: fields in the order of the record.
#pragma once

#include "binding/from.h"
#include "binding/records.h"
#include "corvane_rtc/screen_capture.h"

namespace corvane {

/// {"type", "source_id", "source_name", "application", "pid", "primary_monitor", "region_rect"}
template <>
struct From<rtc::ScreenCaptureSourceInfo> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  struct Held {
    int32_t type = 0;
    int32_t source_id = 0;
    Text source_name;
    Text application;
    int32_t pid = 0;
    bool primary_monitor = false;
    rtc::Rectangle region_rect{};
  };
  static void read(Reader& reader, napi_value value, Held& held) {
    held.type = reader.int32(value, "type");
    held.source_id = reader.int32(value, "source_id");
    reader.text(value, "source_name", held.source_name);
    reader.text(value, "application", held.application);
    held.pid = reader.int32(value, "pid");
    held.primary_monitor = reader.boolean(value, "primary_monitor");
    From<rtc::Rectangle>::read(reader, reader.get(value, "region_rect"), held.region_rect);
  }
  static rtc::ScreenCaptureSourceInfo pass(const Held& held) {
    return {held.type, held.source_id,       held.source_name.c_str(), held.application.c_str(),
            held.pid,  held.primary_monitor, held.region_rect};
  }
  static const void* said(const Held& held) { return &held; }
};

/// {"enable_highlight", "border_color", "border_width"}
template <>
struct From<rtc::ScreenHighlightConfig> : FlatRecord<rtc::ScreenHighlightConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.enable_highlight = reader.boolean(value, "enable_highlight");
    held.border_color = reader.int32(value, "border_color");
    held.border_width = reader.int32(value, "border_width");
  }
};

}  // namespace corvane
