// How each engine parameter type crosses over from JavaScript: `From<T>`. A type without an entry stops the build
// at the row that needs it. Records have their entries in a file per domain, next to this one.
#pragma once

#include <cstdint>

#include "binding/reader.h"

namespace corvane {

/// An entry has: kKind, what the argument is tested for; Held, what lives until the engine call returned;
/// read(), which fills it; pass(), what the engine gets; and said(), what log lines print of it.
template <class T>
struct From;

template <>
struct From<int32_t> {
  static constexpr Kind kKind = Kind::kNumber;
  static constexpr char kSaid = 'd';
  using Held = int32_t;
  static void read(Reader& reader, napi_value value, Held& held) { held = reader.int32(value); }
  static int32_t pass(const Held& held) { return held; }
  static int32_t said(const Held& held) { return held; }
};

template <>
struct From<uint32_t> {
  static constexpr Kind kKind = Kind::kNumber;
  static constexpr char kSaid = 'd';
  using Held = uint32_t;
  static void read(Reader& reader, napi_value value, Held& held) { held = reader.uint32(value); }
  static uint32_t pass(const Held& held) { return held; }
  static uint32_t said(const Held& held) { return held; }
};

template <>
struct From<double> {
  static constexpr Kind kKind = Kind::kNumber;
  static constexpr char kSaid = 'f';
  using Held = double;
  static void read(Reader& reader, napi_value value, Held& held) { held = reader.number(value); }
  static double pass(const Held& held) { return held; }
  static double said(const Held& held) { return held; }
};

template <>
struct From<float> {
  static constexpr Kind kKind = Kind::kNumber;
  static constexpr char kSaid = 'f';
  using Held = double;
  static void read(Reader& reader, napi_value value, Held& held) { held = reader.number(value); }
  static float pass(const Held& held) { return static_cast<float>(held); }
  static double said(const Held& held) { return held; }
};

template <>
struct From<bool> {
  static constexpr Kind kKind = Kind::kBoolean;
  static constexpr char kSaid = 'd';
  using Held = bool;
  static void read(Reader& reader, napi_value value, Held& held) { held = reader.boolean(value); }
  static bool pass(const Held& held) { return held; }
  static int said(const Held& held) { return held ? 1 : 0; }
};

template <>
struct From<const char*> {
  static constexpr Kind kKind = Kind::kString;
  static constexpr char kSaid = 's';
  using Held = Text;
  static void read(Reader& reader, napi_value value, Held& held) { reader.text(value, held); }
  static const char* pass(const Held& held) { return held.c_str(); }
  static const char* said(const Held& held) { return held.c_str(); }
};

/// Shared by the entries of records without texts and lists: what was read is what the engine gets.
template <class Record>
struct FlatRecord {
  static constexpr Kind kKind = Kind::kObject;
  static constexpr char kSaid = 'p';
  using Held = Record;
  static const Record& pass(const Held& held) { return held; }
  static const void* said(const Held& held) { return &held; }
};

/// One converted argument, for methods that convert by themselves. What `*` gives is valid as long as this lives.
template <class T>
class Argument {
 public:
  Argument(Reader& reader, napi_value value) { From<T>::read(reader, value, held_); }

  decltype(auto) operator*() const { return From<T>::pass(held_); }

 private:
  typename From<T>::Held held_{};
};

}  // namespace corvane
