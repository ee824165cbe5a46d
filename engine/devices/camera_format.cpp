#include "devices/camera_format.h"

#include <string_view>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr PictureShape kUsualShape = {1280, 720, 30};

// A value below what is wanted costs more than one above it: a picture can be made smaller, but not better.
constexpr double kShortfallWeight = 4.0;
// A compressed picture has to be decoded, which costs less than a third of the wanted frame rate is worth.
constexpr double kJpegCost = 0.5;

double distance(double offered, double wanted) {
  return offered < wanted ? (wanted - offered) / wanted * kShortfallWeight : (offered - wanted) / wanted;
}

// One structure with its size and rate as near to what is wanted as it offers, and what taking it costs; negative for
// one that cannot be used.
std::pair<GstPtr<GstStructure>, double> nearest(const GstStructure* offered, const PictureShape& wanted) {
  GstPtr<GstStructure> format(gst_structure_copy(offered));
  const std::string_view kind = gst_structure_get_name(format.get());
  if (kind != "video/x-raw" && kind != "image/jpeg") return {nullptr, -1.0};

  gst_structure_fixate_field_nearest_int(format.get(), "width", wanted.width);
  gst_structure_fixate_field_nearest_int(format.get(), "height", wanted.height);
  gst_structure_fixate_field_nearest_fraction(format.get(), "framerate", wanted.frame_rate, 1);
  int width = 0;
  int height = 0;
  if (!gst_structure_get_int(format.get(), "width", &width) ||
      !gst_structure_get_int(format.get(), "height", &height) || width <= 0 || height <= 0) {
    return {nullptr, -1.0};
  }
  // A camera that does not say how fast it is counts as fast enough.
  int rate = wanted.frame_rate;
  int per = 1;
  gst_structure_get_fraction(format.get(), "framerate", &rate, &per);
  const double cost = distance(width, wanted.width) + distance(height, wanted.height) +
                      distance(static_cast<double>(rate) / (per > 0 ? per : 1), wanted.frame_rate) +
                      (kind == "image/jpeg" ? kJpegCost : 0.0);
  return {std::move(format), cost};
}

}  // namespace

GstPtr<GstCaps> chooseCameraFormat(const GstCaps* offered, const PictureShape& wanted) {
  const PictureShape shape = {wanted.width > 0 ? wanted.width : kUsualShape.width,
                              wanted.height > 0 ? wanted.height : kUsualShape.height,
                              wanted.frame_rate > 0 ? wanted.frame_rate : kUsualShape.frame_rate};
  GstPtr<GstStructure> best;
  double best_cost = 0.0;
  for (guint index = 0; index < gst_caps_get_size(offered); ++index) {
    auto [format, cost] = nearest(gst_caps_get_structure(offered, index), shape);
    if (format == nullptr || (best != nullptr && cost >= best_cost)) continue;
    best = std::move(format);
    best_cost = cost;
  }
  if (best == nullptr) return nullptr;
  GstPtr<GstCaps> caps(gst_caps_new_empty());
  gst_caps_append_structure(caps.get(), best.release());
  return caps;
}

}  // namespace corvane::rtc
