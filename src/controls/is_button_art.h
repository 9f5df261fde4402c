// The image button's fixed colours and colour arithmetic: the Style 10
// glossy skin (three variants of fixed pixel art), the skins of the
// hand-drawn styles 5, 7, 8 and 9, the gradient step of their faces and the
// grey conversion of a disabled button's icon. Colours are RGB (0x00BBGGRR).
#pragma once

#include <cstdint>

#include "platform/ole_color.h"

namespace qm {

// The three faces of Style 10.
enum class GlossVariant : std::uint8_t { Normal, Hover, Pressed };

// The Style 10 face of a W x H button at pixel (x, y): a left end cap 18
// pixels wide and a right end cap 16 wide, each with 11 rows at the top, 8
// at the bottom and one side column repeated between; rows of fixed
// colours along the top and bottom edges between the caps; and the middle,
// (18, 11) to (W - 16, H - 8), in one colour.
OleColor Style10Pixel(GlossVariant variant, int x, int y, int width, int height);
OleColor Style10Middle(GlossVariant variant);
inline constexpr int kGlossLeftCap = 18;
inline constexpr int kGlossRightCap = 16;
inline constexpr int kGlossTopRows = 11;
inline constexpr int kGlossBottomRows = 8;
// The rounded window region of Style 10: corner ellipses of 18 x 18.
inline constexpr int kGlossCornerEllipse = 18;

// A hand-drawn skin: a face graded line by line from `top` to `bottom`,
// framed by `border` with a one-pixel `light` line inside it.
struct SkinColors {
  OleColor top = 0;
  OleColor bottom = 0;
  OleColor border = 0;
  OleColor light = 0;
  friend bool operator==(const SkinColors&, const SkinColors&) = default;
};

// Styles 7, 8 and 9: fixed colours for the normal, hover and pressed looks.
SkinColors FixedSkin(int style, GlossVariant variant);
// Style 5, made from a base colour (the face) and an accent for the hover
// frame: light at the top, the face at the bottom; reversed when pressed.
SkinColors Style5Skin(OleColor face, OleColor accent, GlossVariant variant);

// Line `step` of `steps` of a gradient: each channel moves linearly from
// `from` (step 0) to `to` (the last step).
OleColor GradientStep(OleColor from, OleColor to, int step, int steps);
// `a` moved towards `b` by `share` per mille.
OleColor MixColor(OleColor a, OleColor b, int share);

// The disabled icon's grey: RGB(g, g, g), g = 0.33 R + 0.59 G + 0.11 B to
// the nearest whole number (halves to even, at most 255). The sixteen grey
// steps 0x000000, 0x101010, ... 0xF0F0F0 and white are kept as they are.
bool IsGreyStep(OleColor rgb);
OleColor GreyColor(OleColor rgb);

}  // namespace qm
