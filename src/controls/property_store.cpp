#include "controls/property_store.h"

#include <charconv>
#include <limits>

#include "platform/ansi_text.h"

namespace qm {
namespace {

// Decimal ("-12") or "&H" hexadecimal ("&HB36A36", "&H8000000F&") text.
std::optional<std::int64_t> ParseNumber(std::string_view text) {
  text = TrimSpaces(text);
  int base = 10;
  bool negative = false;
  if (text.size() > 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
    text.remove_prefix(2);
    if (!text.empty() && text.back() == '&') text.remove_suffix(1);  // the Long suffix
    base = 16;
  } else if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    negative = text[0] == '-';
    text.remove_prefix(1);
  }
  std::uint64_t magnitude = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
  if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  if (magnitude > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return std::nullopt;
  const auto value = static_cast<std::int64_t>(magnitude);
  return negative ? -value : value;
}

std::optional<bool> ParseBool(std::string_view text) {
  if (EqualsNoCase(TrimSpaces(text), "True")) return true;
  if (EqualsNoCase(TrimSpaces(text), "False")) return false;
  if (const auto n = ParseNumber(text)) return *n != 0;
  return std::nullopt;
}

}  // namespace

PropertyStore::PropertyStore(std::initializer_list<Entry> entries) {
  for (const Entry& e : entries) Set(e.key, e.value);
}

const PropertyStore::Value* PropertyStore::Find(std::string_view key) const {
  const auto it = entries_.find(LowerAnsi(key));
  return it == entries_.end() ? nullptr : &it->second.value;
}

std::vector<std::string> PropertyStore::Keys() const {
  std::vector<std::string> keys;
  keys.reserve(entries_.size());
  for (const auto& [lower, stored] : entries_) keys.push_back(stored.spelling);
  return keys;
}

void PropertyStore::Set(std::string_view key, Value value) {
  auto [it, added] = entries_.try_emplace(LowerAnsi(key), Stored{std::string(key), Value{}});
  it->second.value = std::move(value);
}

void PropertyStore::Remove(std::string_view key) {
  const auto it = entries_.find(LowerAnsi(key));
  if (it != entries_.end()) entries_.erase(it);
}

// A stored whole number, or one that a text or a Boolean stands for
// (True is -1, as a 32-bit Boolean holds it).
std::optional<std::int64_t> PropertyStore::Number(std::string_view key) const {
  const Value* v = Find(key);
  if (!v) return std::nullopt;
  if (const auto* n = std::get_if<std::int64_t>(v)) return *n;
  if (const auto* b = std::get_if<bool>(v)) return *b ? -1 : 0;
  if (const auto* s = std::get_if<std::string>(v)) return ParseNumber(*s);
  return std::nullopt;
}

bool PropertyStore::ReadBool(std::string_view key, bool defaultValue) const {
  const Value* v = Find(key);
  if (!v) return defaultValue;
  if (const auto* b = std::get_if<bool>(v)) return *b;
  if (const auto* n = std::get_if<std::int64_t>(v)) return *n != 0;
  if (const auto* s = std::get_if<std::string>(v)) return ParseBool(*s).value_or(defaultValue);
  return defaultValue;
}

std::int32_t PropertyStore::ReadLong(std::string_view key, std::int32_t defaultValue) const {
  const auto n = Number(key);
  if (!n || *n < std::numeric_limits<std::int32_t>::min() || *n > std::numeric_limits<std::int32_t>::max()) {
    return defaultValue;
  }
  return static_cast<std::int32_t>(*n);
}

std::int16_t PropertyStore::ReadInteger(std::string_view key, std::int16_t defaultValue) const {
  const auto n = Number(key);
  if (!n || *n < std::numeric_limits<std::int16_t>::min() || *n > std::numeric_limits<std::int16_t>::max()) {
    return defaultValue;
  }
  return static_cast<std::int16_t>(*n);
}

OleColor PropertyStore::ReadColor(std::string_view key, OleColor defaultValue) const {
  const auto n = Number(key);
  // A colour is 32 bits, kept either as the unsigned value or as the
  // signed 32-bit number with the same bits.
  if (!n || *n < std::numeric_limits<std::int32_t>::min() || *n > std::numeric_limits<std::uint32_t>::max()) {
    return defaultValue;
  }
  return static_cast<OleColor>(static_cast<std::uint64_t>(*n) & 0xFFFFFFFFu);
}

std::string PropertyStore::ReadString(std::string_view key, std::string_view defaultValue) const {
  const Value* v = Find(key);
  if (!v) return std::string(defaultValue);
  if (const auto* s = std::get_if<std::string>(v)) return *s;
  if (const auto* n = std::get_if<std::int64_t>(v)) return std::to_string(*n);
  if (const auto* b = std::get_if<bool>(v)) return *b ? "True" : "False";
  return std::string(defaultValue);
}

FontSpec PropertyStore::ReadFont(std::string_view key, const FontSpec& defaultValue) const {
  const Value* v = Find(key);
  const auto* f = v ? std::get_if<FontSpec>(v) : nullptr;
  return f ? *f : defaultValue;
}

Picture PropertyStore::ReadPicture(std::string_view key, Picture defaultValue) const {
  const Value* v = Find(key);
  const auto* p = v ? std::get_if<Picture>(v) : nullptr;
  return p ? *p : defaultValue;
}

void PropertyStore::WriteUnlessDefault(std::string_view key, Value value, const Value& writeDefault) {
  if (value == writeDefault) {
    Remove(key);
  } else {
    Set(key, std::move(value));
  }
}

void PropertyStore::WriteBool(std::string_view key, bool value, bool writeDefault) {
  WriteUnlessDefault(key, value, writeDefault);
}

void PropertyStore::WriteLong(std::string_view key, std::int64_t value, std::int64_t writeDefault) {
  WriteUnlessDefault(key, value, writeDefault);
}

void PropertyStore::WriteColor(std::string_view key, OleColor value, OleColor writeDefault) {
  WriteUnlessDefault(key, std::int64_t{value}, std::int64_t{writeDefault});
}

void PropertyStore::WriteString(std::string_view key, std::string_view value, std::string_view writeDefault) {
  WriteUnlessDefault(key, std::string(value), std::string(writeDefault));
}

}  // namespace qm
