// The image button's property store driven by arbitrary operations: keys
// stay unique without regard to case, and every write reads back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "controls/property_store.h"
#include "platform/ansi_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qm::PropertyStore store;
  std::size_t at = 0;
  auto byte = [&]() -> std::uint8_t { return at < size ? data[at++] : 0; };
  auto text = [&]() {
    std::string s;
    for (std::uint8_t n = byte() % 8; n > 0 && at < size; --n) s += static_cast<char>(byte());
    return s;
  };
  while (at < size) {
    const std::uint8_t op = byte() % 5;
    const std::string key = text();
    switch (op) {
      case 0: {
        const std::string value = text(), fallback = text();
        store.WriteString(key, value, fallback);
        if (store.ReadString(key, fallback) != value) std::abort();
        if (store.Has(key) != (value != fallback)) std::abort();
        break;
      }
      case 1: {
        const std::int32_t value = static_cast<std::int32_t>(byte() << 24 | byte() << 16 | byte() << 8 | byte());
        const std::int32_t fallback = static_cast<std::int8_t>(byte());
        store.WriteLong(key, value, fallback);
        if (store.ReadLong(key, fallback) != value) std::abort();
        break;
      }
      case 2: {
        const bool value = byte() & 1, fallback = byte() & 1;
        store.WriteBool(key, value, fallback);
        if (store.ReadBool(key, fallback) != value) std::abort();
        break;
      }
      case 3:
        store.Remove(key);
        if (store.Has(key)) std::abort();
        break;
      default:
        // Reads of any kind never fail, whatever the value's kind.
        store.ReadString(key, "");
        store.ReadLong(key, 0);
        store.ReadBool(key, false);
        store.ReadColor(key, 0);
        store.ReadFont(key, {});
        break;
    }
  }
  const std::vector<std::string> keys = store.Keys();
  if (keys.size() != store.Size()) std::abort();
  for (std::size_t i = 1; i < keys.size(); ++i)
    if (qm::EqualsNoCase(keys[i - 1], keys[i])) std::abort();
  return 0;
}
