#include "frames/pixel_block.h"

#include <cstring>

#include "frames/pattern.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#endif

namespace corvane::scripted {

PixelBlock::PixelBlock(size_t size) : bytes_(new uint8_t[size]), size_(size) {
  std::memset(bytes_.get(), kGapByte, size);
}

PixelBlock::~PixelBlock() {
  if (bytes_ != nullptr) {
    ASAN_UNPOISON_MEMORY_REGION(bytes_.get(), size_);
  }
}

void PixelBlock::poison() {
  if (bytes_ != nullptr) {
    std::memset(bytes_.get(), kReleasedByte, size_);
    ASAN_POISON_MEMORY_REGION(bytes_.get(), size_);
  }
}

}  // namespace corvane::scripted
