// The threads on which the scripted engine calls into the module.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace corvane::scripted {

/// Names the calling thread for debuggers and sanitizers; at most 15 bytes.
void nameThread(const char* name);

/// Numbered threads, each working its tasks off in order. They start when first needed and are joined by join(), after
/// which they may start again.
class EngineThreads {
 public:
  static constexpr size_t kMaxThreads = 64;

  static EngineThreads& instance();

  void post(size_t number, std::function<void()> task);
  /// Works everything off first. Not from one of the threads.
  void join();

 private:
  struct Worker {
    std::deque<std::function<void()>> tasks;
    std::condition_variable wake;
    bool ending = false;
    std::thread thread;
  };

  void run(Worker& worker, size_t number);

  std::mutex mutex_;
  std::vector<std::unique_ptr<Worker>> workers_;
};

/// Counts down to the end of a batch of tasks.
class Latch {
 public:
  explicit Latch(size_t count) : left_(count) {}
  void countDown();
  /// False when the time ran out first.
  bool waitFor(std::chrono::milliseconds timeout);

 private:
  std::mutex mutex_;
  std::condition_variable done_;
  size_t left_;
};

}  // namespace corvane::scripted
