// The module's image encoding, as benchmarks call it.
#pragma once

#include <napi.h>

namespace corvane::bench {

/// encodeImage(pixels, width, height, pixelFormat): the text that JavaScript is given for such a frame.
Napi::Value jsEncodeImage(const Napi::CallbackInfo& info);

}  // namespace corvane::bench
