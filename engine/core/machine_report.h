// What an engine tells of the machine it runs on: its load every two seconds, and what network it is in.
#pragma once

#include <cstdint>

#include "core/engine_context.h"
#include "core/processor_load.h"
#include "corvane_rtc/system_statistics.h"

namespace corvane::rtc {

/// Now: the NetworkType of the way to everywhere, as the system routes it.
int32_t currentNetworkType();

/// Memory by the system's own accounts; the processors are left out.
SysStats measureMemory();

/// Reports for as long as it lives. Engine thread only.
class MachineReport final {
 public:
  explicit MachineReport(EngineContext& context);
  MachineReport(const MachineReport&) = delete;
  MachineReport& operator=(const MachineReport&) = delete;

 private:
  void checkNetwork();
  void report();

  EngineContext& context_;
  ProcessorMeter processors_;
  int32_t network_;
  AttachedSource timer_;
};

}  // namespace corvane::rtc
