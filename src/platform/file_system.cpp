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

bool WriteAtomically(WriteSteps& steps, const std::string& path, std::string_view bytes) {
  if (steps.Inspect(path) == WriteSteps::Target::Refused) return false;
  const auto separator = path.find_last_of("\\/");
  const std::string folder = separator == std::string::npos ? "." : path.substr(0, separator);
  const unsigned long pid = CurrentProcessId();
  std::string temp;
  WriteSteps::Handle file{};
  WriteSteps::Created created = WriteSteps::Created::NameTaken;
  // A name left by a run that ended during a write: take the next one.
  for (int n = 1; created == WriteSteps::Created::NameTaken && n <= kTemporaryNameTries; ++n) {
    temp = folder + "\\" + TemporaryFileName(pid, n);
    created = steps.Create(temp, file);
  }
  if (created != WriteSteps::Created::Made) return false;
  bool ok = true;
  for (std::string_view left = bytes; ok && !left.empty();) {
    const std::size_t wrote = steps.Write(file, left);
    ok = wrote > 0 && wrote <= left.size();
    if (ok) left.remove_prefix(wrote);
  }
  ok = ok && steps.Flush(file);
  ok = steps.Close(file) && ok;
  ok = ok && steps.Replace(temp, path);
  if (!ok) steps.Delete(temp);
  return ok;
}

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
