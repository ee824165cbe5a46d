// An image that is shown over and over, where there is no camera to be shown.
#pragma once

#include <memory>

#include "capture/live_sources.h"
#include "media/image.h"

namespace corvane::rtc {

class ImageSource final : public LiveSource {
 public:
  ImageSource(EngineContext& context, PictureQueue& queue, Listener& listener, std::shared_ptr<const Image> image);
  ~ImageSource() override { stop(); }

 private:
  std::optional<CaptureFault> build() override;

  const std::shared_ptr<const Image> image_;
};

}  // namespace corvane::rtc
