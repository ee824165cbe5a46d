// How the records of recordings cross over from JavaScript objects: fields in the order of the record.
#pragma once

#include "binding/from.h"
#include "corvane_rtc/recording.h"

namespace corvane {

/// {"dir_path", "file_type"}
template <>
struct From<rtc::RecordingConfig> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  struct Held {
    Text dir_path;
    int32_t file_type = 0;
  };
  static void read(Reader& reader, napi_value value, Held& held) {
    reader.text(value, "dir_path", held.dir_path);
    held.file_type = reader.int32(value, "file_type");
  }
  static rtc::RecordingConfig pass(const Held& held) { return {held.dir_path.c_str(), held.file_type}; }
  static const void* said(const Held& held) { return &held; }
};

/// {"absolute_file_name", "frame_source", "sample_rate", "channel", "quality"}
template <>
struct From<rtc::AudioRecordingConfig> {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  struct Held {
    Text absolute_file_name;
    int32_t frame_source = 0;
    int32_t sample_rate = 0;
    int32_t channel = 0;
    int32_t quality = 0;
  };
  static void read(Reader& reader, napi_value value, Held& held) {
    reader.text(value, "absolute_file_name", held.absolute_file_name);
    held.frame_source = reader.int32(value, "frame_source");
    held.sample_rate = reader.int32(value, "sample_rate");
    held.channel = reader.int32(value, "channel");
    held.quality = reader.int32(value, "quality");
  }
  static rtc::AudioRecordingConfig pass(const Held& held) {
    return {held.absolute_file_name.c_str(), held.frame_source, held.sample_rate, held.channel, held.quality};
  }
  static const void* said(const Held& held) { return &held; }
};

}  // namespace corvane
