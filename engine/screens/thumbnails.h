// Small pictures of what can be shared, and windows' icons.
#pragma once

#include <cstdint>

#include "corvane_rtc/video_frame.h"
#include "screens/x_connection.h"
#include "screens/x_images.h"

namespace corvane::rtc {

/// What a source shows now, in ARGB, no larger than asked and in its own proportions. A size of 0 follows the other;
/// where both are 0 there is a bound nevertheless. Null when the source is not to be seen, or is gone.
IVideoFrame* makeThumbnail(const XConnection& x, XImages& images, int32_t type, int64_t id, int32_t max_width,
                           int32_t max_height);

/// The same of a window's icon. Null when it has none.
IVideoFrame* makeWindowIcon(const XConnection& x, int64_t id, int32_t max_width, int32_t max_height);

}  // namespace corvane::rtc
