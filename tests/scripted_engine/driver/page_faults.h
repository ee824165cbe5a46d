#pragma once

#include <cstdint>

namespace corvane::scripted {

/// Of the process since its start. On Linux those that needed no disk, on Windows all.
int64_t pageFaults();

}  // namespace corvane::scripted
