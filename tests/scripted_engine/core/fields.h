// The engine's records as tables of fields, read in both directions: a recorded call turns records into values, a fired
// event turns values into records.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "core/value.h"

namespace corvane::scripted {

/// One member of a record. `name` is the member's own name.
template <class R, class M>
struct Field {
  const char* name;
  M R::*member;
};
template <class R, class M>
Field(const char*, M R::*) -> Field<R, M>;

/// A pointer member and the member that counts what it points to.
template <class R, class E, class N>
struct ListField {
  const char* name;
  const E* R::*items;
  const char* count_name;
  N R::*count;
};
template <class R, class E, class N>
ListField(const char*, const E* R::*, const char*, N R::*) -> ListField<R, E, N>;

/// Specialised for every record: `static constexpr auto kFields = std::tuple{...}` in the order of the header.
template <class T>
struct Fields;

template <class T>
concept Record = requires {
  Fields<T>::kFields;
};

/// Owns what a callback's arguments point to. At its end everything is overwritten, and it is freed only after a while,
/// so that a handler that keeps a pointer reads garbage instead of what it expects. AddressSanitizer builds free at
/// once.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;
  ~Arena();

  /// Zeroed room for `count` trivially destructible values; never null.
  template <class T>
  T* make(size_t count) {
    static_assert(std::is_trivially_destructible_v<T>);
    const size_t size = count == 0 ? 1 : count * sizeof(T);
    void* block = std::calloc(1, size);
    blocks_.emplace_back(block, size);
    return static_cast<T*>(block);
  }

  uint8_t* bytes(const Value::Bytes& bytes) {
    auto* copy = make<uint8_t>(bytes.size());
    if (!bytes.empty()) {
      std::memcpy(copy, bytes.data(), bytes.size());
    }
    return copy;
  }

  /// Null for null. Bytes stand for text that is not UTF-8.
  const char* text(const Value& value);

 private:
  std::vector<std::pair<void*, size_t>> blocks_;
};

// Records to values.

template <class T>
Value toValue(const T& item);

/// Null for a null pointer; a count below zero gives an empty list.
template <class E>
Value listToValue(const E* items, int64_t count) {
  if (items == nullptr) {
    return {};
  }
  const auto size = static_cast<size_t>(count > 0 ? count : 0);
  if constexpr (std::is_same_v<E, uint8_t>) {
    return Value::Bytes(items, items + size);
  } else {
    Value::List list;
    list.reserve(size);
    for (size_t i = 0; i < size; ++i) {
      list.push_back(toValue(items[i]));
    }
    return list;
  }
}

template <class R, class M>
void addField(Value::Members& members, const R& record, const Field<R, M>& field) {
  members.emplace_back(field.name, toValue(record.*field.member));
}

template <class R, class E, class N>
void addField(Value::Members& members, const R& record, const ListField<R, E, N>& field) {
  members.emplace_back(field.name, listToValue(record.*field.items, record.*field.count));
  members.emplace_back(field.count_name, Value(record.*field.count));
}

template <class T>
Value toValue(const T& item) {
  if constexpr (Record<T>) {
    Value::Members members;
    std::apply([&](const auto&... field) { (addField(members, item, field), ...); }, Fields<T>::kFields);
    return members;
  } else if constexpr (std::is_array_v<T>) {
    return listToValue(item, static_cast<int64_t>(std::extent_v<T>));
  } else if constexpr (std::is_arithmetic_v<T> || std::is_convertible_v<T, const char*> || std::is_same_v<T, Value>) {
    return Value(item);
  } else {
    static_assert(std::is_pointer_v<T>, "a record without a table of fields");
    // Handlers and sinks: whether there was one.
    return item == nullptr ? Value() : Value(true);
  }
}

// Values to records.

template <class T>
void readValue(const Value& value, T& out, Arena& arena);

template <class R, class M>
bool readField(std::string_view name, const Value& value, R& record, const Field<R, M>& field, Arena& arena) {
  if (name != field.name) {
    return false;
  }
  readValue(value, record.*field.member, arena);
  return true;
}

template <class E>
const E* readList(const Value& value, int64_t& count, Arena& arena) {
  count = 0;
  if (value.isNull()) {
    return nullptr;
  }
  if constexpr (std::is_same_v<E, uint8_t>) {
    const auto* bytes = value.as<Value::Bytes>();
    if (bytes == nullptr) {
      throw BadRequest(std::string("expected bytes, found ") + value.kind());
    }
    count = static_cast<int64_t>(bytes->size());
    return arena.bytes(*bytes);
  } else {
    const auto& list = value.toList();
    E* items = arena.make<E>(list.size());
    for (size_t i = 0; i < list.size(); ++i) {
      items[i] = E{};
      readValue(list[i], items[i], arena);
    }
    count = static_cast<int64_t>(list.size());
    return items;
  }
}

template <class R, class E, class N>
bool readField(std::string_view name, const Value& value, R& record, const ListField<R, E, N>& field, Arena& arena) {
  if (name == field.count_name) {
    readValue(value, record.*field.count, arena);
    return true;
  }
  if (name != field.name) {
    return false;
  }
  int64_t count = 0;
  record.*field.items = readList<E>(value, count, arena);
  record.*field.count = static_cast<N>(count);
  return true;
}

/// Texts that a test leaves out are empty, not null.
template <class R, class F>
void clearText(R& record, const F& field) {
  if constexpr (requires { record.*field.member; }) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(record.*field.member)>, const char*>) {
      record.*field.member = "";
    }
  }
}

template <class T>
void readRecord(const Value& value, T& out, Arena& arena) {
  std::apply([&](const auto&... field) { (clearText(out, field), ...); }, Fields<T>::kFields);
  for (const auto& [name, member] : value.toMembers()) {
    const auto take = [&, &key = name, &content = member](const auto&... field) {
      return (readField(key, content, out, field, arena) || ...);
    };
    if (!std::apply(take, Fields<T>::kFields)) {
      throw BadRequest("the record has no field " + name);
    }
  }
}

template <class T>
void readValue(const Value& value, T& out, Arena& arena) {
  if constexpr (Record<T>) {
    if constexpr (requires { out = T{}; }) {
      out = T{};
    }
    readRecord(value, out, arena);
  } else if constexpr (std::is_array_v<T>) {
    const auto& list = value.toList();
    if (list.size() > std::extent_v<T>) {
      throw BadRequest("the list is too long for its array");
    }
    for (size_t i = 0; i < list.size(); ++i) {
      readValue(list[i], out[i], arena);
    }
  } else if constexpr (std::is_same_v<T, bool>) {
    out = value.toBool();
  } else if constexpr (std::is_same_v<T, const char*>) {
    out = arena.text(value);
  } else if constexpr (std::is_floating_point_v<T>) {
    out = static_cast<T>(value.toDouble());
  } else if constexpr (std::is_same_v<T, uint64_t>) {
    out = value.toUint64();
  } else {
    const int64_t number = value.toInt64();
    out = static_cast<T>(number);
    if (static_cast<int64_t>(out) != number) {
      throw BadRequest(std::to_string(number) + " does not fit its parameter");
    }
  }
}

}  // namespace corvane::scripted
