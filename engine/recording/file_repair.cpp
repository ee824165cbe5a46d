#include "recording/file_repair.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

namespace corvane::rtc {

namespace {

class OpenFile {
 public:
  explicit OpenFile(const std::string& path) : descriptor_(open(path.c_str(), O_RDWR | O_CLOEXEC)) {}
  ~OpenFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int64_t size() const {
    struct stat facts = {};
    return fstat(descriptor_, &facts) == 0 ? facts.st_size : 0;
  }
  template <size_t kSize>
  bool read(int64_t at, std::array<uint8_t, kSize>& bytes) const {
    return pread(descriptor_, bytes.data(), kSize, at) == static_cast<ssize_t>(kSize);
  }
  void writeLittleEndian(int64_t at, uint32_t value) const {
    const std::array<uint8_t, 4> bytes = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                                          static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
    // What cannot be written now is written next time.
    [[maybe_unused]] const ssize_t written = pwrite(descriptor_, bytes.data(), bytes.size(), at);
  }
  void cut(int64_t size) const { [[maybe_unused]] const int result = ftruncate(descriptor_, size); }

 private:
  const int descriptor_;
};

uint64_t bigEndian(const uint8_t* bytes, int count) {
  uint64_t value = 0;
  for (int index = 0; index < count; ++index) value = value << 8 | bytes[index];
  return value;
}

}  // namespace

void dropPartialBox(const std::string& path) {
  const OpenFile file(path);
  const int64_t size = file.size();
  int64_t at = 0;
  int64_t whole = 0;
  while (at < size) {
    std::array<uint8_t, 8> head;
    std::array<uint8_t, 8> long_size = {};
    if (!file.read(at, head)) break;
    uint64_t box = bigEndian(head.data(), 4);
    if (box == 1) box = file.read(at + 8, long_size) ? bigEndian(long_size.data(), 8) : 0;
    if (box < head.size() || box > static_cast<uint64_t>(size - at)) break;
    // A fragment's description without its data is as bad as half of it.
    if (std::memcmp(&head[4], "moof", 4) != 0) whole = at + static_cast<int64_t>(box);
    at += static_cast<int64_t>(box);
  }
  if (whole > 0 && whole < size) file.cut(whole);
}

void updateWavHead(const std::string& path) {
  constexpr int64_t kHead = 44;
  constexpr int64_t kAllButFirstFields = 8;
  const OpenFile file(path);
  std::array<uint8_t, 4> tag;
  const int64_t size = std::min<int64_t>(file.size(), std::numeric_limits<uint32_t>::max());
  if (size < kHead || !file.read(kHead - 8, tag) || std::memcmp(tag.data(), "data", tag.size()) != 0) return;
  file.writeLittleEndian(4, static_cast<uint32_t>(size - kAllButFirstFields));
  file.writeLittleEndian(kHead - 4, static_cast<uint32_t>(size - kHead));
}

}  // namespace corvane::rtc
