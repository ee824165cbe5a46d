#include "rtc_video/tables.h"

#include <array>

namespace corvane {

std::span<const std::span<const Row>> videoTables() {
  static const std::array tables{
      lifecycleRows(),  sinkRows(),        captureRows(), audioRows(),          messageRows(),      deviceRows(),
      deviceTestRows(), audioMixingRows(), effectRows(),  zoomRows(),           networkRows(),      musicRows(),
      scoringRows(),    recordingRows(),   screenRows(),  externalSourceRows(), streamMixingRows(), pluginRows(),
  };
  return tables;
}

}  // namespace corvane
