// Pictures are checked by decoding their files with another implementation, libpng, pixel by pixel.
#include "video/image_encoding.h"

#include <gtest/gtest.h>
#include <png.h>

#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "video/base64.h"

namespace corvane {
namespace {

using Pixel = std::array<uint8_t, 4>;

struct Picture {
  int32_t width = 0;
  int32_t height = 0;
  bool has_alpha = false;
  std::vector<Pixel> rgba;

  const Pixel& at(int32_t x, int32_t y) const {
    return rgba.at(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x));
  }
};

std::vector<uint8_t> decodeBase64(const std::string& text) {
  static constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::vector<uint8_t> bytes;
  uint32_t bits = 0;
  int count = 0;
  for (const char character : text) {
    if (character == '=') break;
    bits = bits << 6 | static_cast<uint32_t>(kAlphabet.find(character));
    count += 6;
    if (count >= 8) bytes.push_back(static_cast<uint8_t>(bits >> (count -= 8)));
  }
  return bytes;
}

uint64_t checksum(const std::vector<uint8_t>& bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), uint64_t{1},
                         [](uint64_t sum, uint8_t byte) { return sum * 31 + byte; });
}

Picture decodePng(const std::vector<uint8_t>& file) {
  Picture picture;
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) {
    ADD_FAILURE() << "no PNG file: " << image.message;
    return picture;
  }
  picture.width = static_cast<int32_t>(image.width);
  picture.height = static_cast<int32_t>(image.height);
  picture.has_alpha = (image.format & PNG_FORMAT_FLAG_ALPHA) != 0;
  image.format = PNG_FORMAT_RGBA;
  picture.rgba.resize(size_t{image.width} * image.height);
  if (png_image_finish_read(&image, nullptr, picture.rgba.data(), 0, nullptr) == 0 || image.warning_or_error != 0) {
    ADD_FAILURE() << "faulty PNG file: " << image.message;
  }
  return picture;
}

Picture decodeText(const std::string& text) {
  return decodePng(decodeBase64(text));
}

// Four bytes for every pixel of a picture.
std::vector<uint8_t> paint(int32_t width, int32_t height, const std::function<Pixel(int32_t x, int32_t y)>& color) {
  std::vector<uint8_t> bytes;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      const Pixel pixel = color(x, y);
      bytes.insert(bytes.end(), pixel.begin(), pixel.end());
    }
  }
  return bytes;
}

class Frame final : public rtc::IVideoFrame {
 public:
  Frame(int32_t format, int32_t width, int32_t height, std::vector<uint8_t> plane, int32_t stride)
      : format_(format), width_(width), height_(height), stride_(stride), plane_(std::move(plane)) {}
  int32_t frameType() const override { return rtc::kVideoFrameRawMemory; }
  int32_t pixelFormat() const override { return format_; }
  int64_t timestampUs() const override { return 0; }
  int32_t width() const override { return width_; }
  int32_t height() const override { return height_; }
  int32_t rotation() const override { return 0; }
  uint8_t* planeData(int32_t plane) const override { return plane == 0 && !plane_.empty() ? plane_.data() : nullptr; }
  int32_t planeStride(int32_t plane) const override { return plane == 0 ? stride_ : 0; }
  void release() override { ADD_FAILURE() << "the frame is its owner's to release"; }

 private:
  int32_t format_;
  int32_t width_;
  int32_t height_;
  int32_t stride_;
  mutable std::vector<uint8_t> plane_;
};

// Pictures that take every path of the compression: runs of all lengths, none, few and many different bytes.
struct Content {
  const char* name;
  std::function<Pixel(int32_t x, int32_t y)> color;
};

std::vector<Content> contents() {
  auto noise = std::make_shared<std::independent_bits_engine<std::mt19937, 32, uint32_t>>(7U);
  auto rare = std::make_shared<std::independent_bits_engine<std::mt19937, 32, uint32_t>>(8U);
  return {
      {"empty",
       [](int32_t, int32_t) {
         return Pixel{0, 0, 0, 0};
       }},
      {"flat",
       [](int32_t, int32_t) {
         return Pixel{10, 20, 30, 255};
       }},
      {"slope",
       [](int32_t x, int32_t y) {
         return Pixel{static_cast<uint8_t>(x), static_cast<uint8_t>(y), static_cast<uint8_t>(x + y),
                      static_cast<uint8_t>(255 - x)};
       }},
      {"noise",
       [noise](int32_t, int32_t) {
         const uint32_t bits = (*noise)();
         return Pixel{static_cast<uint8_t>(bits), static_cast<uint8_t>(bits >> 8), static_cast<uint8_t>(bits >> 16),
                      static_cast<uint8_t>(bits >> 24)};
       }},
      // Byte values that halve in frequency from one to the next, for the longest codes there are.
      {"rare values",
       [rare](int32_t, int32_t) {
         Pixel pixel;
         for (uint8_t& byte : pixel) byte = static_cast<uint8_t>(std::countl_zero((*rare)()) * 7);
         return pixel;
       }},
      {"bars of growing width",
       [](int32_t x, int32_t y) {
         const auto bar = static_cast<uint8_t>(std::sqrt(x) * 16 + y % 3);
         return Pixel{bar, bar, static_cast<uint8_t>(bar * 3), 128};
       }},
  };
}

constexpr std::array<std::array<int32_t, 2>, 7> kSizes = {
    {{1, 1}, {1, 9}, {9, 1}, {3, 2}, {64, 48}, {321, 181}, {20000, 3}}};

TEST(ImageEncoding, keepsEveryPixelOfArgb) {
  for (const Content& content : contents()) {
    for (const auto [width, height] : kSizes) {
      SCOPED_TRACE(std::string(content.name) + " " + std::to_string(width) + "x" + std::to_string(height));
      const std::vector<uint8_t> bgra = paint(width, height, content.color);
      const Picture picture = decodeText(encodeArgbToPng(bgra.data(), width, height));
      ASSERT_EQ(picture.width, width);
      ASSERT_EQ(picture.height, height);
      EXPECT_TRUE(picture.has_alpha);
      std::vector<Pixel> expected;
      for (size_t i = 0; i < bgra.size(); i += 4) expected.push_back({bgra[i + 2], bgra[i + 1], bgra[i], bgra[i + 3]});
      EXPECT_TRUE(picture.rgba == expected);
    }
  }
}

TEST(ImageEncoding, turnsTheBytesOfRgbaAndDropsTransparency) {
  for (const Content& content : contents()) {
    for (const auto [width, height] : kSizes) {
      SCOPED_TRACE(std::string(content.name) + " " + std::to_string(width) + "x" + std::to_string(height));
      const std::vector<uint8_t> bytes = paint(width, height, content.color);
      const uint64_t before = checksum(bytes);
      const Picture picture =
          decodeText(encodeRgbaToPng(bytes.data(), static_cast<int64_t>(bytes.size()), width, height));
      ASSERT_EQ(picture.width, width);
      ASSERT_EQ(picture.height, height);
      std::vector<Pixel> expected;
      for (size_t i = 0; i < bytes.size(); i += 4) expected.push_back({bytes[i + 1], bytes[i], bytes[i + 3], 255});
      EXPECT_TRUE(picture.rgba == expected);
      EXPECT_EQ(checksum(bytes), before) << "the engine's pixels are not ours to write";
    }
  }
}

TEST(ImageEncoding, takesMissingRgbaBytesAsBlack) {
  const std::vector<uint8_t> bytes = {1, 2, 3, 4, 5, 6, 7};
  const Picture picture = decodeText(encodeRgbaToPng(bytes.data(), static_cast<int64_t>(bytes.size()), 2, 2));
  EXPECT_EQ(picture.rgba, (std::vector<Pixel>{{2, 1, 4, 255}, {6, 5, 0, 255}, {0, 0, 0, 255}, {0, 0, 0, 255}}));

  EXPECT_EQ(decodeText(encodeRgbaToPng(bytes.data(), 0, 3, 1)).rgba, std::vector<Pixel>(3, Pixel{0, 0, 0, 255}));
  EXPECT_EQ(decodeText(encodeRgbaToPng(nullptr, 1000, 3, 1)).rgba, std::vector<Pixel>(3, Pixel{0, 0, 0, 255}));
}

TEST(ImageEncoding, givesNothingForPicturesWithoutSize) {
  const std::vector<uint8_t> bytes(64, 1);
  const std::array<std::array<int32_t, 2>, 6> sizes = {
      {{0, 4}, {4, 0}, {0, 0}, {-4, 4}, {4, -4}, {INT32_MAX, INT32_MAX}}};
  for (const auto [width, height] : sizes) {
    SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height));
    EXPECT_EQ(encodeArgbToPng(bytes.data(), width, height), "");
    EXPECT_EQ(encodeRgbaToPng(bytes.data(), 64, width, height), "");
    for (const int32_t format : {rtc::kVideoPixelFormatARGB, rtc::kVideoPixelFormatRGBA}) {
      EXPECT_EQ(encodeFrameImage(Frame(format, width, height, bytes, 16)), "");
    }
  }
}

TEST(ImageEncoding, choosesTheEncoderByTheFramesFormat) {
  const std::vector<uint8_t> bytes = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatARGB, 2, 1, bytes, 8))).rgba,
            (std::vector<Pixel>{{3, 2, 1, 4}, {7, 6, 5, 8}}));
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatRGBA, 2, 1, bytes, 8))).rgba,
            (std::vector<Pixel>{{2, 1, 4, 255}, {6, 5, 8, 255}}));
  for (const int32_t format :
       std::array<int32_t, 5>{rtc::kVideoPixelFormatUnknown, rtc::kVideoPixelFormatI420, 2, 7, -1}) {
    EXPECT_EQ(encodeFrameImage(Frame(format, 2, 1, bytes, 8)), "null");
  }
}

// Rows are taken as they follow each other in memory, whatever the stride: padding shows as pixels.
TEST(ImageEncoding, readsFramesWithoutRegardToTheirStride) {
  const std::vector<uint8_t> plane = {1, 1, 1, 1, 9, 9, 9, 9, 2, 2, 2, 2, 8, 8, 8, 8};
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatARGB, 1, 2, plane, 8))).rgba,
            (std::vector<Pixel>{{1, 1, 1, 1}, {9, 9, 9, 9}}));
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatRGBA, 1, 2, plane, 8))).rgba,
            (std::vector<Pixel>{{1, 1, 1, 255}, {9, 9, 9, 255}}));
}

TEST(ImageEncoding, readsNothingBehindShortPlanes) {
  // The sanitizers see a read beyond the vector's end.
  const std::vector<uint8_t> plane = {1, 2, 3, 4, 5, 6, 7, 8};
  const Pixel clear = {0, 0, 0, 0};
  const Pixel black = {0, 0, 0, 255};
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatARGB, 2, 2, plane, 4))).rgba,
            (std::vector<Pixel>{{3, 2, 1, 4}, {7, 6, 5, 8}, clear, clear}));
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatRGBA, 2, 2, plane, 4))).rgba,
            (std::vector<Pixel>{{2, 1, 4, 255}, {6, 5, 8, 255}, black, black}));
  for (const int32_t stride : {0, -8}) {
    EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatARGB, 2, 2, plane, stride))).rgba,
              std::vector<Pixel>(4, clear));
    EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatRGBA, 2, 2, plane, stride))).rgba,
              std::vector<Pixel>(4, black));
  }
  // Frames whose pixels live elsewhere have no plane at all.
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatARGB, 2, 1, {}, 8))).rgba,
            std::vector<Pixel>(2, clear));
  EXPECT_EQ(decodeText(encodeFrameImage(Frame(rtc::kVideoPixelFormatRGBA, 2, 1, {}, 8))).rgba,
            std::vector<Pixel>(2, black));
}

platform::PngFile drawBitmap(int32_t width, int32_t height, int32_t new_width, int32_t new_height,
                             const std::function<Pixel(int32_t x, int32_t y)>& color) {
  platform::Bitmap bitmap(width, height);
  std::ranges::copy(paint(width, height, color), bitmap.pixels());
  return platform::pngFromBitmap(bitmap, new_width, new_height);
}

TEST(ImageEncoding, resizesBitmapsSmoothly) {
  const auto flat = [](int32_t, int32_t) { return Pixel{30, 20, 10, 99}; };
  for (const auto [width, height] : kSizes) {
    const Picture picture = decodePng(drawBitmap(17, 13, width, height, flat).bytes);
    ASSERT_EQ(picture.width, width);
    ASSERT_EQ(picture.height, height);
    EXPECT_EQ(picture.rgba, std::vector<Pixel>(picture.rgba.size(), Pixel{10, 20, 30, 255}));
  }

  // A straight slope stays one away from the borders, enlarged and reduced.
  const auto slope = [](int32_t x, int32_t y) {
    return Pixel{static_cast<uint8_t>(4 * x), static_cast<uint8_t>(4 * y), 0, 0};
  };
  for (const auto [from, to] : {std::array{32, 64}, std::array{60, 30}}) {
    const Picture picture = decodePng(drawBitmap(from, from, to, to, slope).bytes);
    for (int32_t y = 4; y < to - 4; ++y) {
      for (int32_t x = 4; x < to - 4; ++x) {
        EXPECT_NEAR(picture.at(x, y)[2], 4 * ((x + 0.5) * from / to - 0.5), 0.6);
        EXPECT_NEAR(picture.at(x, y)[1], 4 * ((y + 0.5) * from / to - 0.5), 0.6);
      }
    }
  }

  // A step of 160 at twice its size, by the cubic through the samples (a = -0.5), which overshoots on both sides.
  const auto step = [](int32_t x, int32_t) { return x < 4 ? Pixel{0, 0, 0, 0} : Pixel{160, 160, 160, 0}; };
  const Picture enlarged = decodePng(drawBitmap(8, 1, 16, 1, step).bytes);
  EXPECT_EQ(enlarged.at(6, 0)[0], 0);
  EXPECT_NEAR(enlarged.at(7, 0)[0], 32.5, 1);
  EXPECT_NEAR(enlarged.at(8, 0)[0], 127.5, 1);
  EXPECT_NEAR(enlarged.at(9, 0)[0], 171.25, 1);
  EXPECT_NEAR(enlarged.at(12, 0)[0], 160, 1);
}

TEST(ImageEncoding, writesAFileThatStartsAndEndsAsOne) {
  const std::vector<uint8_t> bgra = {30, 20, 10, 255};
  const std::vector<uint8_t> file = decodeBase64(encodeArgbToPng(bgra.data(), 1, 1));
  const std::vector<uint8_t> head = {0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
  const std::vector<uint8_t> tail = {0, 0, 0, 0, 'I', 'E', 'N', 'D', 0xae, 0x42, 0x60, 0x82};
  ASSERT_GT(file.size(), head.size() + tail.size());
  EXPECT_TRUE(std::equal(head.begin(), head.end(), file.begin()));
  EXPECT_TRUE(std::equal(tail.rbegin(), tail.rend(), file.rbegin()));
}

TEST(ImageEncoding, makesSmallFilesOfPlainPictures) {
  const auto bars = [](int32_t x, int32_t) { return Pixel{static_cast<uint8_t>(x / 40), 0, 0, 255}; };
  const std::vector<uint8_t> bgra = paint(320, 180, bars);
  EXPECT_LT(encodeArgbToPng(bgra.data(), 320, 180).size(), bgra.size() / 50);
}

}  // namespace
}  // namespace corvane
