// What both implementations of the file system share: the names of the
// temporary files that writes make.
#include "platform/file_system.h"

#include <charconv>

#include "platform/ansi_text.h"

namespace qm {
namespace {

constexpr std::string_view kTemporaryPrefix = "~qm";
constexpr std::string_view kTemporarySuffix = ".tmp";

// A run of decimal digits at the front of text, consumed; nothing when
// there is none or it does not fit.
std::optional<unsigned long> TakeNumber(std::string_view& text) {
  unsigned long value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end == text.data()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return value;
}

}  // namespace

std::string TemporaryFileName(unsigned long processId, int n) {
  std::string name(kTemporaryPrefix);
  name += std::to_string(processId);
  name += '-';
  name += std::to_string(n);
  name += kTemporarySuffix;
  return name;
}

std::optional<unsigned long> TemporaryFileOwner(std::string_view name) {
  if (name.size() < kTemporaryPrefix.size() + kTemporarySuffix.size() ||
      !EqualsNoCase(name.substr(0, kTemporaryPrefix.size()), kTemporaryPrefix) ||
      !EndsWithNoCase(name, kTemporarySuffix))
    return std::nullopt;
  std::string_view middle =
      name.substr(kTemporaryPrefix.size(), name.size() - kTemporaryPrefix.size() - kTemporarySuffix.size());
  const std::optional<unsigned long> owner = TakeNumber(middle);
  if (!owner || middle.empty() || middle.front() != '-') return std::nullopt;
  middle.remove_prefix(1);
  if (!TakeNumber(middle) || !middle.empty()) return std::nullopt;
  return owner;
}

}  // namespace qm
