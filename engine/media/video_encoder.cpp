#include "media/video_encoder.h"

#include <algorithm>
#include <utility>

#include "capture/capture_fault.h"
#include "core/bus_watch.h"

namespace corvane::rtc {

namespace {

// Several receivers may ask at once; a key frame is several times as large as another.
constexpr GstClockTime kKeyFrameInterval = 150 * GST_MSECOND;
// A receiver that needs a key frame asks for it; this is for recordings and for those that cannot.
constexpr int kLongestWithoutKeyFrame = 300;
constexpr double kBitsPerPixel = 0.09;
constexpr int32_t kMinBitrate = 150;
constexpr int32_t kMaxBitrate = 6000;
// Pictures that wait for the encoder; a third pushes out the oldest.
constexpr guint64 kWaitingPictures = 2;
constexpr int kLongestSide = 16384;  // pixels
// What encoders are told of pictures whose rate nobody knows: without any rate they hold each picture back until the
// next one has come.
constexpr int kUsualRate = 30;

struct Kind {
  const char* codec;
  const char* element;
  const char* format;  // of what it is to make
  void (*set_up)(GstElement* encoder);
  void (*set_bitrate)(GstElement* encoder, int32_t kbit);
};

const Kind kKinds[] = {
    {"h264", "x264enc", "video/x-h264,profile=constrained-baseline,stream-format=byte-stream,alignment=au",
     [](GstElement* encoder) {
       gst_util_set_object_arg(G_OBJECT(encoder), "tune", "zerolatency");
       gst_util_set_object_arg(G_OBJECT(encoder), "speed-preset", "superfast");
       g_object_set(encoder, "key-int-max", kLongestWithoutKeyFrame, "vbv-buf-capacity", 300U, "threads", 1U, nullptr);
     },
     [](GstElement* encoder, int32_t kbit) { g_object_set(encoder, "bitrate", static_cast<guint>(kbit), nullptr); }},
    {"h264", "openh264enc", "video/x-h264,profile=constrained-baseline,stream-format=byte-stream,alignment=au",
     [](GstElement* encoder) {
       gst_util_set_object_arg(G_OBJECT(encoder), "complexity", "low");
       g_object_set(encoder, "gop-size", static_cast<guint>(kLongestWithoutKeyFrame), nullptr);
     },
     [](GstElement* encoder, int32_t kbit) {
       g_object_set(encoder, "bitrate", static_cast<guint>(kbit) * 1000, nullptr);
     }},
    {"vp8", "vp8enc", "video/x-vp8",
     [](GstElement* encoder) {
       g_object_set(encoder, "deadline", gint64{1}, "cpu-used", 8, "keyframe-max-dist", kLongestWithoutKeyFrame,
                    "threads", 2, nullptr);
       gst_util_set_object_arg(G_OBJECT(encoder), "error-resilient", "default");
       gst_util_set_object_arg(G_OBJECT(encoder), "end-usage", "cbr");
     },
     [](GstElement* encoder, int32_t kbit) { g_object_set(encoder, "target-bitrate", kbit * 1000, nullptr); }},
};

const Kind* installedKind() {
  static const Kind* const found = [] {
    const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds), [](const Kind& candidate) {
      GstElementFactory* factory = gst_element_factory_find(candidate.element);
      if (factory == nullptr) return false;
      gst_object_unref(factory);
      return true;
    });
    return kind != std::end(kKinds) ? kind : nullptr;
  }();
  return found;
}

// Encoders take even sizes only.
void setSide(GstCaps* caps, const char* side, int32_t pixels) {
  if (pixels > 0) return gst_caps_set_simple(caps, side, G_TYPE_INT, std::max(pixels & ~1, 2), nullptr);
  GValue even = G_VALUE_INIT;
  g_value_init(&even, GST_TYPE_INT_RANGE);
  gst_value_set_int_range_step(&even, 2, kLongestSide, 2);
  gst_caps_set_value(caps, side, &even);
  g_value_unset(&even);
}

GstPtr<GstCaps> rawCaps(const VideoEncoding& wanted) {
  // Without a format the encoder may be given one that receivers cannot decode.
  GstPtr<GstCaps> caps(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", nullptr));
  setSide(caps.get(), "width", wanted.width);
  setSide(caps.get(), "height", wanted.height);
  return caps;
}

}  // namespace

const char* VideoEncoder::codec() {
  return installedKind() != nullptr ? installedKind()->codec : "";
}

VideoEncoder::VideoEncoder(EngineContext& context, const VideoEncoding& wanted, Listener& listener)
    : context_(context), listener_(listener), wanted_(wanted), pipeline_("encoder"), rate_(wanted.frame_rate) {
  build();
}

VideoEncoder::~VideoEncoder() {
  watch_.reset();
  gst_element_set_state(pipeline_.get(), GST_STATE_NULL);
}

void VideoEncoder::build() {
  const Kind* kind = installedKind();
  if (kind == nullptr) return fail(kNoneInstalled);
  GstElement* source = pipeline_.add("appsrc", "pictures");
  GstElement* scale = pipeline_.add("videoconvertscale", "scale");
  GstElement* raw = pipeline_.add("capsfilter", "raw");
  encoder_ = pipeline_.add(kind->element, "encoder");
  GstElement* encoded = pipeline_.add("capsfilter", "encoded");
  GstElement* sink = pipeline_.add("appsink", "sink");
  if (!pipeline_.missing().empty()) return fail("GStreamer's element " + pipeline_.missing() + " is not installed");

  source_ = GST_APP_SRC(source);
  g_object_set(source, "format", GST_FORMAT_TIME, "is-live", TRUE, "max-buffers", kWaitingPictures, "max-bytes",
               guint64{0}, nullptr);
  gst_util_set_object_arg(G_OBJECT(source), "leaky-type", "downstream");
  kind->set_up(encoder_);
  full_kbit_.store(wanted_.bitrate, std::memory_order_relaxed);
  applyBitrate();
  g_object_set(raw, "caps", rawCaps(wanted_).get(), nullptr);
  gst_util_set_object_arg(G_OBJECT(encoded), "caps", kind->format);

  g_object_set(sink, "sync", FALSE, "async", FALSE, "qos", FALSE, "enable-last-sample", FALSE, nullptr);
  GstAppSinkCallbacks callbacks = {};
  callbacks.new_sample = [](GstAppSink* app_sink, gpointer self) {
    return static_cast<VideoEncoder*>(self)->onSample(GstPtr<GstSample>(gst_app_sink_pull_sample(app_sink)));
  };
  gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
  gst_element_link_many(source, scale, raw, encoder_, encoded, sink, nullptr);
  watch_ = watchBus<&VideoEncoder::onMessage>(pipeline_.bus().get(), context_.thread, this);
  pipeline_.countFromClock();
  if (!pipeline_.play()) fail("the encoder does not start");
}

void VideoEncoder::setFormat(const GstVideoInfo& info) {
  GstVideoInfo told = info;
  int fps = kUsualRate;
  if (GST_VIDEO_INFO_FPS_N(&info) > 0) fps = std::max(GST_VIDEO_INFO_FPS_N(&info) / GST_VIDEO_INFO_FPS_D(&info), 1);
  if (wanted_.frame_rate > 0) fps = std::min(fps, wanted_.frame_rate);
  GST_VIDEO_INFO_FPS_N(&told) = fps;
  GST_VIDEO_INFO_FPS_D(&told) = 1;
  const GstPtr<GstCaps> caps(gst_video_info_to_caps(&told));
  gst_app_src_set_caps(source_, caps.get());
  if (wanted_.bitrate > 0) return;
  const int width = wanted_.width > 0 ? wanted_.width : GST_VIDEO_INFO_WIDTH(&info);
  const int height = wanted_.height > 0 ? wanted_.height : GST_VIDEO_INFO_HEIGHT(&info);
  const double pixels = static_cast<double>(width) * height * fps;
  const auto kbit = static_cast<int32_t>(pixels * kBitsPerPixel / 1000);
  full_kbit_.store(std::clamp(kbit, kMinBitrate, kMaxBitrate), std::memory_order_relaxed);
  applyBitrate();
}

void VideoEncoder::applyBitrate() {
  const std::lock_guard lock(bitrate_mutex_);
  const int32_t kbit = std::min(limit_kbit_, full_kbit_.load(std::memory_order_relaxed));
  if (kbit > 0) installedKind()->set_bitrate(encoder_, kbit);
}

void VideoEncoder::limitBitrate(int32_t kbit) {
  if (encoder_ == nullptr) return;
  {
    const std::lock_guard lock(bitrate_mutex_);
    if (std::exchange(limit_kbit_, kbit) == kbit) return;
  }
  applyBitrate();
}

void VideoEncoder::setPaused(bool paused) {
  if (paused_.exchange(paused, std::memory_order_relaxed) && !paused) requestKeyFrame();
}

void VideoEncoder::onPicture(const Picture& picture) {
  if (source_ == nullptr) return;
  const GstClockTime now = clockNow();
  counts_.pictures_in.fetch_add(1, std::memory_order_relaxed);
  if (paused() || !rate_.take(now)) return;
  if (fed_info_.finfo == nullptr || !gst_video_info_is_equal(&picture.info, &fed_info_)) {
    fed_info_ = picture.info;
    setFormat(fed_info_);
  }
  if (now - last_key_request_ > kKeyFrameInterval && key_frame_wanted_.exchange(false, std::memory_order_relaxed)) {
    last_key_request_ = now;
    gst_element_send_event(encoder_, gst_video_event_new_upstream_force_key_unit(GST_CLOCK_TIME_NONE, TRUE, 0));
  }
  // Shares the pixels. The application's pictures have times of its own, so that the present counts.
  GstBuffer* fed = shareForElements(picture).release();
  GST_BUFFER_PTS(fed) = now;
  GST_BUFFER_DTS(fed) = GST_CLOCK_TIME_NONE;
  gst_app_src_push_buffer(source_, fed);
}

GstFlowReturn VideoEncoder::onSample(GstPtr<GstSample> sample) {
  if (sample == nullptr) return GST_FLOW_FLUSHING;
  // Encoders count time from an origin of their own; the segment leads back to the clock.
  const GstPtr<GstBuffer> owned(gst_buffer_copy(gst_sample_get_buffer(sample.get())));
  GstBuffer* buffer = owned.get();
  GST_BUFFER_PTS(buffer) =
      gst_segment_to_running_time(gst_sample_get_segment(sample.get()), GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
  GST_BUFFER_DTS(buffer) = GST_CLOCK_TIME_NONE;
  GstCaps* caps = gst_sample_get_caps(sample.get());
  if (caps != nullptr) {
    gint width = 0;
    gint height = 0;
    const GstStructure* structure = gst_caps_get_structure(caps, 0);
    if (gst_structure_get_int(structure, "width", &width) && gst_structure_get_int(structure, "height", &height)) {
      counts_.width.store(width, std::memory_order_relaxed);
      counts_.height.store(height, std::memory_order_relaxed);
    }
  }
  counts_.pictures_out.fetch_add(1, std::memory_order_relaxed);
  counts_.bytes_out.fetch_add(static_cast<int64_t>(gst_buffer_get_size(buffer)), std::memory_order_relaxed);
  const GstClockTime now = clockNow();
  if (GST_BUFFER_PTS_IS_VALID(buffer) && now > GST_BUFFER_PTS(buffer)) {
    counts_.encode_ns.fetch_add(static_cast<int64_t>(now - GST_BUFFER_PTS(buffer)), std::memory_order_relaxed);
  }
  taps_.deliver(buffer);
  return GST_FLOW_OK;
}

void VideoEncoder::onMessage(GstMessage* message) {
  if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) fail(readFault(message).text);
}

void VideoEncoder::fail(const std::string& reason) {
  context_.thread.post(alive_, [this, reason] {
    if (!std::exchange(failed_, true)) listener_.onEncoderFailed(reason);
  });
}

}  // namespace corvane::rtc
