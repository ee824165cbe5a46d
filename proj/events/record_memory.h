// The memory of queued events.
#pragma once

#include <cstddef>

namespace corvane {

/// Memory for one record, aligned for everything. Every thread cuts records from blocks of its own, so that the
/// JavaScript thread finds an engine thread's records side by side in the order of their reading: to fetch them from
/// all over the heap would take as long as half of the rest of a delivery. Not on Windows. Any thread.
void* takeRecordMemory(size_t size);

/// Gives it back. Any thread, also another than the one that took it.
void giveBackRecordMemory(void* memory) noexcept;

}  // namespace corvane
