// How the records of video effects cross over from JavaScript objects: fields in the order of the record.
#pragma once

#include "binding/from.h"
#include "corvane_rtc/video_effect.h"

namespace corvane {

/// {"source_type", "source_path", "source_color"}
template <>
struct From<rtc::VirtualBackgroundSource> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  struct Held {
    int32_t source_type = 0;
    Text source_path;
    uint32_t source_color = 0;
  };
  static void read(Reader& reader, napi_value value, Held& held) {
    held.source_type = reader.int32(value, "source_type");
    reader.text(value, "source_path", held.source_path);
    held.source_color = reader.uint32(reader.get(value, "source_color"));
  }
  static rtc::VirtualBackgroundSource pass(const Held& held) {
    return {held.source_type, held.source_path.c_str(), held.source_color};
  }
  static const void* said(const Held& held) { return &held; }
};

/// {"width", "height", "x", "y"}
template <>
struct From<rtc::WatermarkPosition> : FlatRecord<rtc::WatermarkPosition> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.width = reader.number(value, "width");
    held.height = reader.number(value, "height");
    held.x = reader.number(value, "x");
    held.y = reader.number(value, "y");
  }
};

/// {"visible_in_preview", "position_in_landscape_mode", "position_in_portrait_mode"}
template <>
struct From<rtc::WatermarkConfig> : FlatRecord<rtc::WatermarkConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    using Position = From<rtc::WatermarkPosition>;
    held.visible_in_preview = reader.boolean(value, "visible_in_preview");
    Position::read(reader, reader.get(value, "position_in_landscape_mode"), held.position_in_landscape_mode);
    Position::read(reader, reader.get(value, "position_in_portrait_mode"), held.position_in_portrait_mode);
  }
};

}  // namespace corvane
