// Mixes and pushes made by the service, public streams.
#include "api/rtc_video.h"

namespace corvane::rtc {

// Mixing and pushing by the service, public streams.

int32_t RtcVideo::startLiveTranscoding(const char* /*task_id*/, ITranscoderParam* /*param*/,
                                       ITranscodingObserver* /*observer*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::updateLiveTranscoding(const char* /*task_id*/, ITranscoderParam* /*param*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopLiveTranscoding(const char* /*task_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::startPushMixedStreamToCDN(const char* /*task_id*/, IMixedStreamConfig* /*config*/,
                                            ITranscodingObserver* /*observer*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::updatePushMixedStreamToCDN(const char* /*task_id*/, IMixedStreamConfig* /*config*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::startPushSingleStreamToCDN(const char* /*task_id*/, const PushSingleStreamParam& /*param*/,
                                             IPushSingleStreamToCDNObserver* /*observer*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopPushStreamToCDN(const char* /*task_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::startPushPublicStream(const char* /*public_stream_id*/, IPublicStreamParam* /*param*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::updatePublicStreamParam(const char* /*public_stream_id*/, IPublicStreamParam* /*param*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopPushPublicStream(const char* /*public_stream_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::startPlayPublicStream(const char* /*public_stream_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::stopPlayPublicStream(const char* /*public_stream_id*/) {
  return notSupported(__func__);
}

int32_t RtcVideo::setPublicStreamAudioPlaybackVolume(const char* /*public_stream_id*/, int32_t /*volume*/) {
  return notSupported(__func__);
}

}  // namespace corvane::rtc
