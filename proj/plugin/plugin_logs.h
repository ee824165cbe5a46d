// What is counted and reported of plug-ins for the whole process. Any thread.
#pragma once

#include <atomic>
#include <cstdint>

namespace corvane {

/// The class name in the lines of everything here.
inline constexpr char kPluginManagerName[] = "PluginManager";

/// The number of the next picture that is handed to a plug-in: 1 to 1001, over and over.
uint32_t nextSequenceIndex();

/// Gathers how many milliseconds the plug-in took for each picture; every 50 of them make a line. `restart` forgets
/// those gathered so far, of an earlier plug-in.
void timeLog(int64_t milliseconds, bool restart);

/// Gathers the numbers of pictures that were dropped before the plug-in saw them; every 50 of them make a line. Number
/// 1 forgets those gathered so far.
void indexLog(uint32_t index);

/// Counts the calls of one audio hook and tells when one is to be logged.
class AudioCallCounter {
 public:
  explicit constexpr AudioCallCounter(uint32_t period) : period_(period) {}

  /// True for the call that ends the first period, and for every later one.
  bool advance() {
    if (calls_.fetch_add(1, std::memory_order_relaxed) % period_ != 0) return false;
    calls_.store(0, std::memory_order_relaxed);
    return true;
  }

 private:
  std::atomic<uint32_t> calls_{1};
  const uint32_t period_;
};

}  // namespace corvane
