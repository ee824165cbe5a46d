#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

#include "platform/image_encoder.h"
#include "platform/posix/bicubic.h"
#include "platform/posix/pixel_deflate.h"

namespace corvane::platform {
namespace {

constexpr size_t kPixelSize = 4;
// As the file's header numbers them.
enum ColorType : uint8_t { kColorRgb = 2, kColorRgba = 6 };
constexpr uint8_t kFilterUp = 2;

void append32(std::vector<uint8_t>& out, uint32_t value) {
  for (uint32_t shift = 32; shift > 0; shift -= 8) out.push_back(static_cast<uint8_t>(value >> (shift - 8)));
}

// One chunk of the file: its length, which is known at the end, its type, what `fill` appends, its checksum.
template <class Fill>
void appendChunk(std::vector<uint8_t>& out, std::string_view type, Fill fill) {
  const size_t start = out.size();
  append32(out, 0);
  out.insert(out.end(), type.begin(), type.end());
  fill();
  const size_t content = start + 8;
  const auto length = static_cast<uint32_t>(out.size() - content);
  for (uint32_t i = 0; i < 4; ++i) out[start + i] = static_cast<uint8_t>(length >> (24 - 8 * i));
  append32(out, static_cast<uint32_t>(crc32(0, out.data() + start + 4, static_cast<uInt>(length + 4))));
}

// Turns B, G, R, A into R, G, B, A.
void packRgba(const uint8_t* from, size_t pixels, uint8_t* to) {
  for (size_t i = 0; i < pixels; ++i) {
    uint32_t value;
    std::memcpy(&value, from + i * kPixelSize, sizeof value);
    value = (value & 0xff00ff00U) | (value & 0xffU) << 16 | (value >> 16 & 0xffU);
    std::memcpy(to + i * kPixelSize, &value, sizeof value);
  }
}

// Turns B, G, R and a byte that is dropped into R, G, B.
void packRgb(const uint8_t* from, size_t pixels, uint8_t* to) {
  for (size_t i = 0; i < pixels; ++i, from += kPixelSize, to += 3) {
    to[0] = from[2];
    to[1] = from[1];
    to[2] = from[0];
  }
}

// Every row holds the differences to the row above it.
void appendRows(std::vector<uint8_t>& out, const uint8_t* pixels, size_t width, size_t height, ColorType color) {
  const size_t bytes_per_pixel = color == kColorRgba ? 4 : 3;
  const size_t size = width * bytes_per_pixel;
  std::vector<uint8_t> row(size);
  std::vector<uint8_t> above(size);
  // Some rows together, as the compression takes them.
  const size_t rows_together = std::clamp<size_t>(65536 / (size + 1), 1, height);
  std::vector<uint8_t> filtered(rows_together * (size + 1));

  PixelDeflate compressed(bytes_per_pixel, out);
  for (size_t y = 0; y < height;) {
    uint8_t* to = filtered.data();
    for (const size_t end = std::min(height, y + rows_together); y < end; ++y) {
      if (pixels != nullptr) {
        (color == kColorRgba ? packRgba : packRgb)(pixels + y * width * kPixelSize, width, row.data());
      }
      *to++ = kFilterUp;
      for (size_t i = 0; i < size; ++i) to[i] = static_cast<uint8_t>(row[i] - above[i]);
      to += size;
      row.swap(above);
    }
    compressed.write({filtered.data(), to});
  }
  compressed.finish();
}

// Null pixels are zeros.
std::vector<uint8_t> writePng(const uint8_t* pixels, int32_t width, int32_t height, ColorType color) {
  constexpr uint8_t kSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  std::vector<uint8_t> out(std::begin(kSignature), std::end(kSignature));
  const auto columns = static_cast<size_t>(width);
  const auto rows = static_cast<size_t>(height);
  out.reserve(1024 + columns * rows);
  appendChunk(out, "IHDR", [&] {
    append32(out, static_cast<uint32_t>(width));
    append32(out, static_cast<uint32_t>(height));
    constexpr uint8_t kBitDepth = 8;
    out.insert(out.end(), {kBitDepth, color, 0, 0, 0});
  });
  appendChunk(out, "IDAT", [&] { appendRows(out, pixels, columns, rows, color); });
  appendChunk(out, "IEND", [] {});
  return out;
}

template <class Make>
PngFile fileOf(Make make) {
  try {
    return {make(), {}};
  } catch (const std::bad_alloc&) {
    return {{}, ENOMEM};
  }
}

}  // namespace

struct Bitmap::Memory {
  explicit Memory(size_t size) : bytes(static_cast<uint8_t*>(std::calloc(size, 1)), &std::free) {}
  std::unique_ptr<uint8_t, decltype(&std::free)> bytes;
};

Bitmap::Bitmap(int32_t width, int32_t height) : width_(width), height_(height) {
  if (!isPictureSize(width, height)) return;
  memory_ = std::make_unique<Memory>(static_cast<size_t>(width) * static_cast<size_t>(height) * kPixelSize);
  pixels_ = memory_->bytes.get();
}

Bitmap::~Bitmap() = default;

PngFile pngFromArgb(const uint8_t* pixels, int32_t width, int32_t height) {
  if (!isPictureSize(width, height)) return {};
  return fileOf([&] { return writePng(pixels, width, height, kColorRgba); });
}

PngFile pngFromBitmap(const Bitmap& bitmap, int32_t width, int32_t height) {
  if (!isPictureSize(bitmap.width(), bitmap.height()) || !isPictureSize(width, height)) return {};
  if (bitmap.pixels() == nullptr) return {{}, ENOMEM};
  return fileOf([&] {
    if (width == bitmap.width() && height == bitmap.height()) {
      return writePng(bitmap.pixels(), width, height, kColorRgb);
    }
    const std::vector<uint8_t> resized = resizeBicubic(bitmap.pixels(), bitmap.width(), bitmap.height(), width, height);
    return writePng(resized.data(), width, height, kColorRgb);
  });
}

}  // namespace corvane::platform
