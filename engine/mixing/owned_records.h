// Copies of records together with the texts and bytes that they point to.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace corvane::rtc {

/// Null text becomes "".
inline std::string textOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

template <class Record>
class OwnedRecords {
 public:
  OwnedRecords() = default;
  OwnedRecords(const OwnedRecords&) = delete;
  OwnedRecords& operator=(const OwnedRecords&) = delete;

  /// Replaces what is held. kTexts: the record's members of type const char*. Null records are none.
  template <auto... kTexts>
  void assign(const Record* records, int32_t count) {
    clear();
    for (int32_t index = 0; records != nullptr && index < count; ++index) {
      Record& copy = records_.emplace_back(records[index]);
      ((copy.*kTexts = texts_.emplace_back(textOrEmpty(copy.*kTexts)).c_str()), ...);
    }
  }

  /// After assign(): also copies the bytes that kData points to, kSize of them; none where there is nothing.
  template <auto kData, auto kSize>
  void keepBytes() {
    for (Record& record : records_) {
      if (record.*kData == nullptr || record.*kSize <= 0) {
        record.*kData = nullptr;
        record.*kSize = 0;
      } else {
        record.*kData = bytes_.emplace_back(record.*kData, record.*kData + record.*kSize).data();
      }
    }
  }

  const std::vector<Record>& records() const { return records_; }

 private:
  void clear() {
    records_.clear();
    texts_.clear();
    bytes_.clear();
  }

  std::vector<Record> records_;
  // Their elements stay where they are, as the records point to them.
  std::deque<std::string> texts_;
  std::deque<std::vector<uint8_t>> bytes_;
};

}  // namespace corvane::rtc
