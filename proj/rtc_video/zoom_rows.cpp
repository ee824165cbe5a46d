// Digital zoom of the camera's picture.
#include <algorithm>
#include <cmath>
#include <limits>

#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

// The line prints the size without its fraction; what no integer can show becomes the nearest that can.
int32_t wholeOf(double number) {
  if (std::isnan(number)) return 0;
  using Limits = std::numeric_limits<int32_t>;
  return static_cast<int32_t>(std::clamp<double>(number, Limits::min(), Limits::max()));
}

void setVideoDigitalZoomConfig(Call& call) {
  Reader reader(call.env);
  const int32_t type = reader.int32(call[0]);
  const double size = reader.number(call[1]);
  call.say(kLogInfo, "%s(%d) type: %d, size: %d", type, wholeOf(size));
  call.result = engineOf(call).setVideoDigitalZoomConfig(type, size);
}

constexpr char kNotDirection[] = "%s(%d), Param is invalid, ZoomDirectionType";

constexpr Row kRows[] = {
    special("setVideoDigitalZoomConfig", &setVideoDigitalZoomConfig, {Kind::kNumber, Kind::kNumber})
        .refuses(0, "%s(%d), Param is invalid, ZoomConfigType")
        .refuses(1, "%s(%d), Param is invalid, size"),
    plain<&rtc::IRTCVideo::setVideoDigitalZoomControl>("setVideoDigitalZoomControl").refuses(kNotDirection),
    plain<&rtc::IRTCVideo::startVideoDigitalZoomControl>("startVideoDigitalZoomControl").refuses(kNotDirection),
    plain<&rtc::IRTCVideo::stopVideoDigitalZoomControl>("stopVideoDigitalZoomControl"),
};

}  // namespace

std::span<const Row> zoomRows() {
  return kRows;
}

}  // namespace corvane
