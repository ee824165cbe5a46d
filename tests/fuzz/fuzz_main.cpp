// libFuzzer's entry points: `--target=NAME` chooses what is fuzzed.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "targets.h"

namespace {

const corvane::fuzz::Target* chosen = nullptr;

}  // namespace

extern "C" {

// Names and shapes are libFuzzer's.
// NOLINTBEGIN(readability-identifier-naming)
__attribute__((visibility("default"))) int LLVMFuzzerInitialize(int* count, char*** arguments) {
  constexpr std::string_view kOption = "--target=";
  for (int index = 1; index < *count; ++index) {
    const std::string_view argument = (*arguments)[index];
    if (argument.starts_with(kOption)) chosen = corvane::fuzz::findTarget(argument.substr(kOption.size()));
  }
  if (chosen == nullptr) {
    fprintf(stderr, "corvane_fuzz: --target= names none of:");
    for (const auto& target : corvane::fuzz::targets()) fprintf(stderr, " %s", target.name);
    fprintf(stderr, "\n");
    exit(2);
  }
  corvane::fuzz::prepare();
  return 0;
}

__attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  chosen->run({reinterpret_cast<const char*>(data), size});
  return 0;
}

// NOLINTEND(readability-identifier-naming)
}  // extern "C"
