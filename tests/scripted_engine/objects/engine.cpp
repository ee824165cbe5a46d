#include "objects/engine.h"

#include "core/attachments.h"
#include "core/engine_threads.h"
#include "core/graveyard.h"
#include "frames/streams.h"
#include "objects/rooms.h"

namespace corvane::scripted {

Engine& Engine::instance() {
  static auto* engine = new Engine;
  return *engine;
}

Video* Engine::make(rtc::IRTCVideoEventHandler* handler) {
  const std::lock_guard lock(mutex_);
  const std::string id = std::to_string(++made_);
  living_.push_back(std::make_shared<Video>(id));
  Attachments::instance().attach("IRTCVideoEventHandler", id, handler, nullptr);
  return living_.back().get();
}

void Engine::destroy() {
  std::vector<std::shared_ptr<Video>> ending;
  {
    const std::lock_guard lock(mutex_);
    ending.swap(living_);
  }
  if (ending.empty()) {
    return;
  }
  Attachments::instance().detachAll();
  Streams::instance().stop();
  EngineThreads::instance().join();
  Rooms::instance().outliveEngine();
  for (auto& video : ending) {
    video->endAll();
    Graveyard::instance().take(std::move(video));
  }
}

}  // namespace corvane::scripted
