// Network: fallback, probing, proxies, encryption, time.
#include <vector>

#include "binding/lists.h"
#include "corvane_rtc/network.h"
#include "rtc_video/owners.h"
#include "rtc_video/tables.h"

namespace corvane {
namespace {

void startCloudProxy(Call& call) {
  Reader reader(call.env);
  const auto count = listLength(call, reader, call[0], call.row.refusals[0]);
  if (!count.has_value()) return;
  Texts texts;
  std::vector<rtc::CloudProxyInfo> proxies;
  proxies.reserve(*count);
  for (uint32_t i = 0; i < *count; ++i) {
    napi_value element = reader.at(call[0], i);
    const char* ip = texts.keep(reader.string(element, "cloud_proxy_ip"));
    const int32_t port = reader.int32(element, "cloud_proxy_port");
    call.say(kLogInfo, "%s(%d), i: %d cloud_proxy_ip: %s, cloud_proxy_port: %d  ", static_cast<int>(i), ip, port);
    proxies.push_back({ip, port});
  }
  call.result = engineOf(call).startCloudProxy(proxies.data(), static_cast<int32_t>(*count));
}

constexpr const char* kLocalProxyTexts[] = {"local_proxy_ip", "local_proxy_username", "local_proxy_password"};

// One element of setLocalProxy()'s list; false when one of its texts is none.
bool readLocalProxy(Reader& reader, napi_value element, Texts& texts, rtc::LocalProxyConfiguration& proxy) {
  const char* read[std::size(kLocalProxyTexts)] = {};
  for (size_t i = 0; i < std::size(kLocalProxyTexts); ++i) {
    napi_value text = reader.get(element, kLocalProxyTexts[i]);
    if (!isKind(reader.env(), text, Kind::kString)) return false;
    read[i] = texts.keep(reader.string(text));
  }
  proxy = {read[0], read[1], read[2], reader.int32(element, "local_proxy_type"),
           reader.int32(element, "local_proxy_port")};
  return true;
}

void setLocalProxy(Call& call) {
  Reader reader(call.env);
  const auto count = listLength(call, reader, call[0], call.row.refusals[0]);
  if (!count.has_value()) return;
  Texts texts;
  std::vector<rtc::LocalProxyConfiguration> proxies(*count);
  for (uint32_t i = 0; i < *count; ++i) {
    rtc::LocalProxyConfiguration& proxy = proxies[i];
    if (!readLocalProxy(reader, reader.at(call[0], i), texts, proxy)) {
      call.say(kLogInfo, call.row.refusals[0]);
      return;
    }
    call.say(kLogInfo,
             "%s(%d), i: %d, local_proxy_type: %d, local_proxy_ip: %s, local_proxy_port: %d, local_proxy_username: "
             "%s, local_proxy_password: %s  ",
             static_cast<int>(i), proxy.local_proxy_type, proxy.local_proxy_ip, proxy.local_proxy_port,
             proxy.local_proxy_username, proxy.local_proxy_password);
  }
  call.result = engineOf(call).setLocalProxy(proxies.data(), static_cast<int32_t>(*count));
}

constexpr Row kRows[] = {
    plain<&rtc::IRTCVideo::setPublishFallbackOption>("setPublishFallbackOption"),
    plain<&rtc::IRTCVideo::setSubscribeFallbackOption>("setSubscribeFallbackOption"),
    plain<&rtc::IRTCVideo::setRemoteUserPriority>("setRemoteUserPriority"),
    plain<&rtc::IRTCVideo::startNetworkDetection>("startNetworkDetection"),
    plain<&rtc::IRTCVideo::stopNetworkDetection>("stopNetworkDetection"),

    special("startCloudProxy", &startCloudProxy, {Kind::kArray}).refuses("%s(%d), Param is invalid, configuration"),
    plain<&rtc::IRTCVideo::stopCloudProxy>("stopCloudProxy"),
    special("setLocalProxy", &setLocalProxy, {Kind::kArray}).refuses("%s(%d), Param is invalid, configurations"),

    plain<&rtc::IRTCVideo::getNetworkTimeInfo>("getNetworkTimeInfo"),
    plain<&rtc::IRTCVideo::setEncryptInfo>("setEncryptInfo"),
};

}  // namespace

std::span<const Row> networkRows() {
  return kRows;
}

}  // namespace corvane
