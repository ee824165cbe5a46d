// Why a camera does not deliver.
#pragma once

#include <cstdint>
#include <string>

#include "core/gst_pointers.h"
#include "corvane_rtc/device_events.h"
#include "corvane_rtc/stream_events.h"

namespace corvane::rtc {

/// One fault in the three vocabularies in which it is reported.
struct CaptureFault {
  ReturnStatus status = kFailure;
  MediaDeviceError device_error = kMediaDeviceErrorFailure;
  LocalVideoStreamError stream_error = kLocalVideoStreamErrorFailure;
  std::string text;  ///< for the log
};

/// What a pipeline's error message amounts to.
CaptureFault readFault(GstMessage* error_message);

/// The fault of a file that cannot be opened, by the system's error number.
CaptureFault fileFault(const std::string& path, int error_number);

}  // namespace corvane::rtc
