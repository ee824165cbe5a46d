// Runs every target on its seeds, whole, cut and bent: what the fuzzer starts from, and what it once found.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "targets.h"

namespace corvane::fuzz {

// For GoogleTest, which finds it by its name.
void PrintTo(const Target& target, std::ostream* out) {  // NOLINT(readability-identifier-naming)
  *out << target.name;
}

namespace {

std::vector<std::string> seedsOf(const char* target) {
  std::vector<std::filesystem::path> files;
  const std::filesystem::path folder = std::filesystem::path(CORVANE_FUZZ_SEEDS) / target;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  std::vector<std::string> seeds;
  for (const auto& path : files) {
    std::ifstream file(path, std::ios::binary);
    seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return seeds;
}

class Replay : public testing::TestWithParam<Target> {
 protected:
  static void SetUpTestSuite() { prepare(); }
};

TEST_P(Replay, KeepsItsPromises) {
  const Target& target = GetParam();
  const std::vector<std::string> seeds = seedsOf(target.name);
  ASSERT_FALSE(seeds.empty());
  target.run("");
  for (const std::string& seed : seeds) {
    target.run(seed);
    constexpr size_t kCuts = 6;
    for (size_t cut = 1; cut < kCuts; ++cut) target.run(std::string_view(seed).substr(0, seed.size() * cut / kCuts));
    std::string bent = seed;
    for (size_t at = 0; at < bent.size(); at += bent.size() / kCuts + 1) {
      const char before = bent[at];
      for (const char other : {'"', '[', '\xff'}) {
        bent[at] = other;
        target.run(bent);
      }
      bent[at] = before;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, Replay, testing::ValuesIn(targets().begin(), targets().end()),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
}  // namespace corvane::fuzz
