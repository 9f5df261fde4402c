// The font preview label's model (lblPreview): the font and the text colour
// that the next start hands to the flasher. The label refuses a value it
// cannot show and then keeps the one it had:
//   - a font name that is empty, longer than 31 characters (the longest
//     face name the system's fonts carry) or holds a control character;
//   - a size that is not above 0 or is above 2160 points;
//   - a colour that is neither 0x00BBGGRR nor a system colour 0x800000nn
//     with nn at most 0x1E.
// The label on the screen mirrors this model; Changed tells it to repaint.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "platform/font_spec.h"
#include "platform/ole_color.h"

namespace qm {

inline constexpr std::size_t kMaxFaceNameLength = 31;
inline constexpr double kMaxFontPoints = 2160;
inline constexpr unsigned kLastSystemColorIndex = 0x1E;

inline bool IsValidFaceName(std::string_view name) {
  if (name.empty() || name.size() > kMaxFaceNameLength) return false;
  for (unsigned char c : name)
    if (c < 0x20 || c == 0x7F) return false;
  return true;
}

inline bool IsValidFontSize(double points) {
  return points > 0 && points <= kMaxFontPoints;
}

// A colour the label takes: an RGB value or a system colour that exists
// (no palette colours).
inline bool IsValidOleColor(OleColor color) {
  return IsTranslatableOleColor(color) && (IsSystemColor(color) || (color >> 24) == 0);
}

class PreviewLabel {
 public:
  static constexpr std::string_view kCaption = "Font Preview";

  explicit PreviewLabel(FontSpec font = {}, OleColor color = kLightGrey) : font_(font), color_(color) {}
  PreviewLabel(const PreviewLabel&) = delete;
  PreviewLabel& operator=(const PreviewLabel&) = delete;

  const FontSpec& Font() const { return font_; }
  OleColor ForeColor() const { return color_; }

  // Each setter returns false, changing nothing, when the label refuses
  // the value.
  bool SetFontName(std::string_view name) {
    if (!IsValidFaceName(name)) return false;
    font_.name = name;
    return NotifyChanged();
  }
  bool SetFontSize(double points) {
    if (!IsValidFontSize(points)) return false;
    font_.size = points;
    return NotifyChanged();
  }
  void SetBold(bool bold) {
    font_.bold = bold;
    NotifyChanged();
  }
  void SetItalic(bool italic) {
    font_.italic = italic;
    NotifyChanged();
  }
  // The whole font at once, as the font chooser returns it.
  bool SetFont(const FontSpec& font) {
    if (!IsValidFaceName(font.name) || !IsValidFontSize(font.size)) return false;
    font_ = font;
    return NotifyChanged();
  }
  bool SetForeColor(OleColor color) {
    if (!IsValidOleColor(color)) return false;
    color_ = color;
    return NotifyChanged();
  }
  // Repaints the label now.
  void Refresh() { NotifyChanged(); }

  std::function<void()> Changed;

 private:
  bool NotifyChanged() {
    if (Changed) Changed();
    return true;
  }

  FontSpec font_;
  OleColor color_;
};

}  // namespace qm
