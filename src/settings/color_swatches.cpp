#include "settings/color_swatches.h"

#include <algorithm>

namespace qm {
namespace {

struct Named {
  const char* name;
  OleColor color;
};

// The sixteen colours of the classic palette, dark ones first.
constexpr Named kSwatches[] = {
    {"Black", Rgb(0, 0, 0)},         {"Maroon", Rgb(128, 0, 0)},   {"Green", Rgb(0, 128, 0)},
    {"Olive", Rgb(128, 128, 0)},     {"Navy", Rgb(0, 0, 128)},     {"Purple", Rgb(128, 0, 128)},
    {"Teal", Rgb(0, 128, 128)},      {"Grey", Rgb(128, 128, 128)}, {"Silver", Rgb(192, 192, 192)},
    {"Red", Rgb(255, 0, 0)},         {"Lime", Rgb(0, 255, 0)},     {"Yellow", Rgb(255, 255, 0)},
    {"Blue", Rgb(0, 0, 255)},        {"Fuchsia", Rgb(255, 0, 255)}, {"Aqua", Rgb(0, 255, 255)},
    {"White", Rgb(255, 255, 255)},
};

}  // namespace

ColorSwatches::ColorSwatches() {
  for (const Named& n : kSwatches) rows_.push_back({SwatchRow::Kind::Swatch, n.color, n.name});
  rows_.push_back({SwatchRow::Kind::More, 0, kMoreColoursText});
}

std::string ColorSwatches::OtherText(OleColor color) {
  if (IsSystemColor(color)) return "System colour " + std::to_string(SystemColorIndex(color));
  return "RGB " + std::to_string(color & 0xFF) + ", " + std::to_string((color >> 8) & 0xFF) + ", " +
         std::to_string((color >> 16) & 0xFF);
}

int ColorSwatches::RowFor(OleColor value) {
  // The extra row goes whenever the value has a swatch of its own.
  rows_.erase(std::remove_if(rows_.begin(), rows_.end(),
                             [](const SwatchRow& r) { return r.kind == SwatchRow::Kind::Other; }),
              rows_.end());
  for (std::size_t i = 0; i < rows_.size(); ++i)
    if (rows_[i].kind == SwatchRow::Kind::Swatch && rows_[i].color == value) return static_cast<int>(i);
  const auto more = std::find_if(rows_.begin(), rows_.end(),
                                 [](const SwatchRow& r) { return r.kind == SwatchRow::Kind::More; });
  const auto at = rows_.insert(more, {SwatchRow::Kind::Other, value, OtherText(value)});
  return static_cast<int>(at - rows_.begin());
}

std::optional<OleColor> ColorSwatches::ColorAt(int row) const {
  if (row < 0 || row >= static_cast<int>(rows_.size()) || rows_[row].kind == SwatchRow::Kind::More)
    return std::nullopt;
  return rows_[row].color;
}

bool ColorSwatches::IsMore(int row) const {
  return row >= 0 && row < static_cast<int>(rows_.size()) && rows_[row].kind == SwatchRow::Kind::More;
}

}  // namespace qm
