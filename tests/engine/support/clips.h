// Clips that tests make for themselves, with known pictures.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace corvane::test {

/// A folder of the test's own that goes with this.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

/// A clip of plain grey pictures, each `kGreyStep` brighter than the one before it.
struct ClipRecipe {
  std::string encoder;  ///< from raw pictures to a file's bytes, as gst-launch has it
  std::string format = "I420";
  int32_t width = 64;
  int32_t height = 48;
  int32_t fps = 25;
  int32_t pictures = 12;
};

inline constexpr int kDarkestGrey = 40;
inline constexpr int kGreyStep = 14;

/// Returns false when the machine cannot encode it.
bool makeClip(const ClipRecipe& recipe, const std::string& path);

/// Runs a pipeline, written as for gst-launch, to its end.
bool runPipeline(const std::string& description);

}  // namespace corvane::test
