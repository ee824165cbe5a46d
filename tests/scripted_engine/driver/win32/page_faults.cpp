#include "driver/page_faults.h"

#include <windows.h>

#include <psapi.h>

namespace corvane::scripted {

int64_t pageFaults() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters));
  return counters.PageFaultCount;
}

}  // namespace corvane::scripted
