#include "service/janus_room.h"

#include <utility>

#include "corvane_rtc/common.h"
#include "service/janus_farewell.h"
#include "service/janus_feed.h"
#include "service/janus_messages.h"
#include "service/janus_screen.h"
#include "service/room_mark.h"

namespace corvane::rtc {

namespace {

constexpr char kPlugin[] = "janus.plugin.videoroom";
constexpr int64_t kNoSuchRoom = 426;
constexpr int64_t kRoomExists = 427;
constexpr int64_t kUnauthorized = 433;
constexpr int64_t kIdExists = 436;
// Of one room; the server's own limit is its machine.
constexpr int kMaxPublishers = 1000;
// A service that tells of more members than anyone could see is not believed.
constexpr size_t kMaxMembers = 2 * kMaxPublishers;
constexpr size_t kMaxStreams = 32;
// A room can be created by another and end again in between, but not every time.
constexpr int kMaxAttempts = 10;
constexpr std::chrono::seconds kJoinPatience(5);
// A connection that has not come about ends without a word.
constexpr std::chrono::seconds kHangUpPatience(2);

}  // namespace

// The publisher's peer connection belongs to the handle that has joined.
class JanusRoom::Publisher final : public PeerLink {
 public:
  Publisher(JanusRoom& room, PeerLink::Listener& listener) : listener_(listener), room_(room) {}
  ~Publisher() override {
    room_.publisher_ = nullptr;
    if (room_.over_) return;
    room_.handle_->send({{"request", "unpublish"}});
    if (offered_) room_.awaitHangUp();
  }

  void sendDescription(const std::string& sdp) override {
    whenFree([this, sdp] {
      offered_ = true;
      room_.handle_->send({{"request", "publish"}}, "offer", sdp,
                          [this, alive = std::weak_ptr<void>(alive_)](const Json& data, const std::string& answer) {
                            if (alive.expired()) return;
                            if (answer.empty()) return listener_.onLinkFailed(textOf(data, "error"));
                            listener_.onRemoteDescription(answer);
                          });
    });
  }
  void sendCandidate(unsigned line, const std::string& candidate) override {
    whenFree([this, line, candidate] { room_.handle_->sendCandidate(line, candidate); });
  }

  void onFree() {
    for (const auto& send : std::exchange(waiting_, {})) send();
  }
  void onHungUp(const std::string& reason) {
    offered_ = false;
    listener_.onLinkFailed(reason);
  }

  PeerLink::Listener& listener_;

 private:
  void whenFree(std::function<void()> send) {
    if (room_.hang_up_patience_ == nullptr) return send();
    waiting_.push_back(std::move(send));
  }

  JanusRoom& room_;
  bool offered_ = false;  // and not ended by the server
  std::vector<std::function<void()>> waiting_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
};

JanusRoom::JanusRoom(JanusConnection& connection, const JoinRequest& request, RoomSession::Listener& listener)
    : connection_(connection),
      request_(request),
      listener_(listener),
      state_(request.state),
      place_(jsonText(Json::array({request.room_id, request.member_id}))) {
  attach();
}

JanusRoom::~JanusRoom() {
  if (over_) return;
  // Also while it is being joined: what has been asked for cannot be taken back. The state once more: the others have
  // to know it before they are told of the leaving.
  connection_.see(std::make_unique<JanusFarewell>(
      connection_, std::move(handle_), JanusFarewell::Leaving{place_, request_.room_id, joined_ ? state_ : "", mark_}));
}

// A handle that has been in a room joins no other.
void JanusRoom::attach() {
  handle_ = std::make_unique<JanusHandle>(connection_, kPlugin, *this);
  join();
}

void JanusRoom::join() {
  if (++attempts_ > kMaxAttempts) return fail({{"error", "the service neither has the room nor creates it"}});
  patience_ = connection_.context().thread.after(kJoinPatience, [this] {
    fail({{"error", "the service does not answer"}});
  });
  Json body = {{"request", "join"},
               {"ptype", "publisher"},
               {"room", request_.room_id},
               {"id", request_.member_id},
               {"display", state_}};
  told_ = state_;
  if (!request_.token.empty()) {
    // A room that was set up on the server has a list of tokens, a common word, or neither.
    body["token"] = request_.token;
    body["pin"] = request_.token;
  }
  // Where this user is just leaving the same room, the service would take the newcomer for a second one.
  connection_.afterLeaving(place_, alive_, [this, body = std::move(body)]() mutable {
    handle_->send(std::move(body),
                  [this, alive = std::weak_ptr<void>(alive_), mark = mark_](const Json& data, const std::string&) {
                    if (errorCodeOf(data) == 0) *mark = openMarkOf(textOf(data, "description"));
                    if (!alive.expired() && !over_) onJoinAnswer(data);
                  });
  });
}

void JanusRoom::onJoinAnswer(const Json& data) {
  if (textOf(data, "videoroom") == "joined") {
    const std::string description = textOf(data, "description");
    return description == *mark_ || mark_->empty() ? onJoined(data) : keepOpen(description, data);
  }
  return errorCodeOf(data) == kNoSuchRoom ? createRoom() : fail(data);
}

// Who is the last is about to end the room.
void JanusRoom::keepOpen(const std::string& description, const Json& joined) {
  const Json body = {{"request", "edit"},
                     {"room", request_.room_id},
                     {"secret", description},
                     {"new_secret", *mark_},
                     {"new_description", *mark_}};
  is_opening_ = true;
  handle_->send(body, [this, alive = std::weak_ptr<void>(alive_), joined](const Json& data, const std::string&) {
    if (alive.expired() || over_) return;
    is_opening_ = false;
    // Otherwise it was opened again already: it cannot be ended in any case.
    if (errorCodeOf(data) != kNoSuchRoom) return onJoined(joined);
    early_.clear();
    attach();
  });
}

void JanusRoom::createRoom() {
  const std::string mark = makeRoomMark();
  const Json body = {{"request", "create"},    {"room", request_.room_id}, {"publishers", kMaxPublishers},
                     {"notify_joining", true}, {"videocodec", "h264,vp8"}, {"audiocodec", "opus"},
                     {"is_private", true},     {"description", mark},      {"transport_wide_cc_ext", true},
                     {"secret", mark}};
  handle_->send(body,
                [this, mark, known = mark_, alive = std::weak_ptr<void>(alive_)](const Json& data, const std::string&) {
                  const int64_t error = errorCodeOf(data);
                  if (error == 0) *known = mark;
                  if (alive.expired() || over_) return;
                  // Someone else may have been faster.
                  if (error != 0 && error != kRoomExists) return fail(data);
                  join();
                });
}

void JanusRoom::fail(const Json& data) {
  if (std::exchange(over_, true)) return;
  patience_.reset();
  const int64_t code = errorCodeOf(data);
  JoinFault fault = JoinFault::kOther;
  if (code == kUnauthorized) fault = JoinFault::kToken;
  if (code == kIdExists) fault = JoinFault::kDuplicateId;
  std::string reason = textOf(data, "error");
  if (reason.empty()) reason = "the service gave an answer that makes no sense";
  listener_.onJoinFailed(fault, reason);
}

void JanusRoom::onJoined(const Json& data) {
  joined_ = true;
  patience_.reset();
  tellState();
  const std::weak_ptr<void> alive = alive_;
  listener_.onJoined();
  for (const char* list : {"attendees", "publishers"}) {
    for (const Json& member : memberOf(data, list)) {
      if (alive.expired()) return;
      onMember(member);
    }
  }
  if (alive.expired()) return;
  onPublishers(memberOf(data, "publishers"));
  if (alive.expired()) return;
  for (const Json& event : std::exchange(early_, {})) {
    if (!alive.expired()) onHandleEvent(event, "");
  }
}

void JanusRoom::onMember(const Json& member) {
  const std::string id = idOf(member, "id");  // "" for a screen's, too: it is too long for a member's
  if (id.empty() || id == request_.member_id) return;
  if (!members_.contains(id)) {
    if (members_.size() >= kMaxMembers) return;
    members_.insert(id);
  }
  listener_.onMemberJoined(id, textOf(member, "display"));
}

void JanusRoom::onLeft(const std::string& id, bool put_out) {
  if (isScreenId(id)) return tellStreams(id, {});
  if (members_.erase(id) > 0) listener_.onMemberLeft(id, put_out);
}

void JanusRoom::onModerated(const std::string& id, const std::string& mid, bool banned) {
  const bool is_screen = isScreenId(id);
  const std::string member = is_screen ? memberOfScreen(id) : id;
  if (member != request_.member_id && !members_.contains(member)) return;
  listener_.onMemberModerated(member, is_screen ? kStreamIndexScreen : kStreamIndexMain, mid, banned);
}

void JanusRoom::remove(bool room_ended, const std::string& reason) {
  if (!std::exchange(over_, true)) listener_.onRemoved(room_ended, reason);
}

void JanusRoom::onPublishers(const Json& publishers) {
  const std::weak_ptr<void> alive = alive_;
  for (const Json& publisher : publishers) {
    if (alive.expired()) return;
    std::vector<FeedStream> streams;
    for (const Json& stream : memberOf(publisher, "streams")) {
      if (streams.size() == kMaxStreams) break;
      const std::string type = textOf(stream, "type");
      if ((type != "audio" && type != "video") || flagOf(stream, "disabled", false)) continue;
      streams.push_back({textOf(stream, "mid"), type == "video", textOf(stream, "codec")});
    }
    tellStreams(textOf(publisher, "id"), streams);
  }
}

void JanusRoom::tellStreams(const std::string& id, const std::vector<FeedStream>& streams) {
  const bool is_screen = isScreenId(id);
  const std::string member = is_screen ? memberOfScreen(id) : id;
  if (!members_.contains(member)) return;
  listener_.onMemberStreams(member, is_screen ? kStreamIndexScreen : kStreamIndexMain, streams);
}

void JanusRoom::onHandleEvent(const Json& data, const std::string& /*sdp*/) {
  constexpr char kPutOut[] = "the service put the user out of the room";
  if (is_opening_ && early_.size() < kMaxMembers) early_.push_back(data);
  if (!joined_ || over_) return;
  if (textOf(data, "videoroom") == "destroyed") return remove(/*room_ended=*/true, "the room was ended on the service");
  if (const Json& joining = memberOf(data, "joining"); joining.is_object()) return onMember(joining);
  if (const Json& publishers = memberOf(data, "publishers"); publishers.is_array()) return onPublishers(publishers);
  if (memberOf(data, "display").is_string()) {
    const std::string id = idOf(data, "id");
    if (members_.contains(id)) listener_.onMemberState(id, textOf(data, "display"));
    return;
  }
  if (const std::string change = textOf(data, "moderation"); !change.empty()) {
    return onModerated(textOf(data, "id"), textOf(data, "mid"), change == "muted");
  }
  if (const std::string id = textOf(data, "unpublished"); !id.empty()) return tellStreams(id, {});
  if (const std::string id = textOf(data, "kicked"); !id.empty()) {
    return id == request_.member_id ? remove(/*room_ended=*/false, kPutOut) : onLeft(id, /*put_out=*/true);
  }
  if (const std::string id = textOf(data, "leaving"); !id.empty()) {
    return textOf(data, "reason") == "kicked" ? remove(/*room_ended=*/false, kPutOut) : onLeft(id, /*put_out=*/false);
  }
}

void JanusRoom::onHandleCandidate(unsigned line, const std::string& candidate) {
  if (publisher_ != nullptr) publisher_->listener_.onRemoteCandidate(line, candidate);
}

void JanusRoom::onHandleHungUp(const std::string& reason) {
  if (!joined_ && !over_) return fail({{"error", reason}});
  if (hang_up_patience_ != nullptr) return onHandleFree();
  if (publisher_ != nullptr) publisher_->onHungUp(reason);
}

// The connection before has to end first: the server would take an offer for a change of it, and its end for that of
// the next one.
void JanusRoom::awaitHangUp() {
  hang_up_patience_ = connection_.context().thread.after(kHangUpPatience, [this] { onHandleFree(); });
}

void JanusRoom::onHandleFree() {
  hang_up_patience_.reset();
  if (publisher_ != nullptr) publisher_->onFree();
}

void JanusRoom::onHandleEnded(const std::string& reason) {
  return joined_ ? remove(/*room_ended=*/false, reason) : fail({{"error", reason}});
}

void JanusRoom::onHandleLost() {
  if (!std::exchange(over_, true)) listener_.onLost();
}

void JanusRoom::setState(const std::string& state) {
  state_ = state;
  tellState();
}

// Nobody can be told of a member that has not joined yet.
void JanusRoom::tellState() {
  if (!joined_ || told_ == state_) return;
  told_ = state_;
  handle_->send({{"request", "configure"}, {"display", told_}});
}

std::unique_ptr<PeerLink> JanusRoom::openPublisher(int32_t stream_index, PeerLink::Listener& listener) {
  if (stream_index == kStreamIndexScreen) return std::make_unique<JanusScreen>(connection_, request_, listener);
  auto publisher = std::make_unique<Publisher>(*this, listener);
  publisher_ = publisher.get();
  return publisher;
}

std::unique_ptr<FeedLink> JanusRoom::openFeed(const std::string& member, int32_t stream_index,
                                              const std::vector<FeedStream>& streams, int layer,
                                              FeedLink::Listener& listener) {
  const std::string id = stream_index == kStreamIndexScreen ? screenIdOf(member) : member;
  return std::make_unique<JanusFeed>(connection_, request_, id, streams, layer, listener);
}

std::unique_ptr<MessageLink> JanusRoom::openMessages(MessageLink::Listener& listener) {
  return std::make_unique<JanusMessages>(connection_, request_, *mark_, listener);
}

}  // namespace corvane::rtc
