#include "players/engine_lookup.h"

#include "log/log.h"
#include "rtc_video/rtc_video.h"

namespace corvane {

rtc::IRTCVideo* findEngine(const LookupLines& lines, const char* name, int32_t line) {
  const KavRTCVideo* video = KavRTCVideo::getInstance();
  if (video == nullptr) {
    LogWriteRow(kLogInfo, lines.no_instance, name, line);
    return nullptr;
  }
  if (video->m_pRtcVideo == nullptr) LogWriteRow(kLogInfo, lines.no_engine, name, line);
  return video->m_pRtcVideo;
}

rtc::IRTCVideo* engineIfAny() {
  const KavRTCVideo* video = KavRTCVideo::getInstance();
  return video == nullptr ? nullptr : video->m_pRtcVideo;
}

}  // namespace corvane
