// Sound that fades with the distance between users.
#pragma once

#include "corvane_rtc/common.h"
#include "corvane_rtc/position.h"

namespace corvane::rtc {

/// Distances in the unit of positions, 0 <= min < max.
struct ReceiveRange {
  int32_t min;  ///< full volume up to here
  int32_t max;  ///< silent from here on
};

/// How sound fades between the two distances of a ReceiveRange.
enum AttenuationType : int32_t {
  kAttenuationTypeNone = 0,
  kAttenuationTypeLinear = 1,
  kAttenuationTypeExponential = 2,
};

/// Range audio of one room; belongs to the room. Threads and errors as for IRTCRoom.
class IRangeAudio {
 public:
  virtual int32_t enableRangeAudio(bool enable) = 0;
  virtual int32_t updateReceiveRange(const ReceiveRange& range) = 0;
  virtual int32_t updatePosition(const Position& position) = 0;  ///< of the local user
  /// type: AttenuationType; coefficient above 0, for the exponential model.
  virtual int32_t setAttenuationModel(int32_t type, float coefficient) = 0;
  /// Users who share a flag hear each other at full volume. `flags` holds `count` texts and replaces the list.
  virtual int32_t setNoAttenuationFlags(const char* const* flags, int32_t count) = 0;

 protected:
  ~IRangeAudio() = default;
};

}  // namespace corvane::rtc
