// The rows of KavRTCRoom, one table for each family.
#pragma once

#include <span>

#include "binding/row.h"

namespace corvane {

std::span<const Row> roomLifecycleRows();
std::span<const Row> roomStreamRows();
std::span<const Row> roomMessageRows();
std::span<const Row> roomForwardingRows();
std::span<const Row> roomRangeAudioRows();
std::span<const Row> roomSpatialAudioRows();

}  // namespace corvane
