#include "events/environment_data.h"

namespace corvane {
namespace {

// The host frees no references by itself.
void end(napi_env env, void* data, void*) {
  auto* ending = static_cast<EnvironmentData*>(data);
  for (const auto& [name, factories] : ending->factories) {
    for (const auto& factory : factories) napi_delete_reference(env, factory.function);
  }
  delete ending;
}

}  // namespace

EnvironmentData& EnvironmentData::of(napi_env env) {
  void* data = nullptr;
  if (napi_get_instance_data(env, &data) == napi_ok && data != nullptr) return *static_cast<EnvironmentData*>(data);
  auto* made = new EnvironmentData;  // owned by the environment from the next line on
  napi_set_instance_data(env, made, &end, nullptr);
  return *made;
}

}  // namespace corvane
