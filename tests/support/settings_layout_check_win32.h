// The settings window's controls by id, its layout as its description
// gives it (twips: left, top, width, height) and a check that a window on
// the screen, in this process or another one, stands where that layout
// puts it at a given dots per inch. Shared by the shell tests of the window and the end-to-end
// tests of the program at other scalings.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>

#include "settings/settings_ids.h"

namespace qm::test {

struct LayoutPlace {
  int id;
  bool inPanel;  // in the panel Picture2 rather than the window's client area
  int left, top, width, height;
};

inline constexpr int kLayoutClientWidth = 6870;
inline constexpr int kLayoutClientHeight = 6255;
inline constexpr int kLayoutPanelTop = 525;

inline constexpr LayoutPlace kSettingsLayout[] = {
    {kIdTxtEditCat, false, 180, 1560, 3195, 375},
    {kIdTxtEditWord, false, 3480, 1560, 3195, 375},
    {kIdLstMessageCategories, false, 180, 1980, 3195, 1410},
    {kIdLstPhrases, false, 3480, 1980, 3195, 1410},
    {kIdFraTimesAndDuration, false, 180, 3660, 3135, 1755},
    {kIdFraFont, false, 3540, 3660, 3135, 1755},
    {kIdCmdStop, false, 2700, 6240, 1395, 435},
    {kIdLabel1, true, 180, 180, 3195, 315},
    {kIdLabel2, true, 3480, 180, 3195, 315},
    {kIdCmdAddCat, true, 180, 540, 975, 435},
    {kIdCmdEditCat, true, 1290, 540, 975, 435},
    {kIdCmdDeleteCat, true, 2400, 540, 975, 435},
    {kIdCmdAdd, true, 3480, 540, 975, 435},
    {kIdCmdEdit, true, 4590, 540, 975, 435},
    {kIdCmdDelete, true, 5700, 540, 975, 435},
    {kIdCmdStart, true, 1920, 5160, 1395, 435},
    {kIdCmdClose, true, 3540, 5160, 1395, 435},
    {kIdLblVersion, true, 5340, 5280, 1395, 255},
    // Inside the two frames (180, 3660 and 3540, 3660), in the window.
    {kIdLblDuration, false, 180 + 120, 3660 + 300, 2775, 375},
    {kIdLblFrequency, false, 180 + 120, 3660 + 960, 2775, 375},
    {kIdCmdEditFont, false, 3540 + 240, 3660 + 360, 1335, 435},
    {kIdPicture1, false, 3540 + 240, 3660 + 840, 2715, 795},
};

// The settings window's child by id, directly or in the panel Picture2.
inline HWND Control(HWND form, int id) {
  if (const HWND direct = ::GetDlgItem(form, id)) return direct;
  return ::GetDlgItem(::GetDlgItem(form, kIdPicture2), id);
}

// Pixels for twips at `dpi`, by the system's own rounding.
inline int LayoutPixels(int twips, int dpi) {
  return ::MulDiv(twips, dpi, 1440);
}

// A control's rectangle in the client area of `container`.
inline RECT RectIn(HWND control, HWND container) {
  RECT r{};
  ::GetWindowRect(control, &r);
  ::MapWindowPoints(nullptr, container, reinterpret_cast<POINT*>(&r), 2);
  return r;
}

// Every control of the settings window `form` where the layout puts it at
// `dpi`, each edge within `tolerance` pixels; the client area and the
// panel's top likewise.
inline void ExpectSettingsLayout(HWND form, int dpi, int tolerance) {
  const auto px = [dpi](int twips) { return LayoutPixels(twips, dpi); };
  RECT client{};
  ::GetClientRect(form, &client);
  EXPECT_NEAR(client.right, px(kLayoutClientWidth), tolerance) << "client width at " << dpi << " dpi";
  EXPECT_NEAR(client.bottom, px(kLayoutClientHeight), tolerance) << "client height at " << dpi << " dpi";
  const HWND panel = ::GetDlgItem(form, kIdPicture2);
  ASSERT_NE(panel, nullptr);
  const RECT panelRect = RectIn(panel, form);
  EXPECT_EQ(panelRect.left, 0);
  EXPECT_NEAR(panelRect.top, px(kLayoutPanelTop), tolerance);
  EXPECT_GE(panelRect.bottom, client.bottom) << "the panel reaches the bottom edge";
  for (const LayoutPlace& p : kSettingsLayout) {
    const HWND container = p.inPanel ? panel : form;
    const HWND control = ::GetDlgItem(container, p.id);
    ASSERT_NE(control, nullptr) << "control " << p.id;
    const RECT got = RectIn(control, container);
    const RECT want{px(p.left), px(p.top), px(p.left) + px(p.width), px(p.top) + px(p.height)};
    const bool within =
        std::abs(got.left - want.left) <= tolerance && std::abs(got.top - want.top) <= tolerance &&
        std::abs(got.right - want.right) <= tolerance && std::abs(got.bottom - want.bottom) <= tolerance;
    EXPECT_TRUE(within) << "control " << p.id << " at " << dpi << " dpi: " << got.left << "," << got.top
                        << " " << got.right - got.left << "x" << got.bottom - got.top << ", the layout wants "
                        << want.left << "," << want.top << " " << want.right - want.left << "x"
                        << want.bottom - want.top;
  }
}

}  // namespace qm::test
