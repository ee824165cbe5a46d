// The tables of KavRTCVideo's methods, one for each family.
#pragma once

#include <span>

#include "binding/row.h"

namespace corvane {

std::span<const Row> lifecycleRows();
std::span<const Row> sinkRows();
std::span<const Row> captureRows();
std::span<const Row> audioRows();
std::span<const Row> messageRows();
std::span<const Row> deviceRows();

/// All of them.
std::span<const std::span<const Row>> videoTables();

}  // namespace corvane
