// Tasks that mix streams or push them to an address.

#include "corvane_rtc/video_frame.h"
#include "events/observer.h"
#include "events/observers/owned_audio_frame.h"
#include "events/observers/report.h"
#include "events/transcoding_observer.h"
#include "video/frame_slot.h"

namespace corvane {
namespace {

void reportMixing(const char* name, int32_t event, const char* task_id, int32_t error, int32_t mix_type,
                  int32_t line = __builtin_LINE()) {
  report(
      name,
      [=, task = owned(task_id)](Payload& payload) {
        payload.put("event", event);
        payload.put("task_id", task);
        payload.put("error", error);
        payload.put("mix_type", mix_type);
      },
      kLogInfo, line);
}

}  // namespace

void KavRTCTranscodingObserver::onStreamMixingEvent(int32_t event, const char* task_id, int32_t error,
                                                    int32_t mix_type) {
  reportMixing(__func__, event, task_id, error, mix_type);
}

void KavRTCTranscodingObserver::onMixingEvent(int32_t event, const char* task_id, int32_t error, int32_t mix_type) {
  reportMixing(__func__, event, task_id, error, mix_type);
}

void KavRTCTranscodingObserver::onMixingAudioFrame(const char* task_id, const rtc::IAudioFrame* audio_frame) {
  if (audio_frame == nullptr) {
    LogWrite(kLogInfo, "-%s(%d), audio_frame is null_ptr: %d", __func__, __LINE__, 1);
    return;
  }
  report(
      __func__,
      [task = owned(task_id), frame = OwnedAudioFrame(*audio_frame)](Payload& payload) {
        payload.put("task_id", task);
        frame.put(payload);
      },
      kLogDetail);
}

void KavRTCTranscodingObserver::onMixingVideoFrame(const char* task_id, rtc::IVideoFrame* video_frame) {
  KavRTCTransporter::instance().processVideoFrame(video_frame, kFrameMixing, "", "", shown(task_id),
                                                  rtc::kVideoPixelFormatI420);
}

void KavRTCTranscodingObserver::onMixingDataFrame(const char* task_id, const rtc::IDataFrame* data_frame) {
  if (data_frame == nullptr) {
    LogWrite(kLogInfo, "-%s(%d), data_frame is null_ptr: %d", __func__, __LINE__, 1);
    return;
  }
  report(
      __func__,
      [task = owned(task_id), type = data_frame->frameType(), data = owned(data_frame->data(), data_frame->dataSize()),
       timestamp_us = data_frame->timestampUs()](Payload& payload) {
        payload.put("task_id", task);
        payload.object("data_frame", [&](Payload& object) {
          object.put("frame_type", type);
          putBytes(object, "u8_data", reinterpret_cast<const uint8_t*>(data.data()), data.size());
          object.put("u64_ts_us", timestamp_us);
        });
      },
      kLogDetail);
}

void KavRTCObserver::onStreamPushEvent(int32_t event, const char* task_id, int32_t error) {
  report(__func__, [=, task = owned(task_id)](Payload& payload) {
    payload.put("event", event);
    payload.put("task_id", task);
    payload.put("error", error);
  });
}

}  // namespace corvane
