// What two copies cost when another thread works on the bytes in between.
#pragma once

#include <napi.h>

namespace corvane::bench {

/// copyThroughThread(bytes, count, periodMs): nanoseconds of processor time, per round, of a copy from cold memory into
/// a block and of one back, after another thread has changed every byte of the block. One round in each period.
Napi::Value jsCopyThroughThread(const Napi::CallbackInfo& info);

}  // namespace corvane::bench
