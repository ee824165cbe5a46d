#include "api/missing_operations.h"

#include "corvane_rtc/common.h"

namespace corvane::rtc {

int32_t MissingOperations::refuse(const char* operation) {
  bool is_first = false;
  {
    const std::lock_guard lock(mutex_);
    is_first = told_.insert(operation).second;
  }
  if (is_first) log_.warning("%s: the engine does not offer this operation", operation);
  return kNotSupported;
}

}  // namespace corvane::rtc
