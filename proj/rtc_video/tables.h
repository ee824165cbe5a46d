// The tables of KavRTCVideo's methods, one for each family.
#pragma once

#include <span>

#include "binding/row.h"

namespace corvane {

std::span<const Row> lifecycleRows();
std::span<const Row> pluginRows();
std::span<const Row> sinkRows();
std::span<const Row> captureRows();
std::span<const Row> audioRows();
std::span<const Row> messageRows();
std::span<const Row> deviceRows();
std::span<const Row> deviceTestRows();
std::span<const Row> audioMixingRows();
std::span<const Row> effectRows();
std::span<const Row> zoomRows();
std::span<const Row> networkRows();
std::span<const Row> musicRows();
std::span<const Row> scoringRows();
std::span<const Row> recordingRows();
std::span<const Row> screenRows();
std::span<const Row> externalSourceRows();
std::span<const Row> streamMixingRows();

/// All of them.
std::span<const std::span<const Row>> videoTables();

}  // namespace corvane
