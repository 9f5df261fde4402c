// The rows of the colour picker's drop-down: sixteen named swatches, then
// one row for a colour that is none of them (shown only while the picker
// holds such a colour, as after "More colours..." or when the stored
// settings hold one), then "More colours...", which opens the system's
// colour chooser. The picker's value always has exactly one row: its
// swatch, or the extra row.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ole_color.h"

namespace qm {

struct SwatchRow {
  enum class Kind { Swatch, Other, More };
  Kind kind = Kind::Swatch;
  OleColor color = 0;  // nothing for More
  std::string text;
};

inline constexpr const char* kMoreColoursText = "More colours...";

class ColorSwatches {
 public:
  ColorSwatches();

  const std::vector<SwatchRow>& Rows() const { return rows_; }
  // Shows the value: its swatch's row, or the extra row made to hold it.
  // The row's index.
  int RowFor(OleColor value);
  // The colour a row stands for; nothing for "More colours..." or a row
  // that does not exist.
  std::optional<OleColor> ColorAt(int row) const;
  bool IsMore(int row) const;

  // What the extra row says of a colour: its red, green and blue, or the
  // system colour's number.
  static std::string OtherText(OleColor color);

 private:
  std::vector<SwatchRow> rows_;
};

}  // namespace qm
