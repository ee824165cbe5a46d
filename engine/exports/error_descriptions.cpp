#include "exports/error_descriptions.h"

#include "corvane_rtc/common.h"

namespace corvane::rtc {

namespace {

struct Description {
  ReturnStatus code;
  const char* text;
};

constexpr Description kDescriptions[] = {
    {kSuccess, "The operation succeeded."},
    {kFailure, "The operation failed."},
    {kInvalidParameter, "A parameter has a value that the operation does not accept."},
    {kWrongState, "The operation is not possible in the present state."},
    {kNotFound, "What was asked for does not exist."},
    {kDeviceFailure, "A device could not be opened, or stopped working."},
    {kMediaFailure, "Media could not be decoded, encoded, read or written."},
    {kNotSupported, "The engine does not offer this operation."},
};

}  // namespace

const char* describeError(int32_t code) {
  for (const Description& description : kDescriptions) {
    if (description.code == code) return description.text;
  }
  return "";
}

}  // namespace corvane::rtc
