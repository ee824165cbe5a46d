#include "frames/video_frame.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "frames/pattern.h"
#include "frames/quarantine.h"

namespace corvane::scripted {

namespace {

constexpr int64_t kMaxFrameBytes = int64_t{1} << 30;
/// Behind the last plane, so that reading a little too far finds gap bytes.
constexpr int64_t kTailBytes = 64;

int32_t at(const std::vector<int32_t>& values, size_t plane, int32_t otherwise) {
  return plane < values.size() ? values[plane] : otherwise;
}

bool isRgb(int32_t pixel_format) {
  return pixel_format == rtc::kVideoPixelFormatRGBA || pixel_format == rtc::kVideoPixelFormatARGB;
}

/// Bytes from row to row in memory, whatever planeStride() is to answer.
int64_t memoryStride(const VideoFrameSpec& spec, size_t plane, const PlaneSize& size) {
  return std::max<int64_t>(at(spec.strides, plane, 0), size.row_bytes);
}

/// Bytes that a builder's plane must hold: whole rows with what lies between them, the last one without.
int64_t builderBytes(const rtc::VideoFrameBuilder& builder, size_t plane) {
  const auto size = planeSize(builder.pixel_format, builder.width, builder.height, plane);
  if (builder.data[plane] == nullptr || builder.linesize[plane] < size.row_bytes || size.rows == 0) {
    return 0;
  }
  return int64_t{builder.linesize[plane]} * (size.rows - 1) + size.row_bytes;
}

}  // namespace

VideoFrameSpec readVideoFrameSpec(const Value& value) {
  VideoFrameSpec spec;
  Arena arena;
  const auto read_ints = [&](const Value& list, std::vector<int32_t>& ints) {
    for (const Value& item : list.toList()) {
      readValue(item, ints.emplace_back(), arena);
    }
  };
  for (const auto& [name, member] : value.toMembers()) {
    if (name == "width") {
      readValue(member, spec.width, arena);
    } else if (name == "height") {
      readValue(member, spec.height, arena);
    } else if (name == "pixelFormat") {
      readValue(member, spec.pixel_format, arena);
    } else if (name == "frameType") {
      readValue(member, spec.frame_type, arena);
    } else if (name == "rotation") {
      readValue(member, spec.rotation, arena);
    } else if (name == "timestampUs") {
      readValue(member, spec.timestamp_us, arena);
    } else if (name == "seed") {
      readValue(member, spec.seed, arena);
    } else if (name == "strides") {
      read_ints(member, spec.strides);
    } else if (name == "gaps") {
      read_ints(member, spec.gaps);
    } else if (name == "nullPlanes") {
      read_ints(member, spec.null_planes);
    } else {
      throw BadRequest("a video frame has no " + name);
    }
  }
  return spec;
}

size_t planeCount(int32_t pixel_format) {
  return isRgb(pixel_format) ? 1 : kMaxPlanes;
}

PlaneSize planeSize(int32_t pixel_format, int32_t width, int32_t height, size_t plane) {
  if (width <= 0 || height <= 0 || plane >= planeCount(pixel_format)) {
    return {0, 0};
  }
  if (isRgb(pixel_format)) {
    return {width * 4, height};
  }
  return plane == 0 ? PlaneSize{width, height} : PlaneSize{(width + 1) / 2, (height + 1) / 2};
}

Value describeFrame(const rtc::IVideoFrame& frame) {
  Value::List planes;
  Value::List strides;
  for (size_t plane = 0; plane < planeCount(frame.pixelFormat()); ++plane) {
    const auto [row_bytes, rows] = planeSize(frame.pixelFormat(), frame.width(), frame.height(), plane);
    const uint8_t* data = frame.planeData(static_cast<int32_t>(plane));
    const int32_t stride = frame.planeStride(static_cast<int32_t>(plane));
    strides.emplace_back(stride);
    Value::Bytes bytes;
    for (int32_t row = 0; data != nullptr && row < rows; ++row) {
      const uint8_t* start = data + int64_t{row} * stride;
      bytes.insert(bytes.end(), start, start + row_bytes);
    }
    planes.push_back(data == nullptr ? Value() : Value(std::move(bytes)));
  }
  return Value::Members{{"width", Value(frame.width())},
                        {"height", Value(frame.height())},
                        {"pixelFormat", Value(frame.pixelFormat())},
                        {"frameType", Value(frame.frameType())},
                        {"rotation", Value(frame.rotation())},
                        {"timestampUs", Value(frame.timestampUs())},
                        {"strides", std::move(strides)},
                        {"planes", std::move(planes)}};
}

Value describeBuilder(const rtc::VideoFrameBuilder& builder) {
  Value::List data;
  for (size_t plane = 0; plane < std::size(builder.data); ++plane) {
    data.push_back(listToValue(builder.data[plane], builderBytes(builder, plane)));
  }
  return Value::Members{
      {"pixel_format", Value(builder.pixel_format)},
      {"color_space", Value(builder.color_space)},
      {"data", std::move(data)},
      {"linesize", toValue(builder.linesize)},
      {"extra_data", listToValue(builder.extra_data, builder.extra_data_size)},
      {"extra_data_size", Value(builder.extra_data_size)},
      {"supplementary_info", listToValue(builder.supplementary_info, builder.supplementary_info_size)},
      {"supplementary_info_size", Value(builder.supplementary_info_size)},
      {"width", Value(builder.width)},
      {"height", Value(builder.height)},
      {"rotation", Value(builder.rotation)},
      {"timestamp_us", Value(builder.timestamp_us)}};
}

ScriptedVideoFrame::ScriptedVideoFrame(const VideoFrameSpec& spec) : spec_(spec) {
  std::array<int64_t, kMaxPlanes> offsets{};
  int64_t total = 0;
  for (size_t plane = 0; plane < planeCount(spec.pixel_format); ++plane) {
    const auto size = planeSize(spec.pixel_format, spec.width, spec.height, plane);
    total += std::max(0, at(spec.gaps, plane, 0));
    offsets[plane] = total;
    total += memoryStride(spec, plane, size) * size.rows;
    strides_[plane] = at(spec.strides, plane, size.row_bytes);
    if (total > kMaxFrameBytes) {
      throw BadRequest("a frame may take a gigabyte at most");
    }
  }
  memory_ = PixelBlock(static_cast<size_t>(total + kTailBytes));
  for (size_t plane = 0; plane < planeCount(spec.pixel_format); ++plane) {
    const auto size = planeSize(spec.pixel_format, spec.width, spec.height, plane);
    uint8_t* data = memory_.data() + offsets[plane];
    for (int32_t row = 0; row < size.rows; ++row) {
      fillPattern(data + row * memoryStride(spec, plane, size), static_cast<size_t>(size.row_bytes), spec.seed,
                  static_cast<uint32_t>(plane), static_cast<uint32_t>(row));
    }
    const auto& nulls = spec.null_planes;
    const bool null = std::find(nulls.begin(), nulls.end(), static_cast<int32_t>(plane)) != nulls.end();
    planes_[plane] = null || spec.frame_type != rtc::kVideoFrameRawMemory ? nullptr : data;
  }
}

ScriptedVideoFrame::ScriptedVideoFrame(const rtc::VideoFrameBuilder& builder) {
  spec_.width = builder.width;
  spec_.height = builder.height;
  spec_.pixel_format = builder.pixel_format;
  spec_.rotation = builder.rotation;
  spec_.timestamp_us = builder.timestamp_us;
  std::array<size_t, kMaxPlanes> offsets{};
  size_t total = 0;
  for (size_t plane = 0; plane < planeCount(builder.pixel_format); ++plane) {
    offsets[plane] = total;
    total += static_cast<size_t>(builderBytes(builder, plane));
  }
  memory_ = PixelBlock(total + kTailBytes);
  for (size_t plane = 0; plane < planeCount(builder.pixel_format); ++plane) {
    strides_[plane] = builder.linesize[plane];
    if (builder.data[plane] != nullptr) {
      planes_[plane] = memory_.data() + offsets[plane];
      std::memcpy(planes_[plane], builder.data[plane], static_cast<size_t>(builderBytes(builder, plane)));
    }
  }
}

uint8_t* ScriptedVideoFrame::planeData(int32_t plane) const {
  const bool known = plane >= 0 && static_cast<size_t>(plane) < kMaxPlanes;
  return seen(known ? planes_[static_cast<size_t>(plane)] : nullptr);
}

int32_t ScriptedVideoFrame::planeStride(int32_t plane) const {
  const bool known = plane >= 0 && static_cast<size_t>(plane) < kMaxPlanes;
  return seen(known ? strides_[static_cast<size_t>(plane)] : 0);
}

void ScriptedVideoFrame::handOut(State state) {
  auto& statistics = FrameStatistics::instance();
  ++(state == kGiven ? statistics.given : state == kLent ? statistics.lent : statistics.built);
  state_ = state;
}

void ScriptedVideoFrame::release() {
  auto& statistics = FrameStatistics::instance();
  if (state_ == kLent) {
    ++statistics.lent_released;
    return;
  }
  const State before = state_.exchange(kReleased);
  if (before == kReleased) {
    ++statistics.released_twice;
    return;
  }
  if (const auto home = home_) {
    ++statistics.given_released;
    home->comeHome(std::unique_ptr<ScriptedVideoFrame>(this));
    return;
  }
  memory_.poison();
  // Last: whoever waits for all releases may look at the memory then.
  ++(before == kBuilt ? statistics.built_released : statistics.given_released);
  Quarantine::instance().take(std::unique_ptr<ScriptedVideoFrame>(this));
}

void ScriptedVideoFrame::retire(std::unique_ptr<ScriptedVideoFrame> frame) {
  frame->memory_.poison();
  Quarantine::instance().take(std::move(frame));
}

void ScriptedVideoFrame::takeBack() {
  state_ = kReleased;
  memory_.poison();
  Quarantine::instance().take(std::unique_ptr<ScriptedVideoFrame>(this));
}

}  // namespace corvane::scripted
