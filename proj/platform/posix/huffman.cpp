#include "platform/posix/huffman.h"

#include <algorithm>
#include <array>
#include <vector>

namespace corvane::platform {
namespace {

using LengthCounts = std::array<uint32_t, kMaxCodeBits + 1>;

struct Node {
  uint64_t weight;
  size_t children[2];
};

// How many codes have which length, for leaves of rising weight; longer codes are counted as of the longest length.
LengthCounts countLengths(std::span<const uint32_t> weights) {
  const size_t leaves = weights.size();
  std::vector<Node> nodes(2 * leaves - 1);
  for (size_t i = 0; i < leaves; ++i) nodes[i].weight = weights[i];

  // Joins arise with rising weight too, so the lightest node is always at the head of one of two queues.
  size_t leaf = 0;
  size_t join = leaves;
  for (size_t next = leaves; next < nodes.size(); ++next) {
    nodes[next].weight = 0;
    for (size_t& child : nodes[next].children) {
      const bool take_leaf = leaf < leaves && (join == next || nodes[leaf].weight <= nodes[join].weight);
      child = take_leaf ? leaf++ : join++;
      nodes[next].weight += nodes[child].weight;
    }
  }

  std::vector<int32_t> depths(nodes.size());
  for (size_t i = nodes.size(); i-- > leaves;) {
    for (const size_t child : nodes[i].children) depths[child] = depths[i] + 1;
  }
  LengthCounts counts{};
  for (size_t i = 0; i < leaves; ++i) ++counts[static_cast<size_t>(std::min(depths[i], kMaxCodeBits))];
  return counts;
}

// Cutting codes to the longest length used up more room than there is; it is given back by lengthening others.
void fitLengths(LengthCounts& counts) {
  uint32_t used = 0;
  for (size_t length = 1; length <= kMaxCodeBits; ++length) used += counts[length] << (kMaxCodeBits - length);
  for (; used > 1U << kMaxCodeBits; --used) {
    size_t length = kMaxCodeBits - 1;
    while (counts[length] == 0) --length;
    --counts[length];
    counts[length + 1] += 2;
    --counts[kMaxCodeBits];
  }
}

uint16_t reversed(uint32_t bits, uint32_t count) {
  uint32_t result = 0;
  for (; count > 0; --count, bits >>= 1) result = result << 1 | (bits & 1);
  return static_cast<uint16_t>(result);
}

}  // namespace

void makeHuffmanCodes(std::span<const uint32_t> counts, std::span<HuffmanCode> codes) {
  std::vector<uint16_t> symbols;
  for (size_t i = 0; i < counts.size(); ++i) {
    codes[i] = {};
    if (counts[i] > 0) symbols.push_back(static_cast<uint16_t>(i));
  }
  std::ranges::stable_sort(symbols, {}, [&](uint16_t symbol) { return counts[symbol]; });
  std::vector<uint32_t> weights(symbols.size());
  std::ranges::transform(symbols, weights.begin(), [&](uint16_t symbol) { return counts[symbol]; });

  LengthCounts lengths = countLengths(weights);
  fitLengths(lengths);
  auto symbol = symbols.begin();
  for (size_t length = kMaxCodeBits; length > 0; --length) {
    for (uint32_t i = 0; i < lengths[length]; ++i) codes[*symbol++].count = static_cast<uint16_t>(length);
  }

  // Codes of one length are consecutive numbers in the order of their symbols.
  std::array<uint32_t, kMaxCodeBits + 2> next{};
  for (size_t length = 1; length <= kMaxCodeBits; ++length) next[length + 1] = (next[length] + lengths[length]) << 1;
  for (HuffmanCode& code : codes) {
    if (code.count > 0) code.bits = reversed(next[code.count]++, code.count);
  }
}

}  // namespace corvane::platform
