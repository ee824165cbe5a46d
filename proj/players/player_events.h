// What the players' event handlers share: the way of one event, and who keeps a handler alive.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "events/channel.h"
#include "log/log.h"

namespace corvane {

/// One player's channel and the gate before it.
class PlayerEvents {
 public:
  explicit PlayerEvents(Channel channel) : channel_(std::move(channel)) {}
  PlayerEvents(const PlayerEvents&) = delete;
  PlayerEvents& operator=(const PlayerEvents&) = delete;

  /// Closes the gate: the player's JavaScript object is gone.
  void disable() { enabled_.store(false, std::memory_order_relaxed); }

 protected:
  ~PlayerEvents() = default;

  // Posts the event and logs the post's status. `event` must be a literal or __func__; `closing`, a literal, is the
  // line behind the callback. Engine threads.
  template <class Fill>
  void post(const char* event, const char* closing, int32_t line, Fill fill) const {
    int32_t status = kPostCancelled;
    if (enabled_.load(std::memory_order_relaxed)) {
      auto deliver = [event, closing, fill = std::move(fill)](napi_env env, napi_value function) {
        LogWrite(kLogInfo, "[%s] , +callback", event);
        Payload payload(env, event);
        fill(payload);
        payload.deliver(function);
        LogWriteRow(kLogInfo, closing);
      };
      status = channel_.post(EventRecord::callable(std::move(deliver)));
    }
    LogWrite(kLogDetail, "-%s(%d), status: %d", event, line, status);
  }

 private:
  const Channel channel_;
  std::atomic<bool> enabled_{true};
};

/// Gives handlers to engine players of one kind and knows which of them holds which. An engine may call a handler for
/// longer than the JavaScript object that it stands for lives; every handler that was ever given away is therefore
/// kept for the life of the process. It is a flag and a reference to a channel, which is never released either.
template <class EnginePlayer, class Handler>
class GivenHandlers {
 public:
  static GivenHandlers& instance() {
    static auto* const all = new GivenHandlers;  // environments end at any time, also at the process's end
    return *all;
  }

  int32_t give(EnginePlayer& player, std::shared_ptr<Handler> handler) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const int32_t result = player.setEventHandler(handler.get());
    if (result == 0) holders_[&player] = handler.get();
    kept_.insert(std::move(handler));
    return result;
  }

  bool isGiven(const std::shared_ptr<Handler>& handler) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return kept_.contains(handler);
  }

  /// Detaches the handler unless the player holds another one by now.
  void takeBack(EnginePlayer& player, const std::shared_ptr<Handler>& handler) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto holder = holders_.find(&player);
    if (holder == holders_.end() || holder->second != handler.get()) return;
    player.setEventHandler(nullptr);
    holders_.erase(holder);
  }

 private:
  GivenHandlers() = default;

  std::mutex mutex_;
  std::unordered_map<EnginePlayer*, const Handler*> holders_;
  std::unordered_set<std::shared_ptr<Handler>> kept_;
};

}  // namespace corvane
