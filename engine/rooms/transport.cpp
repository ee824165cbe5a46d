#include "rooms/transport.h"

#include <gst/rtp/gstrtcpbuffer.h>

#include <memory>
#include <string>
#include <string_view>

#include "capture/pipeline.h"

namespace corvane::rtc {

namespace {

// What a lost packet of pictures may take to be sent again: Janus asks a sender for it twice, 155 ms apart, and does
// not send the same packet to a receiver again within 200 ms. What arrives whole and in order is not held back.
constexpr guint kPicturesPatienceMs = 350;
// Sound is not sent again: this waits for packets that were overtaken, and is less than what the mixer keeps.
constexpr guint kSoundPatienceMs = 40;

constexpr guint64 kReportInterval = 100 * GST_MSECOND;
// bit/s. How soon after one report the next may ask for what was lost follows from it; GStreamer's own guess lets that
// wait for half a second at the start of a connection, and for 70 ms later on.
constexpr gdouble kReportBandwidth = 200'000;

template <guint milliseconds>
GstPadProbeReturn setLatency(GstPad* pad, GstPadProbeInfo*, gpointer) {
  const GstPtr<GstElement> jitter_buffer(gst_pad_get_parent_element(pad));
  if (jitter_buffer != nullptr) g_object_set(jitter_buffer.get(), "latency", milliseconds, nullptr);
  return GST_PAD_PROBE_REMOVE;
}

void onFirstPacket(GstElement* element, const char* pad_name, GstPadProbeCallback callback, gpointer data = nullptr) {
  const GstPtr<GstPad> pad(gst_element_get_static_pad(element, pad_name));
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, callback, data, nullptr);
}

void setUpJitterBuffer(GstElement* buffer) {
  // It would ask for the next packet when it guesses that it is due, and refuse it when it comes later: after a pause,
  // or a picture that was left out, that is the packet which everything after it needs.
  g_object_set(buffer, "rtx-next-seqnum", FALSE, nullptr);
  // It would keep a stream's first packet for as long as ones from before it could still come. Streams are joined in
  // the middle: what came before is of no use without more that was never sent. Its own fast start passes over a
  // packet that comes while the events of the stream's start still wait before it.
  onFirstPacket(buffer, "sink", setLatency<0>);
  onFirstPacket(buffer, "src", setLatency<kPicturesPatienceMs>);
}

// Behind each jitter buffer stands one of these, and learns from the first packet what comes through.
void setUpDemultiplexer(GstElement* demultiplexer) {
  const auto on_payload = +[](GstElement* element, guint, GstPad* out, gpointer) {
    const GstPtr<GstCaps> caps(gst_pad_get_current_caps(out));
    const GstPtr<GstPad> in(gst_element_get_static_pad(element, "sink"));
    const GstPtr<GstPad> before(gst_pad_get_peer(in.get()));
    const GstPtr<GstElement> buffer(before != nullptr ? gst_pad_get_parent_element(before.get()) : nullptr);
    if (caps == nullptr || buffer == nullptr) return;
    const char* media = gst_structure_get_string(gst_caps_get_structure(caps.get(), 0), "media");
    if (g_strcmp0(media, "audio") == 0) g_object_set(buffer.get(), "latency", kSoundPatienceMs, nullptr);
  };
  g_signal_connect(demultiplexer, "new-payload-type", G_CALLBACK(on_payload), nullptr);
}

gboolean onSendingReport(GObject*, GstBuffer* report, gboolean is_early, gpointer) {
  GstMapInfo map;
  if (!is_early && gst_buffer_map(report, &map, GST_MAP_READWRITE)) {
    lengthenRoundTrip({map.data, map.size});
    gst_buffer_unmap(report, &map);
  }
  return FALSE;  // whether it is sent is the session's to say
}

// The requests that come up the pipeline leave out those for a video's second and third layer.
void onFeedback(GObject*, guint type, guint kind, guint, guint, GstBuffer*, gpointer setup) {
  const bool asks = type == GST_RTCP_TYPE_PSFB && (kind == GST_RTCP_PSFB_TYPE_PLI || kind == GST_RTCP_PSFB_TYPE_FIR);
  if (asks) static_cast<const TransportSetup*>(setup)->ask_for_key_frame();
}

void setUpSession(GstElement* element, const TransportSetup& setup) {
  // A source would have to send two packets in a row before it counts, and a small picture is one. Only the service can
  // send any that are taken: they are signed.
  g_object_set(element, "probation", 0U, nullptr);
  GObject* session = nullptr;
  g_object_get(element, "internal-session", &session, nullptr);
  if (session == nullptr) return;
  g_object_set(session, "rtcp-min-interval", kReportInterval, "rtcp-fraction", kReportBandwidth, "internal-ssrc",
               guint{setup.reporter}, nullptr);
  g_signal_connect(session, "on-sending-rtcp", G_CALLBACK(onSendingReport), nullptr);
  if (setup.ask_for_key_frame != nullptr) {
    g_signal_connect(session, "on-feedback-rtcp", G_CALLBACK(onFeedback), const_cast<TransportSetup*>(&setup));
  }
  g_object_unref(session);
}

GstPadProbeReturn setRepeating(GstPad* pad, GstPadProbeInfo*, gpointer setup) {
  const std::unique_ptr<GstStructure, void (*)(GstStructure*)> map(
      gst_structure_new_empty("application/x-rtp-ssrc-map"), gst_structure_free);
  for (const auto& [source, repeater] : static_cast<const TransportSetup*>(setup)->repeating) {
    gst_structure_set(map.get(), std::to_string(source).c_str(), G_TYPE_UINT, repeater, nullptr);
  }
  const GstPtr<GstElement> element(gst_pad_get_parent_element(pad));
  if (element != nullptr) g_object_set(element.get(), "ssrc-map", map.get(), nullptr);
  return GST_PAD_PROBE_REMOVE;
}

// webrtcbin sets it up for what it knows of, up to the moment when it lets packets in.
void setUpRepeater(GstElement* element, const TransportSetup& setup) {
  if (!setup.repeating.empty()) onFirstPacket(element, "sink", setRepeating, const_cast<TransportSetup*>(&setup));
}

void onElementAdded(GstBin*, GstBin*, GstElement* element, gpointer setup) {
  const GstElementFactory* factory = gst_element_get_factory(element);
  if (factory == nullptr) return;
  const std::string_view kind = GST_OBJECT_NAME(factory);
  if (kind == "rtpjitterbuffer") setUpJitterBuffer(element);
  if (kind == "rtprtxsend") setUpRepeater(element, *static_cast<const TransportSetup*>(setup));
  if (kind == "rtpptdemux") setUpDemultiplexer(element);
  if (kind == "rtpsession") setUpSession(element, *static_cast<const TransportSetup*>(setup));
}

}  // namespace

void setUpTransport(GstElement* webrtc, const TransportSetup& setup) {
  g_object_set(webrtc, "latency", kPicturesPatienceMs, nullptr);
  g_signal_connect(webrtc, "deep-element-added", G_CALLBACK(onElementAdded), const_cast<TransportSetup*>(&setup));
}

// Janus takes a round trip of less than a millisecond for one that it does not know, and while it knows none it keeps
// nothing that could be sent again.
void lengthenRoundTrip(std::span<uint8_t> packets) {
  constexpr size_t kHeader = 8;
  constexpr size_t kDelay = kHeader + 20;  // since the other side's last report, in 1/65536 s
  constexpr uint8_t kReceiverReport = 201;
  constexpr uint32_t kMillisecond = 66;
  if (packets.size() < kDelay + sizeof(uint32_t) || packets[1] != kReceiverReport || (packets[0] & 0x1f) == 0) return;
  const uint32_t delay = GST_READ_UINT32_BE(&packets[kDelay]);
  if (delay > kMillisecond) GST_WRITE_UINT32_BE(&packets[kDelay], delay - kMillisecond);
}

}  // namespace corvane::rtc
