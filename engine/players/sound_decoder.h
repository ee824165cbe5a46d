// Decodes a file, or what stands at an address, into sound that players can use.
#pragma once

#include <gst/app/app.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "capture/pipeline.h"
#include "core/engine_context.h"
#include "corvane_rtc/audio_effect_player.h"
#include "players/pcm.h"

namespace corvane::rtc {

/// Why a file cannot be played.
struct DecodingFault {
  PlayerError error;
  std::string text;  ///< for the log
};

/// Engine thread.
class SoundDecoder {
 public:
  /// Called on the engine thread, never from within a call into the decoder. It may destroy the decoder.
  class Listener {
   public:
    /// What is in it is known; nothing is decoded before run(). Milliseconds, -1 where it does not say.
    virtual void onDecoderReady(int64_t duration_ms, int32_t tracks) = 0;
    /// At most once, and the last call.
    virtual void onDecoderFailed(const DecodingFault& fault) = 0;
    /// Everything was written, as often as asked for.
    virtual void onDecoderEnded() {}
    /// It goes on from where it was.
    virtual void onSeekFailed() {}

   protected:
    ~Listener() = default;
  };

  /// `path`: of a file, or an http(s) address; play_count: 0 or less for ever.
  SoundDecoder(EngineContext& context, std::string path, int32_t play_count, std::shared_ptr<PcmSink> sink,
               Listener& listener);
  /// The sink must not be waiting for room for ever.
  ~SoundDecoder();
  SoundDecoder(const SoundDecoder&) = delete;
  SoundDecoder& operator=(const SoundDecoder&) = delete;

  void open();
  /// Once, when ready. start_ms: within the media.
  void run(int64_t start_ms);
  void seek(int64_t ms);
  /// From there on. track: 0 to tracks - 1.
  void selectTrack(int32_t track, int64_t ms);

 private:
  bool build();
  bool seekTo(int64_t ms);
  void onMessage(GstMessage* message);
  void onPrerolled();
  void onPassEnded();
  void onStream(GstPad* pad);
  void onStreamsKnown();
  GstFlowReturn onSample(GstPtr<GstSample> sample);
  void fail(PlayerError error, std::string text);

  EngineContext& context_;
  const std::string path_;
  int32_t passes_left_;  // below 0 for ever
  const std::shared_ptr<PcmSink> sink_;
  Listener& listener_;
  const std::shared_ptr<void> alive_ = std::make_shared<char>();
  Pipeline pipeline_;
  GstElement* selector_ = nullptr;
  GstAppSink* end_ = nullptr;
  AttachedSource watch_;
  std::string missing_decoder_;
  bool ready_ = false;
  bool failed_ = false;

  std::mutex tracks_mutex_;
  std::vector<GstPtr<GstPad>> tracks_;  // of the selector
  std::atomic<bool> winding_back_ = false;
  std::atomic<int64_t> pass_frames_ = 0;
};

}  // namespace corvane::rtc
