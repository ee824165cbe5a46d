// The pixels of an I420 frame on their way to JavaScript.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "corvane_rtc/video_frame.h"

namespace corvane {

/// Copies `size` bytes; the areas must not overlap.
void copyBytes(uint8_t* to, const uint8_t* from, size_t size);

/// Three planes, of the engine's frame or of a turned copy of it.
struct I420Planes {
  const uint8_t* data[3] = {};
  int32_t stride[3] = {};  ///< bytes from row to row
  size_t size[3] = {};     ///< bytes that are delivered
  int32_t width = 0;       ///< pixels
  int32_t height = 0;      ///< pixels
  int32_t rotation = 0;    ///< degrees clockwise still to be applied
  /// Bytes between the end of Y and the start of U, and between the end of U and the start of V, in the engine's frame.
  int64_t offset_y = 0;
  int64_t offset_u = 0;

  bool complete() const;
  size_t packedSize() const { return size[0] + size[1] + size[2]; }
  /// Length of the area from the start of Y to the end of V, gaps included.
  size_t spanSize() const;

  /// Writes the planes back to back; `to` has packedSize() bytes.
  void pack(uint8_t* to) const;
  /// Writes the planes as they lie in spanSize() bytes, gaps as zeros.
  void copySpan(uint8_t* to) const;
};

/// Reads planes, strides and gaps from an engine frame; incomplete for a frame that is not I420 in memory.
I420Planes readPlanes(const rtc::IVideoFrame& frame);

/// Turns the planes upright when their rotation is 90, 180 or 270, into memory that the result owns.
std::unique_ptr<uint8_t[]> rotateUpright(I420Planes& planes);

}  // namespace corvane
