// What the engine does not offer yet.
#pragma once

#include <cstdint>
#include <mutex>
#include <set>
#include <string_view>

#include "core/engine_log.h"

namespace corvane::rtc {

class MissingOperations {
 public:
  explicit MissingOperations(EngineLog& log) : log_(log) {}

  /// Answers kNotSupported; the log tells of each operation once. `operation` is kept. Any thread.
  int32_t refuse(const char* operation);

 private:
  EngineLog& log_;
  std::mutex mutex_;
  std::set<std::string_view> told_;
};

}  // namespace corvane::rtc
