#include "screens/x_images.h"

#include <sys/mman.h>
#include <unistd.h>
#include <xcb/shm.h>

#include <mutex>
#include <utility>
#include <vector>

namespace corvane::rtc {

namespace {

constexpr size_t kPixelBytes = 4;
// More than the queue and the pipeline behind it hold.
constexpr int kMaxSegmentsOut = 8;
constexpr uint32_t kAllPlanes = ~uint32_t{0};

size_t bytesOf(const Rectangle& area) {
  return kPixelBytes * static_cast<size_t>(area.width) * static_cast<size_t>(area.height);
}

}  // namespace

// Memory that the server writes into. The server forgets its side with the connection.
struct XImages::Segment {
  Segment(void* mapped, size_t mapped_size, xcb_shm_seg_t server_id)
      : memory(mapped), size(mapped_size), id(server_id) {}
  ~Segment() { munmap(memory, size); }
  Segment(const Segment&) = delete;
  Segment& operator=(const Segment&) = delete;

  void* const memory;
  const size_t size;
  const xcb_shm_seg_t id;
};

struct XImages::Pool {
  std::mutex mutex;
  std::vector<std::unique_ptr<Segment>> free;
  int out = 0;
  bool closed = false;
};

// A segment in a picture, on its way back to the pool.
struct XImages::Loan {
  Loan(std::shared_ptr<Pool> from, std::unique_ptr<Segment> lent) : pool(std::move(from)), segment(std::move(lent)) {}
  ~Loan() {
    const std::lock_guard lock(pool->mutex);
    --pool->out;
    if (!pool->closed) pool->free.push_back(std::move(segment));
  }
  Loan(const Loan&) = delete;
  Loan& operator=(const Loan&) = delete;

  const std::shared_ptr<Pool> pool;
  std::unique_ptr<Segment> segment;
};

XImages::XImages(const XConnection& x)
    : x_(x), shares_(x.has(XExtension::kSharedMemory)), pool_(std::make_shared<Pool>()) {}

XImages::~XImages() {
  const std::lock_guard lock(pool_->mutex);
  pool_->closed = true;
  for (const auto& segment : pool_->free) xcb_shm_detach(x_.get(), segment->id);
  pool_->free.clear();
}

GstPtr<GstBuffer> XImages::read(xcb_drawable_t drawable, const Rectangle& area) {
  if (area.width <= 0 || area.height <= 0) return nullptr;
  if (shares_) {
    GstPtr<GstBuffer> picture = readShared(drawable, area);
    if (shares_) return picture;
  }
  return readCopied(drawable, area);
}

std::unique_ptr<XImages::Segment> XImages::takeSegment(size_t size) {
  std::unique_ptr<Segment> segment;
  {
    const std::lock_guard lock(pool_->mutex);
    // Those of another size are of a window or region that has changed.
    while (!pool_->free.empty() && segment == nullptr) {
      segment = std::move(pool_->free.back());
      pool_->free.pop_back();
      if (segment->size == size) break;
      xcb_shm_detach(x_.get(), segment->id);
      segment.reset();
    }
    if (segment == nullptr && pool_->out >= kMaxSegmentsOut) return nullptr;
    ++pool_->out;
  }
  if (segment == nullptr) segment = makeSegment(size);
  if (segment == nullptr) {
    const std::lock_guard lock(pool_->mutex);
    --pool_->out;
  }
  return segment;
}

std::unique_ptr<XImages::Segment> XImages::makeSegment(size_t size) {
  const int descriptor = memfd_create("screen", MFD_CLOEXEC);
  if (descriptor < 0) return nullptr;
  void* memory = MAP_FAILED;
  if (ftruncate(descriptor, static_cast<off_t>(size)) == 0) {
    memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  }
  if (memory == MAP_FAILED) {
    close(descriptor);
    return nullptr;
  }
  const xcb_shm_seg_t id = xcb_generate_id(x_.get());
  auto segment = std::make_unique<Segment>(memory, size, id);
  // The descriptor is the library's from here on. A server on another machine cannot take it.
  if (!x_.succeeds(xcb_shm_attach_fd_checked(x_.get(), id, descriptor, 0))) {
    shares_ = !x_.alive();
    return nullptr;
  }
  return segment;
}

GstPtr<GstBuffer> XImages::readShared(xcb_drawable_t drawable, const Rectangle& area) {
  const size_t size = bytesOf(area);
  std::unique_ptr<Segment> segment = takeSegment(size);
  if (segment == nullptr) return nullptr;
  void* const memory = segment->memory;
  const xcb_shm_seg_t id = segment->id;
  auto loan = std::make_unique<Loan>(pool_, std::move(segment));
  const auto image = x_.answer<&xcb_shm_get_image_reply>(xcb_shm_get_image(
      x_.get(), drawable, static_cast<int16_t>(area.x), static_cast<int16_t>(area.y), static_cast<uint16_t>(area.width),
      static_cast<uint16_t>(area.height), kAllPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP, id, 0));
  if (image == nullptr || image->size != size) return nullptr;
  GstPtr<GstBuffer> picture(gst_buffer_new());
  gst_buffer_append_memory(picture.get(),
                           gst_memory_new_wrapped(static_cast<GstMemoryFlags>(0), memory, size, 0, size, loan.release(),
                                                  [](gpointer returned) { delete static_cast<Loan*>(returned); }));
  return picture;
}

GstPtr<GstBuffer> XImages::readCopied(xcb_drawable_t drawable, const Rectangle& area) const {
  auto image = x_.answer<&xcb_get_image_reply>(xcb_get_image(
      x_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, static_cast<int16_t>(area.x), static_cast<int16_t>(area.y),
      static_cast<uint16_t>(area.width), static_cast<uint16_t>(area.height), kAllPlanes));
  const size_t size = bytesOf(area);
  if (image == nullptr || static_cast<size_t>(xcb_get_image_data_length(image.get())) != size) return nullptr;
  uint8_t* const pixels = xcb_get_image_data(image.get());
  GstPtr<GstBuffer> picture(gst_buffer_new());
  gst_buffer_append_memory(picture.get(), gst_memory_new_wrapped(static_cast<GstMemoryFlags>(0), pixels, size, 0, size,
                                                                 image.release(), &free));
  return picture;
}

GstVideoInfo xImageInfo(int32_t width, int32_t height) {
  GstVideoInfo info;
  gst_video_info_set_format(&info, GST_VIDEO_FORMAT_BGRx, static_cast<guint>(width), static_cast<guint>(height));
  return info;
}

}  // namespace corvane::rtc
