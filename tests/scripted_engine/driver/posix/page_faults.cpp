#include "driver/page_faults.h"

#include <sys/resource.h>

namespace corvane::scripted {

int64_t pageFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

}  // namespace corvane::scripted
