// A service on the loopback interface that says what a test wants, over real sockets.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace corvane::test {

/// What the service does: texts that it sends, then perhaps the end of the connection.
struct ServiceAnswer {
  std::vector<std::string> texts;
  bool hang_up = false;
};

class FakeService {
 public:
  /// Called for each text of a connection's, and with "" when it opens; connections count from 1. On the service's
  /// thread.
  using Script = std::function<ServiceAnswer(int connection, const std::string& text)>;

  explicit FakeService(Script script);
  ~FakeService();
  FakeService(const FakeService&) = delete;
  FakeService& operator=(const FakeService&) = delete;

  std::string url() const { return "ws://127.0.0.1:" + std::to_string(port_); }

 private:
  struct Loop;

  std::unique_ptr<Loop> loop_;
  int port_ = 0;
  std::thread thread_;
};

/// What a server answers that has nothing against it, by the request's kind. Rooms are there, with `members` in them,
/// each of which sends one video; messages are refused.
class WillingService {
 public:
  explicit WillingService(std::vector<std::string> members = {}) : members_(std::move(members)) {}
  std::vector<std::string> answer(const std::string& request);

  /// The offer for a subscription to a member.
  std::function<std::string(const std::string& member)> offer;

 private:
  const std::vector<std::string> members_;
  int64_t last_id_ = 0;
};

}  // namespace corvane::test
