#include "rooms/publisher.h"

#include <gst/video/video.h>
#include <gst/webrtc/webrtc.h>

#include <string>

namespace corvane::rtc {

namespace {

constexpr guint64 kWaitingPictures = 4;

bool isH264() {
  return std::string(VideoEncoder::codec()) == "h264";
}

}  // namespace

Publisher::Publisher(EngineContext& context, RoomSession& session, bool loopback_only,
                     PeerConnection::Listener& listener)
    : peer_(context, "publisher", loopback_only, listener), link_(session.openPublisher(peer_)) {
  peer_.setLink(*link_);
  if (peer_.webrtc() != nullptr) addVideo();
}

Publisher::~Publisher() {
  setVideo(nullptr);
  peer_.stop();
}

void Publisher::addVideo() {
  GstElement* source = peer_.pipeline().add("appsrc", "video");
  if (source == nullptr) return;
  video_source_ = GST_APP_SRC(source);
  gst_util_set_object_arg(G_OBJECT(source), "caps",
                          isH264() ? "video/x-h264,stream-format=byte-stream,alignment=au" : "video/x-vp8");
  GstElement* payloader =
      isH264() ? addPayloader("rtph264pay", "video-payloader", source,
                              "application/x-rtp,media=video,encoding-name=H264,clock-rate=90000,payload=96")
               : addPayloader("rtpvp8pay", "video-payloader", source,
                              "application/x-rtp,media=video,encoding-name=VP8,clock-rate=90000,payload=96");
  if (payloader == nullptr) return;
  if (isH264()) {
    g_object_set(payloader, "config-interval", -1, nullptr);
    gst_util_set_object_arg(G_OBJECT(payloader), "aggregate-mode", "zero-latency");
  } else {
    gst_util_set_object_arg(G_OBJECT(payloader), "picture-id-mode", "15-bit");
  }

  // Receivers' requests for key frames come up the pipeline.
  const GstPtr<GstPad> pad(gst_element_get_static_pad(source, "src"));
  gst_pad_add_probe(
      pad.get(), GST_PAD_PROBE_TYPE_EVENT_UPSTREAM,
      [](GstPad*, GstPadProbeInfo* info, gpointer self) {
        GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
        VideoEncoder* encoder = static_cast<Publisher*>(self)->video_.load();
        if (encoder != nullptr && gst_video_event_is_force_key_unit(event)) encoder->requestKeyFrame();
        return GST_PAD_PROBE_OK;
      },
      this, nullptr);
}

GstElement* Publisher::addPayloader(const char* kind, const char* name, GstElement* source, const char* rtp_caps) {
  g_object_set(source, "format", GST_FORMAT_TIME, "is-live", TRUE, "max-buffers", kWaitingPictures, "max-bytes",
               guint64{0}, nullptr);
  gst_util_set_object_arg(G_OBJECT(source), "leaky-type", "downstream");
  GstElement* payloader = peer_.pipeline().add(kind, name);
  GstElement* filter = peer_.pipeline().add("capsfilter", nullptr);
  if (payloader == nullptr || filter == nullptr) return nullptr;
  // The source's number has to stand in the offer: a service passes over packets of sources that it was not told of.
  const GstPtr<GstCaps> caps(gst_caps_from_string(rtp_caps));
  const auto number = static_cast<guint>(g_random_int_range(1, G_MAXINT32));
  g_object_set(payloader, "ssrc", number, nullptr);
  gst_caps_set_simple(caps.get(), "ssrc", G_TYPE_UINT, number, nullptr);
  g_object_set(filter, "caps", caps.get(), nullptr);
  gst_element_link_many(source, payloader, filter, nullptr);

  const GstPtr<GstPad> out(gst_element_get_static_pad(filter, "src"));
  const GstPtr<GstPad> in(gst_element_request_pad_simple(peer_.webrtc(), "sink_%u"));
  gst_pad_link(out.get(), in.get());
  GstWebRTCRTPTransceiver* transceiver = nullptr;
  g_object_get(in.get(), "transceiver", &transceiver, nullptr);
  if (transceiver != nullptr) {
    g_object_set(transceiver, "direction", GST_WEBRTC_RTP_TRANSCEIVER_DIRECTION_SENDONLY, "do-nack", TRUE, nullptr);
    gst_object_unref(transceiver);
  }
  return payloader;
}

void Publisher::start() {
  peer_.start();
  peer_.sendOffer();
}

void Publisher::setVideo(VideoEncoder* encoder) {
  if (VideoEncoder* previous = video_.exchange(nullptr)) previous->taps().remove(*this);
  if (encoder == nullptr || video_source_ == nullptr) return;
  video_.store(encoder);
  encoder->taps().add(*this);
  encoder->requestKeyFrame();
}

void Publisher::onEncoded(GstBuffer* buffer) {
  pictures_sent_.fetch_add(1, std::memory_order_relaxed);
  gst_app_src_push_buffer(video_source_, gst_buffer_ref(buffer));
}

}  // namespace corvane::rtc
