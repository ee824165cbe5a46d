#include "events/observer.h"

#include "log/log.h"

namespace corvane {

KavRTCObserver::~KavRTCObserver() {
  LogWrite(kLogInfo, "KavRTCObserver destructure");
}

}  // namespace corvane
