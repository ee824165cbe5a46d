// Records and constants of messages and of data that travels inside streams.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// How a message to one user travels.
enum MessageConfig : int32_t {
  kMessageConfigReliableOrdered = 0,
  kMessageConfigUnreliableOrdered = 1,
  kMessageConfigUnreliableUnordered = 2,
};

/// How many messages one video frame may carry.
enum SEICountPerFrame : int32_t {
  kSEICountPerFrameSingle = 0,    ///< a newer message replaces one that has not been sent yet
  kSEICountPerFrameMultiple = 1,  ///< messages queue up in the next frame
};

enum SyncInfoStreamType : int32_t {
  kSyncInfoStreamTypeAudio = 0,
};

/// How sendStreamSyncInfo() sends its data.
struct StreamSyncInfoConfig {
  int32_t stream_index;  ///< StreamIndex
  int32_t repeat_count;  ///< further packets that carry it, 0 to 25
  int32_t stream_type;   ///< SyncInfoStreamType
};

}  // namespace corvane::rtc
