// How the engine has files decoded: by no more than it needs, on few threads.
#pragma once

#include <gst/gst.h>

namespace corvane::rtc {

/// A decoder's "autoplug-continue": whether a stream, or what it is packed in, is to be taken apart further for its
/// sound.
gboolean leadsToSound(GstElement* decoder, GstPad* pad, GstCaps* caps, gpointer data);

/// For each element that a decoder adds ("deep-element-added"), on any thread.
void prepareDecoding(GstElement* element);

}  // namespace corvane::rtc
