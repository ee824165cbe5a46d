// Privacy blur: softens the local picture before it is sent and shown, except for a rectangle that may be kept sharp.
//
// Parameters, each a text for setPluginParameter():
//   "strength N"      0 leaves the picture as it is, 100 leaves a few blots of colour; 60 at first
//   "keep X Y W H"    keeps a rectangle sharp, in percent of the picture's size before rotation: "keep 30 10 40 90"
//   "keep nothing"    softens everything, as at first
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "corvane_plugin.h"
#include "soft_plane.h"

namespace privacy_blur {
namespace {

using corvane::plugin::VideoFrame;

/// In percent of the picture's size.
struct KeptPart {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  Area of(int32_t picture_width, int32_t picture_height) const {
    const auto left = static_cast<int32_t>(picture_width * x / 100);
    const auto top = static_cast<int32_t>(picture_height * y / 100);
    return {left, top, static_cast<int32_t>(picture_width * (x + width) / 100) - left,
            static_cast<int32_t>(picture_height * (y + height) / 100) - top};
  }
};

bool isPercentage(double value) {
  return value >= 0 && value <= 100;
}

// setParameter() and processVideoFrame() never overlap, so nothing here is guarded.
class PrivacyBlur final : public corvane::plugin::IPlugin {
 public:
  bool init(const char* /*folder*/) override { return true; }
  void release() override { delete this; }

  bool setParameter(const char* parameter) override {
    int32_t strength = 0;
    if (std::sscanf(parameter, "strength %d", &strength) == 1) {
      if (strength < 0 || strength > 100) return false;
      strength_ = strength;
      return true;
    }
    if (std::strcmp(parameter, "keep nothing") == 0) {
      kept_ = {};
      return true;
    }
    KeptPart part;
    if (std::sscanf(parameter, "keep %lf %lf %lf %lf", &part.x, &part.y, &part.width, &part.height) != 4) return false;
    if (!isPercentage(part.x) || !isPercentage(part.y) || !isPercentage(part.width) || !isPercentage(part.height)) {
      return false;
    }
    kept_ = part;
    return true;
  }

  void reserved3() override {}
  void reserved4() override {}

  void processVideoFrame(VideoFrame* frame) override {
    // Blocks grow with the picture, so that a strength looks alike in all sizes: up to a twelfth of the shorter side.
    const int32_t block = std::min(frame->width, frame->height) * strength_ / 1200;
    if (block < 2) return;
    planes_[0].soften(frame->data_y, frame->stride_y, frame->width, frame->height, block,
                      kept_.of(frame->width, frame->height));
    const int32_t width = (frame->width + 1) / 2;
    const int32_t height = (frame->height + 1) / 2;
    const int32_t colour_block = std::max(2, block / 2);
    planes_[1].soften(frame->data_u, frame->stride_u, width, height, colour_block, kept_.of(width, height));
    planes_[2].soften(frame->data_v, frame->stride_v, width, height, colour_block, kept_.of(width, height));
  }

  void processRecordAudioFrame(corvane::plugin::AudioFrame* /*frame*/) override {}
  void processPlaybackAudioFrame(corvane::plugin::AudioFrame* /*frame*/) override {}
  void processRemoteUserAudioFrame(const corvane::plugin::StreamKey& /*stream*/,
                                   corvane::plugin::AudioFrame* /*frame*/) override {}
  void processScreenAudioFrame(corvane::plugin::AudioFrame* /*frame*/) override {}

 private:
  int32_t strength_ = 60;
  KeptPart kept_;
  SoftPlane planes_[3];
};

}  // namespace
}  // namespace privacy_blur

CORVANE_PLUGIN_EXPORT corvane::plugin::IPlugin* createVideoPlugin() {
  return new privacy_blur::PrivacyBlur;
}
