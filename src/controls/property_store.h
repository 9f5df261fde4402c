// The property store of a window: the design-time settings of the controls
// placed on it, as key/value pairs. Keys are matched without regard to case
// and keep the spelling they were first written with. A control reads each
// of its settings with a default for a missing key, and writes a setting
// only when it differs from its default (a value equal to the default
// removes the key, so the store holds exactly what a fresh save would).
//
// Values are Booleans, whole numbers (32-bit numbers and colours alike, so
// a colour kept as a negative 32-bit number such as -2147483633 still reads
// as &H8000000F), texts, fonts and pictures. A read of the wrong kind
// converts where the conversion is plain (the words "True" and "False",
// decimal or "&H" hexadecimal text, a number as a Boolean) and otherwise
// quietly gives the default.
//
//   PropertyStore store{{"Style", 10}, {"Caption", "&Start"}};
//   store.ReadLong("style", 3);            // 10
//   store.WriteString("Caption", "", "");  // removes "Caption"
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/font_spec.h"
#include "platform/ole_color.h"

namespace qm {

// A picture held by a control: a platform icon handle, not owned by the
// store or the control (0 is the empty picture).
struct Picture {
  std::uintptr_t handle = 0;

  bool Empty() const { return handle == 0; }
  friend bool operator==(const Picture&, const Picture&) = default;
};

class PropertyStore {
 public:
  using Value = std::variant<bool, std::int64_t, std::string, FontSpec, Picture>;

  // One entry as written in an initializer list: any whole number, text,
  // Boolean, font or picture.
  struct Entry {
    Entry(std::string_view k, bool v) : key(k), value(v) {}
    Entry(std::string_view k, int v) : key(k), value(std::int64_t{v}) {}
    Entry(std::string_view k, std::int64_t v) : key(k), value(v) {}
    Entry(std::string_view k, std::uint32_t v) : key(k), value(std::int64_t{v}) {}
    Entry(std::string_view k, const char* v) : key(k), value(std::string(v)) {}
    Entry(std::string_view k, std::string v) : key(k), value(std::move(v)) {}
    Entry(std::string_view k, FontSpec v) : key(k), value(std::move(v)) {}
    Entry(std::string_view k, Picture v) : key(k), value(v) {}
    std::string key;
    Value value;
  };

  PropertyStore() = default;
  PropertyStore(std::initializer_list<Entry> entries);

  bool Has(std::string_view key) const { return Find(key) != nullptr; }
  const Value* Find(std::string_view key) const;
  std::size_t Size() const { return entries_.size(); }
  // The keys, spelt as first written, in the order of their lower-case forms.
  std::vector<std::string> Keys() const;

  // Puts a value under a key, replacing any value of the key.
  void Set(std::string_view key, Value value);
  void Remove(std::string_view key);

  // Reads with the default given for a missing or unusable value.
  bool ReadBool(std::string_view key, bool defaultValue) const;
  std::int32_t ReadLong(std::string_view key, std::int32_t defaultValue) const;
  std::int16_t ReadInteger(std::string_view key, std::int16_t defaultValue) const;
  OleColor ReadColor(std::string_view key, OleColor defaultValue) const;
  std::string ReadString(std::string_view key, std::string_view defaultValue) const;
  FontSpec ReadFont(std::string_view key, const FontSpec& defaultValue) const;
  Picture ReadPicture(std::string_view key, Picture defaultValue) const;

  // Writes the value, or removes the key when the value equals the default.
  void WriteBool(std::string_view key, bool value, bool writeDefault);
  void WriteLong(std::string_view key, std::int64_t value, std::int64_t writeDefault);
  void WriteColor(std::string_view key, OleColor value, OleColor writeDefault);
  void WriteString(std::string_view key, std::string_view value, std::string_view writeDefault);
  // Writes without a default: the key is always present afterwards.
  void WriteAlways(std::string_view key, Value value) { Set(key, std::move(value)); }

 private:
  struct Stored {
    std::string spelling;
    Value value;
  };
  std::optional<std::int64_t> Number(std::string_view key) const;
  void WriteUnlessDefault(std::string_view key, Value value, const Value& writeDefault);

  std::map<std::string, Stored, std::less<>> entries_;  // by lower-case key
};

}  // namespace qm
