#include "rooms/room.h"

#include <algorithm>
#include <utility>

#include "core/json.h"

namespace corvane::rtc {

namespace {

class NoRoomEvents final : public IRTCRoomEventHandler {};
NoRoomEvents no_room_events;

// A user is told of when messages reach it, or when that takes longer than it should.
constexpr std::chrono::milliseconds kMessagesDue(3000);
// After an interruption of the service its users come back one after the other.
constexpr std::chrono::milliseconds kReturnDue(8000);
// The service may take as long to find that an earlier connection of this user's is gone.
constexpr std::chrono::seconds kOwnGhost(40);
constexpr std::chrono::milliseconds kRejoinPause(500);
constexpr std::chrono::milliseconds kCheckPause(250);
constexpr size_t kMaxRoomInfo = 10;
// Who walks tells the others of its newest place this often.
constexpr std::chrono::milliseconds kPlacePause(200);

}  // namespace

Room::Room(RoomContext context, Service& service, Forwarding::ServiceFinder service_of)
    : context_(std::move(context)),
      service_(service),
      local_{LocalStream(context_, kStreamIndexMain), LocalStream(context_, kStreamIndexScreen)},
      forwarding_(context_, std::move(service_of)),
      messages_(context_, *this),
      report_(context_, *this) {
  setHandler(context_.events);
}

Room::~Room() {
  context_.events = &no_room_events;
  leave();
}

void Room::setHandler(IRTCRoomEventHandler* handler) {
  context_.events = handler != nullptr ? handler : &no_room_events;
}

// Being in the room.

void Room::join(RoomJoin join) {
  join_ = std::move(join);
  context_.user_id = join_.user_id;
  context_.user_extra_info = join_.extra_info;
  context_.engine.log.info("room %s: %s joins", context_.room_id.c_str(), join_.user_id.c_str());
  join_started_ = std::chrono::steady_clock::now();
  state_ = State::kJoining;
  was_in_ = false;
  subscribe_new_ = join_.auto_subscribe;
  paused_ = 0;
  own_ = {};
  own_.extra_info = join_.extra_info;
  own_.visible = visible_;
  own_.preferred = preferred_;
  setCapturing(capturing_);
  tellLayers();
  own_.published = join_.auto_publish && visible_ ? kMediaStreamBoth : 0;
  own_.place = space_.own();
  room_info_.clear();
  if (service_.state() == Service::State::kUnreachable) return end(kRoomStateJoinFailed, service_.problem());
  if (service_.state() == Service::State::kUp) enter();
}

void Room::enter() {
  told_ = writeMemberState(own_);
  session_ = service_.join({context_.room_id, join_.user_id, join_.token, told_}, *this);
}

void Room::leave() {
  if (state_ == State::kOut) return;
  forwarding_.stop();
  own_.leaving = true;
  if (state_ == State::kIn) tellState();
  context_.engine.log.info("room %s: %s leaves", context_.room_id.c_str(), join_.user_id.c_str());
  const RoomStats stats = was_in_ ? report_.total() : RoomStats();
  state_ = State::kOut;
  drop();
  users_.clear();
  for (LocalStream& stream : local_) stream.setPublished(0);
  messages_.giveUp(kMessageSendResultNotJoined);
  context_.events->onLeaveRoom(stats);
}

void Room::drop() {
  retry_.reset();
  check_.reset();
  report_.stop();
  for (LocalStream& stream : local_) stream.setSession(nullptr, false);
  messages_.setSession(nullptr, false);
  for (auto& [id, entry] : users_) entry.user->suspend(kRemoteVideoStateReasonInternal);
  session_.reset();
}

void Room::end(RoomState state, const std::string& reason) {
  state_ = State::kOut;
  join_.in_room->store(false);
  forwarding_.stop();
  drop();
  users_.clear();
  for (LocalStream& stream : local_) stream.setPublished(0);
  messages_.giveUp(kMessageSendResultNotJoined);
  reportState(state, reason);
}

void Room::reportState(RoomState state, const std::string& reason) {
  Json extra = {{"elapsed", millisecondsSince(join_started_)}, {"join_type", was_in_ ? 1 : 0}};
  if (!reason.empty()) extra["reason"] = reason;
  if (state != kRoomStateJoined) {
    context_.engine.log.error("room %s: state %d: %s", context_.room_id.c_str(), state, reason.c_str());
  }
  context_.events->onRoomStateChanged(context_.room_id.c_str(), join_.user_id.c_str(), state, jsonText(extra).c_str());
}

void Room::tellState() {
  forwarding_.follow(own_);
  std::string text = writeMemberState(own_);
  if (session_ == nullptr || text == told_) return;
  told_ = std::move(text);
  session_->setState(told_);
}

void Room::onServiceState(Service& service, Service::State state, const std::string& problem) {
  forwarding_.onServiceState(service, state);
  if (&service != &service_) return;
  const bool wants_in = state_ == State::kJoining || state_ == State::kInterrupted;
  if (state == Service::State::kUp && wants_in && session_ == nullptr) enter();
  if (state == Service::State::kUnreachable && state_ == State::kJoining) end(kRoomStateJoinFailed, problem);
}

void Room::onJoined() {
  state_ = State::kIn;
  const bool loopback = service_.onLoopback();
  messages_.setSession(session_.get(), loopback);
  for (int32_t index : {kStreamIndexMain, kStreamIndexScreen}) {
    LocalStream& stream = local_[static_cast<size_t>(index)];
    stream.setPublished(published(index));
    stream.setSession(session_.get(), loopback);
  }
  if (was_in_) {
    report_.resume();
  } else {
    joined_at_ = std::chrono::steady_clock::now();
    report_.start();
  }
  reportState(kRoomStateJoined, "");
  was_in_ = true;
  tellState();
  checkLater();
}

void Room::onJoinFailed(JoinFault fault, const std::string& reason) {
  session_.reset();
  if (fault == JoinFault::kDuplicateId && was_in_ && millisecondsSince(join_started_) < 1000 * kOwnGhost.count()) {
    retry_ = context_.engine.thread.after(kRejoinPause, [this] {
      if (service_.state() == Service::State::kUp && session_ == nullptr) enter();
    });
    return;
  }
  RoomState state = kRoomStateJoinFailed;
  if (fault == JoinFault::kToken) state = kRoomStateInvalidToken;
  if (fault == JoinFault::kDuplicateId) state = kRoomStateDuplicateLogin;
  end(state, reason);
}

void Room::onRemoved(bool room_ended, const std::string& reason) {
  end(room_ended ? kRoomStateRoomDismissed : kRoomStateKickedOut, reason);
}

void Room::onLost() {
  drop();
  const bool was_joined = state_ == State::kIn;
  state_ = was_in_ ? State::kInterrupted : State::kJoining;
  join_started_ = std::chrono::steady_clock::now();
  for (auto& [id, entry] : users_) entry.known_since = join_started_;
  if (was_joined) reportState(kRoomStateConnectionLost, service_.problem());
}

// The others.

Room::Entry& Room::entryOf(const std::string& user) {
  Entry& entry = users_[user];
  if (entry.user == nullptr) {
    entry.user = std::make_unique<RemoteUser>(context_, user, subscribe_new_);
    entry.told = std::make_unique<UserEvents>(context_, *entry.user);
    for (RemoteStream& stream : entry.user->streams()) stream.setPaused(paused_);
    applyVolume(*entry.user);
    applyRemoteVideo(*entry.user);
    entry.known_since = std::chrono::steady_clock::now();
  }
  return entry;
}

void Room::onMemberJoined(const std::string& member, const std::string& state) {
  Entry& entry = entryOf(member);
  entry.user->resume();
  entry.user->setState(readMemberState(state));
  refresh(entry);
}

void Room::onMemberState(const std::string& member, const std::string& state) {
  const auto found = users_.find(member);
  if (found == users_.end()) return;
  found->second.user->setState(readMemberState(state));
  refresh(found->second);
}

void Room::onMemberStreams(const std::string& member, int32_t stream_index, const std::vector<FeedStream>& streams) {
  const auto found = users_.find(member);
  if (found == users_.end()) return;
  found->second.user->stream(stream_index).setStreams(streams);
  refresh(found->second);
}

void Room::onMemberLeft(const std::string& member, bool put_out) {
  const auto found = users_.find(member);
  if (found == users_.end()) return;
  if (put_out) return remove(member, kUserLeaveReasonKickedOut);
  remove(member, found->second.user->state().leaving ? kUserLeaveReasonQuit : kUserLeaveReasonDropped);
}

void Room::onMemberModerated(const std::string& member, int32_t stream_index, const std::string& mid, bool banned) {
  const auto found = users_.find(member);
  const bool known = found != users_.end();
  if (!known && member != join_.user_id) return;
  const bool is_video = known ? found->second.user->stream(stream_index).isVideo(mid) : mid.starts_with("video");
  if (is_video) return context_.events->onVideoStreamBanned(member.c_str(), banned);
  context_.events->onAudioStreamBanned(member.c_str(), banned);
}

void Room::refresh(Entry& entry) {
  RemoteUser& user = *entry.user;
  takeRoomInfo(user.state());
  user.setPlace(space_.heard(user.uid(), user.state().place));
  user.update(session_.get(), service_.onLoopback());
  if (!entry.told->known()) announce(entry);
  if (!entry.told->known() || user.state().leaving) return;
  if (!user.state().visible) return entry.told->tellLeft(kUserLeaveReasonInvisible);
  entry.told->tellMedia();
}

void Room::announce(Entry& entry) {
  const RemoteUser& user = *entry.user;
  const bool due = std::chrono::steady_clock::now() - entry.known_since > kMessagesDue;
  if (!user.state().visible || user.state().leaving ||
      !(messages_.reaches(user.uid()) || user.state().forwarded || due)) {
    return;
  }
  entry.told->tellJoined(millisecondsSince(joined_at_));
}

void Room::remove(const std::string& user, UserLeaveReason reason) {
  const auto found = users_.find(user);
  Entry entry = std::move(found->second);
  users_.erase(found);
  entry.user->suspend(kRemoteVideoStateReasonRemoteOffline);
  adoptRoomInfo(entry.user->state());
  // Who leaves before messages reach it has been there all the same.
  if (!entry.told->known() && entry.user->state().visible) entry.told->tellJoined(millisecondsSince(joined_at_));
  if (entry.told->known()) entry.told->tellLeft(reason);
}

void Room::checkLater() {
  check_ = context_.engine.thread.after(kCheckPause, [this] {
    const auto now = std::chrono::steady_clock::now();
    std::vector<std::string> gone;
    for (LocalStream& stream : local_) stream.check();
    forwarding_.check();
    for (auto& [id, entry] : users_) {
      const MemberState& state = entry.user->state();
      entry.user->stream(kStreamIndexMain).check((state.capturing & kMediaStreamVideo) != 0);
      entry.user->stream(kStreamIndexScreen).check(state.screen_captured);
      if (!entry.told->known() && entry.user->present()) refresh(entry);
      if (!entry.user->present() && now - entry.known_since > kReturnDue) gone.push_back(id);
    }
    for (const std::string& id : gone) remove(id, kUserLeaveReasonDropped);
    checkLater();
  });
}

void Room::onReachableChanged() {
  for (auto& [id, entry] : users_) {
    if (!entry.told->known()) refresh(entry);
  }
}

bool Room::isInRoom(const std::string& user) const {
  return users_.contains(user);
}

// Streams.

void Room::setPublished(int32_t stream_index, int32_t media) {
  published(stream_index) = media;
  local_[static_cast<size_t>(stream_index)].setPublished(media);
  tellState();
}

void Room::publish(int32_t stream_index, int32_t media) {
  if (own_.visible) return setPublished(stream_index, published(stream_index) | media);
  const Json extra = {{"reason", "invisible users cannot publish"}, {"is_screen", stream_index == kStreamIndexScreen}};
  context_.events->onStreamStateChanged(context_.room_id.c_str(), join_.user_id.c_str(),
                                        kStreamStateNoPublishPermission, jsonText(extra).c_str());
}

void Room::unpublish(int32_t stream_index, int32_t media) {
  setPublished(stream_index, published(stream_index) & ~media);
}

void Room::subscribe(const std::string& user, int32_t stream_index, int32_t media) {
  changeSubscription(user, stream_index, media, 0);
}

void Room::unsubscribe(const std::string& user, int32_t stream_index, int32_t media) {
  changeSubscription(user, stream_index, 0, media);
}

void Room::changeSubscription(const std::string& user, int32_t stream_index, int32_t more, int32_t less) {
  const auto found = users_.find(user);
  if (found == users_.end()) {
    SubscribeConfig info = {};
    info.is_screen = stream_index == kStreamIndexScreen;
    const bool is_out = state_ == State::kOut;
    return context_.events->onStreamSubscribed(is_out ? kSubscribeStateNotInRoom : kSubscribeStateStreamNotFound,
                                               user.c_str(), info);
  }
  RemoteStream& stream = found->second.user->stream(stream_index);
  stream.setWanted((stream.wanted() | more) & ~less);
  refresh(found->second);
  stream.answerSubscription(more != 0);
}

void Room::subscribeAll(int32_t media) {
  subscribe_new_ |= media;
  for (auto& [id, entry] : users_) {
    for (RemoteStream& stream : entry.user->streams()) stream.setWanted(stream.wanted() | media);
    refresh(entry);
  }
}

void Room::unsubscribeAll(int32_t media) {
  subscribe_new_ &= ~media;
  for (auto& [id, entry] : users_) {
    for (RemoteStream& stream : entry.user->streams()) stream.setWanted(stream.wanted() & ~media);
    refresh(entry);
  }
}

void Room::setPaused(int32_t media, bool paused) {
  paused_ = paused ? paused_ | media : paused_ & ~media;
  for (auto& [id, entry] : users_) {
    for (RemoteStream& stream : entry.user->streams()) stream.setPaused(paused_);
    refresh(entry);
  }
}

std::vector<RemoteUser*> Room::remoteUsers() {
  std::vector<RemoteUser*> present;
  for (auto& [id, entry] : users_) {
    if (entry.user->present()) present.push_back(entry.user.get());
  }
  return present;
}

void Room::setVolume(const std::string& user, int32_t stream_index, int32_t volume) {
  volumes_[{user, stream_index}] = volume;
  const auto found = users_.find(user);
  if (found != users_.end()) applyVolume(*found->second.user);
}

void Room::setRemoteVideo(const std::string& user, const RemoteVideoConfig& wanted) {
  remote_videos_[user] = wanted;
  const auto found = users_.find(user);
  if (found == users_.end()) return;
  applyRemoteVideo(*found->second.user);
  refresh(found->second);
}

void Room::applyRemoteVideo(RemoteUser& user) {
  const auto own = remote_videos_.find(user.uid());
  user.stream(kStreamIndexMain).setConfig(own != remote_videos_.end() ? own->second : join_.remote_video);
}

void Room::setRoomVolume(int32_t volume) {
  room_volume_ = volume;
  for (auto& [id, entry] : users_) applyVolume(*entry.user);
}

void Room::applyVolume(RemoteUser& user) {
  for (int32_t index : {kStreamIndexMain, kStreamIndexScreen}) {
    const auto own = volumes_.find({user.uid(), index});
    user.stream(index).setVolume(own != volumes_.end() ? own->second : 100, room_volume_);
  }
}

void Room::changeSpace(const std::function<void(RoomSpace&)>& change) {
  change(space_);
  for (auto& [id, entry] : users_) entry.user->setPlace(space_.heard(id, entry.user->state().place));
  tellPlace();
}

// What is told of the room and of oneself.

void Room::tellPlace() {
  if (place_pause_ != nullptr || own_.place == space_.own()) return;
  own_.place = space_.own();
  tellState();
  place_pause_ = context_.engine.thread.after(kPlacePause, [this] {
    place_pause_.reset();
    tellPlace();
  });
}

void Room::setCapturing(const std::array<int32_t, 2>& media) {
  capturing_ = media;
  own_.capturing = capturing_[kStreamIndexMain];
  own_.screen_captured = capturing_[kStreamIndexScreen] != 0;
  if (state_ == State::kIn) tellState();
}

void Room::tellLayers() {
  const std::vector<VideoEncoding>& layers = context_.camera_media.layers();
  own_.layers.clear();
  if (layers.size() > 1) {
    for (const VideoEncoding& layer : layers) own_.layers.push_back({layer.width, layer.height});
  }
  if (state_ == State::kIn) tellState();
}

void Room::setVisible(bool visible) {
  visible_ = visible;
  if (state_ == State::kOut) return context_.events->onUserVisibilityChanged(visible, kUserVisibilityErrorOk);
  own_.visible = visible;
  if (visible) {
    tellState();
  } else {
    for (int32_t index : {kStreamIndexMain, kStreamIndexScreen}) setPublished(index, 0);  // tells the state
  }
  context_.events->onUserVisibilityChanged(visible, kUserVisibilityErrorOk);
}

void Room::setPreferred(bool preferred) {
  preferred_ = preferred;
  own_.preferred = preferred;
  if (state_ == State::kIn) tellState();
}

void Room::setExtraInfo(int32_t task, const std::string& key, const std::string& value) {
  context_.events->onSetRoomExtraInfoResult(task, tryExtraInfo(key, value));
}

int32_t Room::tryExtraInfo(const std::string& key, const std::string& value) {
  if (state_ != State::kIn) return kRoomExtraInfoErrorNotJoined;
  if (!room_info_.contains(key) && room_info_.size() >= kMaxRoomInfo) return kRoomExtraInfoErrorTooManyKeys;
  const auto now =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
          .count();
  // Later than what it replaces, whatever the clocks of the machines say.
  const ExtraInfo info = {value, join_.user_id, std::max<int64_t>(now, room_info_[key].time_ms + 1)};
  room_info_[key] = info;
  own_.room_info[key] = info;
  tellState();
  return kRoomExtraInfoErrorOk;
}

void Room::takeRoomInfo(const MemberState& state) {
  bool kept_by_another = false;
  for (const auto& [key, info] : state.room_info) {
    const auto known = room_info_.find(key);
    if (known == room_info_.end() && room_info_.size() >= kMaxRoomInfo) continue;
    if (known != room_info_.end() && known->second.time_ms >= info.time_ms) continue;
    room_info_[key] = info;
    kept_by_another |= own_.room_info.erase(key) > 0;
    context_.events->onRoomExtraInfoUpdate(key.c_str(), info.value.c_str(), info.user.c_str(), info.time_ms);
  }
  if (kept_by_another) tellState();
}

void Room::adoptRoomInfo(const MemberState& left) {
  if (state_ != State::kIn) return;
  for (const auto& [id, entry] : users_) {
    if (entry.user->present() && id < join_.user_id) return;  // that one does
  }
  for (const auto& [key, info] : left.room_info) {
    const auto known = room_info_.find(key);
    if (known != room_info_.end() && known->second == info) own_.room_info[key] = info;
  }
  tellState();
}

}  // namespace corvane::rtc
