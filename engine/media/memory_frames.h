// Frames that applications build, in memory of their own.
#pragma once

#include "corvane_rtc/audio_frame.h"
#include "corvane_rtc/video_frame.h"

namespace corvane::rtc {

/// Copies the builder's planes row by row, without the padding between rows. Null for a builder that is not valid.
IVideoFrame* makeMemoryVideoFrame(const VideoFrameBuilder& builder);

/// Null for a builder that is not valid.
IAudioFrame* makeMemoryAudioFrame(const AudioFrameBuilder& builder);

}  // namespace corvane::rtc
