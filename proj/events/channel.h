// The road from engine threads to one JavaScript function.
#pragma once

#include <napi.h>

#include <memory>

#include "events/event_record.h"

namespace corvane {

/// The host's status for a queued post, and the one that a closed gate answers.
inline constexpr int32_t kPosted = napi_ok;
inline constexpr int32_t kPostCancelled = napi_cancelled;

/// A thread-safe function with an unbounded first-in-first-out queue. Copies share one queue. The channel is never
/// released: it keeps the event loop alive and lives until the environment ends, when what is queued is dropped.
class Channel {
 public:
  /// Runs on the JavaScript thread when the environment tears the channel down.
  using Finalizer = void (*)(napi_env env);

  /// No channel: posts answer the host's status for an invalid one.
  Channel() = default;

  /// Makes a channel to `function`; on failure the host's error is pending and the channel stays empty.
  /// JavaScript thread.
  static Channel open(Napi::Env env, const Napi::Function& function, const char* resource_name, Finalizer finalizer);

  /// Queues the record and answers the host's status; a record that was not queued is destroyed before the return.
  /// Any thread; never waits.
  int32_t post(EventRecord record) const;

 private:
  class Queue;
  explicit Channel(std::shared_ptr<Queue> queue) : queue_(std::move(queue)) {}

  std::shared_ptr<Queue> queue_;
};

}  // namespace corvane
