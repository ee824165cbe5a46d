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
#include "media/sound_block.h"
#include "rooms/peer_connection.h"
#include "service/signalling.h"

namespace corvane::rtc {

/// What has arrived since the feed was opened. Any thread may read it.
struct FeedCounts {
  std::atomic<int64_t> pictures = 0;
  std::atomic<int64_t> stalls = 0;    ///< gaps between two pictures of more than 200 ms, of a screen 500 ms
  std::atomic<int64_t> stall_ns = 0;  ///< all of them together
  std::atomic<int32_t> width = 0;
  std::atomic<int32_t> height = 0;
};

/// Engine thread only, but for what is marked otherwise.
class RemoteFeed final : private FeedLink::Listener {
 public:
  class Receiver {
   public:
    /// On the feed's own thread, one picture at a time.
    virtual void onRemotePicture(const Picture& picture) = 0;
    /// On another thread of the feed's, 10 ms at a time.
    virtual void onRemoteSound(const SoundBlock& block) = 0;
    /// On the engine thread: see FeedLink.
    virtual void onRemoteLayer(int layer) = 0;

   protected:
    ~Receiver() = default;
  };

  RemoteFeed(EngineContext& context, RoomSession& session, const std::string& member, int32_t stream_index,
             const std::vector<FeedStream>& streams, int layer, bool loopback_only, PeerConnection::Listener& listener,
             Receiver& receiver);
  /// The receiver is not called afterwards.
  ~RemoteFeed();
  RemoteFeed(const RemoteFeed&) = delete;
  RemoteFeed& operator=(const RemoteFeed&) = delete;

  void start();
  /// Which media are wanted: a MediaStreamType. The service sends no others.
  void setWanted(int32_t media);
  /// Which layer of the video is wanted: see FeedLink.
  void setLayer(int layer);

  const std::vector<FeedStream>& streams() const { return streams_; }
  const FeedCounts& counts() const { return counts_; }
  PeerConnection& peer() { return peer_; }

 private:
  void onRemoteDescription(const std::string& sdp) override { peer_.onRemoteDescription(sdp); }
  void onRemoteCandidate(unsigned line, const std::string& candidate) override {
    peer_.onRemoteCandidate(line, candidate);
  }
  void onLinkFailed(const std::string& reason) override { peer_.fail(reason); }
  void onLayer(int layer) override { receiver_.onRemoteLayer(layer); }

  void addVideo(const FeedStream& stream);
  void addSound(const FeedStream& stream);
  void linkPad(GstPad* pad);
  void watchPictures();
  GstFlowReturn onPicture(GstPtr<GstSample> sample);
  GstFlowReturn onSound(GstPtr<GstSample> sample);

  EngineContext& context_;
  const std::vector<FeedStream> streams_;
  Receiver& receiver_;
  FeedCounts counts_;
  PeerConnection peer_;
  const GstClockTime stall_;  // a pause between pictures that a viewer notices
  int32_t wanted_;
  int layer_;
  std::atomic<bool> resumed_ = false;  // pictures come again that were not wanted for a while
  GstElement* video_entry_ = nullptr;  // where received packets go in, as is:
  GstElement* sound_entry_ = nullptr;
  std::atomic<int64_t> packets_ = 0;            // of pictures, since the feed was opened
  std::atomic<GstClockTime> last_picture_ = 0;  // when it was decoded
  int64_t watched_packets_ = 0;
  AttachedSource watch_;
  std::unique_ptr<FeedLink> link_;
  // The feed's own thread's:
  GstPtr<GstCaps> caps_;
  GstVideoInfo info_ = {};
  // The sound thread's: a block on its way.
  SoundBlock block_ = {};
  size_t block_samples_ = 0;
};

}  // namespace corvane::rtc
