// What the engine needs of a service that rooms are held on, whatever the service is. All of it on the engine thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace corvane::rtc {

/// One medium that a member of a room sends.
struct FeedStream {
  std::string mid;  ///< names it in the member's feed
  bool is_video = false;
  std::string codec;  ///< "h264", "vp8", "opus"

  bool operator==(const FeedStream&) const = default;
};

/// Negotiates one peer connection with the service, and ends it there when it goes.
class PeerLink {
 public:
  class Listener {
   public:
    virtual void onRemoteDescription(const std::string& sdp) = 0;
    virtual void onRemoteCandidate(unsigned line, const std::string& candidate) = 0;
    /// The service refuses, or has ended the connection.
    virtual void onLinkFailed(const std::string& reason) = 0;

   protected:
    ~Listener() = default;
  };

  virtual ~PeerLink() = default;
  virtual void sendDescription(const std::string& sdp) = 0;
  virtual void sendCandidate(unsigned line, const std::string& candidate) = 0;
};

/// A peer connection over which a member's feed comes. Layers of a video are counted from the smallest.
class FeedLink : public PeerLink {
 public:
  static constexpr int kLargestLayer = 2;

  class Listener : public PeerLink::Listener {
   public:
    /// Pictures of another layer come from now on.
    virtual void onLayer(int layer) = 0;

   protected:
    ~Listener() = default;
  };

  /// Whether the service sends a medium of the feed.
  virtual void setSending(const std::string& mid, bool send) = 0;
  /// Which layer of a video the service sends, or the next smaller one that there is.
  virtual void setLayer(const std::string& mid, int layer) = 0;
};

/// A peer connection whose one data channel carries a room's messages. Texts to and from the channel pass through here:
/// what the service expects in them is its own.
class MessageLink : public PeerLink {
 public:
  enum class Delivery { kDelivered, kNoReceiver, kRefused };

  class Listener : public PeerLink::Listener {
   public:
    /// Messages can be sent.
    virtual void onMessagesOpen() = 0;
    /// private_message: to this member alone.
    virtual void onMessage(const std::string& from, const std::string& text, bool private_message) = 0;
    /// A member can be reached, or no longer.
    virtual void onReachable(const std::string& member, bool reachable) = 0;
    virtual void onDelivery(int64_t id, Delivery delivery) = 0;
    /// To be sent over the data channel.
    virtual void sendOverChannel(const std::string& text) = 0;

   protected:
    ~Listener() = default;
  };

  virtual void onChannelOpen() = 0;
  virtual void onChannelText(const std::string& text) = 0;
  /// `to`: a member, or "" for all. The delivery of `id` is reported.
  virtual void send(int64_t id, const std::string& to, const std::string& text) = 0;
};

enum class JoinFault { kOther, kToken, kDuplicateId };

struct JoinRequest {
  std::string room_id;
  std::string member_id;
  std::string token;
  std::string state;  ///< see RoomSession::setState()
};

/// One stay in one room. After onJoinFailed(), onRemoved() or onLost() it does nothing any more, and may be destroyed
/// from inside any call to its listener. Its links must go before it.
class RoomSession {
 public:
  class Listener {
   public:
    /// Members that were there already follow at once.
    virtual void onJoined() = 0;
    virtual void onJoinFailed(JoinFault fault, const std::string& reason) = 0;
    virtual void onMemberJoined(const std::string& member, const std::string& state) = 0;
    virtual void onMemberState(const std::string& member, const std::string& state) = 0;
    /// All that the member sends now in one of its two streams, a StreamIndex; nothing when it has stopped.
    virtual void onMemberStreams(const std::string& member, int32_t stream_index,
                                 const std::vector<FeedStream>& streams) = 0;
    /// An administrator lets nothing of a medium through, or lets it through again. Also of this member.
    virtual void onMemberModerated(const std::string& member, int32_t stream_index, const std::string& mid,
                                   bool banned) = 0;
    virtual void onMemberLeft(const std::string& member, bool put_out) = 0;
    /// The service has put this member out, or has ended the room.
    virtual void onRemoved(bool room_ended, const std::string& reason) = 0;
    /// The connection to the service is gone, and with it the stay.
    virtual void onLost() = 0;

   protected:
    ~Listener() = default;
  };

  /// Leaves the room, if it has been joined: what was told before still reaches the others.
  virtual ~RoomSession() = default;

  /// A short text that every member is told, also those that join later.
  virtual void setState(const std::string& state) = 0;
  /// One for each stream at a time.
  virtual std::unique_ptr<PeerLink> openPublisher(int32_t stream_index, PeerLink::Listener& listener) = 0;
  /// layer: of its video, see FeedLink::setLayer().
  virtual std::unique_ptr<FeedLink> openFeed(const std::string& member, int32_t stream_index,
                                             const std::vector<FeedStream>& streams, int layer,
                                             FeedLink::Listener& listener) = 0;
  virtual std::unique_ptr<MessageLink> openMessages(MessageLink::Listener& listener) = 0;
};

/// The connection to one service. It is made at once, and made anew, with growing pauses, whenever it is lost.
class Service {
 public:
  enum class State {
    kConnecting,
    kUp,
    kDown,         ///< was up; is being tried again
    kUnreachable,  ///< could not be reached; is being tried again
  };

  class Listener {
   public:
    virtual void onServiceState(Service& service, State state, const std::string& problem) = 0;

   protected:
    ~Listener() = default;
  };

  virtual ~Service() = default;
  virtual State state() const = 0;
  /// Why the service could not be reached last, "" when it could.
  virtual const std::string& problem() const = 0;
  /// Whether the service is on this machine, reached over the loopback interface.
  virtual bool onLoopback() const = 0;
  /// While the service is up.
  virtual std::unique_ptr<RoomSession> join(const JoinRequest& request, RoomSession::Listener& listener) = 0;
};

}  // namespace corvane::rtc
