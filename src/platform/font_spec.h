// A font as the program's labels and settings hold it: face name, size in
// points (fractional, as 9.75) and the four styles.
#pragma once

#include <string>

namespace qm {

struct FontSpec {
  std::string name = "Arial";
  double size = 9.75;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikethrough = false;

  friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

}  // namespace qm
