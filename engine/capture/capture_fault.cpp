#include "capture/capture_fault.h"

#include <cerrno>
#include <system_error>

namespace corvane::rtc {

namespace {

struct StreamErrors {
  MediaDeviceError device;
  LocalVideoStreamError video;
  LocalAudioStreamError audio;
};

// Whatever is not here failed in capturing.
constexpr StreamErrors kStreamErrors[] = {
    {kMediaDeviceErrorNotFound, kLocalVideoStreamErrorDeviceNotFound, kLocalAudioStreamErrorNoRecordingDevice},
    {kMediaDeviceErrorNoPermission, kLocalVideoStreamErrorDeviceNoPermission, kLocalAudioStreamErrorDeviceNoPermission},
    {kMediaDeviceErrorBusy, kLocalVideoStreamErrorDeviceBusy, kLocalAudioStreamErrorDeviceBusy},
    {kMediaDeviceErrorDisconnected, kLocalVideoStreamErrorDeviceDisconnected, kLocalAudioStreamErrorRecordFailure},
};

StreamErrors streamErrors(const CaptureFault& fault) {
  for (const StreamErrors& errors : kStreamErrors) {
    if (errors.device == fault.device_error) return errors;
  }
  // Not the device's doing: something that every capture needs is missing.
  if (fault.status == kFailure) {
    return {fault.device_error, kLocalVideoStreamErrorFailure, kLocalAudioStreamErrorFailure};
  }
  return {fault.device_error, kLocalVideoStreamErrorCaptureFailure, kLocalAudioStreamErrorRecordFailure};
}

CaptureFault resourceFault(int code) {
  switch (code) {
    case GST_RESOURCE_ERROR_NOT_FOUND:
      return {kNotFound, kMediaDeviceErrorNotFound, {}};
    case GST_RESOURCE_ERROR_NOT_AUTHORIZED:
      return {kDeviceFailure, kMediaDeviceErrorNoPermission, {}};
    case GST_RESOURCE_ERROR_BUSY:
      return {kDeviceFailure, kMediaDeviceErrorBusy, {}};
    default:
      return {kDeviceFailure, kMediaDeviceErrorFailure, {}};
  }
}

}  // namespace

LocalVideoStreamError videoStreamError(const CaptureFault& fault) {
  return streamErrors(fault).video;
}

LocalAudioStreamError audioStreamError(const CaptureFault& fault) {
  return streamErrors(fault).audio;
}

CaptureFault readFault(GstMessage* error_message) {
  GError* error = nullptr;
  gchar* details = nullptr;
  gst_message_parse_error(error_message, &error, &details);
  const GstPtr<GError> owned_error(error);
  const GstPtr<gchar> owned_details(details);

  CaptureFault fault;
  if (error->domain == GST_RESOURCE_ERROR) {
    fault = resourceFault(error->code);
  } else if (error->domain == GST_STREAM_ERROR || error->domain == GST_CORE_ERROR) {
    fault = {kMediaFailure, kMediaDeviceErrorUnsupportedFormat, {}};
  }
  fault.text = std::string(GST_MESSAGE_SRC_NAME(error_message)) + ": " + error->message;
  if (details != nullptr) fault.text.append(" (").append(details).append(")");
  return fault;
}

CaptureFault fileFault(const std::string& path, int error_number) {
  CaptureFault fault;
  if (error_number == ENOENT || error_number == ENOTDIR) {
    fault = resourceFault(GST_RESOURCE_ERROR_NOT_FOUND);
  } else if (error_number == EACCES || error_number == EPERM) {
    fault = resourceFault(GST_RESOURCE_ERROR_NOT_AUTHORIZED);
  } else {
    fault = resourceFault(GST_RESOURCE_ERROR_FAILED);
  }
  fault.text = path + ": " + std::generic_category().message(error_number);
  return fault;
}

}  // namespace corvane::rtc
