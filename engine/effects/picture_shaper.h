// Changes of a picture's geometry: digital zoom, turning, mirroring.
#pragma once

#include <cstdint>

#include "media/picture.h"

namespace corvane::rtc {

/// What part of the upright picture is shown, enlarged to the whole.
struct ZoomArea {
  double factor = 1;      ///< 1 shows everything
  double centre_x = 0.5;  ///< shares of the picture's width and height
  double centre_y = 0.5;

  bool operator==(const ZoomArea&) const = default;
};

/// Each operation takes an I420 picture, passes over it once and leaves its time. False, with the picture as it was,
/// when there is no memory. One thread at a time.
class PictureShaper {
 public:
  /// `upright`: degrees clockwise that turn the picture upright.
  bool zoom(Picture& picture, const ZoomArea& area, int32_t upright);

  /// Turns the pixels clockwise by 0, 90, 180 or 270 degrees, then exchanges left and right of the picture that its
  /// rotation makes upright.
  bool turn(Picture& picture, int32_t degrees, bool mirror);

 private:
  PicturePool zoomed_;
  PicturePool turned_;
};

}  // namespace corvane::rtc
