// The settings reader on arbitrary bytes: no crash, and whatever it read
// is written and read back unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "library/line_file.h"
#include "library/settings_store.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  qm::Settings read;
  qm::ParseSettings(text, read);
  // A font name never holds a line break (it could not be written back as
  // one line).
  if (read.fontName && read.fontName->find('\n') != std::string::npos) std::abort();
  // A font name beginning with the bytes of a byte-order mark ("\xEF\xBB\xBF",
  // no font's name) would lose them, as a reader of another editor's file
  // must.
  if (read.fontName && read.fontName->starts_with(qm::kUtf8ByteOrderMark)) return 0;
  qm::Settings back;
  qm::ParseSettings(qm::FormatSettings(read), back);
  if (!(back == read)) std::abort();
  return 0;
}
