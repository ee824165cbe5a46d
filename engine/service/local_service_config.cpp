#include "service/local_service_config.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "core/json.h"

namespace corvane::rtc {

namespace {

// Everything the server would load beside what rooms need: they take time to start, and listen.
std::string othersThan(const char* folder, const std::vector<std::string>& wanted) {
  std::string others;
  DIR* entries = opendir(folder);
  if (entries == nullptr) return others;
  while (const dirent* entry = readdir(entries)) {
    const std::string name = entry->d_name;
    if (!name.ends_with(".so") || std::find(wanted.begin(), wanted.end(), name) != wanted.end()) continue;
    others += (others.empty() ? "" : ",") + name;
  }
  closedir(entries);
  return others;
}

// Janus looks for its parts where it was built to; only Debian's place is known here, for what is to be left out.
constexpr char kPluginFolder[] = "/usr/lib/x86_64-linux-gnu/janus/plugins";
constexpr char kTransportFolder[] = "/usr/lib/x86_64-linux-gnu/janus/transports";

// A packet that was sent again is not sent once more within 200 ms: shorter, and nothing would be sent a third time.
constexpr int kPacketsKeptMs = 500;

std::string mainFile(const LocalServiceConfig& config) {
  return "general: {\n  configs_folder = \"config\"\n  api_secret = \"" + config.secret +
         "\"\n  session_timeout = 30\n  debug_level = 3\n  hide_dependencies = true\n}\n"
         "media: {\n  rtp_port_range = \"20000-60000\"\n  min_nack_queue = " +
         std::to_string(kPacketsKeptMs) +
         "\n}\n"
         "nat: {\n  full_trickle = true\n  ignore_mdns = true\n  ice_enforce_list = \"127.0.0.1\"\n}\n"
         "plugins: {\n  disable = \"" +
         othersThan(kPluginFolder, {"libjanus_videoroom.so", "libjanus_textroom.so"}) +
         "\"\n}\ntransports: {\n  disable = \"" + othersThan(kTransportFolder, {"libjanus_websockets.so"}) +
         "\"\n}\nevents: {\n  broadcast = false\n}\n";
}

std::string webSocketsFile(const LocalServiceConfig& config) {
  return "general: {\n  json = \"compact\"\n  ws = true\n  ws_port = " + std::to_string(config.port) +
         "\n  ws_interface = \"lo\"\n  ws_ip = \"127.0.0.1\"\n  wss = false\n}\nadmin: {\n  admin_ws = false\n}\n";
}

}  // namespace

bool writePrivateFile(const std::string& path, const std::string& text) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return false;
  const bool written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  return close(file) == 0 && written;
}

std::string writeServiceFile(const LocalServiceConfig& config) {
  return jsonText({{"port", config.port}, {"secret", config.secret}});
}

std::optional<ServiceAddress> readServiceFile(std::string_view text) {
  const Json address = parseJson(text);
  const int64_t port = numberOf(address, "port");
  const std::string secret = textOf(address, "secret");
  if (port <= 0 || port > UINT16_MAX || secret.empty()) return std::nullopt;
  return ServiceAddress{"ws://127.0.0.1:" + std::to_string(port), secret, true};
}

bool writeServiceConfig(const LocalServiceConfig& config) {
  const std::string rooms = "general: {\n  string_ids = true\n}\n";
  return writePrivateFile(config.folder + "/janus.jcfg", mainFile(config)) &&
         writePrivateFile(config.folder + "/janus.transport.websockets.jcfg", webSocketsFile(config)) &&
         writePrivateFile(config.folder + "/janus.plugin.videoroom.jcfg", rooms) &&
         writePrivateFile(config.folder + "/janus.plugin.textroom.jcfg", rooms);
}

}  // namespace corvane::rtc
