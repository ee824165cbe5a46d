#include "service/janus_feed.h"

#include <utility>

#include "service/janus_connection.h"

namespace corvane::rtc {

JanusFeed::JanusFeed(JanusConnection& connection, const JoinRequest& room, const std::string& member,
                     const std::vector<FeedStream>& streams, int layer, FeedLink::Listener& listener)
    : listener_(listener), streams_(streams), handle_(connection, "janus.plugin.videoroom", *this) {
  Json wanted = Json::array();
  for (const FeedStream& stream : streams_) {
    wanted.push_back({{"feed", member}, {"mid", stream.mid}});
    if (stream.is_video && layer != kLargestLayer) wanted.back()["substream"] = layer;
  }
  Json body = {{"request", "join"}, {"ptype", "subscriber"}, {"room", room.room_id}, {"streams", std::move(wanted)}};
  if (!room.token.empty()) body["pin"] = room.token;
  handle_.send(std::move(body), [this](const Json& data, const std::string& offer) {
    if (offer.empty()) return listener_.onLinkFailed(textOf(data, "error"));
    listener_.onRemoteDescription(offer);
  });
}

void JanusFeed::sendDescription(const std::string& sdp) {
  handle_.send({{"request", "start"}}, "answer", sdp);
}

void JanusFeed::configure(const std::string& mid, Json stream) {
  for (size_t index = 0; index < streams_.size(); ++index) {
    if (streams_[index].mid != mid) continue;
    stream["mid"] = std::to_string(index);
    return handle_.send({{"request", "configure"}, {"streams", Json::array({std::move(stream)})}});
  }
}

void JanusFeed::onHandleEvent(const Json& data, const std::string& offer) {
  const Json& layer = memberOf(data, "substream");
  if (layer.is_number_unsigned() && layer.get<uint64_t>() <= kLargestLayer) return listener_.onLayer(layer.get<int>());
  // An update, which the server sends when a stream of the feed has changed.
  if (!offer.empty()) listener_.onRemoteDescription(offer);
}

void JanusFeed::onHandleCandidate(unsigned line, const std::string& candidate) {
  listener_.onRemoteCandidate(line, candidate);
}

}  // namespace corvane::rtc
