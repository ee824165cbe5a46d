// Records and constants of video capture and encoding.
#pragma once

#include "corvane_rtc/common.h"

namespace corvane::rtc {

/// What the encoder gives up last.
enum EncoderPreference : int32_t {
  kEncoderPreferenceDisabled = 0,   ///< size and frame rate are kept
  kEncoderPreferenceFrameRate = 1,  ///< fluency first
  kEncoderPreferenceQuality = 2,    ///< sharpness first
  kEncoderPreferenceBalance = 3,
};

/// One encoded layer of the camera or the screen.
struct VideoEncoderConfig {
  int32_t width;               ///< pixels
  int32_t height;              ///< pixels
  int32_t frame_rate;          ///< frames a second
  int32_t max_bitrate;         ///< kbit/s; -1 chooses by size and frame rate, 0 sends nothing
  int32_t min_bitrate;         ///< kbit/s; 0 for no lower bound
  int32_t encoder_preference;  ///< EncoderPreference
};

enum CapturePreference : int32_t {
  kCapturePreferenceAuto = 0,             ///< follows the largest encoded layer
  kCapturePreferenceManual = 1,           ///< the record's size and frame rate
  kCapturePreferenceAutoPerformance = 2,  ///< the smallest size that serves the largest layer
};

/// How the camera is opened.
struct VideoCaptureConfig {
  int32_t capture_preference;  ///< CapturePreference
  int32_t frame_rate;          ///< frames a second
  int32_t height;              ///< pixels
  int32_t width;               ///< pixels
};

/// Bit mask of what is mirrored.
enum MirrorType : int32_t {
  kMirrorTypeNone = 0,
  kMirrorTypeRender = 1,            ///< what local sinks receive
  kMirrorTypeRenderAndEncoder = 3,  ///< also what is sent
};

enum LowLightMode : int32_t {
  kLowLightModeOff = 0,
  kLowLightModeOn = 1,
  kLowLightModeAuto = 2,
};

enum VideoSourceType : int32_t {
  kVideoSourceTypeExternal = 0,  ///< pushExternalVideoFrame()
  kVideoSourceTypeInternal = 1,  ///< camera or screen
};

/// Where the transparency of a picture travels.
enum AlphaLayout : int32_t {
  kAlphaLayoutTop = 0,  ///< above the picture, in a frame of twice the height
};

enum SuperResolutionMode : int32_t {
  kSuperResolutionModeOff = 0,
  kSuperResolutionModeOn = 1,
};

/// Which value setVideoDigitalZoomConfig() sets. The picture is enlarged 8 times at most, and moved to its edge at
/// most.
enum ZoomConfigType : int32_t {
  kZoomConfigTypeFocusOffset = 0,  ///< size: how much one step zooms by, 0 to 7 (0.5: from 1x to 1.5x)
  kZoomConfigTypeMoveOffset = 1,   ///< size: share of the picture one step moves by, 0 to 0.5
};

enum ZoomDirectionType : int32_t {
  kZoomDirectionCameraReset = 0,
  kZoomDirectionMoveLeft = 1,
  kZoomDirectionMoveRight = 2,
  kZoomDirectionMoveUp = 3,
  kZoomDirectionMoveDown = 4,
  kZoomDirectionZoomOut = 5,
  kZoomDirectionZoomIn = 6,
};

}  // namespace corvane::rtc
