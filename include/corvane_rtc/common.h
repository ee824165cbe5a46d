// Records and constants that several domains of the engine share.
//
// Conventions of all headers in this folder:
// - Text is UTF-8 in zero-terminated `const char*`. A pointer handed to an operation is read during the
//   call only; a pointer handed to a handler is valid during the callback only. Null text means "".
// - Enumerations travel as int32_t so that a library may add values without breaking its callers.
// - Unless an operation says otherwise its int32_t result is a ReturnStatus: 0 on success.
// - Interfaces are never deleted through their pointers; what a caller must give back has a release().
#pragma once

#include <cstdint>

namespace corvane::rtc {

/// Results of engine operations. Negative values are failures.
enum ReturnStatus : int32_t {
  kSuccess = 0,
  kFailure = -1,
  kInvalidParameter = -2,
  kWrongState = -3,
  kNotFound = -4,
  kDeviceFailure = -5,
  kMediaFailure = -6,
  /// The library does not offer the operation; nothing was changed.
  kNotSupported = -1001,
};

/// Which of a user's two streams is meant.
enum StreamIndex : int32_t {
  kStreamIndexMain = 0,    ///< camera and microphone
  kStreamIndexScreen = 1,  ///< screen picture and screen sound
};

/// Bit mask of the media in a stream.
enum MediaStreamType : int32_t {
  kMediaStreamAudio = 1,
  kMediaStreamVideo = 2,
  kMediaStreamBoth = 3,
};

/// Names one stream of one user in one room.
struct StreamKey {
  const char* room_id;
  const char* user_id;
  int32_t stream_index;  ///< StreamIndex
};

/// Picture geometry. Width and height in pixels, rotation in degrees clockwise (0, 90, 180, 270).
struct VideoFrameInfo {
  int32_t width;
  int32_t height;
  int32_t rotation;
};

/// A rectangle in pixels.
struct Rectangle {
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
};

}  // namespace corvane::rtc
