// The connection over which one remote stream comes: received, decoded, handed on.
#pragma once

#include <gst/app/app.h>
#include <gst/video/video.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "media/picture.h"
#include "rooms/peer_connection.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// What has arrived since the feed was opened. Any thread may read it.
struct FeedCounts {
  std::atomic<int64_t> pictures = 0;
  std::atomic<int64_t> longest_gap_ns = 0;  ///< between two pictures; read and reset by reports
  std::atomic<int32_t> width = 0;
  std::atomic<int32_t> height = 0;
};

/// Engine thread only, but for what is marked otherwise.
class RemoteFeed final {
 public:
  class Receiver {
   public:
    /// On the feed's own thread, one picture at a time.
    virtual void onRemotePicture(const Picture& picture) = 0;

   protected:
    ~Receiver() = default;
  };

  RemoteFeed(EngineContext& context, RoomSession& session, const std::string& member,
             const std::vector<FeedStream>& streams, bool loopback_only, PeerConnection::Listener& listener,
             Receiver& receiver);
  /// The receiver is not called afterwards.
  ~RemoteFeed();
  RemoteFeed(const RemoteFeed&) = delete;
  RemoteFeed& operator=(const RemoteFeed&) = delete;

  void start() { peer_.start(); }
  /// Which media are wanted: a MediaStreamType. The service sends no others.
  void setWanted(int32_t media);

  const std::vector<FeedStream>& streams() const { return streams_; }
  const FeedCounts& counts() const { return counts_; }
  FeedCounts& counts() { return counts_; }
  PeerConnection& peer() { return peer_; }

 private:
  void addVideo(const FeedStream& stream);
  void linkPad(GstPad* pad);
  GstFlowReturn onPicture(GstPtr<GstSample> sample);

  const std::vector<FeedStream> streams_;
  Receiver& receiver_;
  FeedCounts counts_;
  PeerConnection peer_;
  int32_t wanted_;
  GstElement* video_entry_ = nullptr;  // where received packets go in
  std::unique_ptr<FeedLink> link_;
  // The feed's own thread's:
  GstPtr<GstCaps> caps_;
  GstVideoInfo info_ = {};
  GstClockTime last_picture_ = GST_CLOCK_TIME_NONE;
};

}  // namespace corvane::rtc
