#include "rooms/publisher.h"

#include <gst/webrtc/webrtc.h>

#include <algorithm>
#include <string>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr guint64 kWaitingBuffers = 4;
// The extension of packets' headers with numbers under which the other side tells when each arrived.
constexpr char kPacketNumbers[] = "http://www.ietf.org/id/draft-holmer-rmcat-transport-wide-cc-extensions-01";

bool isH264() {
  return std::string(VideoEncoder::codec()) == "h264";
}

}  // namespace

Publisher::Publisher(EngineContext& context, RoomSession& session, int32_t stream_index, size_t layers,
                     bool loopback_only, PeerConnection::Listener& listener)
    : peer_(context, "publisher", loopback_only, listener),
      video_(layers),
      link_(session.openPublisher(stream_index, peer_)) {
  peer_.setLink(*link_);
  // Services ask for those of all layers at once.
  peer_.onKeyFrameAsked([this] {
    const std::lock_guard lock(encoders_mutex_);
    for (const Stream& layer : video_) {
      if (layer.encoder != nullptr) layer.encoder->requestKeyFrame();
    }
  });
  if (peer_.webrtc() == nullptr) return;
  addSound();
  addVideo();
}

Publisher::~Publisher() {
  setVideo({});
  setSound(nullptr);
  peer_.stop();
}

void Publisher::addSound() {
  GstElement* packets =
      addStream(sound_, "audio/x-opus,rate=48000,channels=1,channel-mapping-family=0,stream-count=1,coupled-count=0",
                "rtpopuspay");
  connect(packets,
          "application/x-rtp,media=audio,encoding-name=OPUS,clock-rate=48000,encoding-params=(string)2,payload=111",
          sound_.number);
}

void Publisher::addVideo() {
  const char* caps = isH264() ? "application/x-rtp,media=video,encoding-name=H264,clock-rate=90000,payload=96"
                              : "application/x-rtp,media=video,encoding-name=VP8,clock-rate=90000,payload=96";
  GstElement* packets = addVideoLayer(video_.front());
  if (video_.size() > 1) packets = addLayersBeside(packets);
  connect(packets, caps, video_.front().number);
}

// The other layers go along in the largest one's medium.
GstElement* Publisher::addLayersBeside(GstElement* largest) {
  GstElement* funnel = peer_.pipeline().add("rtpfunnel", nullptr);
  if (largest == nullptr || funnel == nullptr) return nullptr;
  gst_element_link(largest, funnel);
  std::vector<uint32_t> numbers = {video_.front().number};
  for (auto layer = video_.begin() + 1; layer != video_.end(); ++layer) {
    GstElement* packets = addVideoLayer(*layer);
    if (packets == nullptr) return nullptr;
    gst_element_link(packets, funnel);
    numbers.push_back(layer->number);
  }
  peer_.setLayers(std::move(numbers));
  return funnel;
}

GstElement* Publisher::addVideoLayer(Stream& layer) {
  GstElement* payloader = isH264()
                              ? addStream(layer, "video/x-h264,stream-format=byte-stream,alignment=au", "rtph264pay")
                              : addStream(layer, "video/x-vp8", "rtpvp8pay");
  if (payloader == nullptr) return nullptr;
  g_object_set(payloader, "pt", 96U, nullptr);
  if (isH264()) {
    g_object_set(payloader, "config-interval", -1, nullptr);
    gst_util_set_object_arg(G_OBJECT(payloader), "aggregate-mode", "zero-latency");
  } else {
    gst_util_set_object_arg(G_OBJECT(payloader), "picture-id-mode", "15-bit");
  }
  return payloader;
}

GstElement* Publisher::addStream(Stream& stream, const char* caps, const char* payloader_kind) {
  GstElement* source = peer_.pipeline().add("appsrc", nullptr);
  GstElement* payloader = peer_.pipeline().add(payloader_kind, nullptr);
  if (source == nullptr || payloader == nullptr) return nullptr;
  gst_util_set_object_arg(G_OBJECT(source), "caps", caps);
  g_object_set(source, "format", GST_FORMAT_TIME, "is-live", TRUE, "max-buffers", kWaitingBuffers, "max-bytes",
               guint64{0}, nullptr);
  gst_util_set_object_arg(G_OBJECT(source), "leaky-type", "downstream");
  stream.number = static_cast<uint32_t>(g_random_int_range(1, G_MAXINT32));
  g_object_set(payloader, "ssrc", stream.number, nullptr);
  gst_element_link(source, payloader);
  stream.source = GST_APP_SRC(source);
  return payloader;
}

void Publisher::connect(GstElement* packets, const char* rtp_caps, uint32_t number) {
  GstElement* filter = peer_.pipeline().add("capsfilter", nullptr);
  if (packets == nullptr || filter == nullptr) return;
  // The source's number has to stand in the offer: a service passes over packets of sources that it was not told of.
  const GstPtr<GstCaps> caps(gst_caps_from_string(rtp_caps));
  gst_caps_set_simple(caps.get(), "ssrc", G_TYPE_UINT, number, nullptr);
  const bool is_followed = number == video_.front().number && video_.size() == 1;
  if (is_followed) {
    gst_caps_set_simple(caps.get(), "extmap-1", G_TYPE_STRING, kPacketNumbers, "rtcp-fb-transport-cc", G_TYPE_BOOLEAN,
                        TRUE, nullptr);
  }
  g_object_set(filter, "caps", caps.get(), nullptr);
  gst_element_link(packets, filter);

  const GstPtr<GstPad> out(gst_element_get_static_pad(filter, "src"));
  if (is_followed) followPackets(out.get());
  const GstPtr<GstPad> in(gst_element_request_pad_simple(peer_.webrtc(), "sink_%u"));
  gst_pad_link(out.get(), in.get());
  GstWebRTCRTPTransceiver* transceiver = nullptr;
  g_object_get(in.get(), "transceiver", &transceiver, nullptr);
  if (transceiver == nullptr) return;
  g_object_set(transceiver, "direction", GST_WEBRTC_RTP_TRANSCEIVER_DIRECTION_SENDONLY, "do-nack", TRUE, nullptr);
  gst_object_unref(transceiver);
}

// Feedback on packets comes up the pipeline.
void Publisher::followPackets(GstPad* pad) {
  const auto on_event = +[](GstPad*, GstPadProbeInfo* info, gpointer feedback) {
    GstEvent* event = GST_PAD_PROBE_INFO_EVENT(info);
    if (gst_event_has_name(event, "RTPTWCCPackets")) {
      static_cast<PacketFeedback*>(feedback)->add(gst_event_get_structure(event));
    }
    return GST_PAD_PROBE_OK;
  };
  gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_UPSTREAM, on_event, &packet_feedback_, nullptr);
}

void Publisher::start() {
  peer_.start();
  peer_.sendOffer();
}

void Publisher::setVideo(const std::vector<VideoEncoder*>& encoders) {
  for (size_t at = 0; at < video_.size(); ++at) {
    Stream& layer = video_[at];
    VideoEncoder* encoder = at < encoders.size() && layer.source != nullptr ? encoders[at] : nullptr;
    VideoEncoder* previous = nullptr;
    {
      const std::lock_guard lock(encoders_mutex_);
      previous = std::exchange(layer.encoder, encoder);
    }
    if (previous != nullptr) previous->taps().remove(layer);
    if (encoder == nullptr) continue;
    encoder->taps().add(layer);
    encoder->requestKeyFrame();
  }
}

int64_t Publisher::videoBytes() const {
  int64_t bytes = 0;
  for (const Stream& layer : video_) bytes += layer.bytes();
  return bytes;
}

void Publisher::setSound(SoundEncoder* encoder) {
  if (SoundEncoder* previous = std::exchange(sound_encoder_, nullptr)) previous->taps().remove(sound_);
  if (encoder == nullptr || sound_.source == nullptr) return;
  sound_encoder_ = encoder;
  encoder->taps().add(sound_);
}

void Publisher::Stream::onEncoded(GstBuffer* buffer) {
  bytes_.fetch_add(static_cast<int64_t>(gst_buffer_get_size(buffer)), std::memory_order_relaxed);
  gst_app_src_push_buffer(source, gst_buffer_ref(buffer));
}

}  // namespace corvane::rtc
