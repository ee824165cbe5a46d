#include "media/sound_encoder.h"

#include <cstring>
#include <utility>

#include "capture/capture_fault.h"
#include "core/bus_watch.h"

namespace corvane::rtc {

namespace {

constexpr guint64 kWaitingBlocks = 20;

}  // namespace

SoundEncoder::SoundEncoder(EngineContext& context, Listener& listener)
    : context_(context), listener_(listener), pipeline_("sound-encoder") {
  build();
}

SoundEncoder::~SoundEncoder() {
  watch_.reset();
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

void SoundEncoder::build() {
  GstElement* source = pipeline_.add("appsrc", "sound");
  GstElement* encoder = pipeline_.add("opusenc", "encoder");
  GstElement* sink = pipeline_.add("appsink", "sink");
  if (!pipeline_.missing().empty()) return fail("GStreamer's element " + pipeline_.missing() + " is not installed");
  source_ = GST_APP_SRC(source);
  encoder_ = encoder;
  g_object_set(source, "format", GST_FORMAT_TIME, "is-live", TRUE, "max-buffers", kWaitingBlocks, "max-bytes",
               guint64{0}, nullptr);
  gst_util_set_object_arg(G_OBJECT(source), "leaky-type", "downstream");
  // What is lost is made up from the packet after it.
  g_object_set(encoder, "bitrate", SoundEncoding().bitrate, "inband-fec", TRUE, "packet-loss-percentage", 5, nullptr);
  gst_util_set_object_arg(G_OBJECT(encoder), "audio-type", "voice");

  g_object_set(sink, "sync", FALSE, "async", FALSE, "qos", FALSE, "enable-last-sample", FALSE, nullptr);
  GstAppSinkCallbacks callbacks = {};
  callbacks.new_sample = [](GstAppSink* app_sink, gpointer self) {
    return static_cast<SoundEncoder*>(self)->onSample(GstPtr<GstSample>(gst_app_sink_pull_sample(app_sink)));
  };
  gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
  gst_element_link_many(source, encoder, sink, nullptr);
  watch_ = watchBus<&SoundEncoder::onMessage>(pipeline_.bus().get(), context_.thread, this);
  pipeline_.countFromClock();
  if (!pipeline_.play()) fail("the sound encoder does not start");
}

void SoundEncoder::set(const SoundEncoding& encoding) {
  if (encoder_ == nullptr) return;
  g_object_set(encoder_, "bitrate", encoding.bitrate, nullptr);
  gst_util_set_object_arg(G_OBJECT(encoder_), "bandwidth", encoding.is_wideband ? "wideband" : "fullband");
}

void SoundEncoder::onSound(const SoundBlock& block) {
  if (source_ == nullptr) return;
  if (block.channels != fed_channels_) {
    fed_channels_ = block.channels;
    const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout",
                                                   G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, kSoundRate,
                                                   "channels", G_TYPE_INT, block.channels, nullptr));
    gst_app_src_set_caps(source_, caps.get());
  }
  GstBuffer* fed = gst_buffer_new_memdup(block.samples().data(), block.samples().size_bytes());
  GST_BUFFER_PTS(fed) = static_cast<GstClockTime>(block.time_us) * GST_USECOND;
  GST_BUFFER_DURATION(fed) = 10 * GST_MSECOND;
  gst_app_src_push_buffer(source_, fed);
}

GstFlowReturn SoundEncoder::onSample(GstPtr<GstSample> sample) {
  if (sample == nullptr) return GST_FLOW_FLUSHING;
  GstBuffer* buffer = gst_sample_get_buffer(sample.get());
  // The format's own headers are for files.
  if (GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_HEADER)) return GST_FLOW_OK;
  bytes_out_.fetch_add(static_cast<int64_t>(gst_buffer_get_size(buffer)), std::memory_order_relaxed);
  taps_.deliver(buffer);
  return GST_FLOW_OK;
}

void SoundEncoder::onMessage(GstMessage* message) {
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) fail(readFault(message).text);
}

void SoundEncoder::fail(const std::string& reason) {
  context_.thread.post(alive_, [this, reason] {
    if (!std::exchange(failed_, true)) listener_.onSoundEncoderFailed(reason);
  });
}

}  // namespace corvane::rtc
