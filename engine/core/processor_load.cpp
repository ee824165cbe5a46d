#include "core/processor_load.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string>

namespace corvane::rtc {

namespace {

// Of /proc/self/stat, counted after the name: time in user and in system mode.
constexpr int kUserTimeField = 11;

int64_t processTime() {
  std::ifstream file("/proc/self/stat");
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const size_t name_end = text.rfind(')');
  if (name_end == std::string::npos) return 0;
  int64_t total = 0;
  size_t at = name_end + 2;
  for (int field = 0; field < kUserTimeField + 2 && at < text.size(); ++field) {
    if (field >= kUserTimeField) total += strtoll(text.c_str() + at, nullptr, 10);
    at = text.find(' ', at);
    if (at == std::string::npos) break;
    ++at;
  }
  return total;
}

}  // namespace

ProcessorLoad ProcessorMeter::measure() {
  std::ifstream file("/proc/stat");
  std::string label;
  file >> label;
  // user, nice, system, idle, waiting for disks, interrupts, soft interrupts, stolen
  std::array<int64_t, 8> times = {};
  int64_t total = 0;
  for (int64_t& time : times) {
    file >> time;
    total += time;
  }
  const int64_t busy = total - times[3] - times[4];
  const int64_t process = processTime();
  ProcessorLoad load;
  if (last_total_ > 0 && total > last_total_) {
    const auto passed = static_cast<double>(total - last_total_);
    load.process = std::clamp(static_cast<double>(process - last_process_) / passed, 0.0, 1.0);
    load.machine = std::clamp(static_cast<double>(busy - last_busy_) / passed, 0.0, 1.0);
  }
  last_process_ = process;
  last_busy_ = busy;
  last_total_ = total;
  return load;
}

}  // namespace corvane::rtc
