// Work on others' code that may never come back: a sound server that hangs, for one.
#pragma once

#include <chrono>
#include <functional>

namespace corvane::rtc {

/// Runs `work` on a thread of its own and waits for it. False when it took longer than `limit`: then it goes on by
/// itself, with all that it holds, and nobody waits for it any more.
bool runWithin(std::chrono::milliseconds limit, const char* thread_name, std::function<void()> work);

}  // namespace corvane::rtc
