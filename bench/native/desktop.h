// Something to see on an X server, for benchmarks of what reads its screen.
#pragma once

#include <napi.h>

namespace corvane::bench {

/// paintDesktop(display, pixels, width, height): tiles the server's desktop with a picture of bytes R, G, B, A. Answers
/// whether the server took it.
Napi::Value jsPaintDesktop(const Napi::CallbackInfo& info);

}  // namespace corvane::bench
