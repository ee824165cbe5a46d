// The library's C entry points.
#pragma once

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/common.h"
#include "corvane_rtc/export.h"
#include "corvane_rtc/video_frame.h"

namespace corvane::rtc {

class IMixedStreamConfig;
class IPublicStreamParam;
class IRTCVideo;
class IRTCVideoEventHandler;
class ITranscoderParam;

enum LogLevel : int32_t {
  kLogLevelTrace = -1,
  kLogLevelInfo = 0,
  kLogLevelWarning = 1,
  kLogLevelError = 2,
  kLogLevelNone = 3,
};

/// Where and how much the library logs.
struct LogConfig {
  const char* log_path;             ///< an existing folder
  int32_t log_level;                ///< LogLevel
  int32_t log_file_size;            ///< MB that all log files together may take, 1 to 100
  const char* log_filename_prefix;  ///< letters, digits, '-' and '_'; "" for none
};

extern "C" {

/// Makes the engine. `parameters` is a JSON object of library-specific settings, or "". `handler` may be null,
/// stays the caller's and must live until destroyRTCVideo() returns. Null on failure. A second engine beside a
/// living one is another object; destroyRTCVideo() ends both. One thread at a time.
CORVANE_RTC_API IRTCVideo* createRTCVideo(const char* app_id, IRTCVideoEventHandler* handler, const char* parameters);

/// Ends the engine and returns when no callback is running or will come. Not from inside a callback. Managers and
/// players are gone afterwards; rooms stay valid until their own destroy() and answer kWrongState. Without an
/// engine nothing happens.
CORVANE_RTC_API void destroyRTCVideo();

/// Applies to engines made afterwards; a living engine keeps its log files. Any thread.
CORVANE_RTC_API int32_t setLogConfig(const LogConfig& log_config);

/// Three numbers and an optional suffix ("1.2.3-name"). Lives as long as the library. Any thread.
CORVANE_RTC_API const char* getSDKVersion();

/// One English sentence about a ReturnStatus or an event's error code; never null, "" for an unknown code.
/// Lives as long as the library. Any thread.
CORVANE_RTC_API const char* getErrorDescription(int32_t code);

/// A frame with copies of the builder's planes; the caller owns it. Null for a builder that is not valid. Any thread.
CORVANE_RTC_API IVideoFrame* buildVideoFrame(const VideoFrameBuilder& builder);

/// A frame over the builder's samples; the caller owns it. Null for a builder that is not valid. Any thread.
CORVANE_RTC_API IAudioFrame* buildAudioFrame(const AudioFrameBuilder& builder);

/// Empty parameter objects; the caller owns them until their release(). Null on failure. Any thread.
CORVANE_RTC_API ITranscoderParam* createTranscoderParam();
CORVANE_RTC_API IMixedStreamConfig* createMixedStreamConfig();
CORVANE_RTC_API IPublicStreamParam* createPublicStreamParam();

}  // extern "C"

}  // namespace corvane::rtc
