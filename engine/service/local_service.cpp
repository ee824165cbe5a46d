#include "service/local_service.h"

#include <arpa/inet.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gio/gio.h>
#include <netinet/in.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

#include "core/glib_pointers.h"
#include "core/gst_pointers.h"
#include "service/local_service_config.h"
#include "service/secret.h"

namespace corvane::rtc {

namespace {

constexpr char kCompanion[] = "libCorvaneRTCService.so";
constexpr int kAliveInChild = 3;

class File {
 public:
  explicit File(int descriptor) : descriptor_(descriptor) {}
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int get() const { return descriptor_; }

 private:
  const int descriptor_;
};

int openLock(const std::string& path) {
  return open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

std::string lastError(const std::string& what) {
  return what + ": " + std::generic_category().message(errno);
}

std::string chooseFolder() {
  if (const char* runtime = getenv("XDG_RUNTIME_DIR"); runtime != nullptr && *runtime == '/') {
    return std::string(runtime) + "/corvane-rtc";
  }
  return "/tmp/corvane-rtc-" + std::to_string(geteuid());
}

/// The engine's own library stands beside the server's companion. "" when it cannot be found.
std::string companionPath() {
  Dl_info info = {};
  if (dladdr(reinterpret_cast<void*>(&companionPath), &info) == 0 || info.dli_fname == nullptr) return {};
  const std::string self = takeText(realpath(info.dli_fname, nullptr));
  return self.substr(0, self.rfind('/') + 1) + kCompanion;
}

/// A port that nobody listens on. Someone may take it before the server does, which then ends, and is started again.
uint16_t freePort() {
  const File probe(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (probe.get() < 0 || bind(probe.get(), generic, size) != 0 || getsockname(probe.get(), generic, &size) != 0)
    return 0;
  return ntohs(address.sin_port);
}

std::vector<std::string> serverEnvironment(const std::string& folder) {
  std::vector<std::string> environment = {std::string("LD_PRELOAD=./") + kCompanion,
                                          "CORVANE_RTC_SERVICE_USERS=" + folder + "/users"};
  for (const char* name : {"PATH", "HOME", "LANG", "TMPDIR"}) {
    if (const char* value = getenv(name)) environment.push_back(std::string(name) + "=" + value);
  }
  return environment;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

LocalService::LocalService(EngineLog& log) : log_(log), folder_(chooseFolder()) {}

LocalService::~LocalService() {
  if (users_ >= 0) close(users_);
}

std::optional<ServiceAddress> LocalService::locate(Problem& problem) {
  if (!openFolder(problem)) return std::nullopt;
  const File lock(openLock(folder_ + "/lock"));
  if (lock.get() < 0) {
    problem.text = lastError(folder_ + "/lock");
    return std::nullopt;
  }
  if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    problem = {"another process looks for the service of this machine", true};
    return std::nullopt;
  }
  if (!becomeUser(problem)) return std::nullopt;
  const File alive(openLock(folder_ + "/alive"));
  if (alive.get() < 0) {
    problem.text = lastError(folder_ + "/alive");
    return std::nullopt;
  }
  if (flock(alive.get(), LOCK_EX | LOCK_NB) == 0 && !start(alive.get(), problem)) return std::nullopt;
  return readAddress(problem);
}

bool LocalService::openFolder(Problem& problem) const {
  // In a folder that everyone may write to, someone else may have been there first.
  for (const std::string& folder : {folder_, folder_ + "/config"}) {
    mkdir(folder.c_str(), 0700);
    struct stat status = {};
    if (lstat(folder.c_str(), &status) != 0) {
      problem.text = lastError(folder);
      return false;
    }
    if (!S_ISDIR(status.st_mode) || status.st_uid != geteuid() || (status.st_mode & 077) != 0) {
      problem.text = folder + " is not a folder that only this user can use";
      return false;
    }
  }
  return true;
}

bool LocalService::becomeUser(Problem& problem) {
  if (users_ < 0) {
    users_ = openLock(folder_ + "/users");
    if (users_ < 0) {
      problem.text = lastError(folder_ + "/users");
      return false;
    }
  }
  if (flock(users_, LOCK_SH | LOCK_NB) == 0) return true;
  // A server that had no user any more is about to end.
  problem = {"the service of this machine is just ending", true};
  return false;
}

bool LocalService::start(int alive, Problem& problem) {
  const LocalServiceConfig config = {folder_ + "/config", makeSecret(), freePort()};
  if (config.secret.empty() || config.port == 0) {
    problem.text = lastError("the service of this machine cannot be started");
    return false;
  }
  const std::string companion = companionPath();
  if (access(companion.c_str(), R_OK) != 0) {
    problem.text = lastError(companion);
    return false;
  }
  unlink((folder_ + "/janus.log").c_str());
  // The loader takes blanks and colons for ends of paths. The server runs in the folder: it is given a name there.
  const std::string link = folder_ + "/" + kCompanion;
  unlink(link.c_str());
  if (symlink(companion.c_str(), link.c_str()) != 0) {
    problem.text = lastError(link);
    return false;
  }
  if (!writePrivateFile(folder_ + "/service.json", writeServiceFile(config)) || !writeServiceConfig(config)) {
    problem.text = lastError(folder_);
    return false;
  }

  std::vector<std::string> arguments = {"janus", "-F", config.folder, "-o", "-N", "-L", folder_ + "/janus.log"};
  std::vector<std::string> environment = serverEnvironment(folder_);
  const std::vector<char*> argument_pointers = pointersTo(arguments);
  const std::vector<char*> environment_pointers = pointersTo(environment);
  const int child_alive = kAliveInChild;
  GError* error = nullptr;
  // A session of its own: what ends the process that happened to start it does not end the others' service.
  const bool started = g_spawn_async_with_pipes_and_fds(
      folder_.c_str(), argument_pointers.data(), environment_pointers.data(),
      static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL),
      [](gpointer) { setsid(); }, nullptr, -1, -1, -1, &alive, &child_alive, 1, nullptr, nullptr, nullptr, nullptr,
      &error);
  const GstPtr<GError> owned(error);
  if (started) {
    log_.info("service of this machine: started on port %d", config.port);
    return true;
  }
  problem.text = g_error_matches(error, G_SPAWN_ERROR, G_SPAWN_ERROR_NOENT)
                     ? "rooms need the program janus, which is not installed: install the package \"janus\", or name a "
                       "service in the parameters: {\"service\": \"ws://host:port\"}"
                     : std::string("janus cannot be started: ") + error->message;
  return false;
}

std::optional<ServiceAddress> LocalService::readAddress(Problem& problem) const {
  std::ifstream file(folder_ + "/service.json");
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::optional<ServiceAddress> address = readServiceFile(text);
  if (!address) problem.text = folder_ + "/service.json does not say where the service is";
  return address;
}

}  // namespace corvane::rtc
