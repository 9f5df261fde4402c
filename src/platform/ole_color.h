// Colours as the program stores them: 32-bit OLE colours, either an RGB
// value 0x00BBGGRR or a system-colour code 0x800000nn (nn the index of the
// system colour), turned into RGB only when drawn.
#pragma once

#include <cstdint>

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
inline constexpr bool IsSystemColor(OleColor c) { return (c & 0xFF000000u) == 0x80000000u; }

}  // namespace qm
