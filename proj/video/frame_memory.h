// The memory of buffers made for single frames. JavaScript thread.
#pragma once

#include <napi.h>

#include <cstdint>
#include <functional>

#include "video/frame_pixels.h"

namespace corvane {

/// A new Buffer with a copy of the frame's area from the start of Y to the end of V. Undefined when the host refused.
napi_value makePlaneBuffer(napi_env env, const I420Planes& planes);

/// A new Buffer of `size` bytes that `fill` writes. By default its memory is never given back, as callers may keep
/// views of it for ever; with CORVANE_RELEASE_RGBA_FRAMES=1 in the environment it is recycled once the Buffer was
/// collected. Where the host forbids memory of the module's own the bytes are copied.
napi_value makeRgbaBuffer(napi_env env, size_t size, const std::function<void(uint8_t*)>& fill);

/// Gives memory back to the system that no buffer has used for some seconds. Any thread.
void freeUnusedFrameMemory();

}  // namespace corvane
