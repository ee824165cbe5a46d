#include "thread_copies.h"

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <ctime>
#include <mutex>
#include <thread>
#include <vector>

namespace corvane::bench {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr size_t kColdBytes = size_t{88} << 20U;

double threadCpuNs() {
  timespec now{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

// A thread that changes a block whenever it is asked to.
class Changer {
 public:
  explicit Changer(Bytes& block) : thread_([this, &block] { run(block); }) {}
  ~Changer() {
    set(kEnd);
    thread_.join();
  }
  Changer(const Changer&) = delete;
  Changer& operator=(const Changer&) = delete;

  void change() {
    set(kAsked);
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return state_ == kIdle; });
  }

 private:
  enum State { kIdle, kAsked, kEnd };

  void set(State state) {
    const std::lock_guard<std::mutex> lock(mutex_);
    state_ = state;
    changed_.notify_all();
  }
  void run(Bytes& block) {
    while (true) {
      {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return state_ != kIdle; });
        if (state_ == kEnd) return;
      }
      for (uint8_t& byte : block) byte ^= 1;
      set(kIdle);
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  State state_ = kIdle;
  std::thread thread_;
};

}  // namespace

Napi::Value jsCopyThroughThread(const Napi::CallbackInfo& info) {
  const auto size = static_cast<size_t>(info[0].As<Napi::Number>().Int64Value());
  const int64_t count = info[1].As<Napi::Number>().Int64Value();
  const std::chrono::milliseconds period(info[2].As<Napi::Number>().Int64Value());
  Bytes block(size, 1);
  std::vector<Bytes> pictures(kColdBytes / size + 1, Bytes(size, 2));
  Changer changer(block);
  double taken = 0;
  auto due = std::chrono::steady_clock::now();
  for (int64_t i = 0; i < count; ++i) {
    Bytes& picture = pictures[static_cast<size_t>(i) % pictures.size()];
    double start = threadCpuNs();
    std::memcpy(block.data(), picture.data(), size);
    taken += threadCpuNs() - start;
    changer.change();
    start = threadCpuNs();
    std::memcpy(picture.data(), block.data(), size);
    taken += threadCpuNs() - start;
    std::this_thread::sleep_until(due += period);
  }
  return Napi::Number::New(info.Env(), taken / static_cast<double>(count));
}

}  // namespace corvane::bench
