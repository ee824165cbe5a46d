// Which of a camera's formats to open it with.
#pragma once

#include <cstdint>

#include "core/gst_pointers.h"

namespace corvane::rtc {

/// What is wanted of a camera. 0 leaves a value to the choice.
struct PictureShape {
  int32_t width = 0;       ///< pixels
  int32_t height = 0;      ///< pixels
  int32_t frame_rate = 0;  ///< frames a second

  bool operator==(const PictureShape&) const = default;
};

/// The format, of those a camera offers, that costs least to turn into what is wanted: large enough, fast enough, as
/// little beyond that as can be, and uncompressed rather than JPEG. Where nothing is wanted, 1280x720 at 30.
/// Null when nothing offered can be used.
GstPtr<GstCaps> chooseCameraFormat(const GstCaps* offered, const PictureShape& wanted);

}  // namespace corvane::rtc
