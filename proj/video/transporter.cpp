#include "video/transporter.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "log/log.h"
#include "log/standard_output.h"
#include "platform/platform.h"
#include "video/frame_memory.h"
#include "video/frame_object.h"

namespace corvane {
namespace {

constexpr size_t kMaxQueuedFrames = 3;
constexpr double kPeriodMs = 16.666666;

constexpr const char* kEventNames[] = {"onLocalVideoFrame",   "onLocalScreenFrame",       "onRemoteVideoFrame",
                                       "onRemoteScreenFrame", "onPublicStreamVideoFrame", "onMixingVideoFrame"};

bool isStale(FrameSlot& slot) {
  if (slot.missed_rounds <= kMaxMissedRounds) return false;
  LogWrite(kLogInfo, "+%s(%d), count:%d", "checkVideoFrame", __LINE__, static_cast<int>(slot.missed_rounds));
  if (slot.frame != nullptr) {
    slot.frame.reset();
    LogWrite(kLogInfo, "-%s(%d), release frame", "checkVideoFrame", __LINE__);
  }
  LogWrite(kLogInfo, "-%s(%d)", "checkVideoFrame", __LINE__);
  return true;
}

// Like std::erase_if(), for conditions that change what they look at.
template <class Map, class Condition>
void eraseIf(Map& map, Condition condition) {
  for (auto at = map.begin(); at != map.end();) at = condition(*at) ? map.erase(at) : std::next(at);
}

}  // namespace

KavRTCTransporter& KavRTCTransporter::instance() {
  static auto* const transporter = new KavRTCTransporter;  // lives for the process, engine threads may outlast main()
  return *transporter;
}

void KavRTCTransporter::initialize(Napi::Env env, const Napi::Function& callback) {
  deinitialize();
  LogWrite(kLogInfo, "%s(%d)", "initialize", __LINE__);
  Channel channel = Channel::open(env, callback, "KavRTCVideoCallback", [](napi_env ending) {
    printLine("KavRTCTransporter tsfn Finalizer. ");
    instance().deinitialize();
    const std::lock_guard<std::mutex> lock(instance().mutex_);
    instance().buffers_.forget(ending);
  });
  {
    const std::lock_guard<std::mutex> lock(channel_mutex_);
    channel_ = std::move(channel);
  }
  const std::lock_guard<std::mutex> lock(pacing_mutex_);
  stopPacing();  // another environment, or a hook that the host ran for the new channel, may have started it by now
  stopped_.store(false);
  pacing_ = std::thread([this, generation = ++generation_] { flushVideoFrame(generation); });
  initialized_.store(true);
}

void KavRTCTransporter::deinitialize() {
  const std::lock_guard<std::mutex> lock(pacing_mutex_);
  if (!initialized_.load()) return;
  stopPacing();
  initialized_.store(false);
  printLine("KavRTCTransporter deinitialize.");
}

void KavRTCTransporter::stopPacing() {
  stopped_.store(true);
  if (pacing_.joinable()) pacing_.join();
}

int32_t KavRTCTransporter::postEvent(EventRecord record) {
  if (!initialized_.load(std::memory_order_relaxed)) return kPostCancelled;
  const std::lock_guard<std::mutex> lock(channel_mutex_);
  return channel_.post(std::move(record));
}

bool KavRTCTransporter::processVideoFrame(rtc::IVideoFrame* frame, int32_t kind, std::string_view key1,
                                          std::string_view key2, std::string_view key3, int32_t format) {
  static constexpr char kName[] = "processVideoFrame";
  FramePtr owner(frame);
  if (frame == nullptr || kind < kFrameLocalVideo || kind > kFrameMixing) {
    LogWrite(kLogInfo, "-%s(%d), video_frame is null_ptr: %d", kName, __LINE__, frame == nullptr ? 1 : 0);
    return false;
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  LogWrite(kLogDetail, "%s(%d), video_frame:%d, frame_type:%d, width:%d, height:%d, rotation:%d", kName, __LINE__, 1,
           kind, frame->width(), frame->height(), frame->rotation());

  FrameSlot slot;
  slot.kind = static_cast<FrameKind>(kind);
  slot.event_name = kEventNames[kind];
  slot.fresh = true;
  slot.format = format;
  slot.frame = std::move(owner);
  switch (slot.kind) {
    case kFrameLocalVideo:
    case kFrameLocalScreen:
      LogWrite(kLogDetail, "[Node], %s", slot.event_name);
      return enqueue(kind == kFrameLocalVideo ? local_video_ : local_screen_, std::move(slot));
    case kFrameRemoteVideo:
    case kFrameRemoteScreen: {
      slot.channel_id = key1;
      slot.user_id = key2;
      LogWrite(kLogDetail, "[Node], %s, roomId:%s, userId:%s", slot.event_name, slot.channel_id.c_str(),
               slot.user_id.c_str());
      RemoteQueues& rooms = kind == kFrameRemoteVideo ? remote_video_ : remote_screen_;
      auto room = rooms.find(key1);
      if (room == rooms.end()) room = rooms.try_emplace(std::string(key1)).first;
      auto user = room->second.find(key2);
      if (user == room->second.end()) user = room->second.try_emplace(std::string(key2)).first;
      return enqueue(user->second, std::move(slot));
    }
    default:
      LogWrite(kLogDetail, "[Node], %s, key:%.*s", slot.event_name, static_cast<int>(key3.size()), key3.data());
      return replace(slot.kind == kFramePublicStream ? public_streams_ : mixing_, slot.kind, std::move(slot.frame),
                     key3, format);
  }
}

bool KavRTCTransporter::enqueue(SlotQueue& queue, FrameSlot slot) {
  const bool full = queue.size() >= kMaxQueuedFrames;
  if (full) {
    queue.pop_front();
    LogWrite(kLogInfo, "[Node], RELEASE FRAME");
  }
  queue.push_back(std::move(slot));
  return !full;
}

bool KavRTCTransporter::replace(KeyedSlots& slots, FrameKind kind, FramePtr frame, std::string_view key,
                                int32_t format) {
  auto found = slots.find(key);
  if (found == slots.end()) {
    found = slots.try_emplace(std::string(key)).first;
    FrameSlot& made = found->second;
    made.kind = kind;
    made.event_name = kEventNames[kind];
    made.task_id = key;
    if (kind == kFramePublicStream) made.public_stream_id = key;
  }
  FrameSlot& slot = found->second;
  const bool replaced = slot.fresh && slot.frame != nullptr;
  slot.frame = std::move(frame);
  slot.fresh = true;
  slot.format = format;
  slot.missed_rounds = 0;
  return !replaced;
}

void KavRTCTransporter::setVideoRenderFps(const char* from, int32_t fps) {
  // Compared unsigned: a negative rate counts as larger than any other.
  const auto wanted = static_cast<uint32_t>(fps);
  if (!initialized_.load(std::memory_order_relaxed) || wanted <= render_fps_.load(std::memory_order_relaxed)) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  render_fps_.store(wanted, std::memory_order_relaxed);
  LogWrite(kLogInfo, "%s(%d), from:%s, fps:%d", "setVideoRenderFps", __LINE__, from, fps);
}

void KavRTCTransporter::setLocalVideoBuffer(std::string stream_type, DestinationBuffer buffer) {
  const std::lock_guard<std::mutex> lock(mutex_);
  buffers_.setLocal(std::move(stream_type), std::move(buffer));
}

void KavRTCTransporter::setRemoteVideoBuffer(std::string user_id, std::string stream_type, DestinationBuffer buffer) {
  const std::lock_guard<std::mutex> lock(mutex_);
  buffers_.setRemote(std::move(user_id), std::move(stream_type), std::move(buffer));
}

void KavRTCTransporter::setVideoRotation(bool apply) {
  apply_rotation_ = apply;
  LogWrite(kLogInfo, "%s(%d), videoRotation: %d", "setVideoRotation", __LINE__, apply ? 1 : 0);
}

void KavRTCTransporter::flushVideoFrame(uint32_t generation) {
  using Clock = std::chrono::steady_clock;
  platform::nameCurrentThread("frame-pacing");
  LogWrite(kLogInfo, "%s(%d), %d", "flushVideoFrame", __LINE__, static_cast<int>(render_fps_.load()));
  for (uint32_t round = 0; !stopped_.load(); ++round) {
    const auto start = Clock::now();
    checkVideoFrames();
    if (round % 64 == 0) freeUnusedFrameMemory();
    postEvent(EventRecord::callable([this, generation](napi_env env, napi_value function) {
      // What is left in the queue of an earlier channel must not hand the next one's frames to the old callback.
      if (generation == generation_) deliverBatch(env, function);
    }));
    const double elapsed = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    const double wait = kPeriodMs - elapsed + 0.5;
    if (wait >= 1) std::this_thread::sleep_for(std::chrono::milliseconds(static_cast<int>(wait)));
  }
}

// Drops what JavaScript has not taken for too long.
void KavRTCTransporter::checkVideoFrames() {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto check_queue = [](SlotQueue& queue) {
    queue.erase(std::remove_if(queue.begin(), queue.end(), &isStale), queue.end());
  };
  const auto check_keyed = [](KeyedSlots& slots) { eraseIf(slots, [](auto& entry) { return isStale(entry.second); }); };
  const auto check_remote = [&](RemoteQueues& rooms) {
    eraseIf(rooms, [&](auto& room) {
      eraseIf(room.second, [&](auto& user) {
        check_queue(user.second);
        return user.second.empty();
      });
      return room.second.empty();
    });
  };
  check_queue(local_video_);
  check_queue(local_screen_);
  check_remote(remote_video_);
  check_remote(remote_screen_);
  check_keyed(mixing_);
  check_keyed(public_streams_);
}

// One delivery on the JavaScript thread.
class KavRTCTransporter::Batch {
 public:
  Batch(napi_env env, FrameObjectContext context) : env_(env), context_(context) {}

  void add(SlotQueue& queue) {
    queue.erase(std::remove_if(queue.begin(), queue.end(), [this](FrameSlot& slot) { return add(slot); }), queue.end());
  }
  void add(RemoteQueues& rooms) {
    for (auto& room : rooms) {
      for (auto& user : room.second) add(user.second);
    }
  }
  void add(KeyedSlots& slots) {
    for (auto& entry : slots) add(entry.second);
  }

  uint32_t count() const { return count_; }
  napi_value group() const { return group_; }

 private:
  bool add(FrameSlot& slot) {
    napi_value object = buildFrameObject(context_, slot);
    if (object == nullptr) {
      ++slot.missed_rounds;
      return false;
    }
    if (group_ == nullptr && napi_create_array(env_, &group_) != napi_ok) return true;
    napi_set_element(env_, group_, count_++, object);
    return true;
  }

  napi_env env_;
  FrameObjectContext context_;
  napi_value group_ = nullptr;
  uint32_t count_ = 0;
};

void KavRTCTransporter::deliverBatch(napi_env env, napi_value function) {
  Batch batch(env, {env, buffers_, event_handler_, apply_rotation_});
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    batch.add(local_video_);
    batch.add(local_screen_);
    batch.add(remote_video_);
    batch.add(remote_screen_);
    batch.add(mixing_);
    batch.add(public_streams_);
  }
  LogWrite(kLogDetail, "[Node], +callback, index:%d, fps:%d", static_cast<int>(batch.count()),
           static_cast<int>(render_fps_.load(std::memory_order_relaxed)));
  if (batch.count() > 0) {
    // Outside the lock: the callback may well call methods that need it.
    Payload message(env);
    message.put("type", makeText(env, "GroupVideoFrame"));
    message.put("group", batch.group());
    message.deliver(function);
  }
  LogWrite(kLogDetail, "[Node], -callback");
}

}  // namespace corvane
