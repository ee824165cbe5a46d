// Why a camera or microphone does not deliver.
#pragma once

#include <cstdint>
#include <string>

#include "core/gst_pointers.h"
#include "corvane_rtc/device_events.h"
#include "corvane_rtc/stream_events.h"

namespace corvane::rtc {

/// One fault, in the vocabularies of operations and of devices.
struct CaptureFault {
  ReturnStatus status = kFailure;
  MediaDeviceError device_error = kMediaDeviceErrorFailure;
  std::string text;  ///< for the log
};

/// The same in the vocabularies of local streams.
LocalVideoStreamError videoStreamError(const CaptureFault& fault);
LocalAudioStreamError audioStreamError(const CaptureFault& fault);

/// What a pipeline's error message amounts to.
CaptureFault readFault(GstMessage* error_message);

/// The fault of a file that cannot be opened, by the system's error number.
CaptureFault fileFault(const std::string& path, int error_number);

}  // namespace corvane::rtc
