// Pixels out of an X server, through memory that both share where the server allows it.
#pragma once

#include <gst/video/video.h>

#include <cstdint>
#include <memory>

#include "core/gst_pointers.h"
#include "corvane_rtc/common.h"
#include "screens/x_connection.h"

namespace corvane::rtc {

/// Memory of pictures that have been given back is used again; pictures may outlive this and the connection.
/// The connection's thread.
class XImages {
 public:
  explicit XImages(const XConnection& x);
  ~XImages();
  XImages(const XImages&) = delete;
  XImages& operator=(const XImages&) = delete;

  /// The pixels of an area, as in xImageInfo(). Null when the server refuses, or too many pictures are still out.
  GstPtr<GstBuffer> read(xcb_drawable_t drawable, const Rectangle& area);

 private:
  struct Segment;
  struct Pool;
  struct Loan;

  std::unique_ptr<Segment> takeSegment(size_t size);
  std::unique_ptr<Segment> makeSegment(size_t size);
  GstPtr<GstBuffer> readShared(xcb_drawable_t drawable, const Rectangle& area);
  GstPtr<GstBuffer> readCopied(xcb_drawable_t drawable, const Rectangle& area) const;

  const XConnection& x_;
  bool shares_;
  const std::shared_ptr<Pool> pool_;
};

/// Bytes B, G, R and one without meaning, rows without padding.
GstVideoInfo xImageInfo(int32_t width, int32_t height);

}  // namespace corvane::rtc
