// The session with a Janus server over one WebSocket: requests and their answers, events for handles, and making all of
// it anew when it is lost.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/engine_context.h"
#include "core/json.h"
#include "service/address.h"
#include "service/signalling.h"
#include "service/web_socket.h"

namespace corvane::rtc {

class JanusFarewell;
class JanusHandle;

class JanusConnection final : public Service, public WebSocket::Listener {
 public:
  /// The whole message that answers a request. One that is never answered is forgotten with the connection.
  using Answer = std::function<void(const Json& message)>;

  JanusConnection(EngineContext& context, std::unique_ptr<AddressSource> address, Service::Listener& listener);
  /// All room sessions have gone before.
  ~JanusConnection() override;

  State state() const override { return state_; }
  const std::string& problem() const override { return problem_; }
  bool onLoopback() const override { return address_.on_loopback; }
  std::unique_ptr<RoomSession> join(const JoinRequest& request, RoomSession::Listener& listener) override;

  EngineContext& context() { return context_; }

  // Of handles.

  /// Sends a request of the session's, of one handle's when `handle` is not 0.
  void request(const char* kind, int64_t handle, Json message, Answer answer = nullptr);
  /// Every handle, for as long as it lives.
  void enlist(JanusHandle& handle) { all_handles_.insert(&handle); }
  void dismiss(JanusHandle& handle) { all_handles_.erase(&handle); }
  /// Where its events go. False when the server has given the id away already.
  bool add(int64_t id, JanusHandle& handle) { return handles_.emplace(id, &handle).second; }
  void remove(int64_t id, JanusHandle& handle) {
    const auto found = handles_.find(id);
    if (found != handles_.end() && found->second == &handle) handles_.erase(found);
  }
  // Of leaving.

  /// Begins a farewell, which then belongs to the connection. Nothing comes of it while the service is away.
  void see(std::unique_ptr<JanusFarewell> farewell);
  /// It is done.
  void dismiss(JanusFarewell& farewell);
  /// The service knows that the member of a farewell has left.
  void onMemberLeft();
  /// Runs `task` once nobody is just leaving `place`: at once, or later if `owner` is still there then. It never runs
  /// when the service is lost before.
  void afterLeaving(const std::string& place, std::weak_ptr<void> owner, std::function<void()> task);

 private:
  struct WaitingTask {
    std::string place;
    std::weak_ptr<void> owner;
    std::function<void()> task;
  };

  bool isHeld(const std::string& place) const;
  void connect();
  void retry(const std::string& reason);
  void lose(const std::string& reason);
  void setState(State state, const std::string& problem);
  void keepAlive();

  void onOpen() override;
  void onText(std::string_view text) override;
  void onClosed(const std::string& reason) override;
  void onSession(const Json& message);

  EngineContext& context_;
  const std::unique_ptr<AddressSource> source_;
  Service::Listener* listener_;  // null while this ends
  State state_ = State::kConnecting;
  std::string problem_;
  ServiceAddress address_;
  std::unique_ptr<WebSocket> socket_;
  int64_t session_ = 0;
  int64_t last_transaction_ = 0;
  std::map<int64_t, Answer> answers_;        // by transaction
  std::map<int64_t, JanusHandle*> handles_;  // by id, those that are attached
  std::set<JanusHandle*> all_handles_;
  std::map<JanusFarewell*, std::unique_ptr<JanusFarewell>> farewells_;
  std::vector<WaitingTask> waiting_;  // for places that are being left
  bool heard_ = false;                // anything since the last sign of life was asked for
  std::chrono::milliseconds pause_{0};
  std::chrono::steady_clock::time_point trying_since_;
  AttachedSource timer_;
};

}  // namespace corvane::rtc
