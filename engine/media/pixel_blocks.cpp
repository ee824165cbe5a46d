#include "media/pixel_blocks.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace corvane::rtc {

namespace {

// What may rest at a time: the pictures that are under way at most, of 4K and smaller.
constexpr size_t kMaxRestingBlocks = 16;
constexpr size_t kMaxRestingBytes = size_t{128} << 20;
constexpr size_t kAlignment = 64;

struct Resting {
  std::mutex mutex;
  std::vector<PixelBlock> blocks;  // the one that has rested longest first
  size_t bytes = 0;
};

// Never destroyed: frames may be given back after the library's other globals have gone.
Resting& resting() {
  static Resting& resting = *std::make_unique<Resting>().release();
  return resting;
}

}  // namespace

PixelBlock takePixels(size_t size) {
  Resting& rest = resting();
  {
    const std::lock_guard lock(rest.mutex);
    // The youngest is the likeliest to be in the caches still.
    const auto found = std::find_if(rest.blocks.rbegin(), rest.blocks.rend(),
                                    [size](const PixelBlock& block) { return block.size == size; });
    if (found != rest.blocks.rend()) {
      PixelBlock block = std::move(*found);
      rest.blocks.erase(std::next(found).base());
      rest.bytes -= size;
      return block;
    }
  }
  const size_t rounded = (size + kAlignment - 1) / kAlignment * kAlignment;
  PixelBlock block;
  block.pixels.reset(static_cast<uint8_t*>(std::aligned_alloc(kAlignment, rounded)));
  if (block.pixels != nullptr) block.size = size;
  return block;
}

void givePixels(PixelBlock block) {
  std::vector<PixelBlock> dropped;  // freed outside the lock
  Resting& rest = resting();
  const std::lock_guard lock(rest.mutex);
  rest.bytes += block.size;
  rest.blocks.push_back(std::move(block));
  while (rest.blocks.size() > kMaxRestingBlocks || rest.bytes > kMaxRestingBytes) {
    rest.bytes -= rest.blocks.front().size;
    dropped.push_back(std::move(rest.blocks.front()));
    rest.blocks.erase(rest.blocks.begin());
  }
}

void freeRestingPixels() {
  std::vector<PixelBlock> dropped;
  Resting& rest = resting();
  const std::lock_guard lock(rest.mutex);
  dropped.swap(rest.blocks);
  rest.bytes = 0;
}

}  // namespace corvane::rtc
