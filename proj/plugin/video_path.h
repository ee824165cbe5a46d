// The way of a picture through a plug-in: from the engine's video thread to the consumer thread and back, in at most
// 40 ms. A plug-in that takes longer costs pictures, never the engine's thread.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "corvane_plugin.h"
#include "corvane_rtc/video_frame.h"
#include "plugin/video_record.h"

namespace corvane {

/// The plug-in that is loaded, as all threads see it.
struct PluginSlot {
  /// Held while the plug-in is loaded, unloaded, given a parameter or a picture.
  std::mutex mutex;
  /// Null without a plug-in. Changed under the mutex only.
  std::atomic<plugin::IPlugin*> instance{nullptr};
};

class VideoPath {
 public:
  /// How long the engine's thread waits for a processed picture.
  static constexpr std::chrono::milliseconds kLongestWait{40};

  explicit VideoPath(PluginSlot& plugin) : plugin_(plugin) {}
  /// The consumer thread must have been released.
  ~VideoPath() = default;
  VideoPath(const VideoPath&) = delete;
  VideoPath& operator=(const VideoPath&) = delete;

  /// Until the thread has been created and after it was released, pictures pass as they are.
  void createConsumerThread();
  /// Waits for the plug-in to end the picture that it is at.
  void releaseConsumerThread();

  void enable(bool enabled) { enabled_ = enabled; }
  /// For a plug-in that has not processed anything yet.
  void forgetFirstOutput() { has_first_output_ = false; }

  /// What the engine is to go on with: the frame, or null to drop it. The engine's video thread.
  rtc::IVideoFrame* process(rtc::IVideoFrame* frame);

 private:
  using Record = std::unique_ptr<VideoRecord>;

  bool copyIn(const rtc::IVideoFrame& frame);
  Record awaitOutput();

  void consume();
  void dropAll();
  Record awaitInput();
  bool runPlugin(VideoRecord& record);
  void deliver(Record record);

  PluginSlot& plugin_;
  std::atomic<bool> has_first_output_{false};
  std::atomic<bool> enabled_{false};
  std::atomic<bool> stopped_{true};
  std::thread consumer_;
  VideoRecords records_;

  // A newer record takes an older one's place, so each list has one element at most.
  std::mutex input_mutex_;
  std::condition_variable input_ready_;
  Record input_;

  std::mutex output_mutex_;
  std::condition_variable output_ready_;
  Record output_;
};

}  // namespace corvane
