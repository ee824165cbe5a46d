#include "service/address.h"

#include <glib.h>

#include <memory>
#include <utility>

#include "core/parameters.h"

namespace corvane::rtc {

namespace {

struct UnrefUri {
  void operator()(GUri* uri) const { g_uri_unref(uri); }
};
using Uri = std::unique_ptr<GUri, UnrefUri>;

bool isLoopback(const std::string& url) {
  const Uri uri(g_uri_parse(url.c_str(), G_URI_FLAGS_NONE, nullptr));
  const char* host = uri != nullptr ? g_uri_get_host(uri.get()) : nullptr;
  if (host == nullptr) return false;
  const std::string name = host;
  return name == "localhost" || name == "::1" || name.starts_with("127.");
}

}  // namespace

NamedService::NamedService(std::string url) : address_{std::move(url), "", false} {
  address_.on_loopback = isLoopback(address_.url);
}

std::optional<ServiceAddress> NamedService::locate(Problem& problem) {
  if (isServiceAddress(address_.url)) return address_;
  problem.text = "\"" + address_.url + "\" is not an address such as ws://host:8188";
  return std::nullopt;
}

}  // namespace corvane::rtc
