// Carries video frames and engine events to JavaScript: the newest few frames of every stream are queued, a pacing
// thread asks for a delivery 60 times a second, and the JavaScript thread delivers what is there as one batch.
#pragma once

#include <napi.h>

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <unordered_map>

#include "corvane_rtc/rtc_video_events.h"
#include "events/channel.h"
#include "video/frame_buffers.h"
#include "video/frame_slot.h"

namespace corvane {

class KavRTCTransporter {
 public:
  /// The one transporter of the process; made on first use and never destroyed.
  static KavRTCTransporter& instance();

  /// Opens the engine channel to `callback` and starts the pacing thread. An earlier channel is left to the host.
  /// JavaScript thread.
  void initialize(Napi::Env env, const Napi::Function& callback);
  /// Stops the pacing thread and closes the gate. JavaScript thread.
  void deinitialize();

  /// Queues an event for the engine channel; 11 when the gate is closed. Any thread.
  int32_t postEvent(EventRecord record);

  /// Takes a frame over from a sink: `keys` are room, user and public stream or task id, by kind. False when a frame
  /// had to be dropped. Engine threads.
  bool processVideoFrame(rtc::IVideoFrame* frame, int32_t kind, std::string_view key1, std::string_view key2,
                         std::string_view key3, int32_t format);

  /// Raises the render rate, which only ever rises. Any thread.
  void setVideoRenderFps(const char* from, int32_t fps);

  /// Whether frames are turned upright before delivery. JavaScript thread.
  void setVideoRotation(bool apply);

  /// Who is told of frame sizes that no registered buffer has; null keeps frames from being delivered.
  /// JavaScript thread.
  void setEventHandler(rtc::IRTCVideoEventHandler* handler) { event_handler_ = handler; }

  /// Registers where frames of a size go, in place of what was registered for the stream before. JavaScript thread.
  void setLocalVideoBuffer(std::string stream_type, DestinationBuffer buffer);
  void setRemoteVideoBuffer(std::string user_id, std::string stream_type, DestinationBuffer buffer);

 private:
  struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  template <class Value>
  using ByText = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;
  using SlotQueue = std::deque<FrameSlot>;
  using RemoteQueues = ByText<ByText<SlotQueue>>;
  using KeyedSlots = ByText<FrameSlot>;
  class Batch;

  KavRTCTransporter() = default;

  bool enqueue(SlotQueue& queue, FrameSlot slot);
  bool replace(KeyedSlots& slots, FrameKind kind, FramePtr frame, std::string_view key, int32_t format);
  void stopPacing();
  void flushVideoFrame(uint32_t generation);
  void checkVideoFrames();
  void deliverBatch(napi_env env, napi_value function);

  std::mutex mutex_;  // guards the queues, the maps, the registered buffers and stores of the render rate
  std::atomic<uint32_t> render_fps_{0};
  std::atomic<bool> stopped_{false};
  SlotQueue local_video_;
  SlotQueue local_screen_;
  KeyedSlots mixing_;
  KeyedSlots public_streams_;
  RemoteQueues remote_screen_;
  RemoteQueues remote_video_;

  FrameBuffers buffers_;
  bool apply_rotation_ = false;
  std::atomic<rtc::IRTCVideoEventHandler*> event_handler_{nullptr};

  std::mutex pacing_mutex_;  // guards pacing_ and stores of initialized_: every environment has a JavaScript thread
  std::thread pacing_;
  std::atomic<uint32_t> generation_{0};  ///< counts the channels opened
  std::atomic<bool> initialized_{false};
  std::mutex channel_mutex_;  // guards channel_, which engine threads read while JavaScript replaces it
  Channel channel_;
};

}  // namespace corvane
