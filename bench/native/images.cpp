#include "images.h"

#include <corvane_rtc/video_frame.h>

#include "video/image_encoding.h"

namespace corvane::bench {
namespace {

// One plane of memory that JavaScript holds.
class LentFrame final : public rtc::IVideoFrame {
 public:
  LentFrame(uint8_t* pixels, int32_t width, int32_t height, int32_t pixel_format)
      : pixels_(pixels), width_(width), height_(height), pixel_format_(pixel_format) {}
  ~LentFrame() = default;
  LentFrame(const LentFrame&) = delete;
  LentFrame& operator=(const LentFrame&) = delete;

  int32_t frameType() const override { return rtc::kVideoFrameRawMemory; }
  int32_t pixelFormat() const override { return pixel_format_; }
  int64_t timestampUs() const override { return 0; }
  int32_t width() const override { return width_; }
  int32_t height() const override { return height_; }
  int32_t rotation() const override { return 0; }
  uint8_t* planeData(int32_t plane) const override { return plane == 0 ? pixels_ : nullptr; }
  int32_t planeStride(int32_t plane) const override { return plane == 0 ? width_ * 4 : 0; }
  void release() override {}

 private:
  uint8_t* pixels_;
  int32_t width_;
  int32_t height_;
  int32_t pixel_format_;
};

}  // namespace

Napi::Value jsEncodeImage(const Napi::CallbackInfo& info) {
  auto pixels = info[0].As<Napi::Uint8Array>();
  const int32_t width = info[1].As<Napi::Number>().Int32Value();
  const int32_t height = info[2].As<Napi::Number>().Int32Value();
  if (pixels.ByteLength() != static_cast<size_t>(width) * static_cast<size_t>(height) * 4) {
    Napi::RangeError::New(info.Env(), "the pixels are not those of such a picture").ThrowAsJavaScriptException();
    return {};
  }
  const LentFrame frame(pixels.Data(), width, height, info[3].As<Napi::Number>().Int32Value());
  return Napi::String::New(info.Env(), encodeFrameImage(frame));
}

}  // namespace corvane::bench
