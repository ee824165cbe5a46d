#include "media/copy_pixels.h"

#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace corvane::rtc {

#if defined(__SSE2__)
namespace {

// Less than this is likely to be read while the caches still hold it.
constexpr size_t kPastCaches = size_t{256} << 10;
constexpr size_t kLine = 64;
// How far ahead of the copy memory is asked for what comes next.
constexpr size_t kAhead = 16 * kLine;

}  // namespace

void copyPixels(uint8_t* to, const uint8_t* from, size_t size) {
  // Stores past the caches need aligned targets.
  const size_t head = (kLine - reinterpret_cast<uintptr_t>(to) % kLine) % kLine;
  if (size < kPastCaches + head) {
    memcpy(to, from, size);
    return;
  }
  memcpy(to, from, head);
  size_t done = head;
  for (; done + kLine <= size; done += kLine) {
    // Past the end nothing is fetched: asking for memory is not reading it.
    _mm_prefetch(reinterpret_cast<const char*>(from) + done + kAhead, _MM_HINT_NTA);
    const auto* source = reinterpret_cast<const __m128i*>(from + done);
    auto* target = reinterpret_cast<__m128i*>(to + done);
    const __m128i a = _mm_loadu_si128(source);
    const __m128i b = _mm_loadu_si128(source + 1);
    const __m128i c = _mm_loadu_si128(source + 2);
    const __m128i d = _mm_loadu_si128(source + 3);
    _mm_stream_si128(target, a);
    _mm_stream_si128(target + 1, b);
    _mm_stream_si128(target + 2, c);
    _mm_stream_si128(target + 3, d);
  }
  memcpy(to + done, from + done, size - done);
  _mm_sfence();
}
#else
void copyPixels(uint8_t* to, const uint8_t* from, size_t size) {
  memcpy(to, from, size);
}
#endif

}  // namespace corvane::rtc
