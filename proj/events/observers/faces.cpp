#include "events/observer.h"
#include "events/observers/report.h"
#include "events/owned_list.h"

namespace corvane {

void KavRTCObserver::onFaceDetectResult(const rtc::FaceDetectionResult& result) {
  LogWrite(kLogInfo, "+%s(%d)", __func__, __LINE__);
  rtc::FaceDetectionResult counts = result;
  counts.rect = nullptr;  // not ours to keep
  report(__func__, [counts, faces = ownedList(result.rect, counts.face_count)](Payload& payload) {
    payload.put("detect_result", counts.detect_result);
    payload.put("face_count", counts.face_count);
    payload.list("rect", faces, [](Payload& object, const rtc::Rectangle& face) {
      object.put("x", face.x);
      object.put("y", face.y);
      object.put("width", face.width);
      object.put("heigth", face.height);  // listeners read this spelling
    });
    payload.put("image_width", counts.image_width);
    payload.put("image_height", counts.image_height);
    payload.put("frame_timestamp_us", counts.frame_timestamp_us);
  });
}

}  // namespace corvane
