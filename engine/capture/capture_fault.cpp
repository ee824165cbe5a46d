#include "capture/capture_fault.h"

#include <cerrno>
#include <system_error>

namespace corvane::rtc {

namespace {

CaptureFault notFound() {
  return {kNotFound, kMediaDeviceErrorNotFound, kLocalVideoStreamErrorDeviceNotFound, {}};
}

CaptureFault notPermitted() {
  return {kDeviceFailure, kMediaDeviceErrorNoPermission, kLocalVideoStreamErrorDeviceNoPermission, {}};
}

CaptureFault resourceFault(int code) {
  switch (code) {
    case GST_RESOURCE_ERROR_NOT_FOUND:
      return notFound();
    case GST_RESOURCE_ERROR_NOT_AUTHORIZED:
      return notPermitted();
    case GST_RESOURCE_ERROR_BUSY:
      return {kDeviceFailure, kMediaDeviceErrorBusy, kLocalVideoStreamErrorDeviceBusy, {}};
    default:
      return {kDeviceFailure, kMediaDeviceErrorFailure, kLocalVideoStreamErrorCaptureFailure, {}};
  }
}

}  // namespace

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
    fault = {kMediaFailure, kMediaDeviceErrorUnsupportedFormat, kLocalVideoStreamErrorCaptureFailure, {}};
  }
  fault.text = std::string(GST_MESSAGE_SRC_NAME(error_message)) + ": " + error->message;
  if (details != nullptr) fault.text.append(" (").append(details).append(")");
  return fault;
}

CaptureFault fileFault(const std::string& path, int error_number) {
  CaptureFault fault;
  if (error_number == ENOENT || error_number == ENOTDIR) {
    fault = notFound();
  } else if (error_number == EACCES || error_number == EPERM) {
    fault = notPermitted();
  } else {
    fault = {kDeviceFailure, kMediaDeviceErrorFailure, kLocalVideoStreamErrorCaptureFailure, {}};
  }
  fault.text = path + ": " + std::generic_category().message(error_number);
  return fault;
}

}  // namespace corvane::rtc
