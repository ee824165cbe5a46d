// The rows of sinks, processors, observers and snapshots: what carries frames, and what comes with it.

#include <array>
#include <span>

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/face_detection.h"
#include "corvane_rtc/snapshot.h"
#include "corvane_rtc/stream_mixing_events.h"
#include "corvane_rtc/video_frame.h"
#include "events/event_row.h"
#include "events/registry.h"
#include "records/common.h"
#include "records/video.h"

namespace corvane::scripted {

namespace {

using rtc::IAudioFrameObserver;
using rtc::IAudioFrameProcessor;
using rtc::IFaceDetectionObserver;
using rtc::IPushSingleStreamToCDNObserver;
using rtc::ISnapshotResultCallback;
using rtc::ITranscodingObserver;
using rtc::IVideoProcessor;
using rtc::IVideoSink;

constexpr auto kRows = std::to_array<EventRow>({
    eventGivingFrames<&IVideoSink::onFrame>("IVideoSink", "onFrame", "frame"),
    event<&IVideoProcessor::processVideoFrame>("IVideoProcessor", "processVideoFrame", "frame"),
    event<&IAudioFrameObserver::onRecordAudioFrame>("IAudioFrameObserver", "onRecordAudioFrame", "audio_frame"),
    event<&IAudioFrameObserver::onPlaybackAudioFrame>("IAudioFrameObserver", "onPlaybackAudioFrame", "audio_frame"),
    event<&IAudioFrameObserver::onRemoteUserAudioFrame>("IAudioFrameObserver", "onRemoteUserAudioFrame", "stream_info",
                                                        "audio_frame"),
    event<&IAudioFrameObserver::onMixedAudioFrame>("IAudioFrameObserver", "onMixedAudioFrame", "audio_frame"),
    event<&IAudioFrameObserver::onRecordScreenAudioFrame>("IAudioFrameObserver", "onRecordScreenAudioFrame",
                                                          "audio_frame"),
    event<&IAudioFrameProcessor::onProcessRecordAudioFrame>("IAudioFrameProcessor", "onProcessRecordAudioFrame",
                                                            "audio_frame"),
    event<&IAudioFrameProcessor::onProcessPlayBackAudioFrame>("IAudioFrameProcessor", "onProcessPlayBackAudioFrame",
                                                              "audio_frame"),
    event<&IAudioFrameProcessor::onProcessRemoteUserAudioFrame>("IAudioFrameProcessor", "onProcessRemoteUserAudioFrame",
                                                                "stream_info", "audio_frame"),
    event<&IAudioFrameProcessor::onProcessScreenAudioFrame>("IAudioFrameProcessor", "onProcessScreenAudioFrame",
                                                            "audio_frame"),
    event<&ISnapshotResultCallback::onTakeLocalSnapshotResult>("ISnapshotResultCallback", "onTakeLocalSnapshotResult",
                                                               "task_id", "stream_index", "image", "error_code"),
    event<&ISnapshotResultCallback::onTakeRemoteSnapshotResult>("ISnapshotResultCallback", "onTakeRemoteSnapshotResult",
                                                                "task_id", "stream_key", "image", "error_code"),
    event<&IFaceDetectionObserver::onFaceDetectResult>("IFaceDetectionObserver", "onFaceDetectResult", "result"),
    event<&ITranscodingObserver::onStreamMixingEvent>("ITranscodingObserver", "onStreamMixingEvent", "event", "task_id",
                                                      "error", "mix_type"),
    event<&ITranscodingObserver::onMixingEvent>("ITranscodingObserver", "onMixingEvent", "event", "task_id", "error",
                                                "mix_type"),
    event<&ITranscodingObserver::onMixingAudioFrame>("ITranscodingObserver", "onMixingAudioFrame", "task_id",
                                                     "audio_frame"),
    eventGivingFrames<&ITranscodingObserver::onMixingVideoFrame>("ITranscodingObserver", "onMixingVideoFrame",
                                                                 "task_id", "video_frame"),
    event<&ITranscodingObserver::onMixingDataFrame>("ITranscodingObserver", "onMixingDataFrame", "task_id",
                                                    "data_frame"),
    event<&IPushSingleStreamToCDNObserver::onStreamPushEvent>("IPushSingleStreamToCDNObserver", "onStreamPushEvent",
                                                              "event", "task_id", "error"),
});

}  // namespace

std::span<const EventRow> mediaEvents() {
  return kRows;
}

}  // namespace corvane::scripted
