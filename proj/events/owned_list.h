// Own copies of the lists that engine callbacks lend.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace corvane {

/// Copies a list of records that the engine lends for the length of a callback; `own` makes the owned form of one.
/// Null and negative counts give an empty list.
template <class Record, class Own>
auto ownedList(const Record* records, int32_t count, Own own) {
  std::vector<std::decay_t<std::invoke_result_t<Own, const Record&>>> copies;
  if (records == nullptr || count <= 0) return copies;
  copies.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) copies.push_back(own(records[i]));
  return copies;
}

/// The same for records that hold no pointers.
template <class Record>
std::vector<Record> ownedList(const Record* records, int32_t count) {
  if (records == nullptr || count <= 0) return {};
  return std::vector<Record>(records, records + count);
}

}  // namespace corvane
