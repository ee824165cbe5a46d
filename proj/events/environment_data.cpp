#include "events/environment_data.h"

namespace corvane {

EnvironmentData& EnvironmentData::of(napi_env env) {
  void* data = nullptr;
  if (napi_get_instance_data(env, &data) == napi_ok && data != nullptr) return *static_cast<EnvironmentData*>(data);
  auto* made = new EnvironmentData;  // owned by the environment from the next line on
  napi_set_instance_data(
      env, made, [](napi_env, void* old, void*) { delete static_cast<EnvironmentData*>(old); }, nullptr);
  return *made;
}

}  // namespace corvane
