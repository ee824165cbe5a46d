// Faults of the engine, its logs, and the load on the machine.
#include "events/engine_handler.h"

namespace corvane {

void KavRTCVideoEventHandler::onWarning(int32_t warn) {
  const int32_t status = post(__func__, [warn](Payload& payload) { payload.put("warn", warn); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, warn: %d", __func__, __LINE__, status, warn);
}

void KavRTCVideoEventHandler::onError(int32_t err) {
  const int32_t status = post(__func__, [err](Payload& payload) { payload.put("err", err); });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, err: %d", __func__, __LINE__, status, err);
}

void KavRTCVideoEventHandler::onDeadLockError(const char* task_name, int32_t lasting_times) {
  const int32_t status = post(__func__, [task_name = owned(task_name), lasting_times](Payload& payload) {
    payload.put("task_name", task_name);
    payload.put("lasting_times", lasting_times);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, task_name: %s, lasting_times:%d", __func__, __LINE__, status,
           shown(task_name), lasting_times);
}

void KavRTCVideoEventHandler::onExtensionAccessError(const char* extension_name, const char* msg) {
  const int32_t status = post(__func__, [extension_name = owned(extension_name), msg = owned(msg)](Payload& payload) {
    payload.put("extension_name", extension_name);
    payload.put("msg", msg);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, extensionName:%s, msg:%s", __func__, __LINE__, status,
           shown(extension_name), shown(msg));
}

void KavRTCVideoEventHandler::onLogReport(const char* log_type, const char* log_content) {
  const int32_t status =
      post(__func__, [log_type = owned(log_type), log_content = owned(log_content)](Payload& payload) {
        payload.put("log_type", log_type);
        payload.put("log_content", log_content);
      });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, log_type:%s, log_content:%s", __func__, __LINE__, status, shown(log_type),
           shown(log_content));
}

void KavRTCVideoEventHandler::onSysStats(const rtc::SysStats& stats) {
  const int32_t status = post(__func__, [stats](Payload& payload) {
    payload.put("cpu_cores", stats.cpu_cores);
    payload.put("cpu_app_usage", stats.cpu_app_usage);
    payload.put("cpu_total_usage", stats.cpu_total_usage);
    payload.put("memory_usage", stats.memory_usage);
    payload.put("full_memory", stats.full_memory);
    payload.put("total_memory_usage", stats.total_memory_usage);
    payload.put("free_memory", stats.free_memory);
    payload.put("memory_ratio", stats.memory_ratio);
    payload.put("total_memory_ratio", stats.total_memory_ratio);
  });
  LogWrite(kLogInfo,
           "%s(%d), n_status: %d, cpu_cores:%d, cpu_app_usage:%lf, cpu_total_usage:%lf, memory_usage:%lf, "
           "full_memory:%lld, total_memory_usage:%lld",
           __func__, __LINE__, status, stats.cpu_cores, stats.cpu_app_usage, stats.cpu_total_usage, stats.memory_usage,
           static_cast<long long>(stats.full_memory), static_cast<long long>(stats.total_memory_usage));
}

void KavRTCVideoEventHandler::onPerformanceAlarms(const char* room_id, int32_t mode, int32_t reason,
                                                  const rtc::SourceWantedData& data) {
  const int32_t status = post(__func__, [room_id = owned(room_id), mode, reason, data](Payload& payload) {
    payload.put("mode", mode);
    payload.put("room_id", room_id);
    payload.put("reason", reason);
    payload.object("data", [&](Payload& object) {
      object.put("width", data.width);
      object.put("height", data.height);
      object.put("frame_rate", data.frame_rate);
    });
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, room_id:%s, mode:%d, reason:%d", __func__, __LINE__, status, shown(room_id),
           mode, reason);
}

void KavRTCVideoEventHandler::onSimulcastSubscribeFallback(const rtc::RemoteStreamSwitch& event) {
  const int32_t status = post(__func__, [event, uid = owned(event.uid)](Payload& payload) {
    payload.put("uid", uid);
    payload.put("is_screen", event.is_screen);
    payload.put("before_video_index", event.before_video_index);
    payload.put("after_video_index", event.after_video_index);
    payload.put("before_enable", event.before_enable);
    payload.put("after_enable", event.after_enable);
    payload.put("reason", event.reason);
  });
  LogWrite(kLogInfo, "%s(%d), n_status: %d, uid:%s, reason:%d", __func__, __LINE__, status, shown(event.uid),
           event.reason);
}

}  // namespace corvane
