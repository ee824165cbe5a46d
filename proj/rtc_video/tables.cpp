#include "rtc_video/tables.h"

#include <array>

namespace corvane {

std::span<const std::span<const Row>> videoTables() {
  static const std::array tables{
      lifecycleRows(), sinkRows(), captureRows(), audioRows(), messageRows(), deviceRows(),
  };
  return tables;
}

}  // namespace corvane
