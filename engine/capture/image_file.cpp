#include "capture/image_file.h"

#include <gst/app/app.h>
#include <gst/base/gsttypefindhelper.h>
#include <gst/video/video.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "capture/capture_fault.h"
#include "capture/pipeline.h"
#include "core/gstreamer.h"
#include "corvane_rtc/common.h"

namespace corvane::rtc {

namespace {

constexpr uintmax_t kMaxFileBytes = uintmax_t{64} << 20;
constexpr int32_t kMaxSide = 8192;
constexpr GstClockTime kPatience = 10 * GST_SECOND;

struct Kind {
  const char* caps_name;
  const char* decoder;
};

constexpr Kind kKinds[] = {{"image/png", "pngdec"}, {"image/jpeg", "jpegdec"}};

bool readFile(const std::string& path, std::vector<char>& bytes, int32_t& status, std::string& problem) {
  std::error_code error;
  const std::filesystem::file_status file = std::filesystem::status(path, error);
  if (!std::filesystem::exists(file)) {
    status = kNotFound;
    problem = error ? error.message() : "there is no such file";
    return false;
  }
  const uintmax_t size = std::filesystem::is_regular_file(file) ? std::filesystem::file_size(path, error) : 0;
  if (error || size == 0 || size > kMaxFileBytes) {
    status = kInvalidParameter;
    problem = "it is no file of 1 byte to 64 MB";
    return false;
  }
  bytes.resize(size);
  std::ifstream stream(path, std::ios::binary);
  if (!stream.read(bytes.data(), static_cast<std::streamsize>(size))) {
    status = kNotFound;
    problem = std::generic_category().message(errno);
    return false;
  }
  return true;
}

// A PNG file tells its size in the first block, behind the signature.
bool readPngSize(const std::vector<char>& bytes, int32_t& width, int32_t& height) {
  constexpr size_t kWidthAt = 16;
  constexpr size_t kHeightAt = 20;
  if (bytes.size() < kHeightAt + 4) return false;
  const auto* data = reinterpret_cast<const guint8*>(bytes.data());
  width = static_cast<int32_t>(std::min<guint32>(GST_READ_UINT32_BE(data + kWidthAt), G_MAXINT32));
  height = static_cast<int32_t>(std::min<guint32>(GST_READ_UINT32_BE(data + kHeightAt), G_MAXINT32));
  return true;
}

// What the bytes are and how to decode them; null, with a reason, when they are nothing that is taken. The size is
// looked at before anything is decoded: a few bytes can stand for a picture that fills the memory.
const Kind* recognise(const std::vector<char>& bytes, GstPtr<GstCaps>& caps, std::string& problem) {
  caps.reset(
      gst_type_find_helper_for_data(nullptr, reinterpret_cast<const guint8*>(bytes.data()), bytes.size(), nullptr));
  const GstStructure* found = caps != nullptr ? gst_caps_get_structure(caps.get(), 0) : nullptr;
  const auto* const kind = std::find_if(std::begin(kKinds), std::end(kKinds), [found](const Kind& each) {
    return found != nullptr && gst_structure_has_name(found, each.caps_name);
  });
  if (kind == std::end(kKinds)) {
    problem = "it is neither PNG nor JPEG";
    return nullptr;
  }
  int32_t width = 0;
  int32_t height = 0;
  const bool has_size = kind == &kKinds[0] ? readPngSize(bytes, width, height)
                                           : gst_structure_get_int(found, "width", &width) &&
                                                 gst_structure_get_int(found, "height", &height);
  if (has_size && width > 0 && height > 0 && width <= kMaxSide && height <= kMaxSide) return kind;
  problem = "its size is not known or above 8192 pixels a side";
  return nullptr;
}

// The pixels of a decoded sample, without padding between rows.
bool copyPixels(GstSample* sample, Image& image) {
  GstVideoInfo info;
  if (sample == nullptr || !gst_video_info_from_caps(&info, gst_sample_get_caps(sample))) return false;
  GstVideoFrame frame;
  if (!gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ)) return false;
  image.width = GST_VIDEO_FRAME_WIDTH(&frame);
  image.height = GST_VIDEO_FRAME_HEIGHT(&frame);
  const size_t row_bytes = static_cast<size_t>(image.width) * 4;
  image.pixels.resize(row_bytes * static_cast<size_t>(image.height));
  for (int32_t row = 0; row < image.height; ++row) {
    const auto* from = static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)) +
                       static_cast<ptrdiff_t>(row) * GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0);
    std::copy_n(from, row_bytes, image.pixels.data() + static_cast<size_t>(row) * row_bytes);
  }
  gst_video_frame_unmap(&frame);
  return true;
}

bool decode(const std::vector<char>& bytes, const Kind& kind, const GstCaps* caps, Image& image, std::string& problem) {
  Pipeline pipeline("image");
  GstElement* source = pipeline.add("appsrc", "file");
  GstElement* decoder = pipeline.add(kind.decoder, "decoder");
  GstElement* convert = pipeline.add("videoconvert", "convert");
  GstElement* sink = pipeline.add("appsink", "pixels");
  if (!pipeline.missing().empty()) {
    problem = "GStreamer's element " + pipeline.missing() + " is not installed";
    return false;
  }
  const GstPtr<GstCaps> rgba(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "RGBA", nullptr));
  gst_app_sink_set_caps(GST_APP_SINK(sink), rgba.get());
  g_object_set(sink, "sync", FALSE, nullptr);
  gst_app_src_set_caps(GST_APP_SRC(source), caps);
  gst_element_link_many(source, decoder, convert, sink, nullptr);
  // The bytes outlive the pipeline, and with it the buffer.
  gst_app_src_push_buffer(GST_APP_SRC(source),
                          gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, const_cast<char*>(bytes.data()),
                                                      bytes.size(), 0, bytes.size(), nullptr, nullptr));
  gst_app_src_end_of_stream(GST_APP_SRC(source));
  bool decoded = false;
  if (pipeline.play()) {
    const GstPtr<GstSample> sample(gst_app_sink_try_pull_sample(GST_APP_SINK(sink), kPatience));
    decoded = copyPixels(sample.get(), image);
  }
  if (decoded) return true;
  const GstPtr<GstMessage> message(gst_bus_pop_filtered(pipeline.bus().get(), GST_MESSAGE_ERROR));
  problem = message != nullptr ? readFault(message.get()).text : "there is no picture in it";
  return false;
}

}  // namespace

int32_t loadImage(const std::string& path, Image& image, std::string& problem) {
  if (!startGStreamer(problem)) return kMediaFailure;
  std::vector<char> bytes;
  int32_t status = kSuccess;
  if (!readFile(path, bytes, status, problem)) return status;
  GstPtr<GstCaps> caps;
  const Kind* kind = recognise(bytes, caps, problem);
  if (kind == nullptr) return kInvalidParameter;
  return decode(bytes, *kind, caps.get(), image, problem) ? kSuccess : kMediaFailure;
}

}  // namespace corvane::rtc
