#include "media/copy_pixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "media/pixel_blocks.h"

namespace corvane::rtc {
namespace {

TEST(CopyPixels, CopiesEverySizeFromAndToEveryPlace) {
  constexpr size_t kSpace = 300'000;
  std::vector<uint8_t> from(kSpace);
  for (size_t at = 0; at < kSpace; ++at) from[at] = static_cast<uint8_t>(at * 7 + at / 251);
  std::vector<uint8_t> to(kSpace);
  for (const size_t size : {size_t{0}, size_t{1}, size_t{100}, size_t{262'143}, size_t{262'144}, size_t{262'300}}) {
    for (size_t shift = 0; shift < 70; shift += 23) {
      std::fill(to.begin(), to.end(), 255);
      const size_t start = 64 + shift;
      copyPixels(to.data() + start, from.data() + shift / 2, size);
      const auto first = to.begin() + static_cast<ptrdiff_t>(start);
      const auto end = first + static_cast<ptrdiff_t>(size);
      EXPECT_TRUE(std::equal(first, end, from.begin() + static_cast<ptrdiff_t>(shift / 2))) << size << ", " << shift;
      const auto untouched = [](uint8_t byte) { return byte == 255; };
      EXPECT_TRUE(std::all_of(to.begin(), first, untouched) && std::all_of(end, to.end(), untouched));
    }
  }
}

TEST(PixelBlocks, AreUsedAgainForTheirOwnSizeAlone) {
  freeRestingPixels();
  PixelBlock block = takePixels(1000);
  const uint8_t* const first = block.pixels.get();
  ASSERT_NE(first, nullptr);
  givePixels(std::move(block));
  const PixelBlock other = takePixels(1001);
  EXPECT_NE(other.pixels.get(), first);
  const PixelBlock again = takePixels(1000);
  EXPECT_EQ(again.pixels.get(), first);
  freeRestingPixels();
}

}  // namespace
}  // namespace corvane::rtc
