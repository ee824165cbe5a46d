#include "video/frame_memory.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <vector>

namespace corvane {
namespace {

// Blocks that collected buffers gave back, for buffers of the same size: fresh pages cost several times the copy
// that goes into them.
class FrameMemory {
 public:
  static FrameMemory& instance() {
    static auto* const memory = new FrameMemory;  // outlives every environment's finalisers
    return *memory;
  }

  uint8_t* take(size_t size) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      for (size_t i = blocks_.size(); i-- > 0;) {
        if (blocks_[i].size != size) continue;
        uint8_t* data = blocks_[i].data;
        blocks_.erase(blocks_.begin() + static_cast<ptrdiff_t>(i));
        return data;
      }
    }
    return static_cast<uint8_t*>(std::malloc(size));
  }

  void giveBack(uint8_t* data, size_t size) {
    uint8_t* oldest = data;
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      blocks_.push_back({data, size});
      if (blocks_.size() <= kMaxBlocks) return;
      oldest = blocks_.front().data;
      blocks_.erase(blocks_.begin());
    }
    std::free(oldest);
  }

 private:
  static constexpr size_t kMaxBlocks = 16;
  struct Block {
    uint8_t* data;
    size_t size;
  };
  std::mutex mutex_;
  std::vector<Block> blocks_;
};

bool releasesRgba() {
  static const bool releases = [] {
    const char* wanted = std::getenv("CORVANE_RELEASE_RGBA_FRAMES");
    return wanted != nullptr && std::strcmp(wanted, "1") == 0;
  }();
  return releases;
}

void recycle(napi_env, void* data, void* size) {
  FrameMemory::instance().giveBack(static_cast<uint8_t*>(data), reinterpret_cast<size_t>(size));
}

napi_value copyAndFree(napi_env env, uint8_t* data, size_t size) {
  napi_value buffer = nullptr;
  napi_create_buffer_copy(env, size, data, nullptr, &buffer);
  std::free(data);
  return buffer;
}

// A Buffer on recycled memory, or a copy of it where the host has its own rules.
napi_value makeRecycledBuffer(napi_env env, uint8_t* data, size_t size) {
  napi_value buffer = nullptr;
  const napi_status status =
      napi_create_external_buffer(env, size, data, &recycle, reinterpret_cast<void*>(size), &buffer);
  return status == napi_ok ? buffer : copyAndFree(env, data, size);
}

}  // namespace

napi_value makePlaneBuffer(napi_env env, const I420Planes& planes) {
  const size_t size = planes.spanSize();
  uint8_t* data = FrameMemory::instance().take(size);
  if (data == nullptr) return nullptr;
  planes.copySpan(data);
  return makeRecycledBuffer(env, data, size);
}

napi_value makeRgbaBuffer(napi_env env, size_t size, const std::function<void(uint8_t*)>& fill) {
  if (releasesRgba()) {
    uint8_t* data = FrameMemory::instance().take(size);
    if (data == nullptr) return nullptr;
    fill(data);
    return makeRecycledBuffer(env, data, size);
  }
  auto* data = static_cast<uint8_t*>(std::calloc(size, 1));
  if (data == nullptr) return nullptr;
  fill(data);
  napi_value buffer = nullptr;
  const napi_status status = napi_create_external_buffer(env, size, data, nullptr, nullptr, &buffer);
  return status == napi_ok ? buffer : copyAndFree(env, data, size);
}

}  // namespace corvane
