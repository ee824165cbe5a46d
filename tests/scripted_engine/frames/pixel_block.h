// A frame's memory, which can be made unreadable after the frame's release.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace corvane::scripted {

/// Freed memory stays readable for a while without a sanitizer; poisoned memory holds kReleasedByte throughout and
/// stops an AddressSanitizer build at the first access.
class PixelBlock {
 public:
  PixelBlock() = default;
  /// `size` bytes of kGapByte.
  explicit PixelBlock(size_t size);
  PixelBlock(PixelBlock&&) = default;
  PixelBlock& operator=(PixelBlock&&) = default;
  ~PixelBlock();

  uint8_t* data() const { return bytes_.get(); }
  size_t size() const { return size_; }
  void poison();

 private:
  std::unique_ptr<uint8_t[]> bytes_;
  size_t size_ = 0;
};

}  // namespace corvane::scripted
