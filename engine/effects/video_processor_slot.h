// The place where an application's video processor is attached.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "corvane_rtc/video_frame.h"
#include "media/frame_import.h"
#include "media/picture.h"

namespace corvane::rtc {

class VideoProcessorSlot {
 public:
  /// Replaces the processor; null detaches. Returns when no call is inside the previous one. Any thread but the one
  /// that processes.
  int32_t attach(IVideoProcessor* processor, int32_t pixel_format);

  bool isAttached();

  /// Has the processor change the I420 picture. False when it is to be dropped. One thread at a time.
  bool process(Picture& picture);

 private:
  bool processInPlace(IVideoProcessor& processor, Picture& picture);
  bool processConverted(IVideoProcessor& processor, Picture& picture, GstVideoFormat format);
  bool replace(Picture& picture, const IVideoFrame* result);

  std::mutex mutex_;  // never held during a call into a processor
  std::condition_variable call_ended_;
  IVideoProcessor* processor_ = nullptr;
  GstVideoFormat format_ = GST_VIDEO_FORMAT_I420;
  bool in_call_ = false;
  // The processing thread's.
  PicturePool pool_;
  PicturePool converted_pool_;
  FrameImporter importer_;
};

}  // namespace corvane::rtc
