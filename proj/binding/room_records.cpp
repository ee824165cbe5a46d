#include "binding/room_records.h"

#include <algorithm>
#include <limits>

#include "log/log.h"

namespace corvane {
namespace {

// Coordinates that a log line prints as whole numbers. Those that no int holds are cut to its ends; not-a-number is 0.
int whole(float coordinate) {
  constexpr auto kLowest = static_cast<double>(std::numeric_limits<int>::min());
  constexpr auto kHighest = static_cast<double>(std::numeric_limits<int>::max());
  const auto value = static_cast<double>(coordinate);
  return value != value ? 0 : static_cast<int>(std::clamp(value, kLowest, kHighest));
}

template <class Vector>
Vector readVector(Reader& reader, napi_value value) {
  Vector vector{};
  vector.x = static_cast<float>(reader.number(value, "x"));
  vector.y = static_cast<float>(reader.number(value, "y"));
  vector.z = static_cast<float>(reader.number(value, "z"));
  return vector;
}

double printed(float coordinate) {
  return static_cast<double>(coordinate);
}

}  // namespace

// The line is no refusal: it is written for every position.
rtc::Position ParsePostion(Reader& reader, napi_value value) {  // NOLINT: see the header
  const auto position = readVector<rtc::Position>(reader, value);
  LogWrite(kLogInfo, "%s(%d) param is not valid x: %d y: %d z: %d", __func__, __LINE__, whole(position.x),
           whole(position.y), whole(position.z));
  return position;
}

rtc::HumanOrientation ParseHumanOrientation(Reader& reader, napi_value value) {  // NOLINT: see the header
  rtc::HumanOrientation orientation{};
  orientation.forward = readVector<rtc::Orientation>(reader, reader.get(value, "forward"));
  orientation.right = readVector<rtc::Orientation>(reader, reader.get(value, "right"));
  orientation.up = readVector<rtc::Orientation>(reader, reader.get(value, "up"));
  const auto& [forward, right, up] = orientation;
  LogWrite(kLogInfo, "%s(%d), forward: {x: %f, y: %f, z: %f}, right: { x: %f, y: %f, z: %f}, up: {x: %d, y: %d, z: %d}",
           __func__, __LINE__, printed(forward.x), printed(forward.y), printed(forward.z), printed(right.x),
           printed(right.y), printed(right.z), whole(up.x), whole(up.y), whole(up.z));
  return orientation;
}

rtc::PositionInfo readPositionInfo(Reader& reader, napi_value value) {
  rtc::PositionInfo info{};
  info.position = ParsePostion(reader, reader.get(value, "position"));
  info.orientation = ParseHumanOrientation(reader, reader.get(value, "orientation"));
  return info;
}

}  // namespace corvane
