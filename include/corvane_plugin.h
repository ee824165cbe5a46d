// Processing plug-ins: what a shared library offers so that corvane_meeting_sdk can load it with registerPlugin() and
// have it change the local picture and raw sound. This header needs nothing else of the project.
//
// A plug-in library exports one C function, the factory:
//
//   CORVANE_PLUGIN_EXPORT corvane::plugin::IPlugin* createVideoPlugin() { return new MyPlugin; }
//
// Life: createVideoPlugin(), init(), any number of other calls, release(), and then the library is unloaded. At most
// one plug-in is loaded at a time. When init() answers false, the plug-in is not used: neither release() nor the
// unloading follows.
//
// Threads: init(), release() and setParameter() run on JavaScript's thread, processVideoFrame() on a thread of the
// module's own, the audio operations on the engine's audio threads. The first four never overlap each other: a slow
// processVideoFrame() makes JavaScript wait in setParameter() and release(). The audio operations may overlap all of
// them but init() and release(), and each other; an operation of one stream never overlaps itself.
//
// Ownership: texts and records, and the memory they point to, are valid during the call only. What the plug-in may
// write are pixels and samples; changes of any other field are not read.
//
// Errors: no exception may leave an operation.
#pragma once

#include <stdint.h>

#if defined(_WIN32)
#define CORVANE_PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#define CORVANE_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace corvane::plugin {

/// One picture in I420. The planes lie back to back in one block and have no gaps between their rows.
struct VideoFrame {
  int32_t width;     ///< pixels, before rotation
  int32_t height;    ///< pixels, before rotation
  int32_t stride_y;  ///< bytes from row to row: width
  int32_t stride_u;  ///< (width + 1) / 2; the plane has (height + 1) / 2 rows
  int32_t stride_v;  ///< (width + 1) / 2; the plane has (height + 1) / 2 rows
  int32_t reserved_1;
  uint8_t* data_y;
  uint8_t* data_u;
  uint8_t* data_v;
  int32_t rotation;  ///< degrees clockwise to turn the picture upright: 0, 90, 180, 270
  int32_t reserved_2;
  int64_t timestamp;  ///< capture time as the engine counts it, microseconds
};

/// One stretch of sound, normally 10 ms: signed 16-bit samples, little-endian, channels interleaved.
struct AudioFrame {
  int64_t timestamp;    ///< as the engine counts it, microseconds
  int32_t sample_rate;  ///< samples a second in one channel
  int32_t channels;     ///< 1 or 2
  uint8_t* data;        ///< null when the frame has no samples
  int32_t data_size;    ///< bytes
};

/// Which remote stream a sound belongs to.
struct StreamKey {
  const char* room_id;
  const char* user_id;
  int32_t stream_index;  ///< 0 camera and microphone, 1 screen
};

/// A plug-in's instance. The order of the operations is the interface: on 64-bit Windows and on Linux they are the
/// slots of the virtual table, so nothing may be added before or between them, a virtual destructor included.
class IPlugin {
 public:
  /// Called once, before everything else. `folder` is the part of the library's path up to and with its last slash
  /// or backslash, where the plug-in finds files of its own; "" when the path has none. False: do not use the plug-in.
  virtual bool init(const char* folder) = 0;

  /// Ends the instance, which frees itself. The last call.
  virtual void release() = 0;

  /// A text of the plug-in's own from setPluginParameter(). False when it makes no sense to the plug-in.
  virtual bool setParameter(const char* parameter) = 0;

  /// Not called so far; they keep their places.
  virtual void reserved3() = 0;
  virtual void reserved4() = 0;

  /// Changes one local picture in place. Called while enableVideoPlugin(true) holds. The engine waits up to 40 ms for
  /// it; after the first picture that was processed, one that is not ready in time is not sent.
  virtual void processVideoFrame(VideoFrame* frame) = 0;

  /// Change sound in place; called for what enableAudioPlugin() asked for. The engine waits: take a fraction of the
  /// frame's duration and never block.
  virtual void processRecordAudioFrame(AudioFrame* frame) = 0;
  virtual void processPlaybackAudioFrame(AudioFrame* frame) = 0;
  virtual void processRemoteUserAudioFrame(const StreamKey& stream, AudioFrame* frame) = 0;
  virtual void processScreenAudioFrame(AudioFrame* frame) = 0;

 protected:
  ~IPlugin() = default;
};

/// The factory's name and type. It answers null when no instance can be made.
inline constexpr char kFactoryName[] = "createVideoPlugin";
using Factory = IPlugin* (*)();

static_assert(sizeof(void*) == 8, "plug-ins are 64-bit");
static_assert(sizeof(VideoFrame) == 64 && sizeof(AudioFrame) == 32 && sizeof(StreamKey) == 24, "natural alignment");

}  // namespace corvane::plugin
