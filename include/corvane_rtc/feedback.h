// What a user can report about the quality of a call.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Bits of IRTCVideo::feedback()'s mask. Bits not named here are the application's.
enum ProblemType : uint64_t {
  kProblemOther = 1ULL << 0,
  kProblemDisconnected = 1ULL << 1,
  kProblemAudioLag = 1ULL << 2,
  kProblemAudioNoise = 1ULL << 3,
  kProblemAudioEcho = 1ULL << 4,
  kProblemNoSound = 1ULL << 5,
  kProblemVideoLag = 1ULL << 6,
  kProblemVideoQuality = 1ULL << 7,
  kProblemNoPicture = 1ULL << 8,
};

/// One room and the user's id in it.
struct FeedbackRoomInfo {
  const char* room_id;
  const char* user_id;
};

struct FeedbackInfo {
  const char* problem_desc;  ///< the user's own words
  const FeedbackRoomInfo* room_info;
  int32_t room_info_count;
};

}  // namespace corvane::rtc
