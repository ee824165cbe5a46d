// Picture files: PNG and JPEG.
#pragma once

#include <cstdint>
#include <string>

#include "media/image.h"

namespace corvane::rtc {

/// Reads and decodes a file. Returns kNotFound, kInvalidParameter for what is no such picture or one that is too large,
/// kMediaFailure for one that cannot be decoded, each with its reason. Any thread.
int32_t loadImage(const std::string& path, Image& image, std::string& problem);

}  // namespace corvane::rtc
