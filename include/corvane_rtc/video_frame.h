// Raw video: frames, how an application builds one, and who receives them.
#pragma once

#include "corvane_rtc/common.h"
#include "corvane_rtc/export.h"

namespace corvane::rtc {

/// Where a frame's pixels live.
enum VideoFrameType : int32_t {
  kVideoFrameRawMemory = 0,  ///< planeData() answers
  kVideoFrameTexture = 1,    ///< pixels on a graphics device; planeData() is null
};

enum VideoPixelFormat : int32_t {
  kVideoPixelFormatUnknown = 0,
  kVideoPixelFormatI420 = 1,  ///< three planes: Y, U, V; U and V have half the width and height, rounded up
  kVideoPixelFormatRGBA = 5,  ///< one plane, 4 bytes a pixel, bytes R, G, B, A in memory
  kVideoPixelFormatARGB = 6,  ///< one plane, 4 bytes a pixel, 0xAARRGGBB as a little-endian 32-bit value
};

/// One picture. Owned by whoever received it until release(); all other operations are read-only and
/// may be called from any one thread at a time. No operation may follow release().
class IVideoFrame {
 public:
  virtual int32_t frameType() const = 0;    ///< VideoFrameType
  virtual int32_t pixelFormat() const = 0;  ///< VideoPixelFormat
  virtual int64_t timestampUs() const = 0;  ///< capture time in microseconds on the engine's clock
  virtual int32_t width() const = 0;        ///< pixels, before rotation
  virtual int32_t height() const = 0;       ///< pixels, before rotation
  virtual int32_t rotation() const = 0;     ///< degrees clockwise to turn the picture upright: 0, 90, 180, 270

  /// First byte of a plane (0 to 2), or null where there is none. The bytes may be written by a video processor only.
  virtual uint8_t* planeData(int32_t plane) const = 0;
  /// Bytes from one row of a plane to the next, or 0 where there is no such plane.
  virtual int32_t planeStride(int32_t plane) const = 0;

  /// Gives the frame back. Any thread.
  virtual void release() = 0;

 protected:
  ~IVideoFrame() = default;
};

/// What buildVideoFrame() needs. The engine copies the planes during the call.
struct VideoFrameBuilder {
  int32_t pixel_format;  ///< VideoPixelFormat
  int32_t color_space;   ///< 0 unknown, 1 BT.601 limited, 2 BT.601 full, 3 BT.709 limited, 4 BT.709 full
  const uint8_t* data[4];
  int32_t linesize[4];  ///< bytes from row to row, per plane
  const uint8_t* extra_data;
  int32_t extra_data_size;
  const uint8_t* supplementary_info;
  int32_t supplementary_info_size;
  int32_t width;         ///< pixels
  int32_t height;        ///< pixels
  int32_t rotation;      ///< degrees clockwise: 0, 90, 180, 270
  int64_t timestamp_us;  ///< microseconds
};

/// Receives one stream's pictures.
class IVideoSink {
 public:
  /// Takes ownership of `frame`: the sink releases it exactly once, during the call or later, from any thread.
  /// Called on engine threads, one frame at a time for one stream. Returns false when a frame had to be dropped.
  virtual bool onFrame(IVideoFrame* frame) = 0;

 protected:
  ~IVideoSink() = default;
};

/// Changes captured pictures before they are encoded and shown.
class IVideoProcessor {
 public:
  /// May write into `frame`'s planes. Returns the frame to go on with (normally `frame` itself), or null to drop it.
  /// Ownership of `frame` stays with the engine; another frame stays the processor's, and the engine copies it before
  /// the next call. Called on the engine's video thread, one frame at a time.
  virtual IVideoFrame* processVideoFrame(IVideoFrame* frame) = 0;

 protected:
  ~IVideoProcessor() = default;
};

/// What a video processor wants to be given.
struct VideoPreprocessorConfig {
  int32_t required_pixel_format;  ///< VideoPixelFormat; kVideoPixelFormatUnknown takes any
};

}  // namespace corvane::rtc
