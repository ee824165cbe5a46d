// Video capture and encoding.
#include <vector>

#include "binding/lists.h"
#include "binding/records.h"
#include "binding/video_records.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"
#include "video/transporter.h"

namespace corvane {
namespace {

void setVideoEncoderConfig(Call& call) {
  Reader reader(call.env);
  const auto count = listLength(call, reader, call[0], call.row.refusals[0]);
  if (!count.has_value()) return;
  if (*count == 0) {
    call.say(kLogWarning, "%s(%d), ProfileCount is zero");
    return;
  }
  std::vector<rtc::VideoEncoderConfig> layers(*count);
  for (uint32_t i = 0; i < *count; ++i) {
    From<rtc::VideoEncoderConfig>::read(reader, reader.at(call[0], i), layers[i]);
  }
  call.result = engineOf(call).setVideoEncoderConfig(layers.data(), static_cast<int32_t>(*count));
}

void setScreenVideoEncoderConfig(Call& call) {
  Reader reader(call.env);
  const Argument<rtc::VideoEncoderConfig> screen(reader, call[0]);
  const rtc::VideoEncoderConfig& solution = *screen;
  call.say(kLogInfo,
           "%s(%d) width: %d, heght: %d, frame_rate: %d, max_bitrate: %d, min_bitrate: %d, encoder_preference: %d",
           solution.width, solution.height, solution.frame_rate, solution.max_bitrate, solution.min_bitrate,
           solution.encoder_preference);
  KavRTCTransporter::instance().setVideoRenderFps(call.row.name, solution.frame_rate);
  call.result = engineOf(call).setScreenVideoEncoderConfig(solution);
}

void setVideoCaptureConfig(Call& call) {
  Reader reader(call.env);
  const Argument<rtc::VideoCaptureConfig> config(reader, call[0]);
  KavRTCTransporter::instance().setVideoRenderFps(call.row.name, (*config).frame_rate);
  call.result = engineOf(call).setVideoCaptureConfig(*config);
}

constexpr char kParamIsNotValid[] = "%s(%d) param is not valid";

constexpr Row kRows[] = {
    plain<&rtc::IRTCVideo::startVideoCapture>("startVideoCapture"),
    plain<&rtc::IRTCVideo::stopVideoCapture>("stopVideoCapture"),
    special("setVideoCaptureConfig", &setVideoCaptureConfig, {Kind::kObject}).refuses(kParamIsNotValid),
    plain<&rtc::IRTCVideo::setVideoCaptureRotation>("setVideoCaptureRotation").refuses(kParamIsNotValid),
    plain<&rtc::IRTCVideo::setDummyCaptureImagePath>("setDummyCaptureImagePath").refuses(kParamIsNotValid),
    plain<&rtc::IRTCVideo::setLocalVideoMirrorType>("setLocalVideoMirrorType"),
    plain<&rtc::IRTCVideo::setLowLightAdjusted>("setLowLightAdjusted"),

    special("setVideoEncoderConfig", &setVideoEncoderConfig, {Kind::kArray}).refuses("Param Invalid: %s(%d)\n"),
    plain<&rtc::IRTCVideo::setMaxVideoEncoderConfig>("setMaxVideoEncoderConfig").refuses(kParamIsNotValid),
    special("setScreenVideoEncoderConfig", &setScreenVideoEncoderConfig, {Kind::kObject})
        .refuses("%s(%d) param is not valid, screen_solution"),
    plain<&rtc::IRTCVideo::enableSimulcastMode>("enableSimulcastMode"),
    plain<&rtc::IRTCVideo::enableAlphaChannelVideoEncode>("enableAlphaChannelVideoEncode"),
    plain<&rtc::IRTCVideo::disableAlphaChannelVideoEncode>("disableAlphaChannelVideoEncode"),
    plain<&rtc::IRTCVideo::setRemoteVideoSuperResolution>("setRemoteVideoSuperResolution"),
};

}  // namespace

std::span<const Row> captureRows() {
  return kRows;
}

}  // namespace corvane
