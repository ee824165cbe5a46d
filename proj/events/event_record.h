// One queued event: owned copies of an engine callback's data and the way to turn them into a JavaScript call.
#pragma once

#include <napi.h>

#include <memory>
#include <string>
#include <utility>

#include "events/payload.h"
#include "events/record_memory.h"

namespace corvane {

/// Copies text that the engine lends for the length of a callback. Null is "".
inline std::string owned(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}
/// Copies bytes that the engine lends for the length of a callback. Null is "".
inline std::string owned(const uint8_t* bytes, int64_t size) {
  if (bytes == nullptr || size <= 0) return {};
  return {reinterpret_cast<const char*>(bytes), static_cast<size_t>(size)};
}
/// For log lines: the engine's text, or "" for null.
inline const char* shown(const char* text) {
  return text == nullptr ? "" : text;
}

/// An owned callable. Made and moved on any thread, called on the JavaScript thread only, destroyed on any:
/// whether it was delivered or not, everything that it holds goes with it.
class EventRecord {
 public:
  class Body {
   public:
    virtual ~Body() = default;
    static void* operator new(size_t size) { return takeRecordMemory(size); }
    static void operator delete(void* memory) { giveBackRecordMemory(memory); }
    /// Calls `function` with what the record stands for.
    virtual void deliver(napi_env env, napi_value function) = 0;
  };

  /// Stands for a call without arguments.
  EventRecord() = default;
  explicit EventRecord(std::unique_ptr<Body> body) : body_(std::move(body)) {}

  /// The event {"Type": name, "Object": payload}; `fill` sets the payload's keys in their order. `name` must be a
  /// literal: it is kept by pointer.
  template <class Fill>
  static EventRecord event(const char* name, Fill fill) {
    return EventRecord(std::make_unique<EventBody<Fill>>(name, std::move(fill)));
  }

  /// A body that builds and calls by itself.
  template <class Deliver>
  static EventRecord callable(Deliver deliver) {
    return EventRecord(std::make_unique<CallableBody<Deliver>>(std::move(deliver)));
  }

  /// For the channel's queue, which carries plain pointers.
  Body* release() { return body_.release(); }

 private:
  template <class Fill>
  class EventBody final : public Body {
   public:
    EventBody(const char* name, Fill fill) : name_(name), fill_(std::move(fill)) {}
    void deliver(napi_env env, napi_value function) override {
      Payload payload(env, name_);
      fill_(payload);
      payload.deliver(function);
    }

   private:
    const char* name_;
    Fill fill_;
  };

  template <class Deliver>
  class CallableBody final : public Body {
   public:
    explicit CallableBody(Deliver deliver) : deliver_(std::move(deliver)) {}
    void deliver(napi_env env, napi_value function) override { deliver_(env, function); }

   private:
    Deliver deliver_;
  };

  std::unique_ptr<Body> body_;
};

}  // namespace corvane
