// Pictures made of frames that come from outside: pushed by the application, or returned by a video processor.
#pragma once

#include <memory>

#include "corvane_rtc/video_frame.h"
#include "media/frame_converter.h"
#include "media/picture.h"

namespace corvane::rtc {

struct ReleaseFrame {
  void operator()(IVideoFrame* frame) const { frame->release(); }
};
using OwnedFrame = std::unique_ptr<IVideoFrame, ReleaseFrame>;

/// Whether the frame has all the pixels that its format and size call for.
bool isUsableFrame(const IVideoFrame& frame);

/// One thread at a time.
class FrameImporter {
 public:
  /// The frame as I420, with its time and rotation. A frame that buildVideoFrame() made of I420 is not copied: its
  /// memory becomes the picture's. The buffer is null when there is no memory.
  Picture take(OwnedFrame frame);
  /// The same with a copy of the pixels, which leaves the frame to its owner. The frame must be usable.
  Picture copy(const IVideoFrame& frame);

 private:
  PicturePool pool_;
  FrameConverter colours_;
};

}  // namespace corvane::rtc
