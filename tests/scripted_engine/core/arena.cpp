#include <deque>
#include <mutex>

#include "core/fields.h"

namespace corvane::scripted {

namespace {

constexpr unsigned char kEndedByte = 0xDD;

#if !defined(__SANITIZE_ADDRESS__)
/// Blocks on their way to being freed.
class EndedBlocks {
 public:
  static EndedBlocks& instance() {
    static auto* blocks = new EndedBlocks;
    return *blocks;
  }

  void take(void* block, size_t size) {
    const std::lock_guard lock(mutex_);
    blocks_.emplace_back(block, size);
    bytes_ += size;
    while (blocks_.size() > kMaxBlocks || bytes_ > kMaxBytes) {
      bytes_ -= blocks_.front().second;
      std::free(blocks_.front().first);
      blocks_.pop_front();
    }
  }

 private:
  static constexpr size_t kMaxBlocks = 1024;
  static constexpr size_t kMaxBytes = size_t{8} << 20U;

  std::mutex mutex_;
  std::deque<std::pair<void*, size_t>> blocks_;
  size_t bytes_ = 0;
};
#endif

}  // namespace

Arena::~Arena() {
  for (const auto& [block, size] : blocks_) {
    std::memset(block, kEndedByte, size);
#if defined(__SANITIZE_ADDRESS__)
    std::free(block);
#else
    EndedBlocks::instance().take(block, size);
#endif
  }
}

const char* Arena::text(const Value& value) {
  if (value.isNull()) {
    return nullptr;
  }
  const auto* bytes = value.as<Value::Bytes>();
  const std::string& text = bytes == nullptr ? value.toText() : std::string();
  const char* data = bytes == nullptr ? text.data() : reinterpret_cast<const char*>(bytes->data());
  const size_t size = bytes == nullptr ? text.size() : bytes->size();
  char* copy = make<char>(size + 1);
  if (size > 0) {
    std::memcpy(copy, data, size);
  }
  return copy;
}

}  // namespace corvane::scripted
