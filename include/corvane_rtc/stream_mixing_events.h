// What mixing and pushing tasks report, and the mixed media that comes back from them.
#pragma once

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/common.h"
#include "corvane_rtc/video_frame.h"

namespace corvane::rtc {

/// What happened to a mixing task.
enum StreamMixingEvent : int32_t {
  kStreamMixingEventStart = 1,
  kStreamMixingEventStartSuccess = 2,
  kStreamMixingEventStartFailed = 3,
  kStreamMixingEventUpdate = 4,
  kStreamMixingEventUpdateSuccess = 5,
  kStreamMixingEventUpdateFailed = 6,
  kStreamMixingEventStop = 7,
  kStreamMixingEventStopSuccess = 8,
  kStreamMixingEventStopFailed = 9,
  kStreamMixingEventFirstAudioFrame = 10,
  kStreamMixingEventFirstVideoFrame = 11,
  kStreamMixingEventMixTypeChanged = 12,  ///< the service took over from the client, or the other way round
};

enum StreamMixingError : int32_t {
  kStreamMixingErrorOk = 0,
  kStreamMixingErrorInvalidParameter = 1,
  kStreamMixingErrorInvalidState = 2,
  kStreamMixingErrorNotFound = 3,
  kStreamMixingErrorNotSupported = 4,
  kStreamMixingErrorServiceFailed = 5,
  kStreamMixingErrorClientFailed = 6,
  kStreamMixingErrorPushFailed = 7,  ///< the address does not take the stream
  kStreamMixingErrorTimeout = 8,
};

enum DataFrameType : int32_t {
  kDataFrameTypeSEI = 0,
};

/// Data that belongs to one moment of a mixed stream.
class IDataFrame {
 public:
  virtual int32_t frameType() const = 0;    ///< DataFrameType
  virtual const uint8_t* data() const = 0;  ///< not terminated
  virtual int32_t dataSize() const = 0;     ///< bytes
  virtual int64_t timestampUs() const = 0;  ///< microseconds on the engine's clock

 protected:
  ~IDataFrame() = default;
};

/// Observer of mixing tasks, given to the operations that start them. task_id: what the task was started with.
///
/// Threads: called on threads of the library, frames on its media threads; calls for one task and one kind come one
/// after the other. A callback returns soon and calls no engine operation.
/// Lifetime: texts, audio frames and data frames are valid during the callback only; video frames are handed over.
/// The observer lives until destroyRTCVideo() has returned; nothing is called afterwards.
class ITranscodingObserver {
 public:
  /// Of tasks started with startLiveTranscoding(). StreamMixingEvent, StreamMixingError, StreamMixType.
  virtual void onStreamMixingEvent([[maybe_unused]] int32_t event, [[maybe_unused]] const char* task_id,
                                   [[maybe_unused]] int32_t error, [[maybe_unused]] int32_t mix_type) {}
  /// Of tasks started with startPushMixedStreamToCDN(). StreamMixingEvent, StreamMixingError, StreamMixType.
  virtual void onMixingEvent([[maybe_unused]] int32_t event, [[maybe_unused]] const char* task_id,
                             [[maybe_unused]] int32_t error, [[maybe_unused]] int32_t mix_type) {}

  // Media mixed by this client, for tasks that ask for it.

  virtual void onMixingAudioFrame([[maybe_unused]] const char* task_id,
                                  [[maybe_unused]] const IAudioFrame* audio_frame) {}
  /// The observer takes the frame over and releases it exactly once, during the call or later, from any thread.
  virtual void onMixingVideoFrame([[maybe_unused]] const char* task_id, IVideoFrame* video_frame) {
    if (video_frame != nullptr) {
      video_frame->release();
    }
  }
  virtual void onMixingDataFrame([[maybe_unused]] const char* task_id, [[maybe_unused]] const IDataFrame* data_frame) {}

 protected:
  ~ITranscodingObserver() = default;
};

/// What happened to the pushing of one single stream.
enum SingleStreamPushEvent : int32_t {
  kSingleStreamPushEventStart = 1,
  kSingleStreamPushEventStartSuccess = 2,
  kSingleStreamPushEventStartFailed = 3,
  kSingleStreamPushEventStop = 4,
  kSingleStreamPushEventStopSuccess = 5,
  kSingleStreamPushEventStopFailed = 6,
  kSingleStreamPushEventInterrupted = 7,
};

/// Observer of startPushSingleStreamToCDN(). Threads and lifetimes as for ITranscodingObserver.
class IPushSingleStreamToCDNObserver {
 public:
  /// event: SingleStreamPushEvent, error: StreamMixingError.
  virtual void onStreamPushEvent([[maybe_unused]] int32_t event, [[maybe_unused]] const char* task_id,
                                 [[maybe_unused]] int32_t error) {}

 protected:
  ~IPushSingleStreamToCDNObserver() = default;
};

}  // namespace corvane::rtc
