#include "rooms/publisher.h"

#include <gst/video/video.h>
#include <gst/webrtc/webrtc.h>

#include <string>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr guint64 kWaitingBuffers = 4;

bool isH264() {
  return std::string(VideoEncoder::codec()) == "h264";
}

}  // namespace

Publisher::Publisher(EngineContext& context, RoomSession& session, int32_t stream_index, bool loopback_only,
                     PeerConnection::Listener& listener)
    : peer_(context, "publisher", loopback_only, listener), link_(session.openPublisher(stream_index, peer_)) {
  peer_.setLink(*link_);
  if (peer_.webrtc() == nullptr) return;
  addSound();
  addVideo();
}

Publisher::~Publisher() {
  setVideo(nullptr);
  setSound(nullptr);
  peer_.stop();
}

void Publisher::addSound() {
  addStream(sound_, "audio/x-opus,rate=48000,channels=1,channel-mapping-family=0,stream-count=1,coupled-count=0",
            "rtpopuspay",
            "application/x-rtp,media=audio,encoding-name=OPUS,clock-rate=48000,encoding-params=(string)2,payload=111");
}

void Publisher::addVideo() {
  GstElement* payloader =
      isH264() ? addStream(video_, "video/x-h264,stream-format=byte-stream,alignment=au", "rtph264pay",
                           "application/x-rtp,media=video,encoding-name=H264,clock-rate=90000,payload=96")
               : addStream(video_, "video/x-vp8", "rtpvp8pay",
                           "application/x-rtp,media=video,encoding-name=VP8,clock-rate=90000,payload=96");
  if (payloader == nullptr) return;
  if (isH264()) {
    g_object_set(payloader, "config-interval", -1, nullptr);
    gst_util_set_object_arg(G_OBJECT(payloader), "aggregate-mode", "zero-latency");
  } else {
    gst_util_set_object_arg(G_OBJECT(payloader), "picture-id-mode", "15-bit");
  }

  // Receivers' requests for key frames come up the pipeline.
  const GstPtr<GstPad> pad(gst_element_get_static_pad(GST_ELEMENT(video_.source), "src"));
  gst_pad_add_probe(
      pad.get(), GST_PAD_PROBE_TYPE_EVENT_UPSTREAM,
      [](GstPad*, GstPadProbeInfo* info, gpointer self) {
        GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
        VideoEncoder* encoder = static_cast<Publisher*>(self)->video_encoder_.load();
        if (encoder != nullptr && gst_video_event_is_force_key_unit(event)) encoder->requestKeyFrame();
        return GST_PAD_PROBE_OK;
      },
      this, nullptr);
}

GstElement* Publisher::addStream(Stream& stream, const char* caps, const char* payloader_kind, const char* rtp_caps) {
  GstElement* source = peer_.pipeline().add("appsrc", nullptr);
  GstElement* payloader = peer_.pipeline().add(payloader_kind, nullptr);
  GstElement* filter = peer_.pipeline().add("capsfilter", nullptr);
  if (source == nullptr || payloader == nullptr || filter == nullptr) return nullptr;
  gst_util_set_object_arg(G_OBJECT(source), "caps", caps);
  g_object_set(source, "format", GST_FORMAT_TIME, "is-live", TRUE, "max-buffers", kWaitingBuffers, "max-bytes",
               guint64{0}, nullptr);
  gst_util_set_object_arg(G_OBJECT(source), "leaky-type", "downstream");
  // The source's number has to stand in the offer: a service passes over packets of sources that it was not told of.
  const GstPtr<GstCaps> out_caps(gst_caps_from_string(rtp_caps));
  const auto number = static_cast<guint>(g_random_int_range(1, G_MAXINT32));
  g_object_set(payloader, "ssrc", number, nullptr);
  gst_caps_set_simple(out_caps.get(), "ssrc", G_TYPE_UINT, number, nullptr);
  g_object_set(filter, "caps", out_caps.get(), nullptr);
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
  stream.source = GST_APP_SRC(source);
  return payloader;
}

void Publisher::start() {
  peer_.start();
  peer_.sendOffer();
}

void Publisher::setVideo(VideoEncoder* encoder) {
  if (VideoEncoder* previous = video_encoder_.exchange(nullptr)) previous->taps().remove(video_);
  if (encoder == nullptr || video_.source == nullptr) return;
  video_encoder_.store(encoder);
  encoder->taps().add(video_);
  encoder->requestKeyFrame();
}

void Publisher::setSound(SoundEncoder* encoder) {
  if (SoundEncoder* previous = std::exchange(sound_encoder_, nullptr)) previous->taps().remove(sound_);
  if (encoder == nullptr || sound_.source == nullptr) return;
  sound_encoder_ = encoder;
  encoder->taps().add(sound_);
}

void Publisher::Stream::onEncoded(GstBuffer* buffer) {
  count_.fetch_add(1, std::memory_order_relaxed);
  bytes_.fetch_add(static_cast<int64_t>(gst_buffer_get_size(buffer)), std::memory_order_relaxed);
  gst_app_src_push_buffer(source, gst_buffer_ref(buffer));
}

}  // namespace corvane::rtc
