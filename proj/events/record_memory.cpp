#include "events/record_memory.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(_WIN32)

// Every record has memory of its own: inside a block nobody would see one that is used after its end, and MinGW frees
// what belongs to a thread before it runs that thread's destructors.

namespace corvane {

void* takeRecordMemory(size_t size) {
  return ::operator new(size);
}

void giveBackRecordMemory(void* memory) noexcept {
  ::operator delete(memory);
}

}  // namespace corvane

#else

namespace corvane {
namespace {

constexpr size_t kLargestShared = 2048;
constexpr size_t kAlignment = alignof(std::max_align_t);
constexpr size_t kBlockSpace = size_t{16} * 1024 - kAlignment;  // 16 KB with what stands before it

// Counts for the thread that fills a block; more than a block has records, so that those that come back meanwhile do
// not bring the count to zero.
constexpr int32_t kFilling = 1 << 20;

struct Block {
  // The records in use, and kFilling while there may be more. Whoever brings it to zero owns the block.
  std::atomic<int32_t> users{kFilling};
  // The filling thread's alone.
  int32_t taken = 0;
  size_t used = 0;
  alignas(kAlignment) std::array<std::byte, kBlockSpace> space;  // written as far as it is used
};

// Stands before every record.
struct alignas(kAlignment) Header {
  Block* block;  // null for a record with memory of its own
};

// The block that a thread fills.
class Filling {
 public:
  Filling() = default;
  ~Filling() {
    if (block_ != nullptr && retire()) delete block_;
    block_ = nullptr;
    ended_ = true;
  }
  Filling(const Filling&) = delete;
  Filling& operator=(const Filling&) = delete;

  // `size` is a multiple of the alignment. Null for a record that is to have memory of its own.
  Header* take(size_t size) {
    if (size > kLargestShared || ended_) return nullptr;
    if (block_ == nullptr || kBlockSpace - block_->used < size) renew();
    auto* header = new (block_->space.data() + block_->used) Header{block_};
    block_->used += size;
    ++block_->taken;
    return header;
  }

 private:
  // True when no record of the block is in use and the block is this thread's; else the last record takes it along.
  bool retire() {
    const int32_t back = kFilling - block_->taken;
    return block_->users.fetch_sub(back, std::memory_order_acq_rel) == back;
  }

  void renew() {
    if (block_ == nullptr || !retire()) {
      block_ = new Block;
      return;
    }
    block_->users.store(kFilling, std::memory_order_relaxed);
    block_->taken = 0;
    block_->used = 0;
  }

  Block* block_ = nullptr;
  bool ended_ = false;  // records of other thread-local objects may come and go after this one
};

thread_local Filling t_filling;

}  // namespace

void* takeRecordMemory(size_t size) {
  const size_t whole = sizeof(Header) + (size + kAlignment - 1) / kAlignment * kAlignment;
  Header* header = t_filling.take(whole);
  if (header == nullptr) header = new (::operator new(whole)) Header{nullptr};
  return header + 1;
}

void giveBackRecordMemory(void* memory) noexcept {
  if (memory == nullptr) return;
  Header* header = static_cast<Header*>(memory) - 1;
  Block* block = header->block;
  if (block == nullptr) {
    ::operator delete(header);
  } else if (block->users.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete block;
  }
}

}  // namespace corvane

#endif
