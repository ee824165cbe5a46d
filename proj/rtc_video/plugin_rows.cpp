// Processing plug-ins: loading, switching on and off, parameters.
#include "binding/audio_records.h"
#include "plugin/plugin_manager.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

constexpr char kRefused[] = "%s(%d), param invalid";

PluginManager* managerOf(const Call& call) {
  PluginManager* manager = videoOf(call).pluginManager();
  if (manager == nullptr) call.say(kLogInfo, "%s(%d), pluginManager is nullptr");
  return manager;
}

// The path is the argument itself or, as with other records, its key "path".
void registerPlugin(Call& call) {
  Reader reader(call.env);
  const bool is_record = call.is(0, Kind::kObject);
  napi_value given = is_record ? reader.get(call[0], "path") : call[0];
  if (!isKind(call.env, given, Kind::kString)) {
    call.say(kLogInfo, kRefused);
    return;
  }
  PluginManager* manager = managerOf(call);
  if (manager == nullptr) return;
  const Argument<const char*> path(reader, given);
  call.say(kLogInfo, "%s(%d), %s", *path);
  call.result = manager->registerPlugin(*path, engineOf(call));
}

void unregisterPlugin(Call& call) {
  PluginManager* manager = managerOf(call);
  if (manager != nullptr) call.result = manager->unregisterPlugin();
}

void enableVideoPlugin(Call& call) {
  PluginManager* manager = managerOf(call);
  if (manager == nullptr) return;
  Reader reader(call.env);
  const bool enable = reader.boolean(call[0]);
  call.say(kLogInfo, "%s(%d), %d", static_cast<int>(enable));
  call.result = manager->enableVideoPlugin(enable);
}

// The engine's processors are switched, whether there is a plug-in or not.
void enableAudioPlugin(Call& call) {
  if (managerOf(call) == nullptr) return;
  Reader reader(call.env);
  const bool enable = reader.boolean(call[0]);
  const int32_t method = reader.int32(call[1]);
  const Argument<rtc::AudioFormat> format(reader, call[2]);
  call.say(kLogInfo,
           "function:%s line:(%d), enable:%d, method:%d, format.sample_rate:%d, format.channel:%d, format.per_call:%d",
           static_cast<int>(enable), method, (*format).sample_rate, (*format).channel, (*format).samples_per_call);
  rtc::IRTCVideo& engine = engineOf(call);
  call.result = enable ? engine.enableAudioProcessor(method, *format) : engine.disableAudioProcessor(method);
}

void setPluginParameter(Call& call) {
  PluginManager* manager = managerOf(call);
  if (manager == nullptr) return;
  Reader reader(call.env);
  const Argument<const char*> parameter(reader, call[0]);
  call.say(kLogInfo, "%s(%d), %s", *parameter);
  call.result = manager->setParameter(*parameter);
}

constexpr Row kRows[] = {
    special("registerPlugin", &registerPlugin).enters("%s(%d)"),
    special("unregisterPlugin", &unregisterPlugin).enters("%s(%d)"),
    special("enableVideoPlugin", &enableVideoPlugin, {Kind::kBoolean}).enters("%s(%d)").refuses(kRefused),
    special("enableAudioPlugin", &enableAudioPlugin, {Kind::kBoolean, Kind::kNumber, Kind::kObject})
        .enters("%s(%d)")
        .refuses(kRefused),
    special("setPluginParameter", &setPluginParameter, {Kind::kString}).enters("%s(%d)").refuses(kRefused),
};

}  // namespace

std::span<const Row> pluginRows() {
  return kRows;
}

}  // namespace corvane
