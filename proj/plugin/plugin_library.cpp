#include "plugin/plugin_library.h"

#include <string>
#include <string_view>

#include "log/log.h"
#include "platform/library.h"
#include "plugin/plugin_logs.h"

namespace corvane {
namespace {

constexpr char kCaller[] = "registerPlugin";

std::string folderOf(std::string_view path) {
  const size_t last = path.find_last_of("\\/");
  return std::string(last == std::string_view::npos ? std::string_view() : path.substr(0, last + 1));
}

}  // namespace

PluginLibrary PluginLibrary::load(const char* path) {
  const std::string folder = folderOf(path);
  LogWrite(kLogInfo, "%s::%s(%d), pluginFolderPath:%s", kPluginManagerName, kCaller, __LINE__, folder.c_str());
  std::string error;
  void* library = platform::loadLibrary(path, error);
  if (library == nullptr) {
    LogWrite(kLogError, "%s::%s(%d), not load plugin , error:%s.", kPluginManagerName, kCaller, __LINE__,
             error.c_str());
    return {};
  }
  // NOLINTNEXTLINE: symbols are addresses of any kind
  const auto factory = reinterpret_cast<plugin::Factory>(platform::findSymbol(library, plugin::kFactoryName));
  if (factory == nullptr) {
    platform::unloadLibrary(library);
    LogWrite(kLogInfo, "%s::%s(%d), getProcAddress \"createVideoPlugin\" failed.", kPluginManagerName, kCaller,
             __LINE__);
    return {};
  }
  plugin::IPlugin* instance = factory();
  if (instance == nullptr) {
    LogWrite(kLogInfo, "%s::%s(%d), not create plugin %s instance.", kPluginManagerName, kCaller, __LINE__, path);
    return {};
  }
  if (!instance->init(folder.c_str())) {
    LogWrite(kLogInfo, "%s::%s(%d), plugin init failed.", kPluginManagerName, kCaller, __LINE__);
    return {};
  }
  return {library, instance};
}

void PluginLibrary::unload() {
  instance->release();
  platform::unloadLibrary(library);
  *this = {};
}

}  // namespace corvane
