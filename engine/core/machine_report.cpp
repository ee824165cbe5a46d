#include "core/machine_report.h"

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <thread>

#include "corvane_rtc/connection_events.h"

namespace corvane::rtc {

namespace {

constexpr std::chrono::milliseconds kInterval(2000);
constexpr int64_t kKilobyte = 1024;
constexpr int32_t kNeverTold = std::numeric_limits<int32_t>::min();

// Of lines such as "MemTotal:  16314624 kB"; 0 when there is none.
int64_t kilobytesOf(const std::string& accounts, const std::string& name) {
  const size_t at = accounts.find(name + ':');
  return at != std::string::npos ? strtoll(accounts.c_str() + at + name.size() + 1, nullptr, 10) : 0;
}

// The interface that packets to everywhere leave by, "" for none. Columns of the two tables differ.
std::string defaultInterface() {
  std::ifstream routes("/proc/net/route");
  std::string line;
  std::getline(routes, line);  // the columns' names
  while (std::getline(routes, line)) {
    std::istringstream words(line);
    std::string interface;
    std::string destination;
    words >> interface >> destination;
    if (destination == "00000000") return interface;
  }
  std::ifstream routes6("/proc/net/ipv6_route");
  while (std::getline(routes6, line)) {
    const bool everywhere = line.starts_with("00000000000000000000000000000000 00 ");
    std::string interface = line.substr(line.find_last_of(' ') + 1);
    if (everywhere && interface != "lo") return interface;
  }
  return "";
}

bool exists(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0;
}

}  // namespace

int32_t currentNetworkType() {
  const std::string interface = defaultInterface();
  if (interface.empty()) return kNetworkTypeDisconnected;
  const std::string folder = "/sys/class/net/" + interface;
  if (exists(folder + "/wireless") || exists(folder + "/phy80211")) return kNetworkTypeWifi;
  // Which generation a modem speaks stands nowhere here.
  std::ifstream kind(folder + "/uevent");
  const std::string text((std::istreambuf_iterator<char>(kind)), std::istreambuf_iterator<char>());
  return text.find("DEVTYPE=wwan") != std::string::npos ? kNetworkTypeUnknown : kNetworkTypeLAN;
}

SysStats measureMemory() {
  SysStats stats = {};
  std::ifstream machine("/proc/meminfo");
  const std::string accounts((std::istreambuf_iterator<char>(machine)), std::istreambuf_iterator<char>());
  const int64_t all = kilobytesOf(accounts, "MemTotal");
  const int64_t free = kilobytesOf(accounts, "MemAvailable");
  std::ifstream process("/proc/self/statm");
  int64_t pages = 0;
  process >> pages >> pages;  // the second: those in memory
  const double used = static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / kKilobyte;
  stats.memory_usage = used / kKilobyte;
  stats.full_memory = all / kKilobyte;
  stats.free_memory = free / kKilobyte;
  stats.total_memory_usage = stats.full_memory - stats.free_memory;
  if (all > 0) {
    stats.memory_ratio = used / static_cast<double>(all);
    stats.total_memory_ratio = static_cast<double>(all - free) / static_cast<double>(all);
  }
  return stats;
}

MachineReport::MachineReport(EngineContext& context) : context_(context), network_(kNeverTold) {
  processors_.measure();
  checkNetwork();
  timer_ = context_.thread.after(kInterval, [this] { report(); });
}

void MachineReport::checkNetwork() {
  const int32_t type = currentNetworkType();
  if (type == network_) return;
  network_ = type;
  context_.events->onNetworkTypeChanged(type);
}

void MachineReport::report() {
  timer_ = context_.thread.after(kInterval, [this] { report(); });
  SysStats stats = measureMemory();
  const ProcessorLoad load = processors_.measure();
  stats.cpu_cores = static_cast<int32_t>(std::thread::hardware_concurrency());
  stats.cpu_app_usage = load.process;
  stats.cpu_total_usage = load.machine;
  context_.events->onSysStats(stats);
  checkNetwork();
}

}  // namespace corvane::rtc
