// Cameras that deliver in their own time: synthetic pictures and Video4Linux devices.
#pragma once

#include <string>

#include "capture/video_source.h"
#include "devices/camera_format.h"
#include "devices/camera_id.h"

namespace corvane::rtc {

class LiveSource : public VideoSource {
 protected:
  using VideoSource::VideoSource;

 private:
  GstClockTime timeOf(const GstBuffer* picture, const GstSegment& segment) final;
  bool paced() const final { return false; }
  void onEnd() final;
};

class TestSource final : public LiveSource {
 public:
  TestSource(EngineContext& context, PictureQueue& queue, Listener& listener, TestCamera camera);
  ~TestSource() override { stop(); }

 private:
  std::optional<CaptureFault> build() override;

  const TestCamera camera_;
};

class DeviceSource final : public LiveSource {
 public:
  /// `formats`: what the device offers, or null when that is not known.
  DeviceSource(EngineContext& context, PictureQueue& queue, Listener& listener, std::string device_file,
               GstPtr<GstCaps> formats, const PictureShape& wanted);
  ~DeviceSource() override { stop(); }

 private:
  std::optional<CaptureFault> build() override;
  CaptureFault refine(CaptureFault fault) const override;

  const std::string device_file_;
  GstPtr<GstCaps> format_;
};

}  // namespace corvane::rtc
