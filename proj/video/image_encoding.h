// Pictures for JavaScript: PNG files as base64 text.
//
// May be called from any thread, several at once.
#pragma once

#include <cstdint>
#include <string>

#include "corvane_rtc/video_frame.h"
#include "platform/image_encoder.h"

namespace corvane {

/// The text of a frame's first plane. Of formats other than ARGB and RGBA it is "null", and a line with the caller's
/// name says so. A frame without pixels is still a picture of its size; one without a size gives "".
std::string encodeFrameImage(const rtc::IVideoFrame& frame, const char* caller = __builtin_FUNCTION(),
                             int32_t line = __builtin_LINE());

/// `pixels`: bytes B, G, R, A, rows of width * 4 bytes. Null gives a fully transparent picture.
std::string encodeArgbToPng(const uint8_t* pixels, int32_t width, int32_t height);

/// `pixels`: 4 bytes each, rows of width * 4 bytes. Every pixel's bytes b0, b1, b2, b3 are taken as b3, b0, b1, b2 and
/// shown as B, G, R without transparency. What `byte_length` lacks for the whole picture is black.
std::string encodeRgbaToPng(const uint8_t* pixels, int64_t byte_length, int32_t width, int32_t height);

/// The bitmap drawn over width x height pixels, bicubically where that is not its own size.
std::string encodeBitmapToPng(const platform::Bitmap& bitmap, int32_t width, int32_t height);

}  // namespace corvane
