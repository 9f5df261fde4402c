// Colours as the program stores them: 32-bit OLE colours, either an RGB
// value 0x00BBGGRR or a system-colour code 0x800000nn (nn the index of the
// system colour), turned into RGB only when drawn.
//
// This is the one rule of which colours are good: a colour is valid when it
// translates to RGB with no palette, as the platform's OleTranslateColor
// does. Valid: an RGB value 0x00BBGGRR and a palette-relative RGB 0x02BBGGRR
// (both unchanged), a palette index 0x0100iiii of the default palette
// (unchanged), and a system colour 0x800000nn whose nn is a system colour
// index (its colour). Anything else does not translate.
#pragma once

#include <cstdint>
#include <optional>

namespace qm {

using OleColor = std::uint32_t;

// Pure white: the overlay's transparent key colour, so never a phrase colour.
inline constexpr OleColor kTransparentKey = 0x00FFFFFF;
// What a chosen pure white becomes: the nearest colour that is not the key.
inline constexpr OleColor kAlmostWhite = 0x00FFFFFE;
// The settings window's blue.
inline constexpr OleColor kSettingsBlue = 0x00B36A36;
inline constexpr OleColor kLightGrey = 0x00C0C0C0;

inline constexpr OleColor Rgb(unsigned r, unsigned g, unsigned b) {
  return static_cast<OleColor>((r & 0xFF) | ((g & 0xFF) << 8) | ((b & 0xFF) << 16));
}

namespace ole_color_kind {
inline constexpr std::uint32_t kMask = 0xFF000000u;
inline constexpr std::uint32_t kRgb = 0x00000000u;
inline constexpr std::uint32_t kPaletteIndex = 0x01000000u;
inline constexpr std::uint32_t kPaletteRgb = 0x02000000u;
inline constexpr std::uint32_t kSystem = 0x80000000u;
}  // namespace ole_color_kind

inline constexpr int kLastSysColorIndex = 30;  // the menu bar's colour
inline constexpr int kDefaultPaletteEntries = 20;

// A system-colour code 0x80......, valid or not.
inline constexpr bool IsSystemColor(OleColor c) {
  return (c & ole_color_kind::kMask) == ole_color_kind::kSystem;
}
// The code of a system colour index, and the index of a system colour code.
inline constexpr OleColor SystemColorCode(int index) {
  return ole_color_kind::kSystem | (static_cast<OleColor>(index) & 0x00FFFFFFu);
}
inline constexpr int SystemColorIndex(OleColor c) {
  return static_cast<int>(c & ~ole_color_kind::kMask);
}

inline constexpr bool IsTranslatableOleColor(OleColor color) {
  const std::uint32_t rest = color & ~ole_color_kind::kMask;
  switch (color & ole_color_kind::kMask) {
    case ole_color_kind::kRgb:
    case ole_color_kind::kPaletteRgb:
      return true;
    case ole_color_kind::kPaletteIndex:
      return rest < static_cast<std::uint32_t>(kDefaultPaletteEntries);
    case ole_color_kind::kSystem:
      return rest <= static_cast<std::uint32_t>(kLastSysColorIndex);
    default:
      return false;
  }
}

// The colour's RGB value, a system colour looked up by sysColor(index)
// (the platform's GetSysColor); nothing for a colour that does not
// translate.
template <typename SysColorLookup>
std::optional<std::uint32_t> TranslateOleColor(OleColor color, const SysColorLookup& sysColor) {
  if (!IsTranslatableOleColor(color)) return std::nullopt;
  if (IsSystemColor(color)) return static_cast<std::uint32_t>(sysColor(SystemColorIndex(color)));
  return color;
}

}  // namespace qm
