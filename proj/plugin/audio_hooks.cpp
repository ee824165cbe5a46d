// The sound's way through a plug-in: on the engine's own threads, in place. The plug-in's mutex is not taken, since a
// picture holds it for many milliseconds.
#include <cstddef>

#include "log/log.h"
#include "plugin/plugin_logs.h"
#include "plugin/plugin_manager.h"

namespace corvane {
namespace {

static_assert(sizeof(plugin::StreamKey) == sizeof(rtc::StreamKey) &&
              offsetof(plugin::StreamKey, user_id) == offsetof(rtc::StreamKey, user_id) &&
              offsetof(plugin::StreamKey, stream_index) == offsetof(rtc::StreamKey, stream_index));

AudioCallCounter playback_calls(500);
AudioCallCounter remote_user_calls(1000);
AudioCallCounter screen_calls(100);

void logCall(AudioCallCounter& calls, const char* hook, int32_t line, const rtc::IAudioFrame* frame) {
  if (!calls.advance() || frame == nullptr) return;
  LogWrite(kLogInfo, "%s::%s(%d). sample_rate:%d,channel:%d", kPluginManagerName, hook, line, frame->sampleRate(),
           frame->channels());
}

}  // namespace

template <class Process>
int32_t PluginManager::processAudio(const rtc::IAudioFrame* audio_frame, Process process) const {
  plugin::IPlugin* instance = plugin_.instance;
  if (instance == nullptr || audio_frame == nullptr) return 0;
  plugin::AudioFrame record{audio_frame->timestampUs(), audio_frame->sampleRate(), audio_frame->channels(),
                            audio_frame->data(), audio_frame->dataSize()};
  process(*instance, record);
  return 0;
}

// The record hook has a period of 500 calls as well, but it never counts them: it is not logged.
int32_t PluginManager::onProcessRecordAudioFrame(rtc::IAudioFrame* audio_frame) {
  return processAudio(audio_frame, [](auto& plugin, auto& record) { plugin.processRecordAudioFrame(&record); });
}

int32_t PluginManager::onProcessPlayBackAudioFrame(rtc::IAudioFrame* audio_frame) {
  logCall(playback_calls, __func__, __LINE__, audio_frame);
  return processAudio(audio_frame, [](auto& plugin, auto& record) { plugin.processPlaybackAudioFrame(&record); });
}

int32_t PluginManager::onProcessRemoteUserAudioFrame(const rtc::StreamKey& stream_info, rtc::IAudioFrame* audio_frame) {
  logCall(remote_user_calls, __func__, __LINE__, audio_frame);
  const plugin::StreamKey stream{stream_info.room_id, stream_info.user_id, stream_info.stream_index};
  return processAudio(audio_frame,
                      [&stream](auto& plugin, auto& record) { plugin.processRemoteUserAudioFrame(stream, &record); });
}

int32_t PluginManager::onProcessScreenAudioFrame(rtc::IAudioFrame* audio_frame) {
  logCall(screen_calls, __func__, __LINE__, audio_frame);
  return processAudio(audio_frame, [](auto& plugin, auto& record) { plugin.processScreenAudioFrame(&record); });
}

}  // namespace corvane
