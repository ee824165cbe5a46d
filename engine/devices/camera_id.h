// What a camera's id says: a clip, a synthetic picture or a device of the machine.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace corvane::rtc {

/// "file:<path>": a clip, played over and over as a camera would deliver it.
struct ClipCamera {
  std::string path;
};

/// "test:[pattern][?width=..&height=..&fps=..]": a synthetic picture.
struct TestCamera {
  std::string pattern = "smpte";
  int32_t width = 640;   ///< 16 to 4096
  int32_t height = 360;  ///< 16 to 4096
  int32_t fps = 30;      ///< 1 to 120
};

/// "v4l2:<device file>": a device that Video4Linux drives.
struct DeviceCamera {
  std::string device_file;
};

/// The first alternative stands for a text that is no camera's id.
using CameraId = std::variant<std::monostate, ClipCamera, TestCamera, DeviceCamera>;

inline constexpr std::string_view kDefaultTestCamera = "test:smpte";

/// Does not look whether the clip or device is there.
CameraId parseCameraId(std::string_view id);

/// The id under which a device is listed.
std::string deviceCameraId(std::string_view device_file);

/// What a person would call the camera: a clip's file name, a test picture's pattern, a device's file.
std::string cameraName(std::string_view id);

}  // namespace corvane::rtc
