#include "core/engine_thread.h"

#include <pthread.h>

#include <future>
#include <utility>

namespace corvane::rtc {

namespace {

// A source that sleeps until g_source_set_ready_time() wakes it, which any thread may do.
GSourceFuncs wake_functions = {
    nullptr,
    nullptr,
    [](GSource* source, GSourceFunc callback, gpointer data) -> gboolean {
      g_source_set_ready_time(source, -1);
      callback(data);
      return G_SOURCE_CONTINUE;
    },
    nullptr,
    nullptr,
    nullptr,
};

}  // namespace

void nameThread(const char* name) {
  pthread_setname_np(pthread_self(), name);
}

EngineThread::EngineThread()
    : context_(g_main_context_new()),
      loop_(g_main_loop_new(context_, FALSE)),
      wake_(g_source_new(&wake_functions, sizeof(GSource))) {
  g_source_set_ready_time(wake_, -1);
  g_source_set_callback(
      wake_,
      [](gpointer self) -> gboolean {
        static_cast<EngineThread*>(self)->runTasks();
        return G_SOURCE_CONTINUE;
      },
      this, nullptr);
  g_source_attach(wake_, context_);
  thread_ = std::thread([this] { run(); });
}

EngineThread::~EngineThread() {
  g_source_destroy(wake_);
  g_source_unref(wake_);
  g_main_loop_unref(loop_);
  g_main_context_unref(context_);
}

void EngineThread::post(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
  }
  g_source_set_ready_time(wake_, 0);
}

void EngineThread::post(std::weak_ptr<void> owner, Task task) {
  post([owner = std::move(owner), task = std::move(task)] {
    // Not kept locked during the task: the task may be what ends the owner.
    if (!owner.expired()) task();
  });
}

void EngineThread::postAndWait(Task task) {
  // A promise that goes without having been kept ends the waiting, too.
  auto promise = std::make_shared<std::promise<void>>();
  const std::future<void> done = promise->get_future();
  post([task = std::move(task), promise = std::move(promise)] {
    task();
    promise->set_value();
  });
  done.wait();
}

AttachedSource EngineThread::after(std::chrono::milliseconds delay, Task task) {
  AttachedSource timer(g_timeout_source_new(static_cast<guint>(delay.count())));
  g_source_set_callback(
      timer.get(),
      [](gpointer data) -> gboolean {
        (*static_cast<Task*>(data))();
        return G_SOURCE_REMOVE;
      },
      std::make_unique<Task>(std::move(task)).release(), [](gpointer data) { delete static_cast<Task*>(data); });
  g_source_attach(timer.get(), context_);
  return timer;
}

void EngineThread::finish(Task last) {
  post([this, last = std::move(last)] {
    last();
    g_main_loop_quit(loop_);
  });
  thread_.join();
}

void EngineThread::run() {
  nameThread("engine");
  g_main_context_push_thread_default(context_);
  g_main_loop_run(loop_);
  g_main_context_pop_thread_default(context_);
}

void EngineThread::runTasks() {
  std::deque<Task> tasks;
  {
    const std::lock_guard lock(mutex_);
    tasks.swap(tasks_);
  }
  for (Task& task : tasks) {
    task();
    // What a task holds goes before the next one starts, in the order in which it came.
    task = nullptr;
  }
}

}  // namespace corvane::rtc
