#include "capture/clip_reader.h"

#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

#include "media/decoding.h"

namespace corvane::rtc {

namespace {

std::string_view kindOf(const GstCaps* caps) {
  return gst_structure_get_name(gst_caps_get_structure(caps, 0));
}

// Whether a stream within a clip, or what it is packed in, is to be taken apart further.
gboolean leadsToPicture(GstElement*, GstPad*, GstCaps* caps, gpointer) {
  const std::string_view kind = kindOf(caps);
  return !kind.starts_with("audio/") && !kind.starts_with("text/") && !kind.starts_with("subpicture/");
}

}  // namespace

ClipReader::ClipReader(std::string path, Stream stream, std::function<void(CaptureFault fault)> fail)
    : path_(std::move(path)), stream_(stream), fail_(std::move(fail)) {}

std::optional<CaptureFault> ClipReader::build(Pipeline& pipeline, GstElement* target) {
  if (access(path_.c_str(), R_OK) != 0) return fileFault(path_, errno);
  GstElement* file = pipeline.add("filesrc", "clip");
  GstElement* decoder = pipeline.add("decodebin", "clip-decoder");
  if (file == nullptr || decoder == nullptr) return std::nullopt;  // the pipeline knows what is missing
  target_ = target;
  g_object_set(file, "location", path_.c_str(), nullptr);
  gst_element_link(file, decoder);

  // Each runs on one of the pipeline's threads, which end before this object does.
  const auto stream_added =
      +[](GstElement*, GstPad* pad, gpointer self) { static_cast<ClipReader*>(self)->onStream(pad); };
  const auto streams_known = +[](GstElement*, gpointer self) { static_cast<ClipReader*>(self)->onStreamsKnown(); };
  const auto element_added = +[](GstBin*, GstBin*, GstElement* element, gpointer) { prepareDecoding(element); };
  g_signal_connect(decoder, "autoplug-continue",
                   stream_ == Stream::kPicture ? G_CALLBACK(leadsToPicture) : G_CALLBACK(leadsToSound), nullptr);
  g_signal_connect(decoder, "pad-added", G_CALLBACK(stream_added), this);
  g_signal_connect(decoder, "no-more-pads", G_CALLBACK(streams_known), this);
  g_signal_connect(decoder, "deep-element-added", G_CALLBACK(element_added), nullptr);
  return std::nullopt;
}

std::optional<CaptureFault> ClipReader::endPass(int64_t delivered) {
  if (delivered != std::exchange(delivered_before_, delivered)) return std::nullopt;
  return nothingIn(stream_ == Stream::kPicture ? "the clip ends without a picture" : "the clip ends without a sound");
}

bool ClipReader::windBack(Pipeline& pipeline) {
  wound_back_.store(true, std::memory_order_relaxed);
  if (gst_element_seek_simple(pipeline.get(), GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, 0)) return true;
  // Not every container can be wound back; every file can be opened again.
  gst_element_set_state(pipeline.get(), GST_STATE_READY);
  has_stream_ = false;
  return false;
}

void ClipReader::onStream(GstPad* pad) {
  const GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
  const char* wanted = stream_ == Stream::kPicture ? "video/x-raw" : "audio/x-raw";
  if (caps == nullptr || kindOf(caps.get()) != wanted || has_stream_.exchange(true)) return;
  const GstPtr<GstPad> target(gst_element_get_static_pad(target_, "sink"));
  gst_pad_link(pad, target.get());
}

void ClipReader::onStreamsKnown() {
  if (has_stream_) return;
  fail_(nothingIn(stream_ == Stream::kPicture ? "there is no video in it that can be decoded"
                                              : "there is no sound in it that can be decoded"));
}

CaptureFault ClipReader::nothingIn(const char* what) const {
  return {kMediaFailure, kMediaDeviceErrorUnsupportedFormat, path_ + ": " + what};
}

}  // namespace corvane::rtc
