// The thread that owns an engine's state: it runs what is posted to it, in order, and GLib sources of its own context.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "core/gst_pointers.h"

namespace corvane::rtc {

/// Names the calling thread, as debuggers and /proc show it. At most 15 characters.
void nameThread(const char* name);

class EngineThread {
 public:
  using Task = std::function<void()>;

  EngineThread();
  /// The thread must have ended: see finish().
  ~EngineThread();
  EngineThread(const EngineThread&) = delete;
  EngineThread& operator=(const EngineThread&) = delete;

  /// Runs `task` on the thread, after everything posted before. Any thread. Dropped when the thread has ended.
  void post(Task task);
  /// The same, for a task that touches an object which may be gone by then: it runs only while `owner` lives.
  /// Owners are destroyed on the engine thread, so that an owner that lives at the task's start lives to its end.
  void post(std::weak_ptr<void> owner, Task task);

  /// The same as post(), and returns when the task has run, or was dropped. From any other thread.
  void postAndWait(Task task);

  /// Runs `task` once, `delay` from now, unless the result is dropped first. Engine thread only.
  [[nodiscard]] AttachedSource after(std::chrono::milliseconds delay, Task task);

  /// Runs `last` after everything posted before, ends the thread and returns when it has ended.
  /// From any other thread, once.
  void finish(Task last);

  /// For sources that are to run on the thread.
  GMainContext* context() const { return context_; }

 private:
  void run();
  void runTasks();

  GMainContext* context_;
  GMainLoop* loop_;
  GSource* wake_;  // ready whenever tasks_ may hold something
  std::mutex mutex_;
  std::deque<Task> tasks_;
  std::thread thread_;
};

}  // namespace corvane::rtc
