// Memory of pictures that applications push, used again when a picture has been given back: fresh pages cost several
// times the copy that goes into them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace corvane::rtc {

struct FreePixels {
  void operator()(uint8_t* pixels) const { std::free(pixels); }
};

/// Uninitialised memory for pixels, at a cache line's start.
struct PixelBlock {
  std::unique_ptr<uint8_t, FreePixels> pixels;
  size_t size = 0;
};

/// A block of exactly `size` bytes; empty when there is no memory. Any thread.
PixelBlock takePixels(size_t size);

/// Keeps the block for takePixels(), unless enough rest already. Any thread.
void givePixels(PixelBlock block);

/// Frees the blocks that rest. Any thread.
void freeRestingPixels();

}  // namespace corvane::rtc
