// Pictures encoded once for all who send them.
#pragma once

#include <gst/app/app.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>

#include "capture/pipeline.h"
#include "core/engine_context.h"
#include "media/encoded_taps.h"
#include "media/picture_rate.h"
#include "media/picture_taps.h"

namespace corvane::rtc {

/// What is wanted of an encoded stream. 0 leaves a value to the pictures and the engine.
struct VideoEncoding {
  int32_t width = 0;        ///< pixels
  int32_t height = 0;       ///< pixels
  int32_t frame_rate = 0;   ///< frames a second
  int32_t bitrate = 0;      ///< kbit/s, at most
  int32_t min_bitrate = 0;  ///< kbit/s that a narrow link does not press it below

  bool operator==(const VideoEncoding&) const = default;
};

/// What has gone through since the encoder was made. Any thread may read it.
struct EncodedCounts {
  std::atomic<int64_t> pictures_in = 0;
  std::atomic<int64_t> pictures_out = 0;
  std::atomic<int64_t> bytes_out = 0;
  std::atomic<int64_t> encode_ns = 0;  ///< from a picture's arrival to its encoded form, all pictures together
  std::atomic<int32_t> width = 0;
  std::atomic<int32_t> height = 0;
};

/// Engine thread, but for what is marked otherwise.
class VideoEncoder final : public PictureTap {
 public:
  class Listener {
   public:
    virtual void onEncoderFailed(const std::string& reason) = 0;

   protected:
    ~Listener() = default;
  };

  VideoEncoder(EngineContext& context, const VideoEncoding& wanted, Listener& listener);
  /// Pictures must not come any more.
  ~VideoEncoder();
  VideoEncoder(const VideoEncoder&) = delete;
  VideoEncoder& operator=(const VideoEncoder&) = delete;

  EncodedTaps& taps() { return taps_; }
  const EncodedCounts& counts() const { return counts_; }
  /// Any thread. The next picture is encoded so that decoding can begin with it.
  void requestKeyFrame() { key_frame_wanted_.store(true, std::memory_order_relaxed); }
  /// kbit/s that the links of its users carry at most.
  void limitBitrate(int32_t kbit);
  /// kbit/s without a limit; 0 before the first picture.
  int32_t fullBitrate() const { return full_kbit_.load(std::memory_order_relaxed); }
  /// While it is paused, no pictures are encoded.
  void setPaused(bool paused);
  bool paused() const { return paused_.load(std::memory_order_relaxed); }
  int32_t minBitrate() const { return wanted_.min_bitrate; }
  /// Any thread, one at a time.
  void onPicture(const Picture& picture) override;

  /// "h264" or "vp8": what this machine encodes; "" when nothing that does is installed.
  static const char* codec();
  static constexpr char kNoneInstalled[] = "no encoder is installed: GStreamer's x264enc, openh264enc or vp8enc";

 private:
  void build();
  void fail(const std::string& reason);
  void onMessage(GstMessage* message);
  GstFlowReturn onSample(GstPtr<GstSample> sample);
  void setFormat(const GstVideoInfo& info);
  void applyBitrate();

  EngineContext& context_;
  Listener& listener_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  EncodedTaps taps_;
  EncodedCounts counts_;
  std::atomic<bool> key_frame_wanted_ = false;
  std::atomic<bool> paused_ = false;
  std::atomic<int32_t> full_kbit_ = 0;
  std::mutex bitrate_mutex_;
  int32_t limit_kbit_ = INT32_MAX;  // under the lock
  const VideoEncoding wanted_;
  Pipeline pipeline_;
  GstAppSrc* source_ = nullptr;
  GstElement* encoder_ = nullptr;
  AttachedSource watch_;
  bool failed_ = false;
  // The picture thread's:
  PictureRate rate_;
  GstVideoInfo fed_info_ = {};
  GstClockTime last_key_request_ = 0;
};

}  // namespace corvane::rtc
