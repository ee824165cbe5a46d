// Builders of the engine's parameter objects for mixes and pushes. Each makes the object from a JavaScript one, logs
// what it sets and calls the engine operation that it is named; any other name calls nothing.
//
// The answer is the engine's, or -1 after a refusal. Errors of conversions stay with the reader: the engine is called
// all the same. The parameter object is released when the engine call has returned, and what its regions point to lives
// until then. JavaScript thread, in rows whose engine test has passed and whose argument 1 is the parameters.
#pragma once

#include <cstdint>
#include <string_view>

#include "binding/row.h"

namespace corvane {

/// "StartLiveTranscoding" or "UpdateLiveTranscoding".
int32_t buildLiveTranscodeParam(const Call& call, Reader& reader, std::string_view operation, const char* task_id,
                                napi_value params);

/// "startPushMixedStreamToCDN" or "updatePushMixedStreamToCDN".
int32_t buildMixedStreamConfig(const Call& call, Reader& reader, std::string_view operation, const char* task_id,
                               napi_value params);

/// "startPushPublicStream" or "updatePublicStreamParam".
int32_t buildPublicStreamParam(const Call& call, Reader& reader, std::string_view operation,
                               const char* public_stream_id, napi_value params);

}  // namespace corvane
