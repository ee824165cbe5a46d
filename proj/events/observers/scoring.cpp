#include "events/observer.h"
#include "events/observers/report.h"

namespace corvane {

void KavRTCObserver::onCurrentScoringInfo(const rtc::SingScoringRealtimeInfo& info) {
  report(__func__, [info](Payload& payload) {
    payload.object("info", [&](Payload& object) {
      object.put("current_position", info.current_position);
      object.put("user_pitch", info.user_pitch);
      object.put("standard_pitch", info.standard_pitch);
      object.put("sentence_index", info.sentence_index);
      object.put("sentence_score", info.sentence_score);
      object.put("total_score", info.total_score);
      object.put("average_score", info.average_score);
    });
  });
}

}  // namespace corvane
