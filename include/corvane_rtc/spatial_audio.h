// Sound that comes from where its user is.
#pragma once

#include "corvane_rtc/common.h"
#include "corvane_rtc/position.h"

namespace corvane::rtc {

/// A direction. The three of one HumanOrientation are of length 1 and at right angles to each other.
struct Orientation {
  float x;
  float y;
  float z;
};

/// Which way a head is turned.
struct HumanOrientation {
  Orientation forward;
  Orientation right;
  Orientation up;
};

/// Where a head is and which way it is turned.
struct PositionInfo {
  Position position;
  HumanOrientation orientation;
};

/// Spatial audio of one room; belongs to the room. Threads and errors as for IRTCRoom.
class ISpatialAudio {
 public:
  virtual int32_t enableSpatialAudio(bool enable) = 0;

  // Where the local user speaks from, as the others hear it.

  virtual int32_t updatePosition(const Position& position) = 0;
  virtual int32_t updateSelfOrientation(const HumanOrientation& orientation) = 0;
  virtual int32_t updateSelfPosition(const PositionInfo& info) = 0;  ///< both at once
  /// Voices are heard alike from before and behind their speakers.
  virtual int32_t disableRemoteOrientation() = 0;

  // Where the local user listens from. Without these it is where the user speaks from.

  virtual int32_t updateListenerPosition(const Position& position) = 0;
  virtual int32_t updateListenerOrientation(const HumanOrientation& orientation) = 0;

  // Where the others are for the local listener only; takes the place of what they report themselves.

  virtual int32_t updateRemotePosition(const char* uid, const PositionInfo& info) = 0;
  virtual int32_t removeRemotePosition(const char* uid) = 0;
  virtual int32_t removeAllRemotePosition() = 0;

 protected:
  ~ISpatialAudio() = default;
};

}  // namespace corvane::rtc
