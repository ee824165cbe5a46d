// The living engines: made and ended by the library's entry points.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "objects/video.h"

namespace corvane::scripted {

class Engine {
 public:
  static Engine& instance();

  Video* make(rtc::IRTCVideoEventHandler* handler);
  /// Ends all engines. No callback is running or will come when this returns.
  void destroy();

 private:
  std::mutex mutex_;
  std::vector<std::shared_ptr<Video>> living_;
  int made_ = 0;
};

}  // namespace corvane::scripted
