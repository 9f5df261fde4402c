// The timing and font panels in the real program, used with real input:
// the wheels turned with the mouse and the keys, the font chooser opened
// from "Edit Font" and answered in its own controls, and a colour picked in
// the drop-down, each checked on the screen and in the settings file.
#include "program_driver_win32.h"
#include "real_input_win32.h"

#include <gtest/gtest.h>
// After windows.h:
#include <commctrl.h>
#include <dlgs.h>

#include <algorithm>
#include <string>
#include <vector>

#include "settings/color_swatches.h"
#include "settings/settings_ids.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

// The line of the settings file (0 the font name ... 6 the frequency).
std::string Entry(const ProgramFolder& folder, int line) {
  const std::string file = folder.Get("\\__.__");
  std::size_t start = 0;
  for (int i = 0; i < line; ++i) {
    start = file.find("\r\n", start);
    if (start == std::string::npos) return "(none)";
    start += 2;
  }
  return file.substr(start, file.find("\r\n", start) - start);
}

// The row of the colour drop-down showing `text`, as the program lists it.
int SwatchRow(const char* text) {
  const ColorSwatches swatches;
  for (std::size_t i = 0; i < swatches.Rows().size(); ++i)
    if (swatches.Rows()[i].text == text) return static_cast<int>(i);
  return -1;
}

// Drops the colour list with a click and clicks the row.
void PickColour(const RunningProgram& program, HWND form, const char* text) {
  const HWND combo = Control(form, kIdColorPicker1);
  ClickScreen(Middle(combo));
  HWND list = nullptr;
  ASSERT_TRUE(WaitFor([&] { return (list = program.VisibleWindow("ComboLBox")) != nullptr; }, 3s));
  const int height = static_cast<int>(::SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
  const int top = static_cast<int>(::SendMessageW(list, LB_GETTOPINDEX, 0, 0));
  POINT at{8 + height, (SwatchRow(text) - top) * height + height / 2};
  ::ClientToScreen(list, &at);
  ClickScreen(at);
}

constexpr const char* kSettings = "Arial\r\n12\r\nFalse\r\nFalse\r\n255\r\n50\r\n3";

TEST(Panels, TurningTheWheelsWithTheMouseAndTheKeysRelabelsThemAndSavesEachTurn) {
  ProgramFolder folder;
  folder.Put("\\__.__", kSettings);
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);
  const HWND duration = Control(form, kIdBvlWheel1);
  const HWND frequency = Control(form, kIdBvlWheel2);
  const auto position = [](HWND bar) { return static_cast<int>(::SendMessageW(bar, TBM_GETPOS, 0, 0)); };
  const auto durationShown = [&] {
    const std::string v = std::to_string(position(duration));
    return AsciiText(Control(form, kIdLblDuration)) == "Duration: " + v + " Millisecond(s)" &&
           Entry(folder, 5) == v;
  };
  EXPECT_EQ(position(duration), 50);

  // A click in the channel right of the thumb moves it up a page.
  RECT bar{};
  ::GetWindowRect(duration, &bar);
  ClickScreen({bar.right - 12, (bar.top + bar.bottom) / 2});
  EXPECT_TRUE(WaitFor([&] { return position(duration) > 50 && durationShown(); }, 3s))
      << position(duration) << " " << AsciiText(Control(form, kIdLblDuration)) << " " << Entry(folder, 5);
  const int afterClick = position(duration);

  // The arrows step by one; End goes to the top.
  PressKey(VK_RIGHT);
  EXPECT_TRUE(WaitFor([&] { return position(duration) == afterClick + 1 && durationShown(); }, 3s));
  PressKey(VK_LEFT);
  PressKey(VK_LEFT);
  EXPECT_TRUE(WaitFor([&] { return position(duration) == afterClick - 1 && durationShown(); }, 3s));
  PressKey(VK_END);
  EXPECT_TRUE(WaitFor([&] { return AsciiText(Control(form, kIdLblDuration)) == "Duration: 1000 Millisecond(s)"; },
                      3s));
  EXPECT_EQ(Entry(folder, 5), "1000");

  // The frequency wheel: a click gives it the focus, the mouse wheel turns
  // it up two notches, Home takes it to the bottom.
  ::GetWindowRect(frequency, &bar);
  const POINT over{bar.right - 4, (bar.top + bar.bottom) / 2};
  ClickScreen(over);
  const int before = position(frequency);
  SendMouse(MOUSEEVENTF_WHEEL, over, static_cast<DWORD>(2 * WHEEL_DELTA));
  EXPECT_TRUE(WaitFor([&] { return position(frequency) == std::min(before + 2, 30); }, 3s)) << position(frequency);
  EXPECT_TRUE(WaitFor(
      [&] {
        const std::string v = std::to_string(position(frequency));
        return AsciiText(Control(form, kIdLblFrequency)) == "Frequency: " + v + " Second(s)" && Entry(folder, 6) == v;
      },
      3s));
  PressKey(VK_HOME);
  EXPECT_TRUE(WaitFor([&] { return AsciiText(Control(form, kIdLblFrequency)) == "Frequency: 1 Second(s)"; }, 3s));
  EXPECT_EQ(Entry(folder, 6), "1");
  PressKey(VK_END);
  EXPECT_TRUE(WaitFor([&] { return AsciiText(Control(form, kIdLblFrequency)) == "Frequency: 30 Second(s)"; }, 3s));
  EXPECT_EQ(Entry(folder, 6), "30");
}

// The font chooser the program opened.
HWND OpenFontChooser(const RunningProgram& program, HWND form) {
  ClickScreen(Middle(Control(form, kIdCmdEditFont)));
  HWND dialog = nullptr;
  WaitFor([&] { return (dialog = program.VisibleWindow("#32770")) != nullptr; }, 5s);
  if (dialog) ::Sleep(300);
  return dialog;
}

TEST(Panels, TheFontChooserFromEditFontStoresItsAnswerAndACancelStoresTheRoundedLook) {
  ProgramFolder folder;
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);
  ASSERT_FALSE(folder.Has("\\__.__"));

  // Cancel: the preview's 9.75 points are stored as 10.
  HWND dialog = OpenFontChooser(program, form);
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(AsciiText(dialog), "Font");
  EXPECT_EQ(AsciiText(::GetDlgItem(dialog, cmb3)), "10");
  ClickScreen(Middle(::GetDlgItem(dialog, IDCANCEL)));
  ASSERT_TRUE(WaitFor([&] { return folder.Has("\\__.__"); }, 3s));
  EXPECT_EQ(folder.Get("\\__.__"), "Arial\r\n10\r\nFalse\r\nFalse\r\n12632256\r\n1\r\n1");

  // OK after stepping the face from Arial to the next one (Courier New),
  // typing 24 into the size and stepping the style down to Bold.
  const HWND preview = Control(form, kIdPicture1);
  RECT previewRect{};
  ::GetWindowRect(preview, &previewRect);
  const int greyBefore = CountScreenColour(previewRect, RGB(192, 192, 192));
  dialog = OpenFontChooser(program, form);
  ASSERT_NE(dialog, nullptr);
  const HWND sizeEdit = ::FindWindowExW(::GetDlgItem(dialog, cmb3), nullptr, L"Edit", nullptr);
  const HWND styleEdit = ::FindWindowExW(::GetDlgItem(dialog, cmb2), nullptr, L"Edit", nullptr);
  const HWND faceEdit = ::FindWindowExW(::GetDlgItem(dialog, cmb1), nullptr, L"Edit", nullptr);
  ASSERT_NE(sizeEdit, nullptr);
  ASSERT_NE(styleEdit, nullptr);
  ASSERT_NE(faceEdit, nullptr);
  ClickScreen(Middle(faceEdit));
  PressKey(VK_DOWN);
  EXPECT_EQ(AsciiText(faceEdit), "Courier New");
  ClickScreen(Middle(sizeEdit));
  ::SendMessageW(sizeEdit, EM_SETSEL, 0, -1);
  TypeText(L"24");
  ClickScreen(Middle(styleEdit));
  PressKey(VK_HOME);
  PressKey(VK_DOWN);
  PressKey(VK_DOWN);
  EXPECT_EQ(AsciiText(styleEdit), "Bold");
  ClickScreen(Middle(::GetDlgItem(dialog, IDOK)));
  EXPECT_TRUE(WaitFor(
      [&] { return folder.Get("\\__.__") == "Courier New\r\n24\r\nTrue\r\nFalse\r\n12632256\r\n1\r\n1"; }, 3s))
      << folder.Get("\\__.__");
  // The preview's text grew: far more of its grey on the screen.
  ::Sleep(300);
  EXPECT_GT(CountScreenColour(previewRect, RGB(192, 192, 192)), greyBefore * 2);
}

TEST(Panels, APickedColourShowsInThePreviewAndTheNextPhraseAndWhiteIsStoredAsAlmostWhite) {
  ProgramFolder folder;
  folder.Put("\\Lists\\Calm.lst", "1Breathe slowly");
  folder.Put("\\_._", "1Calm");
  folder.Put("\\__.__", "Arial\r\n28\r\nTrue\r\nFalse\r\n0\r\n1000\r\n1");
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);
  RECT preview{};
  ::GetWindowRect(Control(form, kIdPicture1), &preview);
  RECT light = preview, dark = preview;
  light.right = (preview.left + preview.right) / 2 - 2;
  dark.left = (preview.left + preview.right) / 2 + 2;
  EXPECT_EQ(CountScreenColour(preview, RGB(255, 0, 0)), 0);

  PickColour(program, form, "White");
  EXPECT_TRUE(WaitFor([&] { return Entry(folder, 4) == "16777214"; }, 3s)) << Entry(folder, 4);
  EXPECT_EQ(AsciiText(Control(form, kIdColorPicker1)), "RGB 254, 255, 255");
  EXPECT_GT(CountScreenColour(dark, RGB(254, 255, 255)), 20);

  PickColour(program, form, "Red");
  EXPECT_TRUE(WaitFor([&] { return Entry(folder, 4) == "255"; }, 3s)) << Entry(folder, 4);
  ::Sleep(200);
  EXPECT_GT(CountScreenColour(light, RGB(255, 0, 0)), 20) << "red on the white half";
  EXPECT_GT(CountScreenColour(dark, RGB(255, 0, 0)), 20) << "red on the black half";

  // Start (Alt+S): the next phrase comes in red.
  Key(VK_MENU, false);
  PressKey('S');
  Key(VK_MENU, true);
  ASSERT_TRUE(WaitFor([&] { return !::IsWindowVisible(form); }, 3s));
  int red = 0;
  WaitFor(
      [&] {
        const HWND overlay = program.Overlay();
        RECT r{};
        if (!overlay || !::IsWindowVisible(overlay) || program.OverlayPhrase() != "Breathe slowly") return false;
        ::GetWindowRect(overlay, &r);
        red = CountScreenColour(r, RGB(255, 0, 0));
        return red > 50;
      },
      8s);
  EXPECT_GT(red, 50);
}

}  // namespace
}  // namespace qm::test
