#include "capture/clip_source.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string_view>
#include <thread>
#include <utility>

namespace corvane::rtc {

namespace {

// A camera has to leave most of the machine to everything else; two threads decode 1080p at 60 on one made in 2015.
constexpr int kDecoderThreads = 2;

bool isVideo(const GstCaps* caps) {
  const std::string_view kind = gst_structure_get_name(gst_caps_get_structure(caps, 0));
  return !kind.starts_with("audio/") && !kind.starts_with("text/") && !kind.starts_with("subpicture/");
}

// The decoder drops errors of an element that it is still setting up. An element that reads the file by itself may have
// failed by then, with nobody to hear of it, so that it is made to wait a little before it reads. Should that once not
// be enough, the capture still notices that nothing comes.
void delayReading(GstElement* element) {
  GstElementFactory* factory = gst_element_get_factory(element);
  if (factory == nullptr || !gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_DEMUXER)) return;
  const GstPtr<GstPad> pad(gst_element_get_static_pad(element, "sink"));
  if (pad == nullptr) return;
  const auto wait_once = +[](GstPad* reading, GstPadProbeInfo*, gpointer) {
    if (gst_pad_get_task_state(reading) != GST_TASK_STARTED) return GST_PAD_PROBE_OK;  // a look ahead
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return GST_PAD_PROBE_REMOVE;
  };
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_PULL, wait_once, nullptr, nullptr);
}

// Decoders use as many threads as there are processors unless told otherwise, each by a property of its own.
void limitThreads(GstElement* element) {
  GstElementFactory* factory = gst_element_get_factory(element);
  if (factory == nullptr || !gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_DECODER)) return;
  for (const char* name : {"max-threads", "n-threads", "threads"}) {
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(element), name) != nullptr) {
      g_object_set(element, name, kDecoderThreads, nullptr);
    }
  }
}

}  // namespace

ClipSource::ClipSource(EngineContext& context, PictureQueue& queue, Listener& listener, std::string path)
    : VideoSource(context, queue, listener), path_(std::move(path)) {}

std::optional<CaptureFault> ClipSource::build() {
  if (access(path_.c_str(), R_OK) != 0) return fileFault(path_, errno);
  GstElement* file = pipeline().add("filesrc", "clip");
  GstElement* decoder = pipeline().add("decodebin", "clip-decoder");
  if (file == nullptr || decoder == nullptr) return std::nullopt;
  g_object_set(file, "location", path_.c_str(), nullptr);
  gst_element_link(file, decoder);

  // Each runs on one of the pipeline's threads, which end before this object does.
  const auto wants_decoded = +[](GstElement*, GstPad*, GstCaps* caps, gpointer) -> gboolean { return isVideo(caps); };
  const auto stream_added =
      +[](GstElement*, GstPad* pad, gpointer self) { static_cast<ClipSource*>(self)->onStream(pad); };
  const auto streams_known = +[](GstElement*, gpointer self) { static_cast<ClipSource*>(self)->onStreamsKnown(); };
  const auto element_added = +[](GstBin*, GstBin*, GstElement* element, gpointer) {
    delayReading(element);
    limitThreads(element);
  };
  g_signal_connect(decoder, "autoplug-continue", G_CALLBACK(wants_decoded), nullptr);
  g_signal_connect(decoder, "pad-added", G_CALLBACK(stream_added), this);
  g_signal_connect(decoder, "no-more-pads", G_CALLBACK(streams_known), this);
  g_signal_connect(decoder, "deep-element-added", G_CALLBACK(element_added), nullptr);
  return std::nullopt;
}

GstClockTime ClipSource::timeOf(const GstBuffer* picture, const GstSegment& /*segment*/) {
  if (wound_back_.exchange(false, std::memory_order_relaxed)) timeline_.beginPass();
  return timeline_.place(GST_BUFFER_PTS(picture), GST_BUFFER_DURATION(picture), clockNow());
}

void ClipSource::onEnd() {
  if (delivered() == std::exchange(delivered_before_, delivered())) {
    return fail({kMediaFailure, kMediaDeviceErrorUnsupportedFormat, kLocalVideoStreamErrorCaptureFailure,
                 path_ + ": the clip ends without a picture"});
  }
  wound_back_.store(true, std::memory_order_relaxed);
  if (gst_element_seek_simple(pipeline().get(), GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, 0)) return;
  // Not every container can be wound back; every file can be opened again.
  gst_element_set_state(pipeline().get(), GST_STATE_READY);
  has_video_ = false;
  play();
}

void ClipSource::onStream(GstPad* pad) {
  const GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
  const bool is_picture =
      caps != nullptr &&
      std::string_view(gst_structure_get_name(gst_caps_get_structure(caps.get(), 0))) == "video/x-raw";
  if (!is_picture || has_video_.exchange(true)) return;
  const GstPtr<GstPad> target(gst_element_get_static_pad(end(), "sink"));
  gst_pad_link(pad, target.get());
}

void ClipSource::onStreamsKnown() {
  if (has_video_) return;
  fail({kMediaFailure, kMediaDeviceErrorUnsupportedFormat, kLocalVideoStreamErrorCaptureFailure,
        path_ + ": there is no video in it that can be decoded"});
}

}  // namespace corvane::rtc
