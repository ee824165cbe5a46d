// The Janus server of this machine's user: started by the first engine that needs it, used by all, and ended when the
// last of them has gone, however it went.
#pragma once

#include <string>

#include "core/engine_log.h"
#include "service/address.h"

namespace corvane::rtc {

/// A folder that only the user can read holds the server's address, its secret and three locks:
/// - "lock": held while a process looks whether the server runs, and starts it;
/// - "alive": held by the server as long as it runs;
/// - "users": held, shared, by each engine as long as it lives; the server waits for it, alone, and then ends.
/// The system lets go of the locks of a process that dies.
class LocalService final : public AddressSource {
 public:
  explicit LocalService(EngineLog& log);
  ~LocalService() override;

  /// Starts the server when it does not run; it takes a moment until it answers.
  std::optional<ServiceAddress> locate(Problem& problem) override;
  const std::string& name() const override { return name_; }

 private:
  bool openFolder(Problem& problem) const;
  bool becomeUser(Problem& problem);
  bool start(int alive, Problem& problem);
  std::optional<ServiceAddress> readAddress(Problem& problem) const;

  EngineLog& log_;
  const std::string name_ = "of this machine";
  std::string folder_;
  int users_ = -1;
};

}  // namespace corvane::rtc
