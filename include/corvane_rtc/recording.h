// Records and constants of recording to files.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

enum RecordingFileType : int32_t {
  kRecordingFileTypeAAC = 0,
  kRecordingFileTypeMP4 = 1,
};

/// Which media startFileRecording() writes.
enum RecordingType : int32_t {
  kRecordingTypeAudioOnly = 0,
  kRecordingTypeVideoOnly = 1,
  kRecordingTypeVideoAndAudio = 2,
};

/// Where and how a stream is recorded. The library chooses the file's name and reports it.
struct RecordingConfig {
  const char* dir_path;  ///< an existing folder
  int32_t file_type;     ///< RecordingFileType
};

/// Which sound startAudioRecording() writes.
enum AudioRecordingSource : int32_t {
  kAudioRecordingSourceMicrophone = 0,
  kAudioRecordingSourcePlayback = 1,
  kAudioRecordingSourceMixed = 2,
};

/// Bitrate of compressed recordings, in rising order.
enum AudioRecordingQuality : int32_t {
  kAudioRecordingQualityLow = 0,
  kAudioRecordingQualityMedium = 1,
  kAudioRecordingQualityHigh = 2,
  kAudioRecordingQualityUltraHigh = 3,
};

/// Recording of sound alone.
struct AudioRecordingConfig {
  const char* absolute_file_name;  ///< ends in .wav or .aac, which chooses the format
  int32_t frame_source;            ///< AudioRecordingSource
  int32_t sample_rate;             ///< samples a second; 0 for the library's choice
  int32_t channel;                 ///< 1 or 2; 0 for the library's choice
  int32_t quality;                 ///< AudioRecordingQuality
};

}  // namespace corvane::rtc
