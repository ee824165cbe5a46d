#include "core/engine_threads.h"

#include <pthread.h>

#include "core/value.h"

namespace corvane::scripted {

void nameThread(const char* name) {
  pthread_setname_np(pthread_self(), name);
}

EngineThreads& EngineThreads::instance() {
  static auto* threads = new EngineThreads;
  return *threads;
}

void EngineThreads::post(size_t number, std::function<void()> task) {
  if (number >= kMaxThreads) {
    throw BadRequest("threads are numbered from 0 to " + std::to_string(kMaxThreads - 1));
  }
  const std::lock_guard lock(mutex_);
  if (workers_.size() <= number) {
    workers_.resize(number + 1);
  }
  auto& worker = workers_[number];
  if (worker == nullptr) {
    worker = std::make_unique<Worker>();
    worker->thread = std::thread([this, &own = *worker, number] { run(own, number); });
  }
  worker->tasks.push_back(std::move(task));
  worker->wake.notify_one();
}

void EngineThreads::run(Worker& worker, size_t number) {
  nameThread(("scr-engine-" + std::to_string(number)).c_str());
  std::unique_lock lock(mutex_);
  while (true) {
    worker.wake.wait(lock, [&] { return worker.ending || !worker.tasks.empty(); });
    if (worker.tasks.empty()) {
      return;
    }
    auto task = std::move(worker.tasks.front());
    worker.tasks.pop_front();
    lock.unlock();
    task();
    task = nullptr;
    lock.lock();
  }
}

void EngineThreads::join() {
  std::vector<std::unique_ptr<Worker>> workers;
  {
    const std::lock_guard lock(mutex_);
    workers.swap(workers_);
    for (const auto& worker : workers) {
      if (worker != nullptr) {
        worker->ending = true;
        worker->wake.notify_one();
      }
    }
  }
  for (const auto& worker : workers) {
    if (worker != nullptr) {
      worker->thread.join();
    }
  }
}

void Latch::countDown() {
  const std::lock_guard lock(mutex_);
  if (--left_ == 0) {
    done_.notify_all();
  }
}

bool Latch::waitFor(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  return done_.wait_for(lock, timeout, [&] { return left_ == 0; });
}

}  // namespace corvane::scripted
