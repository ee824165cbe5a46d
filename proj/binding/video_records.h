// How the records of video capture and encoding cross over from JavaScript objects: fields in the order of the record.
#pragma once

#include "binding/from.h"
#include "corvane_rtc/video_config.h"

namespace corvane {

/// {"width", "height", "frame_rate", "max_bitrate", "min_bitrate", "encoder_preference"}
template <>
struct From<rtc::VideoEncoderConfig> : FlatRecord<rtc::VideoEncoderConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.width = reader.int32(value, "width");
    held.height = reader.int32(value, "height");
    held.frame_rate = reader.int32(value, "frame_rate");
    held.max_bitrate = reader.int32(value, "max_bitrate");
    held.min_bitrate = reader.int32(value, "min_bitrate");
    held.encoder_preference = reader.int32(value, "encoder_preference");
  }
};

/// {"capture_preference", "frame_rate", "height", "width"}
template <>
struct From<rtc::VideoCaptureConfig> : FlatRecord<rtc::VideoCaptureConfig> {
  static void read(Reader& reader, napi_value value, Held& held) {
    held.capture_preference = reader.int32(value, "capture_preference");
    held.frame_rate = reader.int32(value, "frame_rate");
    held.height = reader.int32(value, "height");
    held.width = reader.int32(value, "width");
  }
};

}  // namespace corvane
