// The numbers in ids of synthetic pictures and sounds: "name=value", joined by "&".
#pragma once

#include <charconv>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane::rtc {

template <class T>
struct TestParameter {
  std::string_view name;
  int32_t T::*value;
  int32_t min;
  int32_t max;
};

/// False for a name that is not known, or a value that is no number or out of its range.
template <class T>
bool readTestParameters(std::string_view text, std::span<const TestParameter<T>> known, T& target) {
  while (!text.empty()) {
    const std::string_view part = text.substr(0, text.find('&'));
    const size_t equals = part.find('=');
    if (equals == std::string_view::npos) return false;
    const std::string_view digits = part.substr(equals + 1);
    const TestParameter<T>* parameter = nullptr;
    for (const TestParameter<T>& candidate : known) {
      if (candidate.name == part.substr(0, equals)) parameter = &candidate;
    }
    int32_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [read_to, error] = std::from_chars(digits.data(), end, value);
    if (parameter == nullptr || error != std::errc() || read_to != end || value < parameter->min ||
        value > parameter->max) {
      return false;
    }
    target.*parameter->value = value;
    text.remove_prefix(part.size() == text.size() ? part.size() : part.size() + 1);
  }
  return true;
}

}  // namespace corvane::rtc
