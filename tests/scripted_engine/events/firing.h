// Calls of handlers on the engine's threads.
#pragma once

#include "core/value.h"

namespace corvane::scripted {

/// { event, args, target, thread, threads, repeat, wait, detailed }. Waits for the calls unless told otherwise and then
/// answers { delivered, missed, answers }, one answer for each thread: that of its last call.
Value fire(const Value& request);

/// Waits for everything fired without waiting; throws what went wrong there.
void settle();

}  // namespace corvane::scripted
