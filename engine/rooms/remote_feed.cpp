#include "rooms/remote_feed.h"

#include <gst/webrtc/webrtc.h>

#include <algorithm>
#include <iterator>

#include "corvane_rtc/common.h"

namespace corvane::rtc {

namespace {

// What makes pictures of a codec's packets.
struct Chain {
  const char* codec;
  const char* depayloader;
  const char* parser;  // or null
  const char* decoder;
};

constexpr Chain kChains[] = {
    {"h264", "rtph264depay", "h264parse", "avdec_h264"},
    {"vp8", "rtpvp8depay", nullptr, "vp8dec"},
};

void askForRepeats(GstElement*, GstWebRTCRTPTransceiver* transceiver, gpointer) {
  g_object_set(transceiver, "do-nack", TRUE, nullptr);
}

}  // namespace

RemoteFeed::RemoteFeed(EngineContext& context, RoomSession& session, const std::string& member,
                       const std::vector<FeedStream>& streams, bool loopback_only, PeerConnection::Listener& listener,
                       Receiver& receiver)
    : streams_(streams),
      receiver_(receiver),
      peer_(context, "feed", loopback_only, listener),
      wanted_(kMediaStreamBoth),
      link_(session.openFeed(member, streams, peer_)) {
  peer_.setLink(*link_);
  if (peer_.webrtc() == nullptr) return;
  for (const FeedStream& stream : streams_) {
    if (stream.is_video && video_entry_ == nullptr) addVideo(stream);
  }
  const auto on_pad = +[](GstElement*, GstPad* pad, gpointer self) { static_cast<RemoteFeed*>(self)->linkPad(pad); };
  g_signal_connect(peer_.webrtc(), "pad-added", G_CALLBACK(on_pad), this);
  g_signal_connect(peer_.webrtc(), "on-new-transceiver", G_CALLBACK(askForRepeats), nullptr);
}

RemoteFeed::~RemoteFeed() {
  peer_.stop();
}

void RemoteFeed::addVideo(const FeedStream& stream) {
  const auto* chain = std::find_if(std::begin(kChains), std::end(kChains),
                                   [&](const Chain& candidate) { return stream.codec == candidate.codec; });
  if (chain == std::end(kChains)) return peer_.fail("a video codec that is not known here: " + stream.codec);
  Pipeline& pipeline = peer_.pipeline();
  GstElement* depayloader = pipeline.add(chain->depayloader, "video");
  GstElement* parser = chain->parser != nullptr ? pipeline.add(chain->parser, nullptr) : nullptr;
  GstElement* decoder = pipeline.add(chain->decoder, "decoder");
  GstElement* sink = pipeline.add("appsink", "pictures");
  if (!pipeline.missing().empty()) return;  // start() tells

  // After a loss nothing is shown that is not whole; a key frame is asked for.
  g_object_set(depayloader, "request-keyframe", TRUE, "wait-for-keyframe", TRUE, nullptr);
  if (stream.codec == "h264") {
    // More threads would each hold a picture back.
    g_object_set(decoder, "max-threads", 1, "output-corrupt", FALSE, nullptr);
  }
  g_object_set(sink, "sync", FALSE, "async", FALSE, "qos", FALSE, "enable-last-sample", FALSE, "max-buffers", 2U,
               "drop", TRUE, nullptr);
  GstAppSinkCallbacks callbacks = {};
  callbacks.new_sample = [](GstAppSink* app_sink, gpointer self) {
    return static_cast<RemoteFeed*>(self)->onPicture(GstPtr<GstSample>(gst_app_sink_pull_sample(app_sink)));
  };
  gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
  if (parser != nullptr) {
    gst_element_link_many(depayloader, parser, decoder, sink, nullptr);
  } else {
    gst_element_link_many(depayloader, decoder, sink, nullptr);
  }
  video_entry_ = depayloader;
}

void RemoteFeed::linkPad(GstPad* pad) {
  if (GST_PAD_DIRECTION(pad) != GST_PAD_SRC) return;
  const GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
  if (caps == nullptr) return;
  const char* media = gst_structure_get_string(gst_caps_get_structure(caps.get(), 0), "media");
  GstElement* entry = g_strcmp0(media, "video") == 0 ? video_entry_ : nullptr;
  if (entry == nullptr) {
    // Unlinked, it would end the whole connection with its first packet.
    const auto drop = +[](GstPad*, GstPadProbeInfo*, gpointer) { return GST_PAD_PROBE_DROP; };
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, drop, nullptr, nullptr);
    return;
  }
  const GstPtr<GstPad> sink(gst_element_get_static_pad(entry, "sink"));
  gst_pad_link(pad, sink.get());
}

void RemoteFeed::setWanted(int32_t media) {
  for (const FeedStream& stream : streams_) {
    const int32_t bit = stream.is_video ? kMediaStreamVideo : kMediaStreamAudio;
    if (((wanted_ ^ media) & bit) != 0) link_->setSending(stream.mid, (media & bit) != 0);
  }
  wanted_ = media;
}

GstFlowReturn RemoteFeed::onPicture(GstPtr<GstSample> sample) {
  if (sample == nullptr) return GST_FLOW_FLUSHING;
  GstCaps* caps = gst_sample_get_caps(sample.get());
  if (caps != caps_.get()) {
    if (!gst_video_info_from_caps(&info_, caps)) return GST_FLOW_NOT_NEGOTIATED;
    caps_.reset(gst_caps_ref(caps));
    counts_.width.store(GST_VIDEO_INFO_WIDTH(&info_), std::memory_order_relaxed);
    counts_.height.store(GST_VIDEO_INFO_HEIGHT(&info_), std::memory_order_relaxed);
  }
  const GstClockTime now = clockNow();
  if (GST_CLOCK_TIME_IS_VALID(last_picture_)) {
    const auto gap = static_cast<int64_t>(now - last_picture_);
    if (gap > counts_.longest_gap_ns.load(std::memory_order_relaxed)) {
      counts_.longest_gap_ns.store(gap, std::memory_order_relaxed);
    }
  }
  last_picture_ = now;
  counts_.pictures.fetch_add(1, std::memory_order_relaxed);
  GstBuffer* buffer = gst_sample_get_buffer(sample.get());
  receiver_.onRemotePicture(
      {GstPtr<GstBuffer>(gst_buffer_ref(buffer)), info_, static_cast<int64_t>(GST_TIME_AS_USECONDS(now)), 0});
  return GST_FLOW_OK;
}

}  // namespace corvane::rtc
