// The category-name check on arbitrary names: a name it accepts is one
// Windows takes as a file name (checked here against the rules directly).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "library/library_editing.h"
#include "platform/ansi_text.h"

namespace {

bool Reserved(std::string stem) {
  stem = qm::LowerAnsi(stem);
  while (!stem.empty() && stem.back() == ' ') stem.pop_back();
  while (!stem.empty() && stem.front() == ' ') stem.erase(stem.begin());
  if (stem == "con" || stem == "prn" || stem == "aux" || stem == "nul") return true;
  return stem.size() == 4 && (stem.rfind("com", 0) == 0 || stem.rfind("lpt", 0) == 0) && stem[3] >= '1' &&
         stem[3] <= '9';
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string name(reinterpret_cast<const char*>(data), size);
  if (qm::CategoryNameProblem(name)) return 0;
  for (unsigned char c : name)
    if (c < 32 || std::string_view("\\/:*?\"<>|").find(static_cast<char>(c)) != std::string_view::npos)
      std::abort();
  if (!name.empty() && (name.back() == '.' || name.back() == ' ')) std::abort();
  if (name == "." || name == "..") std::abort();
  if (name.size() > 251) std::abort();
  if (Reserved(name.substr(0, name.find('.')))) std::abort();
  return 0;
}
