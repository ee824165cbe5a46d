#include "targets.h"

#include <gst/gst.h>

#include <cstdio>
#include <cstdlib>

namespace corvane::fuzz {

namespace {

constexpr Target kTargets[] = {
    {"signalling", runSignalling},    {"channel", runChannel},       {"member_state", runMemberState},
    {"sdp", runSessionDescription},   {"parameters", runParameters}, {"device_ids", runDeviceIds},
    {"service_file", runServiceFile},
};

}  // namespace

std::span<const Target> targets() {
  return kTargets;
}

const Target* findTarget(std::string_view name) {
  for (const Target& target : kTargets) {
    if (name == target.name) return &target;
  }
  return nullptr;
}

void prepare() {
  setenv("GST_PLUGIN_SYSTEM_PATH_1_0", "", 1);
  setenv("GST_PLUGIN_PATH_1_0", "", 1);
  setenv("GST_REGISTRY_1_0", "/dev/null", 1);
  setenv("GST_REGISTRY_FORK", "no", 1);
  gst_init(nullptr, nullptr);
  // GLib's word for a call that should not have been made.
  g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING));
}

void promise(bool kept, const char* what) {
  if (kept) return;
  fprintf(stderr, "a promise was broken: %s\n", what);
  abort();
}

}  // namespace corvane::fuzz
