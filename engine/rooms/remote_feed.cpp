#include "rooms/remote_feed.h"

#include <gst/webrtc/webrtc.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

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

// A pause between pictures that a viewer notices.
constexpr GstClockTime kStall = 200 * GST_MSECOND;
// Of a screen, which comes five times a second while nothing on it moves.
constexpr GstClockTime kScreenStall = 500 * GST_MSECOND;
// How often a feed is looked after whose packets make no pictures.
constexpr std::chrono::milliseconds kWatchInterval(150);

void askForRepeats(GstElement*, GstWebRTCRTPTransceiver* transceiver, gpointer) {
  g_object_set(transceiver, "do-nack", TRUE, nullptr);
}

}  // namespace

RemoteFeed::RemoteFeed(EngineContext& context, RoomSession& session, const std::string& member, int32_t stream_index,
                       const std::vector<FeedStream>& streams, int layer, bool loopback_only,
                       PeerConnection::Listener& listener, Receiver& receiver)
    : context_(context),
      streams_(streams),
      receiver_(receiver),
      peer_(context, "feed", loopback_only, listener),
      stall_(stream_index == kStreamIndexScreen ? kScreenStall : kStall),
      wanted_(kMediaStreamBoth),
      layer_(layer),
      link_(session.openFeed(member, stream_index, streams, layer, *this)) {
  peer_.setLink(*link_);
  if (peer_.webrtc() == nullptr) return;
  for (const FeedStream& stream : streams_) {
    if (stream.is_video && video_entry_ == nullptr) addVideo(stream);
    if (!stream.is_video && sound_entry_ == nullptr) addSound(stream);
  }
  const auto on_pad = +[](GstElement*, GstPad* pad, gpointer self) { static_cast<RemoteFeed*>(self)->linkPad(pad); };
  g_signal_connect(peer_.webrtc(), "pad-added", G_CALLBACK(on_pad), this);
  g_signal_connect(peer_.webrtc(), "on-new-transceiver", G_CALLBACK(askForRepeats), nullptr);
}

RemoteFeed::~RemoteFeed() {
  peer_.stop();
}

void RemoteFeed::start() {
  peer_.start();
  if (video_entry_ != nullptr) watch_ = context_.thread.after(kWatchInterval, [this] { watchPictures(); });
}

void RemoteFeed::watchPictures() {
  watch_ = context_.thread.after(kWatchInterval, [this] { watchPictures(); });
  const int64_t packets = packets_.load(std::memory_order_relaxed);
  if (std::exchange(watched_packets_, packets) == packets) return;
  if (clockNow() - last_picture_.load(std::memory_order_relaxed) < stall_) return;
  // A request may be lost, or refused because there was one just before: only a picture answers it.
  const GstPtr<GstPad> entry(gst_element_get_static_pad(video_entry_, "sink"));
  gst_pad_push_event(entry.get(), gst_video_event_new_upstream_force_key_unit(GST_CLOCK_TIME_NONE, FALSE, 0));
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

  const GstPtr<GstPad> entry(gst_element_get_static_pad(depayloader, "sink"));
  const auto count = +[](GstPad*, GstPadProbeInfo*, gpointer self) {
    static_cast<RemoteFeed*>(self)->packets_.fetch_add(1, std::memory_order_relaxed);
    return GST_PAD_PROBE_OK;
  };
  gst_pad_add_probe(entry.get(), GST_PAD_PROBE_TYPE_BUFFER, count, this, nullptr);
}

void RemoteFeed::addSound(const FeedStream& stream) {
  if (stream.codec != "opus") return peer_.fail("an audio codec that is not known here: " + stream.codec);
  Pipeline& pipeline = peer_.pipeline();
  GstElement* depayloader = pipeline.add("rtpopusdepay", "sound");
  GstElement* decoder = pipeline.add("opusdec", nullptr);
  GstElement* convert = pipeline.add("audioconvert", nullptr);
  GstElement* resample = pipeline.add("audioresample", nullptr);
  GstElement* sink = pipeline.add("appsink", "blocks");
  if (!pipeline.missing().empty()) return;  // start() tells
  // What was lost is taken from the packet after it, or made up.
  g_object_set(decoder, "use-inband-fec", TRUE, "plc", TRUE, nullptr);
  g_object_set(sink, "sync", FALSE, "async", FALSE, "qos", FALSE, "enable-last-sample", FALSE, nullptr);
  const GstPtr<GstCaps> caps(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING, "S16LE", "layout",
                                                 G_TYPE_STRING, "interleaved", "rate", G_TYPE_INT, kSoundRate,
                                                 "channels", GST_TYPE_INT_RANGE, 1, kMaxSoundChannels, nullptr));
  gst_app_sink_set_caps(GST_APP_SINK(sink), caps.get());
  GstAppSinkCallbacks callbacks = {};
  callbacks.new_sample = [](GstAppSink* app_sink, gpointer self) {
    return static_cast<RemoteFeed*>(self)->onSound(GstPtr<GstSample>(gst_app_sink_pull_sample(app_sink)));
  };
  gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
  gst_element_link_many(depayloader, decoder, convert, resample, sink, nullptr);
  sound_entry_ = depayloader;
}

GstFlowReturn RemoteFeed::onSound(GstPtr<GstSample> sample) {
  if (sample == nullptr) return GST_FLOW_FLUSHING;
  gint channels = 0;
  gst_structure_get_int(gst_caps_get_structure(gst_sample_get_caps(sample.get()), 0), "channels", &channels);
  if (channels < 1 || channels > kMaxSoundChannels) return GST_FLOW_NOT_NEGOTIATED;
  if (channels != block_.channels) {
    block_.channels = channels;
    block_samples_ = 0;
  }
  GstMapInfo map;
  if (!gst_buffer_map(gst_sample_get_buffer(sample.get()), &map, GST_MAP_READ)) return GST_FLOW_OK;
  const auto* samples = reinterpret_cast<const int16_t*>(map.data);
  const size_t block_size = block_.samples().size();
  for (size_t left = map.size / sizeof(int16_t); left > 0;) {
    const size_t taken = std::min(left, block_size - block_samples_);
    std::copy_n(samples, taken, block_.storage.begin() + static_cast<ptrdiff_t>(block_samples_));
    samples += taken;
    left -= taken;
    block_samples_ += taken;
    if (block_samples_ < block_size) break;
    block_samples_ = 0;
    block_.time_us = static_cast<int64_t>(GST_TIME_AS_USECONDS(clockNow()));
    receiver_.onRemoteSound(block_);
  }
  gst_buffer_unmap(gst_sample_get_buffer(sample.get()), &map);
  return GST_FLOW_OK;
}

void RemoteFeed::linkPad(GstPad* pad) {
  if (GST_PAD_DIRECTION(pad) != GST_PAD_SRC) return;
  const GstPtr<GstCaps> caps(gst_pad_get_current_caps(pad));
  if (caps == nullptr) return;
  const char* media = gst_structure_get_string(gst_caps_get_structure(caps.get(), 0), "media");
  GstElement* entry = g_strcmp0(media, "video") == 0 ? video_entry_ : sound_entry_;
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
    if (((wanted_ ^ media) & bit) == 0) continue;
    if (stream.is_video) resumed_.store(true);
    link_->setSending(stream.mid, (media & bit) != 0);
  }
  wanted_ = media;
}

void RemoteFeed::setLayer(int layer) {
  if (std::exchange(layer_, layer) == layer) return;
  for (const FeedStream& stream : streams_) {
    if (stream.is_video) link_->setLayer(stream.mid, layer);
  }
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
  const GstClockTime previous = last_picture_.exchange(now, std::memory_order_relaxed);
  if (previous != 0 && !resumed_.exchange(false)) {
    const GstClockTime gap = now - previous;
    if (gap > stall_) {
      counts_.stalls.fetch_add(1, std::memory_order_relaxed);
      counts_.stall_ns.fetch_add(static_cast<int64_t>(gap), std::memory_order_relaxed);
    }
  }
  counts_.pictures.fetch_add(1, std::memory_order_relaxed);
  GstBuffer* buffer = gst_sample_get_buffer(sample.get());
  receiver_.onRemotePicture(
      {GstPtr<GstBuffer>(gst_buffer_ref(buffer)), info_, static_cast<int64_t>(GST_TIME_AS_USECONDS(now)), 0});
  return GST_FLOW_OK;
}

}  // namespace corvane::rtc
