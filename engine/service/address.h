// Where a service is.
#pragma once

#include <optional>
#include <string>

namespace corvane::rtc {

struct ServiceAddress {
  std::string url;     ///< "ws://host:port" or "wss://host:port"
  std::string secret;  ///< that requests carry; "" for none
  bool on_loopback = false;
};

/// Asked before each attempt to connect: a service of the machine's own may have to be started first.
class AddressSource {
 public:
  struct Problem {
    std::string text;
    bool passing = false;  ///< worth another try at once
  };

  virtual ~AddressSource() = default;
  /// Empty, with the reason, when there is no such service. Does not wait.
  virtual std::optional<ServiceAddress> locate(Problem& problem) = 0;
  /// For logs.
  virtual const std::string& name() const = 0;
};

/// A service that the application names.
class NamedService final : public AddressSource {
 public:
  explicit NamedService(std::string url);
  /// Empty for what is no address.
  std::optional<ServiceAddress> locate(Problem& problem) override;
  const std::string& name() const override { return address_.url; }

 private:
  ServiceAddress address_;
};

}  // namespace corvane::rtc
