#include "players/sound_decoder.h"

#include <gst/pbutils/pbutils.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "capture/capture_fault.h"
#include "core/bus_watch.h"
#include "media/decoding.h"

namespace corvane::rtc {

namespace {

bool isAddress(const std::string& path) {
  return path.starts_with("http://") || path.starts_with("https://");
}

// What can be said of a file before anything is built for it: "" when it is worth a try.
std::string fileProblem(const std::string& path) {
  struct stat about = {};
  if (stat(path.c_str(), &about) != 0 || access(path.c_str(), R_OK) != 0) {
    return std::generic_category().message(errno);
  }
  return S_ISDIR(about.st_mode) ? "it is a folder" : "";
}

PlayerError errorOf(GstMessage* message) {
  GError* error = nullptr;
  gst_message_parse_error(message, &error, nullptr);
  const GstPtr<GError> owned(error);
  if (error->domain == GST_STREAM_ERROR) {
    return error->code == GST_STREAM_ERROR_DECODE || error->code == GST_STREAM_ERROR_DEMUX
               ? kPlayerErrorMediaFailure
               : kPlayerErrorFormatNotSupported;
  }
  if (error->domain == GST_CORE_ERROR && error->code == GST_CORE_ERROR_MISSING_PLUGIN) {
    return kPlayerErrorFormatNotSupported;
  }
  const bool not_there = error->domain == GST_RESOURCE_ERROR &&
                         (error->code == GST_RESOURCE_ERROR_NOT_FOUND || error->code == GST_RESOURCE_ERROR_OPEN_READ ||
                          error->code == GST_RESOURCE_ERROR_NOT_AUTHORIZED);
  return not_there ? kPlayerErrorInvalidPath : kPlayerErrorMediaFailure;
}

}  // namespace

SoundDecoder::SoundDecoder(EngineContext& context, std::string path, int32_t play_count, std::shared_ptr<PcmSink> sink,
                           Listener& listener)
    : context_(context),
      path_(std::move(path)),
      passes_left_(play_count > 0 ? play_count : -1),
      sink_(std::move(sink)),
      listener_(listener),
      pipeline_("player") {}

SoundDecoder::~SoundDecoder() {
  watch_.reset();
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

void SoundDecoder::open() {
  if (!isAddress(path_)) {
    if (const std::string problem = fileProblem(path_); !problem.empty()) return fail(kPlayerErrorInvalidPath, problem);
  }
  if (!build()) return fail(kPlayerErrorMediaFailure, "GStreamer's element " + pipeline_.missing() + " is missing");
  watch_ = watchBus<&SoundDecoder::onMessage>(pipeline_.bus().get(), context_.thread, this);
  gst_element_set_state(pipeline_.get(), GST_STATE_PAUSED);
}

bool SoundDecoder::build() {
  GstElement* decoder = pipeline_.add("uridecodebin", "decoder");
  selector_ = pipeline_.add("input-selector", "track");
  GstElement* convert = pipeline_.add("audioconvert", "convert");
  GstElement* resample = pipeline_.add("audioresample", "resample");
  GstElement* end = pipeline_.add("appsink", "end");
  if (!pipeline_.missing().empty()) return false;
  const GstPtr<gchar> uri(isAddress(path_) ? g_strdup(path_.c_str()) : gst_filename_to_uri(path_.c_str(), nullptr));
  const GstPtr<GstCaps> sound(gst_caps_new_empty_simple("audio/x-raw"));
  // Pictures are left as they are, so that nothing is spent on them.
  g_object_set(decoder, "uri", uri.get(), nullptr);
  // Each runs on one of the pipeline's threads, which end before this object does.
  const auto stream_added =
      +[](GstElement*, GstPad* pad, gpointer self) { static_cast<SoundDecoder*>(self)->onStream(pad); };
  const auto streams_known = +[](GstElement*, gpointer self) { static_cast<SoundDecoder*>(self)->onStreamsKnown(); };
  const auto element_added = +[](GstBin*, GstBin*, GstElement* element, gpointer) { prepareDecoding(element); };
  g_signal_connect(decoder, "autoplug-continue", G_CALLBACK(leadsToSound), nullptr);
  g_signal_connect(decoder, "pad-added", G_CALLBACK(stream_added), this);
  g_signal_connect(decoder, "no-more-pads", G_CALLBACK(streams_known), this);
  g_signal_connect(decoder, "deep-element-added", G_CALLBACK(element_added), nullptr);
  g_object_set(selector_, "sync-streams", FALSE, nullptr);

  const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout",
                                                 G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, kSoundRate,
                                                 "channels", G_TYPE_INT, static_cast<int>(kPcmChannels), nullptr));
  end_ = GST_APP_SINK(end);
  gst_app_sink_set_caps(end_, caps.get());
  g_object_set(end, "sync", FALSE, "qos", FALSE, "enable-last-sample", FALSE, nullptr);
  GstAppSinkCallbacks callbacks = {};
  callbacks.new_sample = [](GstAppSink* sink, gpointer self) {
    return static_cast<SoundDecoder*>(self)->onSample(GstPtr<GstSample>(gst_app_sink_pull_sample(sink)));
  };
  gst_app_sink_set_callbacks(end_, &callbacks, this, nullptr);
  gst_element_link_many(selector_, convert, resample, end, nullptr);

  const GstPtr<GstPad> pad(gst_element_get_static_pad(end, "sink"));
  const auto flushed = +[](GstPad*, GstPadProbeInfo* info, gpointer data) {
    auto& self = *static_cast<SoundDecoder*>(data);
    const bool begins = GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_FLUSH_START;
    // At the end of a pass nothing is being written, and what was written is still to be heard.
    if (begins) {
      if (!self.winding_back_) self.sink_->beginFlush();
    } else {
      self.winding_back_ = false;
      self.sink_->endFlush();
    }
    return GST_PAD_PROBE_OK;
  };
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_FLUSH, flushed, this, nullptr);
  return true;
}

void SoundDecoder::run(int64_t start_ms) {
  if (start_ms > 0 && !seekTo(start_ms)) {
    return fail(kPlayerErrorInvalidPosition, "it cannot be played from a position");
  }
  pipeline_.play();
}

void SoundDecoder::seek(int64_t ms) {
  if (!seekTo(ms)) context_.thread.post(alive_, [this] { listener_.onSeekFailed(); });
}

void SoundDecoder::selectTrack(int32_t track, int64_t ms) {
  {
    const std::lock_guard lock(tracks_mutex_);
    g_object_set(selector_, "active-pad", tracks_[static_cast<size_t>(track)].get(), nullptr);
  }
  seek(ms);
}

bool SoundDecoder::seekTo(int64_t ms) {
  winding_back_ = false;
  pass_frames_ = 1;  // where it ends at once, that is not because there is nothing in it
  const auto flags = static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE);
  return gst_element_seek_simple(pipeline_.get(), GST_FORMAT_TIME, flags, ms * GST_MSECOND);
}

void SoundDecoder::onMessage(GstMessage* message) {
  switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE:
      if (!std::exchange(ready_, true)) onPrerolled();
      break;
    case GST_MESSAGE_EOS:
      onPassEnded();
      break;
    case GST_MESSAGE_ERROR: {
      std::string text = readFault(message).text;
      if (!missing_decoder_.empty()) text += "; missing: " + missing_decoder_;
      fail(errorOf(message), text);
      break;
    }
    case GST_MESSAGE_ELEMENT:
      if (gst_is_missing_plugin_message(message)) {
        missing_decoder_ = GstPtr<gchar>(gst_missing_plugin_message_get_description(message)).get();
      }
      break;
    default:
      break;
  }
}

void SoundDecoder::onPrerolled() {
  gint64 duration = -1;
  if (!gst_element_query_duration(pipeline_.get(), GST_FORMAT_TIME, &duration)) duration = -1;
  int32_t tracks = 0;
  {
    const std::lock_guard lock(tracks_mutex_);
    tracks = static_cast<int32_t>(tracks_.size());
  }
  listener_.onDecoderReady(duration < 0 ? -1 : duration / GST_MSECOND, tracks);
}

void SoundDecoder::onPassEnded() {
  if (pass_frames_.exchange(0) == 0) return fail(kPlayerErrorMediaFailure, "there is no sound in it");
  if (passes_left_ > 0) --passes_left_;
  if (passes_left_ == 0) {
    sink_->end();
    return listener_.onDecoderEnded();
  }
  winding_back_ = true;
  sink_->beginPass();
  if (!gst_element_seek_simple(pipeline_.get(), GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, 0)) {
    fail(kPlayerErrorMediaFailure, "it cannot be played again from its start");
  }
}

void SoundDecoder::onStream(GstPad* pad) {
  const GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
  if (caps == nullptr || !gst_structure_has_name(gst_caps_get_structure(caps.get(), 0), "audio/x-raw")) return;
  GstPtr<GstPad> track(gst_element_request_pad_simple(selector_, "sink_%u"));
  gst_pad_link(pad, track.get());
  const std::lock_guard lock(tracks_mutex_);
  if (tracks_.empty()) g_object_set(selector_, "active-pad", track.get(), nullptr);
  tracks_.push_back(std::move(track));
}

void SoundDecoder::onStreamsKnown() {
  const std::lock_guard lock(tracks_mutex_);
  if (tracks_.empty()) fail(kPlayerErrorFormatNotSupported, "there is no sound in it that can be decoded");
}

GstFlowReturn SoundDecoder::onSample(GstPtr<GstSample> sample) {
  if (sample == nullptr) return GST_FLOW_FLUSHING;
  GstBuffer* buffer = gst_sample_get_buffer(sample.get());
  GstMapInfo map;
  if (!gst_buffer_map(buffer, &map, GST_MAP_READ)) return GST_FLOW_ERROR;
  int64_t frame = 0;
  const GstSegment* segment = gst_sample_get_segment(sample.get());
  const GstClockTime time = gst_segment_to_stream_time(segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
  if (GST_CLOCK_TIME_IS_VALID(time)) {
    frame = static_cast<int64_t>(gst_util_uint64_scale_round(time, static_cast<guint64>(kSoundRate), GST_SECOND));
  }
  const std::span samples(reinterpret_cast<const int16_t*>(map.data), map.size / sizeof(int16_t));
  pass_frames_ += static_cast<int64_t>(samples.size() / kPcmChannels);
  const bool taken = sink_->write(samples, frame);
  gst_buffer_unmap(buffer, &map);
  return taken ? GST_FLOW_OK : GST_FLOW_FLUSHING;
}

void SoundDecoder::fail(PlayerError error, std::string text) {
  context_.thread.post(alive_, [this, error, text = std::move(text)] {
    if (!std::exchange(failed_, true)) listener_.onDecoderFailed({error, path_ + ": " + text});
  });
}

}  // namespace corvane::rtc
