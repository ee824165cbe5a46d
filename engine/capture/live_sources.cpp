#include "capture/live_sources.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

namespace corvane::rtc {

GstClockTime LiveSource::timeOf(const GstBuffer* picture, const GstSegment& segment) {
  const GstClockTime running = gst_segment_to_running_time(&segment, GST_FORMAT_TIME, GST_BUFFER_PTS(picture));
  if (!GST_CLOCK_TIME_IS_VALID(running)) return clockNow();
  return gst_element_get_base_time(end()) + running;
}

void LiveSource::onEnd() {
  fail({kDeviceFailure, kMediaDeviceErrorFailure, "the camera has ended its pictures"});
}

TestSource::TestSource(EngineContext& context, PictureQueue& queue, Listener& listener, TestCamera camera)
    : LiveSource(context, queue, listener), camera_(std::move(camera)) {}

std::optional<CaptureFault> TestSource::build() {
  GstElement* generator = pipeline().add("videotestsrc", "test-camera");
  if (generator == nullptr) return std::nullopt;
  g_object_set(generator, "is-live", TRUE, nullptr);
  gst_util_set_object_arg(G_OBJECT(generator), "pattern", camera_.pattern.c_str());
  // The colour space is the one in which pictures leave the capture, so that nothing has to be converted.
  const GstPtr<GstCaps> caps(gst_caps_new_simple(
      "video/x-raw", "format", G_TYPE_STRING, "I420", "width", G_TYPE_INT, camera_.width, "height", G_TYPE_INT,
      camera_.height, "framerate", GST_TYPE_FRACTION, camera_.fps, 1, "colorimetry", G_TYPE_STRING, "bt601", nullptr));
  gst_element_link_filtered(generator, end(), caps.get());
  return std::nullopt;
}

DeviceSource::DeviceSource(EngineContext& context, PictureQueue& queue, Listener& listener, std::string device_file,
                           GstPtr<GstCaps> formats, const PictureShape& wanted)
    : LiveSource(context, queue, listener),
      device_file_(std::move(device_file)),
      format_(formats != nullptr ? chooseCameraFormat(formats.get(), wanted) : nullptr) {}

std::optional<CaptureFault> DeviceSource::build() {
  if (access(device_file_.c_str(), R_OK | W_OK) != 0) return fileFault(device_file_, errno);
  GstElement* device = pipeline().add("v4l2src", "camera-device");
  if (device == nullptr) return std::nullopt;
  g_object_set(device, "device", device_file_.c_str(), nullptr);

  const bool is_jpeg =
      format_ != nullptr &&
      std::string_view(gst_structure_get_name(gst_caps_get_structure(format_.get(), 0))) == "image/jpeg";
  GstElement* next = is_jpeg ? pipeline().add("jpegdec", "camera-jpeg") : end();
  if (next == nullptr) return std::nullopt;
  if (is_jpeg) gst_element_link(next, end());
  // Raw pictures are all that the end takes where the device's formats are not known.
  const GstPtr<GstCaps> any_raw(gst_caps_new_empty_simple("video/x-raw"));
  gst_element_link_filtered(device, next, format_ != nullptr ? format_.get() : any_raw.get());
  return std::nullopt;
}

CaptureFault DeviceSource::refine(CaptureFault fault) const {
  if (delivered() > 0 && access(device_file_.c_str(), F_OK) != 0) {
    fault.device_error = kMediaDeviceErrorDisconnected;
  }
  return fault;
}

}  // namespace corvane::rtc
