#include "capture/picture_pipeline.h"

#include <utility>

#include "capture/capture_fault.h"
#include "core/bus_watch.h"

namespace corvane::rtc {

namespace {

// Pictures repeated to fill a longer gap would only arrive too late, all at once.
constexpr guint64 kMaxRepeatedTime = 200 * GST_MSECOND;

GstPtr<GstCaps> outputCaps(const PictureShape& wanted) {
  GstPtr<GstCaps> caps(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", "colorimetry", G_TYPE_STRING,
                                           "bt601", "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr));
  if (wanted.width > 0) gst_caps_set_simple(caps.get(), "width", G_TYPE_INT, wanted.width, nullptr);
  if (wanted.height > 0) gst_caps_set_simple(caps.get(), "height", G_TYPE_INT, wanted.height, nullptr);
  if (wanted.frame_rate > 0) {
    gst_caps_set_simple(caps.get(), "framerate", GST_TYPE_FRACTION, wanted.frame_rate, 1, nullptr);
  }
  return caps;
}

}  // namespace

PicturePipeline::PicturePipeline(EngineContext& context, PictureQueue& queue, Receiver& receiver,
                                 const PictureShape& wanted)
    : context_(context), queue_(queue), receiver_(receiver), pipeline_("pictures") {
  build(wanted);
}

PicturePipeline::~PicturePipeline() {
  // What the pipeline's threads may be waiting for, then the threads: they use the members below pipeline_.
  stopping_.request_stop();
  watch_.reset();
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

void PicturePipeline::build(const PictureShape& wanted) {
  GstElement* source = pipeline_.add("appsrc", "captured");
  GstElement* convert = pipeline_.add("videoconvertscale", "convert");
  GstElement* rate = wanted.frame_rate > 0 ? pipeline_.add("videorate", "rate") : nullptr;
  GstElement* sink = pipeline_.add("appsink", "pictures");
  if (!pipeline_.missing().empty()) return fail("GStreamer's element " + pipeline_.missing() + " is not installed");

  source_ = GST_APP_SRC(source);
  g_object_set(source, "format", GST_FORMAT_TIME, "is-live", TRUE, "stream-type", GST_APP_STREAM_TYPE_STREAM, nullptr);
  GstAppSrcCallbacks source_callbacks = {};
  source_callbacks.need_data = [](GstAppSrc*, guint, gpointer self) { static_cast<PicturePipeline*>(self)->feed(); };
  gst_app_src_set_callbacks(source_, &source_callbacks, this, nullptr);

  // The clock is waited for here. Nothing waits for a first picture, which a camera may take seconds to deliver.
  g_object_set(sink, "sync", TRUE, "async", FALSE, "qos", FALSE, "enable-last-sample", FALSE, "max-buffers", 1,
               "processing-deadline", guint64{0}, nullptr);
  GstAppSinkCallbacks sink_callbacks = {};
  sink_callbacks.new_sample = [](GstAppSink* app_sink, gpointer self) {
    return static_cast<PicturePipeline*>(self)->onSample(GstPtr<GstSample>(gst_app_sink_pull_sample(app_sink)));
  };
  gst_app_sink_set_callbacks(GST_APP_SINK(sink), &sink_callbacks, this, nullptr);
  gst_app_sink_set_caps(GST_APP_SINK(sink), outputCaps(wanted).get());

  gst_element_link(source, convert);
  if (rate != nullptr) {
    g_object_set(rate, "skip-to-first", TRUE, "max-duplication-time", kMaxRepeatedTime, nullptr);
    gst_element_link_many(convert, rate, sink, nullptr);
  } else {
    gst_element_link(convert, sink);
  }
  watch_ = watchBus<&PicturePipeline::onMessage>(pipeline_.bus().get(), context_.thread, this);
  pipeline_.countFromClock();
  if (!pipeline_.play()) fail("the pipeline does not start");
}

void PicturePipeline::onMessage(GstMessage* message) {
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) fail(readFault(message).text);
}

void PicturePipeline::fail(std::string text) {
  context_.thread.post(alive_, [this, text = std::move(text)] {
    if (!std::exchange(failed_, true)) receiver_.onPipelineFailed(text);
  });
}

void PicturePipeline::feed() {
  std::optional<CapturedPicture> picture = queue_.pop(stopping_.get_token());
  if (!picture) return;
  const bool same = fed_caps_ != nullptr && gst_caps_is_equal(fed_caps_.get(), picture->caps.get());
  if (!same) gst_app_src_set_caps(source_, picture->caps.get());
  fed_caps_ = std::move(picture->caps);
  gst_app_src_push_buffer(source_, picture->buffer.release());
}

GstFlowReturn PicturePipeline::onSample(GstPtr<GstSample> sample) {
  if (sample == nullptr) return GST_FLOW_FLUSHING;
  GstCaps* caps = gst_sample_get_caps(sample.get());
  if (caps != sample_caps_.get()) {
    if (!gst_video_info_from_caps(&sample_info_, caps)) return GST_FLOW_NOT_NEGOTIATED;
    sample_caps_.reset(gst_caps_ref(caps));
  }
  GstPtr<GstBuffer> picture(gst_buffer_ref(gst_sample_get_buffer(sample.get())));
  sample.reset();  // the receiver is to be the only owner
  const GstClockTime time = GST_BUFFER_PTS(picture.get());
  receiver_.onPicture(std::move(picture), sample_info_, time);
  return GST_FLOW_OK;
}

}  // namespace corvane::rtc
