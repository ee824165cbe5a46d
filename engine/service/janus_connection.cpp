#include "service/janus_connection.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "service/janus_farewell.h"
#include "service/janus_handle.h"
#include "service/janus_room.h"

namespace corvane::rtc {

namespace {

using std::chrono::milliseconds;

// A service that is just starting is there within two tenths of a second.
constexpr milliseconds kFirstPause(20);
constexpr milliseconds kLongestPause(3000);
// For so long a service may take to appear before joining fails for the lack of it.
constexpr std::chrono::seconds kPatience(4);
// The server ends sessions that it has not heard from for a minute, or for what its administrator chose.
constexpr std::chrono::seconds kSignOfLife(8);
// Of a service that is there, for the connection and a session.
constexpr std::chrono::seconds kWelcome(4);
// Of the server: it does not know the session, whatever has become of it.
constexpr int64_t kNoSuchSession = 458;
// What an ending engine waits for its rooms to be left in order.
constexpr milliseconds kFarewell(500);

}  // namespace

JanusConnection::JanusConnection(EngineContext& context, std::unique_ptr<AddressSource> address,
                                 Service::Listener& listener)
    : context_(context),
      source_(std::move(address)),
      listener_(&listener),
      pause_(kFirstPause),
      trying_since_(std::chrono::steady_clock::now()) {
  timer_ = context_.thread.after(milliseconds(0), [this] { connect(); });
}

JanusConnection::~JanusConnection() {
  listener_ = nullptr;
  timer_.reset();
  bool waiting = true;
  const AttachedSource limit = context_.thread.after(kFarewell, [&waiting] { waiting = false; });
  while (waiting && !farewells_.empty()) g_main_context_iteration(context_.thread.context(), TRUE);
  farewells_.clear();
  if (state_ == State::kUp) request("destroy", 0, Json::object());
}

std::unique_ptr<RoomSession> JanusConnection::join(const JoinRequest& request, RoomSession::Listener& listener) {
  return std::make_unique<JanusRoom>(*this, request, listener);
}

void JanusConnection::request(const char* kind, int64_t handle, Json message, Answer answer) {
  if (socket_ == nullptr) return;
  message["janus"] = kind;
  const int64_t transaction = ++last_transaction_;
  message["transaction"] = std::to_string(transaction);
  if (session_ != 0) message["session_id"] = session_;
  if (handle != 0) message["handle_id"] = handle;
  if (!address_.secret.empty()) message["apisecret"] = address_.secret;
  if (answer != nullptr) answers_[transaction] = std::move(answer);
  socket_->send(jsonText(message));
}

void JanusConnection::see(std::unique_ptr<JanusFarewell> farewell) {
  if (state_ != State::kUp) return;
  JanusFarewell& seen = *farewell;
  farewells_[&seen] = std::move(farewell);
  seen.begin();
}

void JanusConnection::dismiss(JanusFarewell& farewell) {
  farewells_.erase(&farewell);
  onMemberLeft();
}

bool JanusConnection::isHeld(const std::string& place) const {
  return std::any_of(farewells_.begin(), farewells_.end(),
                     [&](const auto& each) { return !each.first->hasLeft() && each.first->place() == place; });
}

void JanusConnection::afterLeaving(const std::string& place, std::weak_ptr<void> owner, std::function<void()> task) {
  if (!isHeld(place)) return task();
  waiting_.push_back({place, std::move(owner), std::move(task)});
}

void JanusConnection::onMemberLeft() {
  for (WaitingTask& waiting : std::exchange(waiting_, {})) {
    if (!waiting.owner.expired()) afterLeaving(waiting.place, waiting.owner, std::move(waiting.task));
  }
}

void JanusConnection::connect() {
  AddressSource::Problem problem;
  std::optional<ServiceAddress> address = source_->locate(problem);
  if (!address) {
    if (!problem.passing) {
      pause_ = kLongestPause;
      trying_since_ = {};  // nothing that a few more milliseconds would change
    }
    return retry(problem.text);
  }
  address_ = std::move(*address);
  socket_ = std::make_unique<WebSocket>(address_.url, "janus-protocol", *this);
  timer_ = context_.thread.after(kWelcome, [this] { retry("the service does not answer"); });
}

void JanusConnection::retry(const std::string& reason) {
  socket_.reset();
  session_ = 0;
  answers_.clear();
  timer_ = context_.thread.after(pause_, [this] { connect(); });
  pause_ = std::min(pause_ * 3 / 2, kLongestPause);
  const bool is_late = std::chrono::steady_clock::now() - trying_since_ > kPatience;
  if (is_late && state_ != State::kUnreachable) {
    context_.log.error("service %s cannot be reached: %s", source_->name().c_str(), reason.c_str());
    setState(State::kUnreachable, reason);
  } else {
    problem_ = reason;
  }
}

void JanusConnection::lose(const std::string& reason) {
  if (state_ != State::kUp) return retry(reason);
  context_.log.warning("service %s is lost: %s", source_->name().c_str(), reason.c_str());
  pause_ = kFirstPause;
  trying_since_ = std::chrono::steady_clock::now();
  retry(reason);
  farewells_.clear();
  waiting_.clear();
  setState(State::kDown, reason);
  handles_.clear();
  // Those that were just being attached, too. A handle's owner may end others while it is told, and make none: there is
  // no service.
  const std::vector<JanusHandle*> handles(all_handles_.begin(), all_handles_.end());
  for (JanusHandle* handle : handles) {
    if (all_handles_.contains(handle)) handle->onConnectionLost();
  }
}

void JanusConnection::setState(State state, const std::string& problem) {
  state_ = state;
  problem_ = problem;
  if (listener_ != nullptr) listener_->onServiceState(*this, state, problem);
}

void JanusConnection::keepAlive() {
  if (!std::exchange(heard_, false)) return lose("the service does not answer");
  request("keepalive", 0, Json::object());
  timer_ = context_.thread.after(kSignOfLife, [this] { keepAlive(); });
}

void JanusConnection::onOpen() {
  request("create", 0, Json::object(), [this](const Json& message) { onSession(message); });
}

void JanusConnection::onSession(const Json& message) {
  session_ = numberOf(memberOf(message, "data"), "id");
  if (session_ == 0) {
    const std::string reason = textOf(memberOf(message, "error"), "reason");
    return retry("the service refuses a session: " + reason);
  }
  context_.log.info("service %s at %s: connected", source_->name().c_str(), address_.url.c_str());
  pause_ = kFirstPause;
  heard_ = true;
  timer_ = context_.thread.after(kSignOfLife, [this] { keepAlive(); });
  setState(State::kUp, "");
}

void JanusConnection::onText(std::string_view text) {
  heard_ = true;
  const Json message = parseJson(text);
  const std::string kind = textOf(message, "janus");
  if (kind == "ack" || kind.empty()) return;
  const bool is_unknown =
      kind == "error" && session_ != 0 && numberOf(memberOf(message, "error"), "code") == kNoSuchSession;
  if (kind == "timeout" || is_unknown) return lose("the service ended the session");

  const std::string transaction = textOf(message, "transaction");
  if (!transaction.empty()) {
    const auto found = answers_.find(strtoll(transaction.c_str(), nullptr, 10));
    if (found == answers_.end()) return;
    const Answer answer = std::move(found->second);
    answers_.erase(found);
    return answer(message);
  }
  const auto handle = handles_.find(numberOf(message, "sender"));
  if (handle != handles_.end()) handle->second->onEvent(kind, message);
}

void JanusConnection::onClosed(const std::string& reason) {
  lose(reason);
}

}  // namespace corvane::rtc
