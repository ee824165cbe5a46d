#include "frames/frame_statistics.h"

#include <array>
#include <utility>

namespace corvane::scripted {

namespace {

using Member = FrameStatistics::Count FrameStatistics::*;

constexpr std::array<std::pair<const char*, Member>, 10> kCounts = {{
    {"given", &FrameStatistics::given},
    {"accepted", &FrameStatistics::accepted},
    {"refused", &FrameStatistics::refused},
    {"givenReleased", &FrameStatistics::given_released},
    {"lent", &FrameStatistics::lent},
    {"built", &FrameStatistics::built},
    {"builtReleased", &FrameStatistics::built_released},
    {"releasedTwice", &FrameStatistics::released_twice},
    {"lentReleased", &FrameStatistics::lent_released},
    {"touchedAfterRelease", &FrameStatistics::touched_after_release},
}};

}  // namespace

Value FrameStatistics::toValue() const {
  Value::Members members;
  for (const auto& [name, count] : kCounts) {
    members.emplace_back(name, Value((this->*count).load()));
  }
  members.emplace_back("live", Value(given - given_released + built - built_released));
  members.emplace_back("violations", Value(released_twice + lent_released + touched_after_release));
  return members;
}

void FrameStatistics::clear() {
  // Frames that are out stay accounted for: their release is still to come.
  given = given - given_released;
  built = built - built_released;
  for (const auto& [name, count] : kCounts) {
    if (count != &FrameStatistics::given && count != &FrameStatistics::built) {
      this->*count = 0;
    }
  }
}

}  // namespace corvane::scripted
