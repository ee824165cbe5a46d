#include "effects/face_cascade.h"

#include <glib.h>
#include <libyuv.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr double kScaleStep = 1.1;
// A window's neighbours fit, too, where there is a face; chance finds stand alone.
constexpr int32_t kFewestNeighbours = 4;
constexpr int32_t kMaxWindow = 256;
// Numbers in the file are rounded.
constexpr float kRounding = 1e-5F;

std::vector<double> numbersOf(const std::string& text) {
  std::vector<double> numbers;
  const char* at = text.c_str();
  for (char* end = nullptr;; at = end) {
    const double number = g_ascii_strtod(at, &end);
    if (end == at) return numbers;
    numbers.push_back(number);
  }
}

// Rectangles of about the same place and size.
bool areAlike(const Rectangle& left, const Rectangle& right) {
  const int32_t slack = std::min(left.width, right.width) / 5;
  return std::abs(left.x - right.x) <= slack && std::abs(left.y - right.y) <= slack &&
         std::abs(left.x + left.width - right.x - right.width) <= slack &&
         std::abs(left.y + left.height - right.y - right.height) <= slack;
}

struct Group {
  Rectangle sum;
  int32_t count;

  Rectangle mean() const { return {sum.x / count, sum.y / count, sum.width / count, sum.height / count}; }
};

std::vector<Rectangle> gather(const std::vector<Rectangle>& windows) {
  std::vector<Group> groups;
  for (const Rectangle& window : windows) {
    const auto near =
        std::find_if(groups.begin(), groups.end(), [&](const Group& group) { return areAlike(group.mean(), window); });
    if (near == groups.end()) {
      groups.push_back({window, 1});
      continue;
    }
    Rectangle& sum = near->sum;
    sum = {sum.x + window.x, sum.y + window.y, sum.width + window.width, sum.height + window.height};
    ++near->count;
  }
  std::stable_sort(groups.begin(), groups.end(),
                   [](const Group& left, const Group& right) { return left.count > right.count; });
  std::vector<Rectangle> faces;
  for (const Group& group : groups) {
    const Rectangle face = group.mean();
    const int32_t x = face.x + face.width / 2;
    const int32_t y = face.y + face.height / 2;
    const bool inside = std::any_of(faces.begin(), faces.end(), [x, y](const Rectangle& other) {
      return x >= other.x && x < other.x + other.width && y >= other.y && y < other.y + other.height;
    });
    if (group.count >= kFewestNeighbours && !inside) faces.push_back(face);
  }
  return faces;
}

}  // namespace

// What stands above and left of each pixel, added up.
struct FaceCascade::Sums {
  explicit Sums(const GreyPicture& picture)
      : stride(static_cast<size_t>(picture.width) + 1), values(stride * (static_cast<size_t>(picture.height) + 1)) {
    for (size_t y = 0; y < static_cast<size_t>(picture.height); ++y) {
      uint32_t row = 0;
      for (size_t x = 0; x + 1 < stride; ++x) {
        row += picture.pixels[y * (stride - 1) + x];
        values[(y + 1) * stride + x + 1] = values[y * stride + x + 1] + row;
      }
    }
  }

  const uint32_t* at(int32_t x, int32_t y) const {
    return &values[static_cast<size_t>(y) * stride + static_cast<size_t>(x)];
  }

  const size_t stride;
  std::vector<uint32_t> values;
};

// The file's elements, one after another: what is needed of each stands in its text.
struct CascadeReader {
  FaceCascade cascade;
  std::vector<std::string> open;
  std::string text;
  bool is_patterns = false;
  std::string wrong;

  void onEnd() {
    const std::string name = open.back();
    open.pop_back();
    const std::string_view parent = open.empty() ? std::string_view() : std::string_view(open.back());
    const std::vector<double> numbers = numbersOf(text);
    const auto whole = [&](size_t index) { return static_cast<int32_t>(numbers[index]); };
    if (name == "featureType") {
      is_patterns = text.find("LBP") != std::string::npos;
    } else if (name == "width" && parent == "cascade" && !numbers.empty()) {
      cascade.width_ = whole(0);
    } else if (name == "height" && parent == "cascade" && !numbers.empty()) {
      cascade.height_ = whole(0);
    } else if (name == "stageThreshold" && !numbers.empty()) {
      cascade.stages_.push_back({static_cast<float>(numbers[0]), {}});
    } else if (name == "internalNodes") {
      addNode(numbers);
    } else if (name == "leafValues") {
      addLeaves(numbers);
    } else if (name == "rect") {
      if (numbers.size() < 4) return fail("a rectangle of less than four numbers");
      cascade.features_.push_back({whole(0), whole(1), whole(2), whole(3)});
    }
  }

  // "left right feature" and eight words of patterns: one node, as trees of more are not used for faces.
  void addNode(const std::vector<double>& numbers) {
    if (numbers.size() != 11 || numbers[2] < 0 || cascade.stages_.empty()) return fail("a tree of another kind");
    FaceCascade::Weak weak = {static_cast<size_t>(numbers[2]), {}, 0, 0};
    for (size_t word = 0; word < weak.patterns.size(); ++word) {
      weak.patterns[word] = static_cast<uint32_t>(static_cast<int64_t>(numbers[3 + word]));
    }
    cascade.stages_.back().weaks.push_back(weak);
  }

  void addLeaves(const std::vector<double>& numbers) {
    if (numbers.size() != 2 || cascade.stages_.empty() || cascade.stages_.back().weaks.empty()) {
      return fail("leaves of another kind");
    }
    FaceCascade::Weak& weak = cascade.stages_.back().weaks.back();
    weak.match = static_cast<float>(numbers[0]);
    weak.other = static_cast<float>(numbers[1]);
  }

  void fail(const char* reason) {
    if (wrong.empty()) wrong = reason;
  }
};

bool FaceCascade::isSound() const {
  const auto fits = [](int32_t value) { return value > 0 && value <= kMaxWindow; };
  if (!fits(width_) || !fits(height_) || stages_.empty()) return false;
  for (const Feature& feature : features_) {
    if (feature.x < 0 || feature.y < 0 || !fits(feature.width) || !fits(feature.height) ||
        feature.x + 3 * feature.width > width_ || feature.y + 3 * feature.height > height_) {
      return false;
    }
  }
  return std::all_of(stages_.begin(), stages_.end(), [this](const Stage& stage) {
    return std::all_of(stage.weaks.begin(), stage.weaks.end(),
                       [this](const Weak& weak) { return weak.feature < features_.size(); });
  });
}

std::unique_ptr<FaceCascade> FaceCascade::load(const std::string& path, std::string& problem) {
  gchar* contents = nullptr;
  gsize size = 0;
  if (g_file_get_contents(path.c_str(), &contents, &size, nullptr) == FALSE) {
    problem = path + " cannot be read";
    return nullptr;
  }
  const std::unique_ptr<gchar, decltype(&g_free)> owned(contents, &g_free);
  CascadeReader reader;
  GMarkupParser parser = {};
  parser.start_element = [](GMarkupParseContext*, const gchar* name, const gchar**, const gchar**, gpointer self,
                            GError**) {
    static_cast<CascadeReader*>(self)->open.emplace_back(name);
    static_cast<CascadeReader*>(self)->text.clear();
  };
  parser.text = [](GMarkupParseContext*, const gchar* text, gsize length, gpointer self, GError**) {
    static_cast<CascadeReader*>(self)->text.append(text, length);
  };
  parser.end_element = [](GMarkupParseContext*, const gchar*, gpointer self, GError**) {
    static_cast<CascadeReader*>(self)->onEnd();
    static_cast<CascadeReader*>(self)->text.clear();
  };
  GMarkupParseContext* context =
      g_markup_parse_context_new(&parser, static_cast<GMarkupParseFlags>(0), &reader, nullptr);
  const bool parsed = g_markup_parse_context_parse(context, contents, static_cast<gssize>(size), nullptr) != FALSE &&
                      g_markup_parse_context_end_parse(context, nullptr) != FALSE;
  g_markup_parse_context_free(context);
  if (!parsed) reader.fail("no XML");
  if (!reader.is_patterns) reader.fail("no cascade of local binary patterns (LBP)");
  if (!reader.cascade.isSound()) reader.fail("parts are missing or out of range");
  if (!reader.wrong.empty()) {
    problem = path + ": " + reader.wrong;
    return nullptr;
  }
  return std::unique_ptr<FaceCascade>(new FaceCascade(std::move(reader.cascade)));
}

bool FaceCascade::isFace(const Sums& sums, int32_t x, int32_t y) const {
  for (const Stage& stage : stages_) {
    float score = 0;
    for (const Weak& weak : stage.weaks) {
      const Feature& feature = features_[weak.feature];
      const auto width = static_cast<size_t>(feature.width);
      const size_t rows = static_cast<size_t>(feature.height) * sums.stride;
      const uint32_t* row = sums.at(x + feature.x, y + feature.y);
      // Sixteen corners of nine blocks.
      std::array<std::array<uint32_t, 4>, 4> corners;
      for (auto& line : corners) {
        line = {row[0], row[width], row[2 * width], row[3 * width]};
        row += rows;
      }
      const auto block = [&](size_t across, size_t down) {
        return corners[down + 1][across + 1] - corners[down + 1][across] - corners[down][across + 1] +
               corners[down][across];
      };
      const uint32_t centre = block(1, 1);
      // Clockwise from the first block.
      constexpr std::array<std::array<size_t, 2>, 8> kAround = {
          {{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {1, 2}, {0, 2}, {0, 1}}};
      uint32_t pattern = 0;
      for (const auto& [across, down] : kAround) pattern = pattern << 1 | (block(across, down) >= centre ? 1U : 0U);
      const bool matches = (weak.patterns[pattern >> 5] >> (pattern & 31) & 1) != 0;
      score += matches ? weak.match : weak.other;
    }
    if (score < stage.threshold - kRounding) return false;
  }
  return true;
}

std::vector<Rectangle> FaceCascade::find(const GreyPicture& picture) const {
  std::vector<Rectangle> windows;
  GreyPicture scaled;
  for (double scale = 1; picture.width / scale >= width_ && picture.height / scale >= height_; scale *= kScaleStep) {
    scaled.width = static_cast<int32_t>(picture.width / scale);
    scaled.height = static_cast<int32_t>(picture.height / scale);
    scaled.pixels.resize(static_cast<size_t>(scaled.width) * static_cast<size_t>(scaled.height));
    libyuv::ScalePlane(picture.pixels.data(), picture.width, picture.width, picture.height, scaled.pixels.data(),
                       scaled.width, scaled.width, scaled.height, libyuv::kFilterBilinear);
    const Sums sums(scaled);
    for (int32_t y = 0; y + height_ <= scaled.height; ++y) {
      for (int32_t x = 0; x + width_ <= scaled.width; ++x) {
        if (!isFace(sums, x, y)) continue;
        const auto place = [scale](int32_t value) { return static_cast<int32_t>(std::lround(value * scale)); };
        windows.push_back({place(x), place(y), place(width_), place(height_)});
      }
    }
  }
  return gather(windows);
}

}  // namespace corvane::rtc
