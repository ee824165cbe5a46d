#include "room_world.h"

#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "corvane_rtc/rtc_video_events.h"
#include "effects/snapshots.h"
#include "rooms/room.h"
#include "scripted_web_socket.h"
#include "service/janus_connection.h"
#include "targets.h"

namespace corvane::fuzz {

using namespace corvane::rtc;

namespace {

constexpr size_t kMaxSteps = 200;

class NoEngineEvents final : public IRTCVideoEventHandler {};
NoEngineEvents no_engine_events;

// One for all inputs: its thread is started once.
EngineContext& context() {
  static EngineContext& engine =
      *std::unique_ptr<EngineContext>(new EngineContext{EngineLog({}), &no_engine_events, {}}).release();
  return engine;
}

bool isId(const char* id) {
  const std::string_view text = id != nullptr ? id : "";
  return !text.empty() && text.size() <= 128 && g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr);
}

// What the application is told has to make sense whatever the service says.
class CheckedEvents final : public IRTCRoomEventHandler {
 public:
  void onUserJoined(const UserInfo& user_info, int32_t) override {
    promise(isId(user_info.uid), "who joins has an id");
    promise(present_.insert(user_info.uid).second, "who joins was not there");
  }
  void onUserLeave(const char* uid, int32_t) override { promise(present_.erase(uid) == 1, "who leaves was there"); }
  void onUserPublishStream(const char* uid, int32_t type) override {
    promise(present_.contains(uid), "who publishes is there");
    promise(type >= 1 && type <= 3, "what is published is a medium");
  }
  void onUserMessageReceived(const char* uid, const char* message) override { onMessage(uid, message); }
  void onRoomMessageReceived(const char* uid, const char* message) override { onMessage(uid, message); }
  void onUserBinaryMessageReceived(const char* uid, const uint8_t* message, int32_t size) override {
    onBytes(uid, message, size);
  }
  void onRoomBinaryMessageReceived(const char* uid, const uint8_t* message, int32_t size) override {
    onBytes(uid, message, size);
  }
  void onRoomMessageSendResult(int64_t id, int32_t) override { onResult(id); }
  void onUserMessageSendResult(int64_t id, int32_t) override { onResult(id); }
  void onLeaveRoom(const RoomStats&) override { present_.clear(); }
  void onRoomStateChanged(const char*, const char*, int32_t state, const char*) override {
    if (state != kRoomStateJoined && state != kRoomStateConnectionLost) present_.clear();
  }

  int64_t newMessage() {
    unanswered_.insert(++last_message_);
    return last_message_;
  }
  bool allAnswered() const { return unanswered_.empty(); }

 private:
  static void onMessage(const char* uid, const char* message) {
    promise(isId(uid), "who sends has an id");
    promise(g_utf8_validate(message, -1, nullptr), "a message is a text");
  }
  static void onBytes(const char* uid, const uint8_t* message, int32_t size) {
    promise(isId(uid), "who sends has an id");
    promise(size >= 0 && (message != nullptr || size == 0), "a message has its bytes");
    uint8_t sum = 0;
    for (int32_t at = 0; at < size; ++at) sum = static_cast<uint8_t>(sum + message[at]);
    static_cast<volatile uint8_t&>(sum) = sum;
  }
  void onResult(int64_t id) { promise(unanswered_.erase(id) == 1, "what became of a message is told once"); }

  std::set<std::string> present_;
  std::set<int64_t> unanswered_;
  int64_t last_message_ = 0;
};

// The link of the newest data channel, between the room and what the service has made of it.
MessageLink* newest_channel = nullptr;

class SeenMessages final : public MessageLink {
 public:
  explicit SeenMessages(std::unique_ptr<MessageLink> link) : link_(std::move(link)) { newest_channel = link_.get(); }
  ~SeenMessages() override {
    if (newest_channel == link_.get()) newest_channel = nullptr;
  }
  void sendDescription(const std::string& sdp) override { link_->sendDescription(sdp); }
  void sendCandidate(unsigned line, const std::string& candidate) override { link_->sendCandidate(line, candidate); }
  void onChannelOpen() override { link_->onChannelOpen(); }
  void onChannelText(const std::string& text) override { link_->onChannelText(text); }
  void send(int64_t id, const std::string& to, const std::string& text) override { link_->send(id, to, text); }

 private:
  const std::unique_ptr<MessageLink> link_;
};

class SeenSession final : public RoomSession {
 public:
  explicit SeenSession(std::unique_ptr<RoomSession> session) : session_(std::move(session)) {}
  void setState(const std::string& state) override { session_->setState(state); }
  std::unique_ptr<PeerLink> openPublisher(int32_t stream_index, PeerLink::Listener& listener) override {
    return session_->openPublisher(stream_index, listener);
  }
  std::unique_ptr<FeedLink> openFeed(const std::string& member, int32_t stream_index,
                                     const std::vector<FeedStream>& streams, int layer,
                                     FeedLink::Listener& listener) override {
    return session_->openFeed(member, stream_index, streams, layer, listener);
  }
  std::unique_ptr<MessageLink> openMessages(MessageLink::Listener& listener) override {
    return std::make_unique<SeenMessages>(session_->openMessages(listener));
  }

 private:
  const std::unique_ptr<RoomSession> session_;
};

class SeenService final : public Service {
 public:
  explicit SeenService(Service::Listener& listener)
      : connection_(context(), std::make_unique<NamedService>("ws://127.0.0.1:1"), listener) {}
  State state() const override { return connection_.state(); }
  const std::string& problem() const override { return connection_.problem(); }
  bool onLoopback() const override { return true; }
  std::unique_ptr<RoomSession> join(const JoinRequest& request, RoomSession::Listener& listener) override {
    return std::make_unique<SeenSession>(connection_.join(request, listener));
  }

 private:
  JanusConnection connection_;
};

std::string withTransaction(std::string_view text) {
  std::string filled;
  for (const char character : text) {
    if (character == '@') {
      filled += scriptedSocket().newest_transaction;
    } else {
      filled += character;
    }
  }
  return filled;
}

}  // namespace

struct RoomWorld::State final : Service::Listener {
  void onServiceState(Service&, Service::State state, const std::string& problem) override {
    if (room != nullptr) room->onServiceState(*service, state, problem);
  }

  void join() {
    if (in_room->load()) return;
    in_room->store(true);
    room->join({.token = "token",
                .user_id = "ann",
                .extra_info = "extra",
                .auto_publish = false,
                .auto_subscribe = kMediaStreamBoth,
                .in_room = in_room});
  }

  void leave() {
    room->leave();
    in_room->store(false);
  }

  void play(std::string_view line) {
    WebSocket::Listener* socket = scriptedSocket().listener;
    const std::string_view text = line.substr(1);
    switch (line[0]) {
      case '>':
        if (socket != nullptr) socket->onText(withTransaction(text));
        break;
      case 'O':
        if (socket != nullptr && !std::exchange(scriptedSocket().opened, true)) socket->onOpen();
        break;
      case 'X':
        if (socket != nullptr) socket->onClosed("closed");
        break;
      case '#':
        if (newest_channel != nullptr) newest_channel->onChannelText(std::string(text));
        break;
      case 'o':
        if (newest_channel != nullptr) newest_channel->onChannelOpen();
        break;
      default:
        act(line[0]);
    }
  }

  void act(char action) {
    switch (action) {
      case 'j':
        return join();
      case 'l':
        return leave();
      case 'p':
        return room->publish(kStreamIndexMain, kMediaStreamBoth);
      case 'u':
        return room->unpublish(kStreamIndexMain, kMediaStreamVideo);
      case 'v':
        return room->setVisible(false);
      case 's':
        return room->setExtraInfo(1, "key", "value");
      case 'm':
        return send("", "to all", false);
      case 'b':
        return send("bob", std::string("\0\xff", 2), true);
      default:
        return;
    }
  }

  void send(const std::string& to, const std::string& body, bool is_binary) {
    if (in_room->load()) room->send({events.newMessage(), to, body, is_binary});
  }

  PictureTaps camera;
  SoundTaps microphone;
  RemoteSinks sinks;
  Snapshots snapshots;
  SoundMixer playback;
  SoundHooks hooks;
  RemoteSounds sounds{playback, hooks};
  CheckedEvents events;
  std::shared_ptr<std::atomic<bool>> in_room = std::make_shared<std::atomic<bool>>(false);
  std::unique_ptr<LocalMedia> media;
  std::unique_ptr<SeenService> service;
  std::unique_ptr<Room> room;
};

namespace {

void onEngineThread(std::function<void()> task) {
  context().thread.postAndWait(std::move(task));
}

void waitForSocket() {
  bool is_there = false;
  for (int round = 0; !is_there && round < 100; ++round) {
    std::this_thread::sleep_for(std::chrono::milliseconds(round > 0 ? 1 : 0));
    onEngineThread([&is_there] { is_there = scriptedSocket().listener != nullptr; });
  }
}

}  // namespace

RoomWorld::RoomWorld() : state_(std::make_unique<State>()) {
  onEngineThread([this] {
    State& state = *state_;
    state.media = std::make_unique<LocalMedia>(context(), kStreamIndexMain, state.camera, state.microphone);
    state.service = std::make_unique<SeenService>(state);
    RoomContext room = {.engine = context(),
                        .camera_media = *state.media,
                        .screen_media = *state.media,
                        .sinks = state.sinks,
                        .snapshots = state.snapshots,
                        .sounds = state.sounds,
                        .room_id = "room",
                        .user_id = "",
                        .user_extra_info = "",
                        .events = &state.events};
    state.room = std::make_unique<Room>(std::move(room), *state.service,
                                        [&state](const std::string&) -> Service& { return *state.service; });
    state.join();
  });
  waitForSocket();
}

RoomWorld::~RoomWorld() {
  onEngineThread([this] {
    // Nobody would answer the goodbyes that are waited for otherwise.
    if (WebSocket::Listener* listener = scriptedSocket().listener) listener->onClosed("over");
    state_->leave();
    state_->room.reset();
    state_->service.reset();
    state_->media.reset();
    promise(state_->events.allAnswered(), "what became of each message is told");
  });
  onEngineThread([] {});
}

void RoomWorld::play(std::string_view script) {
  static const bool trace = getenv("CORVANE_FUZZ_TRACE") != nullptr;
  bool reconnected = false;
  std::vector<std::string_view> lines;
  // What is done in one go, as everything is between two rounds of the engine's own work.
  const auto work = [this, &lines] {
    onEngineThread([this, &lines] {
      for (const std::string_view line : lines) state_->play(line);
    });
    lines.clear();
  };
  for (size_t step = 0; !script.empty() && step < kMaxSteps; ++step) {
    const std::string_view line = script.substr(0, script.find('\n'));
    script.remove_prefix(std::min(script.size(), line.size() + 1));
    if (line.empty()) continue;
    if (trace) fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
    if (line[0] != '~' && line[0] != 'R') {
      lines.push_back(line);
      continue;
    }
    work();
    if (line[0] == 'R' && !std::exchange(reconnected, true)) waitForSocket();
  }
  work();
}

}  // namespace corvane::fuzz
