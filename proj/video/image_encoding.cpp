#include "video/image_encoding.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "log/log.h"
#include "video/base64.h"

namespace corvane {
namespace {

constexpr int64_t kPixelSize = 4;

// Bytes of a picture; only where there is one of that size.
int64_t pictureSize(int32_t width, int32_t height) {
  return kPixelSize * width * height;
}

std::string toText(const platform::PngFile& png) {
  if (png.allocation_error) LogWrite(kLogInfo, "bitmap is nullptr: %u", *png.allocation_error);
  return encodeBase64(png.bytes);
}

// Rotates the bytes of each pixel by one, b0 b1 b2 b3 to b3 b0 b1 b2. `length` may end inside a pixel, whose missing
// bytes count as zero; it is at most the bitmap's size.
void reorderPixels(const uint8_t* from, int64_t length, uint8_t* to) {
  const auto rotate = [](const uint8_t* pixel, uint8_t* rotated) {
    uint32_t value;
    std::memcpy(&value, pixel, sizeof value);
    value = std::endian::native == std::endian::little ? std::rotl(value, 8) : std::rotr(value, 8);
    std::memcpy(rotated, &value, sizeof value);
  };
  const int64_t whole = length / kPixelSize * kPixelSize;
  for (int64_t i = 0; i < whole; i += kPixelSize) rotate(from + i, to + i);
  if (whole < length) {
    uint8_t last[kPixelSize] = {};
    std::memcpy(last, from + whole, static_cast<size_t>(length - whole));
    rotate(last, to + whole);
  }
}

// A plane that is shorter than its picture: what is missing is transparent.
std::string encodeShortArgb(const uint8_t* pixels, int64_t byte_length, int32_t width, int32_t height) {
  const auto size = static_cast<size_t>(pictureSize(width, height));
  const std::unique_ptr<void, decltype(&std::free)> padded(std::calloc(size, 1), &std::free);
  if (padded == nullptr) return {};
  std::memcpy(padded.get(), pixels, static_cast<size_t>(byte_length));
  return encodeArgbToPng(static_cast<const uint8_t*>(padded.get()), width, height);
}

}  // namespace

std::string encodeFrameImage(const rtc::IVideoFrame& frame, const char* caller, int32_t line) {
  const int32_t format = frame.pixelFormat();
  const int32_t width = frame.width();
  const int32_t height = frame.height();
  const uint8_t* pixels = frame.planeData(0);
  const int64_t stride = frame.planeStride(0);
  // The pixels are read without regard to the stride, which only tells how many there are.
  const int64_t byte_length = pixels == nullptr ? 0 : std::max<int64_t>(stride, 0) * std::max(height, 0);

  switch (format) {
    case rtc::kVideoPixelFormatARGB:
      if (pixels == nullptr || !platform::isPictureSize(width, height) || byte_length >= pictureSize(width, height)) {
        return encodeArgbToPng(pixels, width, height);
      }
      return encodeShortArgb(pixels, byte_length, width, height);
    case rtc::kVideoPixelFormatRGBA:
      return encodeRgbaToPng(pixels, byte_length, width, height);
    default:
      LogWrite(kLogInfo, "%s(%d), pixformat = %d not support!", caller, line, format);
      return "null";
  }
}

std::string encodeArgbToPng(const uint8_t* pixels, int32_t width, int32_t height) {
  return toText(platform::pngFromArgb(pixels, width, height));
}

std::string encodeRgbaToPng(const uint8_t* pixels, int64_t byte_length, int32_t width, int32_t height) {
  platform::Bitmap bitmap(width, height);
  if (bitmap.pixels() != nullptr && pixels != nullptr && byte_length > 0) {
    reorderPixels(pixels, std::min(byte_length, pictureSize(width, height)), bitmap.pixels());
  }
  return encodeBitmapToPng(bitmap, width, height);
}

std::string encodeBitmapToPng(const platform::Bitmap& bitmap, int32_t width, int32_t height) {
  return toText(platform::pngFromBitmap(bitmap, width, height));
}

}  // namespace corvane
