#include "video/frame_memory.h"

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <vector>

#include "platform/platform.h"

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

// Blocks that collected buffers gave back, for buffers of the same size: fresh pages cost several times the copy that
// goes into them. The host collects buffers by the dozen, so a stream needs dozens of blocks in turn.
class FrameMemory {
 public:
  static FrameMemory& instance() {
    static auto* const memory = new FrameMemory;  // outlives every environment's finalisers
    return *memory;
  }

  // Null when the system has no memory left.
  uint8_t* take(size_t size) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      for (auto block = blocks_.rbegin(); block != blocks_.rend(); ++block) {
        if (block->size != size) continue;
        uint8_t* data = block->data;
        resting_ -= size;
        blocks_.erase(std::next(block).base());
        return data;
      }
    }
    return static_cast<uint8_t*>(std::malloc(size));
  }

  void giveBack(uint8_t* data, size_t size) {
    const std::lock_guard<std::mutex> lock(mutex_);
    blocks_.push_back({data, size, Clock::now()});
    resting_ += size;
    while (resting_ > kMostResting) freeOldest();
  }

  void freeUnused() {
    const auto oldest = Clock::now() - kLongestRest;
    const std::lock_guard<std::mutex> lock(mutex_);
    while (!blocks_.empty() && blocks_.front().since < oldest) freeOldest();
  }

 private:
  // The host collects at the latest when buffers hold 64 MB more than at its last collection.
  static constexpr size_t kMostResting = size_t{128} << 20U;
  static constexpr std::chrono::seconds kLongestRest{5};

  struct Block {
    uint8_t* data;
    size_t size;
    Clock::time_point since;
  };

  void freeOldest() {
    const Block block = blocks_.front();
    blocks_.erase(blocks_.begin());
    resting_ -= block.size;
    std::free(block.data);
  }

  std::mutex mutex_;
  std::vector<Block> blocks_;  // the longest unused first
  size_t resting_ = 0;
};

bool releasesRgba() {
  static const bool releases = platform::environmentVariable("CORVANE_RELEASE_RGBA_FRAMES") == "1";
  return releases;
}

void recycle(napi_env, void* data, void* size) {
  FrameMemory::instance().giveBack(static_cast<uint8_t*>(data), reinterpret_cast<size_t>(size));
}

// Has the host look for unused buffers among the young objects. For memory that is not its own it only ever collects
// the whole heap, every 64 MB, which costs as much as a frame's copy; before it makes memory of its own it looks
// whether young objects hold 32 MB, and then collects those alone.
void inviteCollection(napi_env env, size_t size) {
  constexpr size_t kInterval = size_t{16} << 20U;
  static thread_local size_t made = 0;
  made += size;
  if (made < kInterval) return;
  made = 0;
  void* data = nullptr;
  napi_value smallest = nullptr;
  napi_create_arraybuffer(env, 1, &data, &smallest);
}

// A Buffer on the block, which `finalizer` gets once the Buffer was collected; where the host forbids that, a copy.
napi_value makeBuffer(napi_env env, uint8_t* data, size_t size, napi_finalize finalizer) {
  napi_value buffer = nullptr;
  auto* const hint = reinterpret_cast<void*>(size);  // NOLINT: the finaliser needs no more than the number
  if (napi_create_external_buffer(env, size, data, finalizer, hint, &buffer) == napi_ok) {
    inviteCollection(env, size);
    return buffer;
  }
  if (napi_create_buffer_copy(env, size, data, nullptr, &buffer) != napi_ok) buffer = nullptr;
  FrameMemory::instance().giveBack(data, size);
  return buffer;
}

}  // namespace

napi_value makePlaneBuffer(napi_env env, const I420Planes& planes) {
  const size_t size = planes.spanSize();
  uint8_t* data = FrameMemory::instance().take(size);
  if (data == nullptr) return nullptr;
  planes.copySpan(data);
  return makeBuffer(env, data, size, &recycle);
}

napi_value makeRgbaBuffer(napi_env env, size_t size, const std::function<void(uint8_t*)>& fill) {
  auto* data = releasesRgba() ? FrameMemory::instance().take(size) : static_cast<uint8_t*>(std::calloc(size, 1));
  if (data == nullptr) return nullptr;
  fill(data);
  return makeBuffer(env, data, size, releasesRgba() ? &recycle : nullptr);
}

void freeUnusedFrameMemory() {
  FrameMemory::instance().freeUnused();
}

}  // namespace corvane
