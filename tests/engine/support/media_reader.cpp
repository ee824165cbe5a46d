#include "support/media_reader.h"

#include <gst/app/app.h>
#include <gst/audio/audio.h>
#include <gst/video/video.h>

#include <algorithm>
#include <cmath>

namespace corvane::test {

namespace {

ReadPicture readPicture(GstSample* sample) {
  GstVideoInfo info;
  gst_video_info_from_caps(&info, gst_sample_get_caps(sample));
  GstBuffer* buffer = gst_sample_get_buffer(sample);
  GstVideoFrame frame;
  gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ);
  const auto* luma = static_cast<const uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0));
  const int32_t stride = GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0);
  const ReadPicture picture = {info.width, info.height, static_cast<int64_t>(GST_BUFFER_PTS(buffer) / GST_MSECOND),
                               luma[stride * (info.height / 2) + info.width / 2], luma[stride + 1]};
  gst_video_frame_unmap(&frame);
  return picture;
}

void appendSound(GstSample* sample, ReadMedia& media) {
  GstAudioInfo info;
  gst_audio_info_from_caps(&info, gst_sample_get_caps(sample));
  media.sample_rate = info.rate;
  media.channels = info.channels;
  GstMapInfo map;
  gst_buffer_map(gst_sample_get_buffer(sample), &map, GST_MAP_READ);
  const auto* samples = reinterpret_cast<const int16_t*>(map.data);
  media.samples.insert(media.samples.end(), samples, samples + map.size / sizeof(int16_t));
  gst_buffer_unmap(gst_sample_get_buffer(sample), &map);
}

GstFlowReturn pull(GstAppSink* sink, ReadMedia& media, bool is_picture) {
  GstSample* sample = gst_app_sink_pull_sample(sink);
  if (sample == nullptr) return GST_FLOW_EOS;
  if (is_picture) {
    media.pictures.push_back(readPicture(sample));
  } else {
    appendSound(sample, media);
  }
  gst_sample_unref(sample);
  return GST_FLOW_OK;
}

void receive(GstElement* pipeline, const char* name, GstAppSinkCallbacks callbacks, ReadMedia& media) {
  GstElement* sink = gst_bin_get_by_name(GST_BIN(pipeline), name);
  gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, &media, nullptr);
  gst_object_unref(sink);
}

}  // namespace

int64_t ReadMedia::soundMs() const {
  const int64_t samples_a_second = int64_t{sample_rate} * channels;
  return samples_a_second > 0 ? static_cast<int64_t>(samples.size()) * 1000 / samples_a_second : 0;
}

double ReadMedia::level(int64_t from_ms, int64_t to_ms) const {
  const auto at = [this](int64_t ms) {
    return std::min(samples.size(), static_cast<size_t>(ms * sample_rate / 1000 * channels));
  };
  double sum = 0;
  for (size_t index = at(from_ms); index < at(to_ms); ++index) sum += std::pow(samples[index] / 32768.0, 2);
  const auto count = static_cast<double>(at(to_ms) - at(from_ms));
  return sum > 0 ? 10 * std::log10(2 * sum / count) : -127;
}

ReadMedia readMedia(const std::string& path, bool picture, bool sound) {
  ReadMedia media;
  gst_init(nullptr, nullptr);
  std::string description = "filesrc location=" + path + " ! decodebin name=read";
  if (picture) description += " read. ! queue ! videoconvert ! video/x-raw,format=I420 ! appsink name=pictures sync=0";
  if (sound) description += " read. ! queue ! audioconvert ! audio/x-raw,format=S16LE ! appsink name=sound sync=0";
  GstElement* pipeline = gst_parse_launch(description.c_str(), nullptr);
  GstAppSinkCallbacks callbacks = {};
  callbacks.new_sample = [](GstAppSink* sink, gpointer to) { return pull(sink, *static_cast<ReadMedia*>(to), true); };
  if (picture) receive(pipeline, "pictures", callbacks, media);
  callbacks.new_sample = [](GstAppSink* sink, gpointer to) { return pull(sink, *static_cast<ReadMedia*>(to), false); };
  if (sound) receive(pipeline, "sound", callbacks, media);

  gst_element_set_state(pipeline, GST_STATE_PLAYING);
  GstBus* bus = gst_element_get_bus(pipeline);
  const auto wanted = static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR);
  GstMessage* message = gst_bus_timed_pop_filtered(bus, 30 * GST_SECOND, wanted);
  media.complete = message != nullptr && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
  if (message != nullptr) gst_message_unref(message);
  gst_object_unref(bus);
  gst_element_set_state(pipeline, GST_STATE_NULL);
  gst_object_unref(pipeline);
  return media;
}

}  // namespace corvane::test
