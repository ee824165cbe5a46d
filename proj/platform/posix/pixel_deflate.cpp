#include "platform/posix/pixel_deflate.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace corvane::platform {
namespace {

static_assert(std::endian::native == std::endian::little, "bits are stored as whole little-endian words");

constexpr uint32_t kEndOfBlock = 256;
constexpr size_t kMinRun = 3;
constexpr size_t kMaxRun = 258;
constexpr size_t kBlockSize = 65536;
constexpr uint32_t kFirstRun = 256;  // among tokens
// What blocks begin with: whether it is the last one, and the kind of its codes.
constexpr uint32_t kDynamicBlock = 0b100;
constexpr uint32_t kLastFixedBlock = 0b011;
// All runs have the same distance, so one bit tells it.
constexpr uint32_t kDistanceBits = 1;

// How a run's length is written: a symbol and a few bits more.
struct RunCode {
  uint16_t symbol;
  uint8_t extra_count;
  uint8_t extra;
};

constexpr auto kRunCodes = [] {
  std::array<RunCode, kMaxRun + 1> codes{};
  size_t length = kMinRun;
  for (uint16_t symbol = 257; symbol < 285; ++symbol) {
    const auto extra_count = static_cast<uint8_t>(symbol < 265 ? 0 : (symbol - 261) / 4);
    for (size_t extra = 0; extra < size_t{1} << extra_count; ++extra) {
      codes[length++] = {symbol, extra_count, static_cast<uint8_t>(extra)};
      if (length > kMaxRun) break;
    }
  }
  codes[kMaxRun] = {285, 0, 0};
  return codes;
}();

// The lengths of the codes are written in 4 bits each, as a code in which all of 0 to 15 are equally likely.
constexpr uint32_t kLengthBits = 4;
constexpr std::array<uint8_t, 19> kLengthOrder = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
constexpr std::array<uint8_t, 16> kReversed4 = {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15};

uint32_t load32(const uint8_t* bytes) {
  uint32_t value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

uint64_t load64(const uint8_t* bytes) {
  uint64_t value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

// How many bytes from `bytes` on equal the ones `distance` before them.
size_t runLength(const uint8_t* bytes, const uint8_t* end, size_t distance) {
  const uint8_t* at = bytes;
  for (; end - at >= 8; at += 8) {
    const uint64_t difference = load64(at) ^ load64(at - distance);
    if (difference != 0) return static_cast<size_t>(at - bytes + (std::countr_zero(difference) >> 3));
  }
  while (at < end && *at == *(at - distance)) ++at;
  return static_cast<size_t>(at - bytes);
}

}  // namespace

PixelDeflate::PixelDeflate(size_t pixel_size, std::vector<uint8_t>& out)
    : pixel_size_(pixel_size), out_(out), checksum_(static_cast<uint32_t>(adler32(0, nullptr, 0))) {
  constexpr uint8_t kHeader[] = {0x78, 0x01};  // a window of 32 kB, fastest
  out_.insert(out_.end(), std::begin(kHeader), std::end(kHeader));
  position_ = out_.size();
  tokens_.resize(kBlockSize);
}

void PixelDeflate::write(std::span<const uint8_t> bytes) {
  for (; !bytes.empty(); bytes = bytes.subspan(std::min(bytes.size(), kBlockSize))) {
    writeBlock(bytes.first(std::min(bytes.size(), kBlockSize)));
  }
}

void PixelDeflate::writeBlock(std::span<const uint8_t> bytes) {
  checksum_ = static_cast<uint32_t>(adler32(checksum_, bytes.data(), static_cast<uInt>(bytes.size())));
  tokenize(bytes);
  makeHuffmanCodes(counts_, codes_);
  // Bits are stored eight bytes at a time.
  out_.resize(position_ + (pending_count_ + blockBits()) / 8 + 2 * sizeof pending_);
  writeCodes();
  writeTokens();
}

void PixelDeflate::finish() {
  out_.resize(position_ + 4 * sizeof pending_);
  // An empty last block: which one will be the last is not known before.
  putBits(kLastFixedBlock, 3);
  putBits(0, 7);
  putBits(0, (8 - pending_count_) % 8);
  for (uint32_t shift = 32; shift > 0; shift -= 8) out_[position_++] = static_cast<uint8_t>(checksum_ >> (shift - 8));
  out_.resize(position_);
}

void PixelDeflate::tokenize(std::span<const uint8_t> bytes) {
  counts_.fill(0);
  counts_[kEndOfBlock] = 1;
  // Equal bytes follow each other: counting them in turns spares each count the wait for the one before.
  std::array<std::array<uint32_t, 256>, 4> literals{};
  Token* out = tokens_.data();
  const uint8_t* const begin = bytes.data();
  const uint8_t* const end = begin + bytes.size();
  const auto put_literals = [&](const uint8_t* from, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      ++literals[i & 3][from[i]];
      *out++ = from[i];
    }
  };

  for (const uint8_t* in = begin; in < end;) {
    const auto left = static_cast<size_t>(end - in);
    const bool runs =
        left >= 4 && static_cast<size_t>(in - begin) >= pixel_size_ && load32(in) == load32(in - pixel_size_);
    if (!runs) {
      put_literals(in, std::min<size_t>(left, 4));
      in += std::min<size_t>(left, 4);
      continue;
    }
    size_t length = runLength(in, end, pixel_size_);
    while (length >= kMinRun) {
      const size_t part = std::min(length, kMaxRun);
      ++counts_[kRunCodes[part].symbol];
      *out++ = static_cast<Token>(kFirstRun + part);
      in += part;
      length -= part;
    }
    put_literals(in, length);
    in += length;
  }
  for (size_t i = 0; i < 256; ++i) {
    counts_[i] = literals[0][i] + literals[1][i] + literals[2][i] + literals[3][i];
  }
  token_count_ = static_cast<size_t>(out - tokens_.data());
}

size_t PixelDeflate::blockBits() const {
  size_t bits = 3 + 5 + 5 + 4 + 3 * kLengthOrder.size() + kLengthBits * (kSymbols + pixel_size_);
  for (size_t symbol = 0; symbol < kSymbols; ++symbol) bits += size_t{counts_[symbol]} * codes_[symbol].count;
  for (size_t length = kMinRun; length <= kMaxRun; ++length) {
    // Lengths that share a symbol have as many bits more; they count once.
    if (kRunCodes[length].extra == 0) {
      bits += size_t{counts_[kRunCodes[length].symbol]} * (kRunCodes[length].extra_count + kDistanceBits);
    }
  }
  return bits;
}

void PixelDeflate::writeCodes() {
  putBits(kDynamicBlock, 3);
  putBits(kSymbols - 257, 5);
  putBits(static_cast<uint32_t>(pixel_size_ - 1), 5);
  putBits(kLengthOrder.size() - 4, 4);
  for (const uint8_t length : kLengthOrder) putBits(length < 16 ? kLengthBits : 0, 3);
  for (const HuffmanCode& code : codes_) putBits(kReversed4[code.count], kLengthBits);
  // Distances up to four are symbols of their own, the first one being a distance of 1.
  for (size_t distance = 1; distance <= pixel_size_; ++distance) {
    putBits(kReversed4[distance == pixel_size_ ? kDistanceBits : 0], kLengthBits);
  }
}

void PixelDeflate::writeTokens() {
  const Token* in = tokens_.data();
  const Token* const end = in + token_count_;
  while (in < end) {
    if (*in >= kFirstRun) {
      const RunCode run = kRunCodes[*in++ - kFirstRun];
      putCode(run.symbol);
      pushBits(run.extra, run.extra_count);
      pushBits(0, kDistanceBits);
    } else {
      // Three codes of 15 bits and what was left over fit into the 64 bits.
      putCode(*in++);
      if (in < end && *in < kFirstRun) putCode(*in++);
      if (in < end && *in < kFirstRun) putCode(*in++);
    }
    storeBits();
  }
  putCode(kEndOfBlock);
  storeBits();
}

void PixelDeflate::putCode(size_t symbol) {
  pushBits(codes_[symbol].bits, codes_[symbol].count);
}

void PixelDeflate::pushBits(uint64_t value, uint32_t count) {
  pending_ |= value << pending_count_;
  pending_count_ += count;
}

void PixelDeflate::storeBits() {
  std::memcpy(out_.data() + position_, &pending_, sizeof pending_);
  const uint32_t whole = pending_count_ / 8;
  position_ += whole;
  pending_ >>= whole * 8;
  pending_count_ -= whole * 8;
}

void PixelDeflate::putBits(uint64_t value, uint32_t count) {
  pushBits(value, count);
  storeBits();
}

}  // namespace corvane::platform
