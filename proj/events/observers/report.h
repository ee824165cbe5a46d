// The last step of every observer method.
#pragma once

#include <cstdint>
#include <utility>

#include "events/event_record.h"
#include "log/log.h"
#include "video/transporter.h"

namespace corvane {

/// Posts the event on the engine channel and writes the line with the post's status. `fill` sets the payload's keys;
/// `event` must be a literal or __func__.
template <class Fill>
void report(const char* event, Fill fill, int32_t level = kLogInfo, int32_t line = __builtin_LINE()) {
  const int32_t status = KavRTCTransporter::instance().postEvent(EventRecord::event(event, std::move(fill)));
  LogWrite(level, "-%s(%d), status: %d", event, line, status);
}

}  // namespace corvane
