#include "capture/image_source.h"

#include <gst/app/app.h>

#include <utility>

namespace corvane::rtc {

namespace {

// Whoever comes to look sees it soon enough, and nothing moves in it.
constexpr int kFrameRate = 5;

}  // namespace

ImageSource::ImageSource(EngineContext& context, PictureQueue& queue, Listener& listener,
                         std::shared_ptr<const Image> image)
    : LiveSource(context, queue, listener), image_(std::move(image)) {}

std::optional<CaptureFault> ImageSource::build() {
  GstElement* pixels = pipeline().add("appsrc", "image");
  // Brought into the picture's colours once, not for each repetition.
  GstElement* convert = pipeline().add("videoconvert", "image-colours");
  GstElement* repeat = pipeline().add("imagefreeze", "image-repeated");
  if (pixels == nullptr || convert == nullptr || repeat == nullptr) return std::nullopt;

  const GstPtr<GstCaps> caps(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "RGBA", "width", G_TYPE_INT,
                                                 image_->width, "height", G_TYPE_INT, image_->height, "framerate",
                                                 GST_TYPE_FRACTION, 0, 1, nullptr));
  gst_app_src_set_caps(GST_APP_SRC(pixels), caps.get());
  g_object_set(pixels, "format", GST_FORMAT_TIME, "stream-type", GST_APP_STREAM_TYPE_STREAM, nullptr);
  g_object_set(repeat, "is-live", TRUE, nullptr);
  const GstPtr<GstCaps> converted(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "I420", "colorimetry",
                                                      G_TYPE_STRING, "bt601", nullptr));
  const GstPtr<GstCaps> paced(
      gst_caps_new_simple("video/x-raw", "framerate", GST_TYPE_FRACTION, kFrameRate, 1, nullptr));
  gst_element_link(pixels, convert);
  gst_element_link_filtered(convert, repeat, converted.get());
  gst_element_link_filtered(repeat, end(), paced.get());

  // The buffer shares the image and keeps it.
  using Owner = std::shared_ptr<const Image>;
  const auto let_go = +[](gpointer owner) { std::unique_ptr<Owner>(static_cast<Owner*>(owner)).reset(); };
  gst_app_src_push_buffer(
      GST_APP_SRC(pixels),
      gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, const_cast<uint8_t*>(image_->pixels.data()),
                                  image_->pixels.size(), 0, image_->pixels.size(),
                                  std::make_unique<Owner>(image_).release(), let_go));
  gst_app_src_end_of_stream(GST_APP_SRC(pixels));
  return std::nullopt;
}

}  // namespace corvane::rtc
