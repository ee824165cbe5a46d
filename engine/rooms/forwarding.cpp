#include "rooms/forwarding.h"

#include <algorithm>
#include <array>
#include <utility>

#include "rooms/local_stream.h"

namespace corvane::rtc {

namespace {

// What publishing reports is of the user's own room.
class NoRoomEvents final : public IRTCRoomEventHandler {};
NoRoomEvents no_room_events;

// After an interruption the service may take a while to find that the user's earlier stay is over.
constexpr std::chrono::milliseconds kRejoinPause(500);
constexpr int kMaxRejoins = 80;

ForwardStreamError errorOf(JoinFault fault) {
  return fault == JoinFault::kToken ? kForwardStreamErrorInvalidToken : kForwardStreamErrorRefused;
}

}  // namespace

// The stay in one of the other rooms.
class Forwarding::Destination final : public RoomSession::Listener {
 public:
  Destination(Forwarding& owner, ForwardTarget target, Service& service)
      : owner_(owner),
        service_(service),
        token_(std::move(target.token)),
        context_{owner.room_.engine,          owner.room_.camera_media, owner.room_.screen_media,  owner.room_.sinks,
                 owner.room_.snapshots,       owner.room_.sounds,       std::move(target.room_id), owner.room_.user_id,
                 owner.room_.user_extra_info, &no_room_events},
        streams_{LocalStream(context_, kStreamIndexMain), LocalStream(context_, kStreamIndexScreen)} {}
  ~Destination() {
    told_.leaving = true;
    if (session_ != nullptr) session_->setState(writeMemberState(told_));
    drop();
  }

  const std::string& roomId() const { return context_.room_id; }
  const Service& service() const { return service_; }
  int32_t state() const { return state_; }
  int32_t error() const { return error_; }

  void follow(const MemberState& own, bool paused) {
    told_ = own;
    told_.forwarded = true;
    told_.room_info.clear();
    if (paused) told_.published = told_.screen = 0;
    streams_[kStreamIndexMain].setPublished(told_.published);
    streams_[kStreamIndexScreen].setPublished(told_.screen);
    std::string text = writeMemberState(told_);
    if (session_ != nullptr && text != sent_) session_->setState(text);
    sent_ = std::move(text);
  }

  void setToken(const std::string& token) {
    token_ = token;
    if (state_ == kForwardStreamStateFailure) onServiceState(service_.state());
  }

  void onServiceState(Service::State state) {
    if (session_ != nullptr) return;
    if (state == Service::State::kUp) return enter();
    if (state == Service::State::kUnreachable) setState(kForwardStreamStateFailure, kForwardStreamErrorServiceLost);
  }

  void check() {
    for (LocalStream& stream : streams_) stream.check();
  }

 private:
  void enter() {
    retry_.reset();
    session_ = service_.join({context_.room_id, context_.user_id, token_, sent_}, *this);
  }

  void drop() {
    retry_.reset();
    for (LocalStream& stream : streams_) stream.setSession(nullptr, false);
    session_.reset();
  }

  void setState(ForwardStreamState state, ForwardStreamError error) {
    if (state_ == state && error_ == error) return;
    state_ = state;
    error_ = error;
    if (error != kForwardStreamErrorOk) {
      context_.engine.log.error("forwarding to room %s: error %d", context_.room_id.c_str(), error);
    }
    owner_.report();
  }

  void onJoined() override {
    rejoins_ = 0;
    for (LocalStream& stream : streams_) stream.setSession(session_.get(), service_.onLoopback());
    setState(kForwardStreamStateSuccess, kForwardStreamErrorOk);
    owner_.reportEvent(context_.room_id, kForwardStreamEventConnected);
  }

  void onJoinFailed(JoinFault fault, const std::string& reason) override {
    drop();
    context_.engine.log.warning("forwarding to room %s: %s", context_.room_id.c_str(), reason.c_str());
    const bool is_ghost = fault == JoinFault::kDuplicateId && state_ == kForwardStreamStateSuccess;
    if (is_ghost && ++rejoins_ <= kMaxRejoins) {
      retry_ = context_.engine.thread.after(kRejoinPause, [this] { onServiceState(service_.state()); });
      return;
    }
    setState(kForwardStreamStateFailure, errorOf(fault));
  }

  void onRemoved(bool /*room_ended*/, const std::string& /*reason*/) override {
    drop();
    setState(kForwardStreamStateFailure, kForwardStreamErrorRemoteKicked);
    owner_.reportEvent(context_.room_id, kForwardStreamEventDisconnected);
  }

  // The service tells when it is back.
  void onLost() override {
    drop();
    owner_.reportEvent(context_.room_id, kForwardStreamEventInterrupted);
  }

  // Of the others there nothing is wanted.

  void onMemberJoined(const std::string& /*member*/, const std::string& /*state*/) override {}
  void onMemberState(const std::string& /*member*/, const std::string& /*state*/) override {}
  void onMemberStreams(const std::string& /*member*/, int32_t /*stream_index*/,
                       const std::vector<FeedStream>& /*streams*/) override {}
  void onMemberModerated(const std::string& /*member*/, int32_t /*stream_index*/, const std::string& /*mid*/,
                         bool /*banned*/) override {}
  void onMemberLeft(const std::string& /*member*/, bool /*put_out*/) override {}

  Forwarding& owner_;
  Service& service_;
  std::string token_;
  RoomContext context_;
  MemberState told_;
  std::string sent_;  // told_ as text
  int32_t state_ = kForwardStreamStateIdle;
  int32_t error_ = kForwardStreamErrorOk;
  int rejoins_ = 0;
  AttachedSource retry_;
  std::unique_ptr<RoomSession> session_;
  std::array<LocalStream, 2> streams_;  // by StreamIndex
};

Forwarding::Forwarding(RoomContext& room, ServiceFinder service_of) : room_(room), service_of_(std::move(service_of)) {}

Forwarding::~Forwarding() = default;

void Forwarding::set(const std::vector<ForwardTarget>& targets) {
  std::vector<std::string> gone;
  for (const auto& [id, destination] : destinations_) {
    const bool stays = std::any_of(targets.begin(), targets.end(),
                                   [&id = id](const ForwardTarget& target) { return target.room_id == id; });
    if (!stays) gone.push_back(id);
  }
  for (const std::string& id : gone) {
    destinations_.erase(id);
    reportEvent(id, kForwardStreamEventDisconnected);
  }
  for (const ForwardTarget& target : targets) {
    const auto known = destinations_.find(target.room_id);
    if (known == destinations_.end()) {
      add(target);
    } else {
      known->second->setToken(target.token);
      reportEvent(target.room_id, kForwardStreamEventRoomUpdated);
    }
  }
  report();
}

void Forwarding::add(const ForwardTarget& target) {
  Service& service = service_of_(target.room_id);
  Destination& added = *(destinations_[target.room_id] = std::make_unique<Destination>(*this, target, service));
  added.follow(own_, paused_);
  added.onServiceState(service.state());
}

void Forwarding::stop() {
  paused_ = false;
  for (const auto& [id, destination] : std::exchange(destinations_, {})) {
    const ForwardStreamStateInfo info = {kForwardStreamStateIdle, kForwardStreamErrorOk, id.c_str()};
    room_.events->onForwardStreamStateChanged(&info, 1);
    reportEvent(id, kForwardStreamEventDisconnected);
  }
}

void Forwarding::setPaused(bool paused) {
  paused_ = paused;
  follow(own_);
}

void Forwarding::follow(const MemberState& own) {
  own_ = own;
  for (const auto& [id, destination] : destinations_) destination->follow(own_, paused_);
}

void Forwarding::onServiceState(Service& service, Service::State state) {
  for (const auto& [id, destination] : destinations_) {
    if (&destination->service() == &service) destination->onServiceState(state);
  }
}

void Forwarding::check() {
  for (const auto& [id, destination] : destinations_) destination->check();
}

void Forwarding::report() {
  std::vector<ForwardStreamStateInfo> infos;
  for (const auto& [id, destination] : destinations_) {
    infos.push_back({destination->state(), destination->error(), id.c_str()});
  }
  room_.events->onForwardStreamStateChanged(infos.data(), static_cast<int32_t>(infos.size()));
}

void Forwarding::reportEvent(const std::string& room_id, ForwardStreamEvent event) {
  const ForwardStreamEventInfo info = {room_id.c_str(), event};
  room_.events->onForwardStreamEvent(&info, 1);
}

}  // namespace corvane::rtc
