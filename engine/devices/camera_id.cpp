#include "devices/camera_id.h"

#include <algorithm>

#include "devices/test_parameters.h"

namespace corvane::rtc {

namespace {

constexpr std::string_view kClipScheme = "file:";
constexpr std::string_view kTestScheme = "test:";
constexpr std::string_view kDeviceScheme = "v4l2:";

// The generator's own names of its patterns.
constexpr std::string_view kPatterns[] = {
    "smpte",
    "snow",
    "black",
    "white",
    "red",
    "green",
    "blue",
    "checkers-1",
    "checkers-2",
    "checkers-4",
    "checkers-8",
    "circular",
    "blink",
    "smpte75",
    "zone-plate",
    "gamut",
    "chroma-zone-plate",
    "ball",
    "smpte100",
    "bar",
    "pinwheel",
    "spokes",
    "gradient",
    "colors",
    "smpte-rp-219",
};

constexpr TestParameter<TestCamera> kTestParameters[] = {
    {"width", &TestCamera::width, 16, 4096},
    {"height", &TestCamera::height, 16, 4096},
    {"fps", &TestCamera::fps, 1, 120},
};

CameraId parseTestCamera(std::string_view text) {
  TestCamera camera;
  const size_t question = text.find('?');
  if (const std::string_view pattern = text.substr(0, question); !pattern.empty()) {
    if (std::find(std::begin(kPatterns), std::end(kPatterns), pattern) == std::end(kPatterns)) return {};
    camera.pattern = pattern;
  }
  const std::string_view parameters =
      question == std::string_view::npos ? std::string_view() : text.substr(question + 1);
  if (!readTestParameters<TestCamera>(parameters, kTestParameters, camera)) return {};
  return camera;
}

}  // namespace

CameraId parseCameraId(std::string_view id) {
  if (id.starts_with(kTestScheme)) return parseTestCamera(id.substr(kTestScheme.size()));
  if (id.starts_with(kClipScheme) && id.size() > kClipScheme.size()) {
    return ClipCamera{std::string(id.substr(kClipScheme.size()))};
  }
  if (id.starts_with(kDeviceScheme) && id.size() > kDeviceScheme.size()) {
    return DeviceCamera{std::string(id.substr(kDeviceScheme.size()))};
  }
  return {};
}

std::string deviceCameraId(std::string_view device_file) {
  return std::string(kDeviceScheme).append(device_file);
}

std::string cameraName(std::string_view id) {
  const CameraId camera = parseCameraId(id);
  if (const auto* clip = std::get_if<ClipCamera>(&camera)) return clip->path.substr(clip->path.rfind('/') + 1);
  if (const auto* test = std::get_if<TestCamera>(&camera)) return "Test picture (" + test->pattern + ")";
  if (const auto* device = std::get_if<DeviceCamera>(&camera)) return device->device_file;
  return std::string(id);
}

}  // namespace corvane::rtc
