// Video capture and encoding.
#include "binding/records.h"
#include "corvane_rtc/video_config.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"
#include "video/transporter.h"

namespace corvane {
namespace {

constexpr Row kRows[] = {
    plain<&rtc::IRTCVideo::startVideoCapture>("startVideoCapture"),
    plain<&rtc::IRTCVideo::stopVideoCapture>("stopVideoCapture"),
    plain<&rtc::IRTCVideo::setPlaybackVolume>("setPlaybackVolume"),
};

}  // namespace

std::span<const Row> captureRows() {
  return kRows;
}

}  // namespace corvane
