// Reads one stream of a clip, over and over: what cameras and microphones made of clips have in common.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>

#include "capture/capture_fault.h"
#include "capture/pipeline.h"

namespace corvane::rtc {

/// Engine thread.
class ClipReader {
 public:
  enum class Stream { kPicture, kSound };

  /// `fail` is called on any of the pipeline's threads. The pipeline ends before this does.
  ClipReader(std::string path, Stream stream, std::function<void(CaptureFault fault)> fail);

  /// Adds what reads and decodes; the clip's first stream of the kind is linked to `target` once it is found.
  std::optional<CaptureFault> build(Pipeline& pipeline, GstElement* target);

  /// The fault of a clip that has ended with nothing in it. `delivered`: buffers so far, of all passes.
  std::optional<CaptureFault> endPass(int64_t delivered);
  /// Takes the clip back to its start. False when that takes opening it again: the pipeline is to be played anew.
  bool windBack(Pipeline& pipeline);

  /// Whether the next buffer is the clip's first; true once for each pass. On the pipeline's thread.
  bool takePassStart() { return wound_back_.exchange(false, std::memory_order_relaxed); }

 private:
  void onStream(GstPad* pad);
  void onStreamsKnown();
  CaptureFault nothingIn(const char* what) const;

  const std::string path_;
  const Stream stream_;
  const std::function<void(CaptureFault fault)> fail_;
  GstElement* target_ = nullptr;
  std::atomic<bool> wound_back_ = true;
  std::atomic<bool> has_stream_ = false;
  int64_t delivered_before_ = 0;
};

}  // namespace corvane::rtc
