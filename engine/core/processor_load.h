// How busy the machine's processors are, by the system's own accounts.
#pragma once

#include <cstdint>

namespace corvane::rtc {

/// Shares of all processors, 0 to 1, since the call before.
struct ProcessorLoad {
  double process = 0;
  double machine = 0;
};

class ProcessorMeter {
 public:
  /// Zeros on the first call.
  ProcessorLoad measure();

 private:
  int64_t last_process_ = 0;
  int64_t last_busy_ = 0;
  int64_t last_total_ = 0;
};

}  // namespace corvane::rtc
