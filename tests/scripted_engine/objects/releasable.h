// What a caller must give back with release(): the base, and the lists that enumerations answer.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "core/graveyard.h"
#include "core/scripted_object.h"
#include "corvane_rtc/device_manager.h"
#include "corvane_rtc/screen_capture.h"
#include "corvane_rtc/sing_scoring.h"
#include "records/common.h"
#include "records/karaoke.h"
#include "records/video.h"

namespace corvane::scripted {

template <class I>
class Releasable : public I, public ScriptedObject {
 public:
  virtual ~Releasable() = default;

  void release() override {
    note("release");
    if (ended()) {
      ++ReleasableStatistics::instance().released_twice;
      return;
    }
    end();
    dropContents();
    ++ReleasableStatistics::instance().released;
    Graveyard::instance().take(std::shared_ptr<Releasable>(this));
  }

 protected:
  explicit Releasable(const char* interface_name) : ScriptedObject(interface_name) {
    ++ReleasableStatistics::instance().made;
  }
  /// What lived as long as the object, such as texts.
  virtual void dropContents() {}
};

/// Devices by name and id: answered as [{ device_name, device_id }], where a "result" other than 0 fails that one.
template <class I>
class DeviceCollection final : public Releasable<I> {
 public:
  DeviceCollection(const char* interface_name, const Value& devices)
      : Releasable<I>(interface_name), devices_(devices.toList()) {}

  int32_t getCount() override {
    const auto answer = this->answer("getCount");
    this->note("getCount");
    return answer ? resultFrom<int32_t>(*answer) : static_cast<int32_t>(devices_.size());
  }
  int32_t getDevice(int32_t index, char device_name[rtc::kDeviceTextSize],
                    char device_id[rtc::kDeviceTextSize]) override {
    this->note("getDevice", arg("index", index));
    if (index < 0 || static_cast<size_t>(index) >= devices_.size()) {
      return rtc::kInvalidParameter;
    }
    const Value& device = devices_[static_cast<size_t>(index)];
    TextOut{"device_name", device_name, rtc::kDeviceTextSize}.fill(device);
    TextOut{"device_id", device_id, rtc::kDeviceTextSize}.fill(device);
    return resultFrom<int32_t>(device);
  }

 private:
  Value::List devices_;
};

/// Records of one kind, with texts that end with the collection.
template <class I, class R>
class RecordCollection : public Releasable<I> {
 public:
  int32_t getCount() override {
    this->note("getCount");
    return static_cast<int32_t>(count_);
  }

 protected:
  RecordCollection(const char* interface_name, const Value& records)
      : Releasable<I>(interface_name), arena_(std::make_unique<Arena>()) {
    records_ = readList<R>(records.isNull() ? Value(Value::List{}) : records, count_, *arena_);
  }

  int32_t get(int32_t index, R& record) const {
    if (index < 0 || index >= count_ || arena_ == nullptr) {
      return rtc::kInvalidParameter;
    }
    record = records_[index];
    return rtc::kSuccess;
  }

 private:
  void dropContents() override { arena_.reset(); }

  std::unique_ptr<Arena> arena_;
  const R* records_ = nullptr;
  int64_t count_ = 0;
};

class ScreenSources final : public RecordCollection<rtc::IScreenCaptureSourceList, rtc::ScreenCaptureSourceInfo> {
 public:
  explicit ScreenSources(const Value& sources) : RecordCollection("IScreenCaptureSourceList", sources) {}
  int32_t getSourceInfo(int32_t index, rtc::ScreenCaptureSourceInfo& info) override {
    note("getSourceInfo", arg("index", index));
    return get(index, info);
  }
};

class StandardPitches final : public RecordCollection<rtc::IStandardPitchCollection, rtc::StandardPitchInfo> {
 public:
  explicit StandardPitches(const Value& notes) : RecordCollection("IStandardPitchCollection", notes) {}
  int32_t getStandardPitchInfo(int32_t index, rtc::StandardPitchInfo& info) override {
    note("getStandardPitchInfo", arg("index", index));
    return get(index, info);
  }
};

}  // namespace corvane::scripted
