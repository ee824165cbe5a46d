#include "plugin/plugin_logs.h"

#include <array>
#include <mutex>
#include <numeric>
#include <span>
#include <string>

#include "log/log.h"

namespace corvane {
namespace {

constexpr uint32_t kLastIndex = 1000;

// Numbers until there are enough of them for a line.
class Gathered {
 public:
  constexpr Gathered() = default;

  void forget() { count_ = 0; }
  /// True when the numbers are enough.
  bool add(int64_t number) {
    numbers_[count_++] = number;
    return count_ == numbers_.size();
  }
  std::string joined() const {
    std::string text;
    for (const int64_t number : numbers()) {
      if (!text.empty()) text += ',';
      text += std::to_string(number);
    }
    return text;
  }
  int64_t average() const {
    return std::accumulate(numbers().begin(), numbers().end(), int64_t{0}) / static_cast<int64_t>(count_);
  }

 private:
  std::span<const int64_t> numbers() const { return {numbers_.data(), count_}; }

  std::array<int64_t, 50> numbers_{};
  size_t count_ = 0;
};

// Engines may live side by side, each with a plug-in and threads of its own.
std::mutex lock_of_all;
Gathered times;
Gathered dropped;
std::atomic<uint32_t> sequence_index{0};

}  // namespace

uint32_t nextSequenceIndex() {
  uint32_t last = sequence_index.load(std::memory_order_relaxed);
  uint32_t next = 0;
  do {
    next = (last > kLastIndex ? 0 : last) + 1;
  } while (!sequence_index.compare_exchange_weak(last, next, std::memory_order_relaxed));
  return next;
}

void timeLog(int64_t milliseconds, bool restart) {
  const std::lock_guard<std::mutex> lock(lock_of_all);
  if (restart) times.forget();
  if (!times.add(milliseconds)) return;
  LogWrite(kLogInfo, "%s::%s(%d) [%s], average:%dms.", kPluginManagerName, __func__, __LINE__, times.joined().c_str(),
           static_cast<int>(times.average()));
  times.forget();
}

void indexLog(uint32_t index) {
  const std::lock_guard<std::mutex> lock(lock_of_all);
  if (index == 1) dropped.forget();
  if (!dropped.add(index)) return;
  LogWrite(kLogInfo, "%s::%s(%d) dropIndex:[%s].", kPluginManagerName, __func__, __LINE__, dropped.joined().c_str());
  dropped.forget();
}

}  // namespace corvane
