#include "screens/screen_query.h"

#include <utility>
#include <vector>

#include "core/gstreamer.h"
#include "screens/screen_sources.h"
#include "screens/thumbnails.h"

namespace corvane::rtc {

namespace {

class SourceList final : public IScreenCaptureSourceList {
 public:
  explicit SourceList(std::vector<ListedScreen> sources) : sources_(std::move(sources)) {}

  int32_t getCount() override { return static_cast<int32_t>(sources_.size()); }

  int32_t getSourceInfo(int32_t index, ScreenCaptureSourceInfo& info) override {
    if (index < 0 || index >= getCount()) return kInvalidParameter;
    const ListedScreen& source = sources_[static_cast<size_t>(index)];
    info = {source.type, source.id,      source.name.c_str(), source.application.c_str(),
            source.pid,  source.primary, source.rectangle};
    return kSuccess;
  }

  void release() override { delete this; }

 private:
  const std::vector<ListedScreen> sources_;
};

const CaptureFault kNoPicture = {kNotFound, kMediaDeviceErrorNotFound, "there is no such source, or it is hidden"};
const CaptureFault kNoIcon = {kNotFound, kMediaDeviceErrorNotFound, "there is no such window, or it has no icon"};

}  // namespace

bool ScreenQuery::connect(const std::string& display, CaptureFault& fault) {
  if (x_ != nullptr && x_->alive() && display == display_) {
    // A server that has gone since is seen only when something is asked of it.
    xcb_flush(x_->get());
    while (x_->nextEvent() != nullptr) {
    }
    if (x_->alive()) return true;
  }
  // The engine's thread may be on its way to it only: the first thumbnail comes as early as the application likes.
  if (!startGStreamer(fault.text)) {
    fault.status = kMediaFailure;
    return false;
  }
  images_.reset();
  x_ = XConnection::open(display, fault);
  if (x_ == nullptr) return false;
  display_ = display;
  images_ = std::make_unique<XImages>(*x_);
  return true;
}

bool ScreenQuery::check(const std::string& display, CaptureFault& fault) {
  const std::lock_guard lock(mutex_);
  return connect(display, fault);
}

IScreenCaptureSourceList* ScreenQuery::list(const std::string& display, CaptureFault& fault) {
  const std::lock_guard lock(mutex_);
  if (!connect(display, fault)) return nullptr;
  return std::make_unique<SourceList>(listScreenSources(*x_)).release();
}

IVideoFrame* ScreenQuery::thumbnail(const std::string& display, int32_t type, int64_t id, int32_t max_width,
                                    int32_t max_height, CaptureFault& fault) {
  const std::lock_guard lock(mutex_);
  if (!connect(display, fault)) return nullptr;
  IVideoFrame* frame = makeThumbnail(*x_, *images_, type, id, max_width, max_height);
  if (frame == nullptr) fault = kNoPicture;
  return frame;
}

IVideoFrame* ScreenQuery::icon(const std::string& display, int64_t id, int32_t max_width, int32_t max_height,
                               CaptureFault& fault) {
  const std::lock_guard lock(mutex_);
  if (!connect(display, fault)) return nullptr;
  IVideoFrame* frame = makeWindowIcon(*x_, id, max_width, max_height);
  if (frame == nullptr) fault = kNoIcon;
  return frame;
}

}  // namespace corvane::rtc
