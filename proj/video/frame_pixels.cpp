#include "video/frame_pixels.h"

#include <libyuv.h>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <cstring>

namespace corvane {
namespace {

// Gaps larger than the picture itself are not gaps: the planes are separate pieces of memory.
bool isPlausibleGap(int64_t gap, size_t picture) {
  return gap >= 0 && static_cast<uint64_t>(gap) <= picture;
}

}  // namespace

#if defined(__SSE2__)
namespace {

// From here on a copy goes past the caches: nobody reads the target before other data has pushed it out of them, and
// the target's old content need not be fetched first.
constexpr size_t kPastCaches = 256 * 1024;

template <void (*store)(__m128i*, __m128i)>
size_t copyBlocks(uint8_t* to, const uint8_t* from, size_t size) {
  size_t done = 0;
  for (; done + 64 <= size; done += 64) {
    const auto* source = reinterpret_cast<const __m128i*>(from + done);
    auto* target = reinterpret_cast<__m128i*>(to + done);
    const __m128i a = _mm_loadu_si128(source);
    const __m128i b = _mm_loadu_si128(source + 1);
    const __m128i c = _mm_loadu_si128(source + 2);
    const __m128i d = _mm_loadu_si128(source + 3);
    store(target, a);
    store(target + 1, b);
    store(target + 2, c);
    store(target + 3, d);
  }
  return done;
}

}  // namespace

// The C library copies planes of this size with string instructions, which take two to three times as long when the
// target lies a few bytes past the source's place in its page: the usual case for memory of JavaScript's.
void copyBytes(uint8_t* to, const uint8_t* from, size_t size) {
  if (size < kPastCaches) {
    const size_t done = copyBlocks<&_mm_storeu_si128>(to, from, size);
    std::memcpy(to + done, from + done, size - done);
    return;
  }
  // Stores past the caches need aligned targets.
  const size_t head = (16 - reinterpret_cast<uintptr_t>(to) % 16) % 16;
  std::memcpy(to, from, head);
  const size_t done = head + copyBlocks<&_mm_stream_si128>(to + head, from + head, size - head);
  std::memcpy(to + done, from + done, size - done);
  _mm_sfence();
}
#else
void copyBytes(uint8_t* to, const uint8_t* from, size_t size) {
  std::memcpy(to, from, size);
}
#endif

bool I420Planes::complete() const {
  for (int i = 0; i < 3; ++i) {
    if (data[i] == nullptr || stride[i] == 0) return false;
  }
  return true;
}

size_t I420Planes::spanSize() const {
  return packedSize() + static_cast<size_t>(offset_y) + static_cast<size_t>(offset_u);
}

void I420Planes::pack(uint8_t* to) const {
  for (int i = 0; i < 3; ++i) {
    copyBytes(to, data[i], size[i]);
    to += size[i];
  }
}

void I420Planes::copySpan(uint8_t* to) const {
  const size_t gaps[] = {static_cast<size_t>(offset_y), static_cast<size_t>(offset_u), 0};
  for (int i = 0; i < 3; ++i) {
    copyBytes(to, data[i], size[i]);
    to += size[i];
    std::memset(to, 0, gaps[i]);
    to += gaps[i];
  }
}

I420Planes readPlanes(const rtc::IVideoFrame& frame) {
  I420Planes planes;
  planes.width = frame.width();
  planes.height = frame.height();
  planes.rotation = frame.rotation();
  if (frame.pixelFormat() != rtc::kVideoPixelFormatI420 || frame.frameType() != rtc::kVideoFrameRawMemory) {
    return planes;
  }
  for (int i = 0; i < 3; ++i) {
    planes.data[i] = frame.planeData(i);
    planes.stride[i] = frame.planeStride(i);
  }
  // Strides shorter than the rows would have the readers below run past the planes.
  const auto chroma_width = (planes.width + 1) / 2;
  const bool sane = planes.width > 0 && planes.height > 0 && planes.stride[0] >= planes.width &&
                    planes.stride[1] >= chroma_width && planes.stride[2] >= chroma_width;
  if (!planes.complete() || !sane) {
    for (int i = 0; i < 3; ++i) planes.data[i] = nullptr;
    return planes;
  }
  for (int i = 0; i < 3; ++i) {
    planes.size[i] = static_cast<size_t>(planes.stride[i]) * static_cast<size_t>(planes.height);
    if (i > 0) planes.size[i] /= 2;
  }
  // Between unrelated pieces of memory the differences mean nothing; they are delivered packed.
  const auto address = [](const uint8_t* at) { return reinterpret_cast<intptr_t>(at); };
  planes.offset_y = address(planes.data[1]) - address(planes.data[0]) - static_cast<int64_t>(planes.size[0]);
  planes.offset_u = address(planes.data[2]) - address(planes.data[1]) - static_cast<int64_t>(planes.size[1]);
  if (!isPlausibleGap(planes.offset_y, planes.packedSize()) || !isPlausibleGap(planes.offset_u, planes.packedSize())) {
    planes.offset_y = 0;
    planes.offset_u = 0;
  }
  return planes;
}

std::unique_ptr<uint8_t[]> rotateUpright(I420Planes& planes) {
  const int32_t angle = planes.rotation;
  if (angle != 90 && angle != 180 && angle != 270) return nullptr;
  const bool swap = angle != 180;
  const int32_t width = swap ? planes.height : planes.width;
  const int32_t height = swap ? planes.width : planes.height;
  const size_t picture = static_cast<size_t>(width) * static_cast<size_t>(height);
  // The library rounds chroma sizes up where the layout below rounds them down: odd sizes write up to one row and one
  // column more than w * h * 3 / 2 bytes.
  const size_t slack = static_cast<size_t>(width) + static_cast<size_t>(height) + 64;
  auto turned = std::make_unique<uint8_t[]>(picture * 3 / 2 + slack);

  uint8_t* const y = turned.get();
  uint8_t* const u = y + picture;
  uint8_t* const v = u + picture / 4;
  const int32_t chroma_stride = width / 2;
  libyuv::I420Rotate(planes.data[0], planes.stride[0], planes.data[1], planes.stride[1], planes.data[2],
                     planes.stride[2], y, width, u, chroma_stride, v, chroma_stride, planes.width, planes.height,
                     static_cast<libyuv::RotationMode>(angle));
  planes.data[0] = y;
  planes.data[1] = u;
  planes.data[2] = v;
  planes.stride[0] = width;
  planes.stride[1] = chroma_stride;
  planes.stride[2] = chroma_stride;
  planes.size[0] = picture;
  planes.size[1] = picture / 4;
  planes.size[2] = picture / 4;
  planes.width = width;
  planes.height = height;
  planes.rotation = 0;
  return turned;
}

}  // namespace corvane
