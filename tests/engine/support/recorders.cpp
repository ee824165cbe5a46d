#include "support/recorders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace corvane::test {

namespace {

std::string sizeText(const rtc::VideoFrameInfo& info) {
  return std::to_string(info.width) + "x" + std::to_string(info.height);
}

}  // namespace

void EventRecorder::onError(int32_t err) {
  add("error " + std::to_string(err));
}

void EventRecorder::onVideoDeviceStateChanged(const char* device_id, int32_t device_type, int32_t device_state,
                                              int32_t device_error) {
  const bool is_screen = device_type == rtc::kVideoDeviceTypeScreenCapture;
  if (!is_screen && device_type != rtc::kVideoDeviceTypeCapture) return add("device of a wrong type");
  add((is_screen ? "screen-device " : "device ") + std::string(device_id) + " " + std::to_string(device_state) + " " +
      std::to_string(device_error));
}

void EventRecorder::onLocalVideoStateChanged(int32_t stream_index, int32_t state, int32_t error) {
  add("stream " + std::to_string(stream_index) + " " + std::to_string(state) + " " + std::to_string(error));
}

void EventRecorder::onFirstLocalVideoFrameCaptured(int32_t index, const rtc::VideoFrameInfo& info) {
  add("first " + std::to_string(index) + " " + sizeText(info));
}

void EventRecorder::onLocalVideoSizeChanged(int32_t index, const rtc::VideoFrameInfo& info) {
  add("size " + std::to_string(index) + " " + sizeText(info));
}

void EventRecorder::onAudioDeviceStateChanged(const char* device_id, int32_t device_type, int32_t device_state,
                                              int32_t device_error) {
  const char* kind = "speaker ";
  if (device_type == rtc::kAudioDeviceTypeCapture) kind = "microphone ";
  if (device_type == rtc::kAudioDeviceTypeScreenCapture) kind = "screen-sound ";
  add(kind + std::string(device_id) + " " + std::to_string(device_state) + " " + std::to_string(device_error));
}

void EventRecorder::onAudioDeviceWarning(const char* device_id, int32_t device_type, int32_t device_warning) {
  add("warning " + std::string(device_id) + " " + std::to_string(device_type) + " " + std::to_string(device_warning));
}

void EventRecorder::onAudioDeviceVolumeChanged(int32_t device_type, int32_t volume, bool muted) {
  add("volume " + std::to_string(device_type) + " " + std::to_string(volume) + " " + std::to_string(muted ? 1 : 0));
}

void EventRecorder::onLocalAudioStateChanged(int32_t state, int32_t error) {
  add("sound " + std::to_string(state) + " " + std::to_string(error));
}

void EventRecorder::onFirstLocalAudioFrame(int32_t index) {
  add("first sound " + std::to_string(index));
}

void EventRecorder::onLocalAudioPropertiesReport(const rtc::LocalAudioPropertiesInfo* infos, int32_t count) {
  {
    const std::lock_guard lock(mutex_);
    reports_.emplace_back(infos, infos + count);
  }
  changed_.notify_all();
}

void EventRecorder::onRemoteAudioPropertiesReport(const rtc::RemoteAudioPropertiesInfo*, int32_t count,
                                                  int32_t total_remote_volume) {
  if (count != 0 || total_remote_volume != 0) return add("remote sound from nowhere");
  const std::lock_guard lock(mutex_);
  ++remote_reports_;
}

bool EventRecorder::waitForReport(
    const std::function<bool(const std::vector<rtc::LocalAudioPropertiesInfo>&)>& wanted) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, [&] {
    while (!reports_.empty()) {
      const bool found = wanted(reports_.front());
      reports_.pop_front();
      if (found) return true;
    }
    return false;
  });
}

bool EventRecorder::waitForLevel(int32_t decibels) {
  return waitForReport([decibels](const std::vector<rtc::LocalAudioPropertiesInfo>& infos) {
    return infos.size() == 1 && std::abs(infos[0].audio_properties_info.nonlinear_volume - decibels) <= 1;
  });
}

size_t EventRecorder::remoteReports() {
  const std::lock_guard lock(mutex_);
  return remote_reports_;
}

bool EventRecorder::waitFor(const std::string& event) {
  std::unique_lock lock(mutex_);
  const auto find = [&] { return std::find(unseen_.begin(), unseen_.end(), event); };
  if (!changed_.wait_for(lock, kPatience, [&] { return find() != unseen_.end(); })) {
    std::string unseen = "instead of \"" + event + "\" there came:";
    for (const std::string& other : unseen_) unseen += "\n  " + other;
    ADD_FAILURE() << unseen;
    return false;
  }
  unseen_.erase(unseen_.begin(), std::next(find()));
  return true;
}

std::vector<std::string> EventRecorder::all() {
  const std::lock_guard lock(mutex_);
  return events_;
}

size_t EventRecorder::count() {
  return all().size();
}

void EventRecorder::add(std::string event) {
  {
    const std::lock_guard lock(mutex_);
    unseen_.push_back(event);
    events_.push_back(std::move(event));
  }
  changed_.notify_all();
}

bool RecordingSink::onFrame(rtc::IVideoFrame* frame) {
  SeenFrame seen = {frame->pixelFormat(),  frame->width(),       frame->height(),
                    frame->planeStride(0), frame->timestampUs(), {}};
  const int32_t pixel_bytes = frame->pixelFormat() == rtc::kVideoPixelFormatI420 ? 1 : 4;
  const uint8_t* middle = frame->planeData(0) + static_cast<ptrdiff_t>(frame->height() / 2) * frame->planeStride(0) +
                          static_cast<ptrdiff_t>(frame->width() / 2) * pixel_bytes;
  seen.middle.assign(middle, middle + 4);
  {
    const std::lock_guard lock(mutex_);
    frames_.push_back(std::move(seen));
    if (held_.size() < hold_) {
      held_.push_back(frame);
      frame = nullptr;
    }
  }
  changed_.notify_all();
  if (frame != nullptr) frame->release();
  return true;
}

bool RecordingSink::waitFor(const std::function<bool(const std::vector<SeenFrame>&)>& enough) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, [&] { return enough(frames_); });
}

bool RecordingSink::waitForFrames(size_t count) {
  return waitFor([count](const std::vector<SeenFrame>& frames) { return frames.size() >= count; });
}

std::vector<SeenFrame> RecordingSink::frames() {
  const std::lock_guard lock(mutex_);
  return frames_;
}

std::vector<rtc::IVideoFrame*> RecordingSink::takeHeld() {
  const std::lock_guard lock(mutex_);
  std::vector<rtc::IVideoFrame*> held(held_.begin(), held_.end());
  held_.clear();
  return held;
}

void RecordingSink::releaseHeld() {
  for (rtc::IVideoFrame* frame : takeHeld()) frame->release();
}

}  // namespace corvane::test
