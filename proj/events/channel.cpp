#include "events/channel.h"

#include <mutex>

namespace corvane {

// Shared by the channel's copies and the host's thread-safe function, whose finaliser closes it.
class Channel::Queue {
 public:
  int32_t post(EventRecord record) {
    EventRecord::Body* body = record.release();
    napi_status status = napi_closing;
    {
      // The host frees its function at the environment's end while engine threads may still post.
      const std::lock_guard<std::mutex> lock(lock_);
      if (open_) status = function_.BlockingCall(body);
    }
    if (status != napi_ok) delete body;
    return status;
  }

  static void deliver(Napi::Env env, Napi::Function function, Queue*, EventRecord::Body* body) {
    const std::unique_ptr<EventRecord::Body> owner(body);
    // Without an environment the queue is being emptied: the record goes undelivered.
    if (static_cast<napi_env>(env) == nullptr || function.IsEmpty()) return;
    if (body != nullptr) {
      body->deliver(env, function);
    } else {
      napi_call_function(env, env.Undefined(), function, 0, nullptr, nullptr);
    }
  }

  void close() {
    const std::lock_guard<std::mutex> lock(lock_);
    open_ = false;
  }

  using Function = Napi::TypedThreadSafeFunction<Queue, EventRecord::Body, &Queue::deliver>;

  std::mutex lock_;
  bool open_ = false;
  Function function_;
  Finalizer finalizer_ = nullptr;
};

Channel Channel::open(Napi::Env env, const Napi::Function& function, const char* resource_name, Finalizer finalizer) {
  auto queue = std::make_shared<Queue>();
  queue->finalizer_ = finalizer;
  // The host holds the queue until its finaliser ran.
  auto* held = new std::shared_ptr<Queue>(queue);  // freed by the finaliser below
  queue->function_ = Queue::Function::New(
      env, function, Napi::Object::New(env), resource_name, 0, 1, queue.get(),
      [](Napi::Env ending, std::shared_ptr<Queue>* closing, Queue*) {
        const std::unique_ptr<std::shared_ptr<Queue>> owner(closing);
        (*closing)->close();
        if ((*closing)->finalizer_ != nullptr) (*closing)->finalizer_(ending);
      },
      held);
  if (static_cast<napi_threadsafe_function>(queue->function_) == nullptr) {
    delete held;
    return {};
  }
  queue->open_ = true;
  return Channel(std::move(queue));
}

int32_t Channel::post(EventRecord record) const {
  if (queue_ == nullptr) return napi_invalid_arg;
  return queue_->post(std::move(record));
}

}  // namespace corvane
