// Log lines and log files, as a reader of the file sees them.
#include "log/log.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;

class LogTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("corvane-log-" + std::to_string(::getpid()));
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    setLogDirectory(folder_.string());
    setLogThreshold(kLogInfo);
  }
  void TearDown() override {
    CloseDstFile();
    setLogDirectory("");
    setLogThreshold(kLogInfo);
    fs::remove_all(folder_);
  }

  fs::path file() const {
    for (const auto& entry : fs::directory_iterator(folder_)) return entry.path();
    return {};
  }
  std::vector<std::string> lines() const {
    std::ifstream stream(file());
    std::vector<std::string> all;
    for (std::string line; std::getline(stream, line);) all.push_back(line);
    return all;
  }

  fs::path folder_;
};

TEST_F(LogTest, LineHasTimeTagThreadAndMessage) {
  CreateDstFile();
  LogWrite(kLogWarning, "%s(%d), Param Invalid", "setPlaybackVolume", 412);
  EXPECT_TRUE(std::regex_match(file().filename().string(), std::regex(R"(\d{4}-\d\d-\d\d-node\.log)")));
  const auto all = lines();
  ASSERT_EQ(all.size(), 2u);
  EXPECT_TRUE(std::regex_match(
      all[0],
      std::regex(
          R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[I\] \[tid: \d+\] \[CreateDstFile\] internal, opened file: .*-node\.log)")))
      << all[0];
  EXPECT_TRUE(
      std::regex_match(all[1], std::regex(R"(.{23} \[W\] \[tid: \d+\] setPlaybackVolume\(412\), Param Invalid)")))
      << all[1];
}

TEST_F(LogTest, ThresholdDecidesWhichLevelsAreWritten) {
  CreateDstFile();
  const auto written = [&](int32_t threshold) {
    setLogThreshold(threshold);
    const size_t before = lines().size();
    for (int32_t level = 0; level <= 5; ++level) LogWrite(level, "level %d", level);
    return lines().size() - before;
  };
  EXPECT_EQ(written(-1), 0u);
  EXPECT_EQ(written(0), 1u);
  EXPECT_EQ(written(2), 3u);
  EXPECT_EQ(written(3), 4u);
  EXPECT_EQ(written(5), 6u);
  EXPECT_NE(lines().back().find(" [tid: "), std::string::npos);
  EXPECT_EQ(lines().back().find("[V]"), std::string::npos) << "a level above 4 has an empty tag";
}

TEST_F(LogTest, LongMessageIsCutInsideTheLine) {
  CreateDstFile();
  LogWrite(kLogInfo, "%s", std::string(20000, 'x').c_str());
  LogWrite(kLogInfo, "next");
  const auto all = lines();
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[1].size() + 1, 10240u) << "with its line feed the line fills the buffer";
  EXPECT_EQ(all[1].back(), 'x');
}

TEST_F(LogTest, SecondOpenKeepsTheFileAndReopeningEmptiesIt) {
  CreateDstFile();
  LogWrite(kLogInfo, "first");
  CreateDstFile();
  EXPECT_NE(lines().back().find("[CreateDstFile] internal, open file failed"), std::string::npos);
  CloseDstFile();
  EXPECT_NE(lines().back().find("+CloseDstFile"), std::string::npos) << "the closing line finds no file any more";
  CreateDstFile();
  EXPECT_EQ(lines().size(), 1u);
}

TEST_F(LogTest, MissingConfiguredFolderIsNotMade) {
  setLogDirectory((folder_ / "missing").string());
  CreateDstFile();
  LogWrite(kLogInfo, "lost");
  EXPECT_FALSE(fs::exists(folder_ / "missing"));
}

TEST_F(LogTest, DefaultFolderIsMadeBelowApplicationData) {
  ::setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
  setLogDirectory("");
  CreateDstFile();
  ::unsetenv("XDG_CONFIG_HOME");
  EXPECT_TRUE(fs::is_directory(folder_ / "xortc" / "electron"));
  EXPECT_FALSE(fs::is_empty(folder_ / "xortc" / "electron"));
}

TEST_F(LogTest, FoldersAreMadeAlongEitherSlash) {
  CreateLogDirectories(folder_.string() + "/a\\b/c");
  EXPECT_TRUE(fs::is_directory(folder_ / "a" / "b" / "c"));
  CreateLogDirectories("");
  const std::string deep = folder_.string() + "/" + std::string(100, 'd');
  CreateLogDirectories(deep + "/" + std::string(100, 'e') + "/" + std::string(100, 'f'));
  EXPECT_FALSE(fs::exists(deep)) << "over 256 characters";
}

TEST_F(LogTest, LinesOfManyThreadsStayWholeWhileTheFileCloses) {
  CreateDstFile();
  std::vector<std::thread> writers;
  for (int i = 0; i < 4; ++i) {
    writers.emplace_back([] {
      for (int n = 0; n < 500; ++n) LogWrite(kLogInfo, "begin %0200d end", n);
    });
  }
  for (int i = 0; i < 20; ++i) std::this_thread::yield();
  CloseDstFile();
  for (auto& writer : writers) writer.join();
  for (const auto& line : lines()) {
    if (line.find("begin") == std::string::npos) continue;
    EXPECT_EQ(line.substr(line.size() - 4), " end") << line;
  }
}

}  // namespace
}  // namespace corvane
