// Pictures that the application pushes instead of a camera's.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <stop_token>
#include <thread>

#include "media/frame_import.h"
#include "media/picture.h"

namespace corvane::rtc {

/// Between the application's thread and the engine's. Any thread.
class PushedQueue {
 public:
  void open();
  /// Frees what waits, and everything that was kept for further frames.
  void close();
  bool isOpen();

  /// Takes the frame, in any case. When many wait the oldest gives way. kWrongState while closed, kInvalidParameter for
  /// a frame without all its pixels.
  int32_t push(IVideoFrame* frame);
  /// Waits for a frame; null when stopped.
  OwnedFrame pop(const std::stop_token& stop);
  /// Frames that gave way.
  int64_t dropped();

 private:
  static constexpr size_t kCapacity = 4;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<OwnedFrame> frames_;
  bool open_ = false;
  int64_t dropped_ = 0;
};

/// The thread that takes frames from the queue and hands them on as pictures, for as long as this lives.
class PushedPictures {
 public:
  class Receiver {
   public:
    /// On the thread, one at a time.
    virtual void onPushedPicture(Picture picture) = 0;

   protected:
    ~Receiver() = default;
  };

  PushedPictures(PushedQueue& queue, Receiver& receiver);
  ~PushedPictures() = default;
  PushedPictures(const PushedPictures&) = delete;
  PushedPictures& operator=(const PushedPictures&) = delete;

 private:
  void run(const std::stop_token& stop);

  PushedQueue& queue_;
  Receiver& receiver_;
  FrameImporter importer_;
  std::jthread thread_;  // last: it ends before what it uses
};

}  // namespace corvane::rtc
