// Reports of recordings to files. What is recorded is chosen with the records of recording.h.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// States of a recording of a stream and of a recording of sound alone.
enum RecordingState : int32_t {
  kRecordingStateError = 0,  ///< the error code tells why; what was written stays
  kRecordingStateProcessing = 1,
  kRecordingStateSuccess = 2,  ///< the file is complete and closed
};

enum RecordingErrorCode : int32_t {
  kRecordingErrorOk = 0,
  kRecordingErrorNoPermission = -1,
  kRecordingErrorNotSupported = -2,
  kRecordingErrorOther = -3,
};

/// Video codec in a file or a stream.
enum VideoCodecType : int32_t {
  kVideoCodecTypeUnknown = 0,
  kVideoCodecTypeH264 = 1,
  kVideoCodecTypeVP8 = 2,
  kVideoCodecTypeVP9 = 3,
  kVideoCodecTypeH265 = 4,
  kVideoCodecTypeAV1 = 5,
};

/// The file being written.
struct RecordingInfo {
  const char* file_path;     ///< absolute
  int32_t video_codec_type;  ///< VideoCodecType; unknown without video
  int32_t width;             ///< pixels; 0 without video
  int32_t height;            ///< pixels; 0 without video
};

/// How far a recording is.
struct RecordingProgress {
  int32_t duration;   ///< milliseconds
  int64_t file_size;  ///< bytes
};

}  // namespace corvane::rtc
