#include "video/video_sinks.h"

#include <utility>

#include "log/log.h"
#include "video/transporter.h"

namespace corvane {

LocalVideoSink::LocalVideoSink(int32_t stream_index, int32_t format) : stream_index_(stream_index), format_(format) {
  LogWrite(kLogInfo, "LocalVideoSink constructor");
}

LocalVideoSink::~LocalVideoSink() {
  LogWrite(kLogInfo, "LocalVideoSink destructure");
}

bool LocalVideoSink::onFrame(rtc::IVideoFrame* frame) {
  const FrameKind kind = stream_index_ == 0 ? kFrameLocalVideo : kFrameLocalScreen;
  return KavRTCTransporter::instance().processVideoFrame(frame, kind, "", "", "", format_);
}

RemoteVideoSink::RemoteVideoSink(int32_t stream_index, std::string room_id, std::string user_id, int32_t format)
    : stream_index_(stream_index), room_id_(std::move(room_id)), user_id_(std::move(user_id)), format_(format) {
  LogWrite(kLogInfo, "RemoteVideoSink constructor");
}

RemoteVideoSink::~RemoteVideoSink() {
  LogWrite(kLogInfo, "RemoteVideoSink destructure");
}

bool RemoteVideoSink::onFrame(rtc::IVideoFrame* frame) {
  const FrameKind kind = stream_index_ == 0 ? kFrameRemoteVideo : kFrameRemoteScreen;
  return KavRTCTransporter::instance().processVideoFrame(frame, kind, room_id_, user_id_, "", format_);
}

PublicStreamVideoSink::PublicStreamVideoSink(std::string public_stream_id, int32_t format)
    : public_stream_id_(std::move(public_stream_id)), format_(format) {
  LogWrite(kLogInfo, "PublicStreamVideoSink constructor");
}

PublicStreamVideoSink::~PublicStreamVideoSink() {
  LogWrite(kLogInfo, "PublicStreamVideoSink destructure");
}

bool PublicStreamVideoSink::onFrame(rtc::IVideoFrame* frame) {
  return KavRTCTransporter::instance().processVideoFrame(frame, kFramePublicStream, "", "", public_stream_id_, format_);
}

}  // namespace corvane
