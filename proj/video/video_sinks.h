// The sinks that the engine calls with raw frames: each tags a frame with its stream and hands it to the transporter.
#pragma once

#include <cstdint>
#include <string>

#include "corvane_rtc/video_frame.h"

namespace corvane {

/// The local camera (index 0) or screen (any other index).
class LocalVideoSink final : public rtc::IVideoSink {
 public:
  LocalVideoSink(int32_t stream_index, int32_t format);
  ~LocalVideoSink();
  bool onFrame(rtc::IVideoFrame* frame) override;

 private:
  const int32_t stream_index_;
  const int32_t format_;  ///< what JavaScript asked for; the engine is always asked for I420
};

/// A remote user's camera (index 0) or screen (any other index).
class RemoteVideoSink final : public rtc::IVideoSink {
 public:
  RemoteVideoSink(int32_t stream_index, std::string room_id, std::string user_id, int32_t format);
  ~RemoteVideoSink();
  bool onFrame(rtc::IVideoFrame* frame) override;

 private:
  const int32_t stream_index_;
  const std::string room_id_;
  const std::string user_id_;
  const int32_t format_;
};

/// A public stream.
class PublicStreamVideoSink final : public rtc::IVideoSink {
 public:
  PublicStreamVideoSink(std::string public_stream_id, int32_t format);
  ~PublicStreamVideoSink();
  bool onFrame(rtc::IVideoFrame* frame) override;

 private:
  const std::string public_stream_id_;
  const int32_t format_;
};

}  // namespace corvane
