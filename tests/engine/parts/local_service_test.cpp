#include "service/local_service.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "service/local_service_config.h"

namespace corvane::rtc {
namespace {

// A folder in the place of the user's runtime folder, and no programs that could be started.
class LocalServiceTest : public testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/corvane-local-XXXXXX";
    ASSERT_NE(mkdtemp(name), nullptr);
    runtime = name;
    folder = runtime + "/corvane-rtc";
    setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
    setenv("PATH", runtime.c_str(), 1);
  }
  void TearDown() override { std::filesystem::remove_all(runtime); }

  // Why there is no service, or its address.
  std::string locate() {
    LocalService service(log);
    problem = {};
    const std::optional<ServiceAddress> address = service.locate(problem);
    return address ? address->url + " " + address->secret : problem.text;
  }
  bool refuses(const std::string& why) { return locate().find(why) != std::string::npos; }
  int modeOf(const std::string& name) const {
    struct stat status = {};
    return lstat((folder + "/" + name).c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 07777) : -1;
  }

  EngineLog log{{}};
  AddressSource::Problem problem;
  std::string runtime;
  std::string folder;
};

TEST_F(LocalServiceTest, UsesNoFolderThatIsNotItsUsersAlone) {
  const std::string reason = "is not a folder that only this user can use";
  const std::string elsewhere = runtime + "/elsewhere";
  mkdir(elsewhere.c_str(), 0700);
  ASSERT_EQ(symlink(elsewhere.c_str(), folder.c_str()), 0);
  EXPECT_TRUE(refuses(reason)) << "a link: " << problem.text;
  EXPECT_TRUE(std::filesystem::is_empty(elsewhere));
  unlink(folder.c_str());
  std::ofstream(folder) << "a file";
  EXPECT_TRUE(refuses(reason)) << "a file: " << problem.text;
  unlink(folder.c_str());
  for (const mode_t mode : {0750U, 0705U, 0777U}) {
    mkdir(folder.c_str(), 0700);
    chmod(folder.c_str(), mode);
    EXPECT_TRUE(refuses(reason)) << mode << ": " << problem.text;
    std::filesystem::remove_all(folder);
  }
  if (geteuid() == 0) {
    mkdir(folder.c_str(), 0700);
    ASSERT_EQ(chown(folder.c_str(), 12345, 12345), 0);
    EXPECT_TRUE(refuses(reason)) << "another's: " << problem.text;
    // The same from the other side: another user's process in this user's folder.
    ASSERT_EQ(chown(folder.c_str(), 0, 0), 0);
    chmod(runtime.c_str(), 0777);
    ASSERT_EQ(seteuid(12345), 0);
    EXPECT_FALSE(locate().starts_with("ws://"));
    ASSERT_EQ(seteuid(0), 0);
  }
}

TEST_F(LocalServiceTest, FollowsNoLinksInItsFolder) {
  EXPECT_TRUE(refuses("janus, which is not installed: install the package \"janus\"")) << problem.text;
  for (const char* name : {"lock", "users", "alive", "service.json"}) {
    const std::string file = folder + "/" + name;
    unlink(file.c_str());
    ASSERT_EQ(symlink((runtime + "/victim").c_str(), file.c_str()), 0);
    EXPECT_FALSE(locate().starts_with("ws://")) << name;
    EXPECT_FALSE(std::filesystem::exists(runtime + "/victim")) << name;
    unlink(file.c_str());
  }
}

TEST_F(LocalServiceTest, LeavesNothingThatOthersCanRead) {
  umask(0);
  EXPECT_TRUE(refuses("not installed")) << problem.text;
  umask(022);
  EXPECT_EQ(modeOf(""), 0700);
  for (const char* name : {"lock", "users", "alive", "service.json", "config/janus.jcfg"}) {
    EXPECT_EQ(modeOf(name), 0600) << name;
  }
}

TEST_F(LocalServiceTest, TakesLocksAndFilesForWhatTheyAre) {
  // Left behind by processes that have died: nobody holds the locks, and nobody listens where the file says.
  mkdir(folder.c_str(), 0700);
  for (const char* name : {"lock", "users", "alive"}) std::ofstream(folder + "/" + name) << "";
  const LocalServiceConfig stale = {folder + "/config", "old secret", 12345};
  ASSERT_TRUE(writePrivateFile(folder + "/service.json", writeServiceFile(stale)));
  EXPECT_TRUE(refuses("not installed")) << "a new one is to be started: " << problem.text;

  // A server that lives.
  const int alive = open((folder + "/alive").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(alive, LOCK_EX), 0);
  ASSERT_TRUE(writePrivateFile(folder + "/service.json", writeServiceFile(stale)));
  EXPECT_EQ(locate(), "ws://127.0.0.1:12345 old secret");
  for (const char* text : {"", "{", "[]", R"({"port":0,"secret":"x"})", R"({"port":12345})"}) {
    ASSERT_TRUE(writePrivateFile(folder + "/service.json", text));
    EXPECT_TRUE(refuses("does not say where the service is")) << text;
  }

  // One that is just ending, and another process that looks: soon over, and nothing to wait for.
  for (const char* name : {"users", "lock"}) {
    const int held = open((folder + "/" + name).c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    EXPECT_FALSE(locate().starts_with("ws://")) << name;
    EXPECT_TRUE(problem.passing) << name;
    close(held);
  }
  close(alive);
}

}  // namespace
}  // namespace corvane::rtc
