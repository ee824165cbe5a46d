#include "support/clips.h"

#include <gst/app/app.h>
#include <gst/gst.h>
#include <gst/video/video.h>

#include <cstdlib>
#include <cstring>
#include <system_error>

namespace corvane::test {

namespace {

// Waits for the end of a playing pipeline and takes it down.
bool finish(GstElement* pipeline) {
  GstBus* bus = gst_element_get_bus(pipeline);
  const auto wanted = static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
  GstMessage* message = gst_bus_timed_pop_filtered(bus, 30 * GST_SECOND, wanted);
  const bool ended = message != nullptr && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
  if (message != nullptr) gst_message_unref(message);
  gst_object_unref(bus);
  gst_element_set_state(pipeline, GST_STATE_NULL);
  gst_object_unref(pipeline);
  return ended;
}

GstElement* play(const std::string& description) {
  gst_init(nullptr, nullptr);
  GstElement* pipeline = gst_parse_launch(description.c_str(), nullptr);
  if (pipeline != nullptr) gst_element_set_state(pipeline, GST_STATE_PLAYING);
  return pipeline;
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "corvane-engine-test-XXXXXX";
  path_ = mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

bool makeClip(const ClipRecipe& recipe, const std::string& path) {
  const std::string caps = "video/x-raw,format=" + recipe.format + ",width=" + std::to_string(recipe.width) +
                           ",height=" + std::to_string(recipe.height) + ",framerate=" + std::to_string(recipe.fps) +
                           "/1,colorimetry=bt601";
  GstElement* pipeline =
      play("appsrc name=pictures format=time caps=" + caps + " ! " + recipe.encoder + " ! filesink location=" + path);
  if (pipeline == nullptr) return false;
  GstElement* source = gst_bin_get_by_name(GST_BIN(pipeline), "pictures");

  GstVideoInfo info;
  GstCaps* parsed = gst_caps_from_string(caps.c_str());
  gst_video_info_from_caps(&info, parsed);
  gst_caps_unref(parsed);
  const auto luma_bytes = static_cast<size_t>(GST_VIDEO_INFO_PLANE_STRIDE(&info, 0) * recipe.height);
  for (int32_t index = 0; index < recipe.pictures; ++index) {
    GstBuffer* picture = gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&info), nullptr);
    gst_buffer_memset(picture, 0, 128, GST_VIDEO_INFO_SIZE(&info));
    gst_buffer_memset(picture, 0, static_cast<guint8>(kDarkestGrey + index * kGreyStep), luma_bytes);
    GST_BUFFER_PTS(picture) = static_cast<GstClockTime>(index) * GST_SECOND / static_cast<GstClockTime>(recipe.fps);
    GST_BUFFER_DURATION(picture) = GST_SECOND / static_cast<GstClockTime>(recipe.fps);
    gst_app_src_push_buffer(GST_APP_SRC(source), picture);
  }
  gst_app_src_end_of_stream(GST_APP_SRC(source));
  gst_object_unref(source);
  return finish(pipeline);
}

bool runPipeline(const std::string& description) {
  GstElement* pipeline = play(description);
  return pipeline != nullptr && finish(pipeline);
}

}  // namespace corvane::test
