// What the builders share: records whose keys stand in tables, image bytes, and who releases the parameter objects.
#pragma once

#include <memory>
#include <tuple>
#include <vector>

#include "binding/bytes.h"
#include "binding/from.h"
#include "binding/lists.h"

namespace corvane {

struct ReleaseParam {
  template <class Param>
  void operator()(Param* param) const {
    param->release();
  }
};

template <class Param>
using OwnedParam = std::unique_ptr<Param, ReleaseParam>;

/// A key of a JavaScript object and the field it fills.
template <class Record, class T>
struct Key {
  const char* name;
  T Record::*field;
};
template <class Record, class T>
Key(const char*, T Record::*) -> Key<Record, T>;

template <class T>
T convert(Reader& reader, napi_value value) {
  typename From<T>::Held held{};
  From<T>::read(reader, value, held);
  return From<T>::pass(held);
}

/// Reads every key, whatever its type: the host's error stays, and the field is 0 or false.
template <class Record, class... T>
void readAlways(Reader& reader, napi_value object, Record& record, const std::tuple<Key<Record, T>...>& keys) {
  const auto read = [&]<class U>(const Key<Record, U>& key) {
    record.*key.field = convert<U>(reader, reader.get(object, key.name));
  };
  std::apply([&](const auto&... key) { (read(key), ...); }, keys);
}

template <class T>
void readIfTyped(Reader& reader, napi_value object, const char* name, T& field) {
  napi_value value = reader.get(object, name);
  if (isKind(reader.env(), value, From<T>::kKind)) field = convert<T>(reader, value);
}

/// Reads the keys whose values have the type of their fields; the others leave their fields alone.
template <class Record, class... T>
void readTyped(Reader& reader, napi_value object, Record& record, const std::tuple<Key<Record, T>...>& keys) {
  std::apply([&](const auto&... key) { (readIfTyped(reader, object, key.name, record.*key.field), ...); }, keys);
}

/// The same for texts, which `texts` keeps.
template <class Record, size_t N>
void readTypedTexts(Reader& reader, Texts& texts, napi_value object, Record& record,
                    const Key<Record, const char*> (&keys)[N]) {
  for (const auto& key : keys) {
    napi_value value = reader.get(object, key.name);
    if (isKind(reader.env(), value, Kind::kString)) record.*key.field = texts.keep(reader.string(value));
  }
}

/// The value of `name` if it is an object, or null.
inline napi_value objectOrNull(Reader& reader, napi_value object, const char* name) {
  napi_value value = reader.get(object, name);
  return isKind(reader.env(), value, Kind::kObject) ? value : nullptr;
}

/// Calls `read(element, region)` for each element of a list. The host's handles of an element end with its turn; one
/// that must live until the end of the call is answered by `read`, which answers null otherwise. `keep(index, handle)`
/// gets it.
template <class Region, class Read, class Keep>
void eachRegion(Reader& reader, napi_value list, std::vector<Region>& regions, Read read, Keep keep) {
  for (uint32_t i = 0; i < regions.size(); ++i) {
    Napi::EscapableHandleScope scope(reader.env());
    napi_value handle = read(reader.at(list, i), regions[i]);
    if (handle != nullptr) keep(i, static_cast<napi_value>(scope.Escape(handle)));
  }
}

template <class Region, class Read>
void eachRegion(Reader& reader, napi_value list, std::vector<Region>& regions, Read read) {
  for (uint32_t i = 0; i < regions.size(); ++i) {
    const Napi::HandleScope scope(reader.env());
    read(reader.at(list, i), regions[i]);
  }
}

/// The typed arrays behind the images of regions. Their bytes are looked up once all properties have been read: a
/// getter may run code that takes the memory away.
class RegionImages {
 public:
  void keep(uint32_t region, napi_value array) { images_.push_back({region, array}); }

  /// Fills in pointers and sizes; false, with `refusal` in the log, for more bytes than the engine counts.
  template <class Region>
  bool resolve(const Call& call, Reader& reader, std::vector<Region>& regions, const uint8_t* Region::*data,
               int32_t Region::*size, const char* refusal) const {
    for (const Image& image : images_) {
      const Bytes bytes = reader.bytes(image.array);
      if (!isCountable(call, bytes, refusal)) return false;
      regions[image.region].*data = bytes.data;
      regions[image.region].*size = static_cast<int32_t>(bytes.size);
    }
    return true;
  }

 private:
  struct Image {
    uint32_t region;
    napi_value array;
  };
  std::vector<Image> images_;
};

}  // namespace corvane
