#include "core/engine_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

namespace corvane::rtc {
namespace {

namespace fs = std::filesystem;

class EngineLogTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = fs::temp_directory_path() / "corvane-engine-log-XXXXXX";
    folder = mkdtemp(pattern.data());
  }
  void TearDown() override { fs::remove_all(folder); }

  std::vector<fs::path> files() const {
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(folder)) found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    return found;
  }

  fs::path folder;
};

TEST_F(EngineLogTest, WritesDatedLinesFromItsLevelUp) {
  {
    EngineLog log({folder, "app-1", kLogLevelWarning, 1 << 20});
    log.info("left out");
    log.warning("number %d", 7);
    log.error("%s", "last");
  }
  ASSERT_EQ(files().size(), 1U);
  EXPECT_TRUE(
      std::regex_match(files()[0].filename().string(), std::regex(R"(app-1_corvane_rtc_\d{8}-\d{6}_\d+_0000\.log)")));
  std::ifstream file(files()[0]);
  std::string line;
  const std::string date = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )";
  ASSERT_TRUE(std::getline(file, line));
  EXPECT_TRUE(std::regex_match(line, std::regex(date + "W number 7"))) << line;
  ASSERT_TRUE(std::getline(file, line));
  EXPECT_TRUE(std::regex_match(line, std::regex(date + "E last"))) << line;
  EXPECT_FALSE(std::getline(file, line));
}

TEST_F(EngineLogTest, KeepsAllFilesTogetherWithinTheLimit) {
  constexpr int64_t kTotal = 64 * 1024;
  // Of an earlier run, of another prefix, and of something else altogether.
  std::ofstream(folder / "corvane_rtc_20200101-000000_1_0000.log") << std::string(kTotal, 'x');
  std::ofstream(folder / "other_corvane_rtc_20200101-000000_1_0000.log") << "other";
  std::ofstream(folder / "notes.log") << "notes";
  fs::last_write_time(folder / "corvane_rtc_20200101-000000_1_0000.log",
                      fs::file_time_type::clock::now() - std::chrono::hours(1));
  {
    EngineLog log({folder, "", kLogLevelInfo, kTotal});
    for (int line = 0; line < 4000; ++line) log.info("line %d of many, so that files fill up", line);
  }
  int64_t bytes = 0;
  std::string newest;
  for (const fs::path& file : files()) {
    if (!file.filename().string().starts_with("corvane_rtc_")) continue;
    bytes += static_cast<int64_t>(fs::file_size(file));
    newest = file;
  }
  EXPECT_LE(bytes, kTotal);
  EXPECT_GT(bytes, kTotal / 2);
  EXPECT_FALSE(fs::exists(folder / "corvane_rtc_20200101-000000_1_0000.log"));
  EXPECT_TRUE(fs::exists(folder / "other_corvane_rtc_20200101-000000_1_0000.log"));
  EXPECT_TRUE(fs::exists(folder / "notes.log"));
  std::ifstream last(newest);
  const std::string text(std::istreambuf_iterator<char>(last), {});
  EXPECT_NE(text.find("line 3999 of many"), std::string::npos);
}

TEST_F(EngineLogTest, KeepsLinesOfSeveralThreadsWhole) {
  {
    EngineLog log({folder, "", kLogLevelInfo, 8 << 20});
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&log] {
        for (int line = 0; line < 500; ++line) log.info("abcdefghijklmnopqrstuvwxyz");
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  std::ifstream file(files().front());
  std::string line;
  int lines = 0;
  while (std::getline(file, line)) {
    EXPECT_TRUE(line.ends_with(" I abcdefghijklmnopqrstuvwxyz")) << line;
    ++lines;
  }
  EXPECT_EQ(lines, 2000);
}

TEST_F(EngineLogTest, LivesWithoutAFolder) {
  EngineLog silent({});
  silent.error("nowhere");
  EngineLog gone({folder / "gone", "", kLogLevelInfo, 1 << 20});
  gone.error("nowhere either");
  EXPECT_TRUE(files().empty());
}

}  // namespace
}  // namespace corvane::rtc
