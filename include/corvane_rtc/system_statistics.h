// Reports of the load on the machine and of what the library gives up because of it.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// Load of the machine and the application's share of it, every 2 seconds.
struct SysStats {
  int32_t cpu_cores;           ///< logical processors
  double cpu_app_usage;        ///< share of all processors used by the application, 0 to 1
  double cpu_total_usage;      ///< share of all processors used by everything, 0 to 1
  double memory_usage;         ///< MB used by the application
  int64_t full_memory;         ///< MB in the machine
  int64_t total_memory_usage;  ///< MB used by everything
  int64_t free_memory;         ///< MB free
  double memory_ratio;         ///< application's share of full_memory, 0 to 1
  double total_memory_ratio;   ///< everything's share of full_memory, 0 to 1
};

/// Whether the library may lower the published picture by itself.
enum PerformanceAlarmMode : int32_t {
  kPerformanceAlarmModeNormal = 0,     ///< it only reports what it would need
  kPerformanceAlarmModeSimulcast = 1,  ///< it lowers the stream as setPublishFallbackOption() allows
};

/// What made the library report a picture it can sustain.
enum PerformanceAlarmReason : int32_t {
  kPerformanceAlarmReasonBandwidthFallback = 0,
  kPerformanceAlarmReasonBandwidthResumed = 1,
  kPerformanceAlarmReasonPerformanceFallback = 2,
  kPerformanceAlarmReasonPerformanceResumed = 3,
};

/// The picture the library can sustain just now.
struct SourceWantedData {
  int32_t width;       ///< pixels
  int32_t height;      ///< pixels
  int32_t frame_rate;  ///< frames a second
};

}  // namespace corvane::rtc
