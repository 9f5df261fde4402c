// The line-file reader and the marked-line parser on arbitrary bytes: no
// crash, and what the program writes reads back as it was written.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "library/line_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> lines = qm::SplitLines(text);
  // No line read holds a line break.
  for (const std::string& line : lines)
    if (line.find('\n') != std::string::npos) std::abort();
  // The program's own form of those lines reads back the same lines.
  const std::string written = qm::JoinLines(lines);
  const std::vector<std::string> again = qm::SplitLines(written);
  // A last empty line cannot survive the writing (a closing line break adds
  // no line), nor a first line that starts with a byte-order mark.
  const bool lossy = (!lines.empty() && lines.back().empty()) ||
                     (!lines.empty() && lines.front().starts_with(qm::kUtf8ByteOrderMark));
  if (!lossy && again != lines) std::abort();
  for (const std::string& line : lines) {
    const qm::MarkedLine marked = qm::ParseMarkedLine(line);
    // A line the program writes parses back to its mark and text.
    const qm::MarkedLine back = qm::ParseMarkedLine(qm::FormatMarkedLine(marked.checked, marked.text));
    if (back.checked != marked.checked || back.text != marked.text) std::abort();
  }
  return 0;
}
