// PNG files from 32-bit pixels, by the system's own imaging. Behind it: win32/ and posix/.
//
// May be called from any thread, several at once. Rows of pixels stand top-down and without gaps.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace corvane::platform {

/// Whether there is a picture of that size: not an empty one, and none of more than 1 GB.
inline constexpr bool isPictureSize(int32_t width, int32_t height) {
  return width > 0 && height > 0 && int64_t{width} * height <= int64_t{1} << 28;
}

/// A finished file; empty when the picture could not be made.
struct PngFile {
  std::vector<uint8_t> bytes;
  /// The system's last error number when there was no memory to hold the picture.
  std::optional<uint32_t> allocation_error;
};

/// A picture without transparency that pixels are written into before it is encoded.
class Bitmap {
 public:
  /// Black. Without memory, or without a size, pixels() is null and the file will be empty.
  Bitmap(int32_t width, int32_t height);
  ~Bitmap();
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;

  int32_t width() const { return width_; }
  int32_t height() const { return height_; }

  /// Bytes B, G, R and one that counts for nothing, width * height times.
  uint8_t* pixels() { return pixels_; }
  const uint8_t* pixels() const { return pixels_; }

 private:
  struct Memory;
  int32_t width_;
  int32_t height_;
  std::unique_ptr<Memory> memory_;
  uint8_t* pixels_ = nullptr;
};

/// `pixels`: bytes B, G, R, A with the colours not multiplied by A, or null for a fully transparent picture.
PngFile pngFromArgb(const uint8_t* pixels, int32_t width, int32_t height);

/// The bitmap drawn over the whole of a width x height picture, with bicubic interpolation where the sizes differ.
PngFile pngFromBitmap(const Bitmap& bitmap, int32_t width, int32_t height);

}  // namespace corvane::platform
