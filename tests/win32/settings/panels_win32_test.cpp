// The timing and font panels in the real settings window: the system's
// trackbars with their ranges, turned by keys and the mouse wheel; values
// the program sets shown on them; the colour drop-down and the font
// chooser's Cancel, each followed to the captions, the flasher, the
// painted preview and the bytes of the settings file.
#include "settings/settings_window_win32.h"

#include <gtest/gtest.h>
// After windows.h:
#include <commctrl.h>

#include <cstring>
#include <string>

#include "../../support/win32_helpers.h"
#include "../../support/fake_prompts.h"
#include "../../support/temp_folder.h"
#include "settings/settings_ids.h"

namespace qm::win32 {
namespace {

using test::AnswerTimer;
using test::gAnswer;
using test::gAnswered;
using test::Pump;
using test::Text;

using namespace std::chrono_literals;
using test::FakePrompts;
using test::TempFolder;

// Pixels of one colour in a window's rectangle on the screen.
int CountPixels(HWND hwnd, const RECT& part, COLORREF color) {
  ::RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
  const HDC dc = ::GetDC(hwnd);
  int n = 0;
  for (int y = part.top; y < part.bottom; ++y)
    for (int x = part.left; x < part.right; ++x) n += ::GetPixel(dc, x, y) == color;
  ::ReleaseDC(hwnd, dc);
  return n;
}

class PanelsTest : public ::testing::Test {
 protected:
  void Load() {
    window = std::make_unique<frmSettings>(loop, SystemFileSystem(), prompts, folder.Path());
    ASSERT_TRUE(window->Form_Load("firstrun"));
    form = static_cast<Window&>(*window).Hwnd();
    Pump();
  }
  void TearDown() override {
    window.reset();
    Pump();
  }
  HWND Control(int id) const { return ::GetDlgItem(form, id); }
  void Key(int id, WPARAM vk) {
    ::SendMessageW(Control(id), WM_KEYDOWN, vk, 1);
    ::SendMessageW(Control(id), WM_KEYUP, vk, 0xC0000001);
    Pump();
  }
  LRESULT Position(int id) const { return ::SendMessageW(Control(id), TBM_GETPOS, 0, 0); }
  std::string Settings() const { return folder.Get("\\__.__"); }
  void Pick(int row) {
    ::SendMessageW(Control(kIdColorPicker1), CB_SETCURSEL, static_cast<WPARAM>(row), 0);
    ::SendMessageW(form, WM_COMMAND, MAKEWPARAM(kIdColorPicker1, CBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(Control(kIdColorPicker1)));
    Pump();
  }
  int RowOf(const char* text) const {
    return static_cast<int>(
        ::SendMessageW(Control(kIdColorPicker1), CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                       reinterpret_cast<LPARAM>(std::wstring(text, text + std::strlen(text)).c_str())));
  }

  TempFolder folder;
  FakePrompts prompts;
  MessageLoop loop;
  std::unique_ptr<frmSettings> window;
  HWND form = nullptr;
};

TEST_F(PanelsTest, TheWheelsAreTrackbarsWithTheirRangesShownAndTheirCaptionsAbove) {
  Load();
  char cls[64] = {};
  ::GetClassNameA(Control(kIdBvlWheel1), cls, sizeof cls);
  EXPECT_STREQ(cls, "msctls_trackbar32");
  EXPECT_EQ(::SendMessageW(Control(kIdBvlWheel1), TBM_GETRANGEMIN, 0, 0), 1);
  EXPECT_EQ(::SendMessageW(Control(kIdBvlWheel1), TBM_GETRANGEMAX, 0, 0), 1000);
  EXPECT_EQ(::SendMessageW(Control(kIdBvlWheel2), TBM_GETRANGEMIN, 0, 0), 1);
  EXPECT_EQ(::SendMessageW(Control(kIdBvlWheel2), TBM_GETRANGEMAX, 0, 0), 30);
  EXPECT_EQ(Text(Control(kIdWheel1Min)), "1");
  EXPECT_EQ(Text(Control(kIdWheel1Max)), "1000");
  EXPECT_EQ(Text(Control(kIdWheel2Min)), "1");
  EXPECT_EQ(Text(Control(kIdWheel2Max)), "30");
  // The caption comes just before its wheel, where a screen reader looks
  // for the wheel's name.
  EXPECT_EQ(::GetWindow(Control(kIdBvlWheel1), GW_HWNDPREV), Control(kIdLblDuration));
  EXPECT_EQ(::GetWindow(Control(kIdBvlWheel2), GW_HWNDPREV), Control(kIdLblFrequency));

  // Each wheel row lies inside its frame and below its caption.
  RECT frame{}, wheel{}, caption{};
  for (auto [w, c] : {std::pair{kIdBvlWheel1, kIdLblDuration}, std::pair{kIdBvlWheel2, kIdLblFrequency}}) {
    ::GetWindowRect(Control(kIdFraTimesAndDuration), &frame);
    ::GetWindowRect(Control(w), &wheel);
    ::GetWindowRect(Control(c), &caption);
    RECT both{};
    EXPECT_TRUE(::IntersectRect(&both, &frame, &wheel) && ::EqualRect(&both, &wheel)) << w;
    EXPECT_GT(wheel.top, caption.top) << w;
  }
  // No settings file: the wheels stand at 1 and the flasher follows them.
  EXPECT_EQ(Position(kIdBvlWheel1), 1);
  EXPECT_EQ(Text(Control(kIdLblDuration)), "Duration: 1 Millisecond(s)");
  EXPECT_EQ(Text(Control(kIdLblFrequency)), "Frequency: 1 Second(s)");
  EXPECT_EQ(window->Flasher().TimerDisplayLength().Interval(), 1ms);
}

TEST_F(PanelsTest, KeysAndTheMouseWheelTurnTheWheelsWithinTheirRangesAndEveryTurnIsSaved) {
  folder.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
  Load();
  EXPECT_EQ(Position(kIdBvlWheel1), 50);
  EXPECT_EQ(Position(kIdBvlWheel2), 3);

  Key(kIdBvlWheel1, VK_RIGHT);
  EXPECT_EQ(Text(Control(kIdLblDuration)), "Duration: 51 Millisecond(s)");
  EXPECT_EQ(window->Flasher().TimerDisplayLength().Interval(), 51ms);
  EXPECT_EQ(Settings(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n51\r\n3");

  Key(kIdBvlWheel1, VK_END);
  Key(kIdBvlWheel1, VK_RIGHT);
  Key(kIdBvlWheel1, VK_NEXT);
  EXPECT_EQ(Position(kIdBvlWheel1), 1000);
  EXPECT_EQ(Text(Control(kIdLblDuration)), "Duration: 1000 Millisecond(s)");
  Key(kIdBvlWheel1, VK_PRIOR);
  EXPECT_LT(Position(kIdBvlWheel1), 1000);
  Key(kIdBvlWheel1, VK_HOME);
  Key(kIdBvlWheel1, VK_LEFT);
  EXPECT_EQ(Position(kIdBvlWheel1), 1);
  EXPECT_EQ(Settings(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n1\r\n3");

  // Two notches away from the user raise the frequency by two; a turn
  // towards the user past the bottom stops at 1.
  ::SendMessageW(Control(kIdBvlWheel2), WM_MOUSEWHEEL, MAKEWPARAM(0, 2 * WHEEL_DELTA), 0);
  Pump();
  EXPECT_EQ(Text(Control(kIdLblFrequency)), "Frequency: 5 Second(s)");
  EXPECT_EQ(window->Flasher().TimerFrequency().Interval(), 5000ms);
  ::SendMessageW(Control(kIdBvlWheel2), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-10 * WHEEL_DELTA)), 0);
  Key(kIdBvlWheel2, VK_END);
  EXPECT_EQ(Text(Control(kIdLblFrequency)), "Frequency: 30 Second(s)");
  EXPECT_EQ(window->Flasher().TimerFrequency().Interval(), 30000ms);
  EXPECT_EQ(Settings(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n1\r\n30");

  // A value the program sets shows on the trackbar.
  window->Timing().bvlWHEEL1.SetValue(777);
  EXPECT_EQ(Position(kIdBvlWheel1), 777);
  EXPECT_EQ(Text(Control(kIdLblDuration)), "Duration: 777 Millisecond(s)");
}

TEST_F(PanelsTest, AStoredZeroDurationPutsTheWheelAtTwoWithoutWritingTheFile) {
  const std::string stored = "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n0\r\n7";
  folder.Put("\\__.__", stored);
  Load();
  EXPECT_EQ(Position(kIdBvlWheel1), 2);
  EXPECT_EQ(Position(kIdBvlWheel2), 7);
  EXPECT_EQ(Text(Control(kIdLblDuration)), "Duration: 2 Millisecond(s)");
  EXPECT_EQ(window->Flasher().TimerDisplayLength().Interval(), 2ms);
  EXPECT_EQ(Settings(), stored);
}

TEST_F(PanelsTest, PickingAColourPaintsThePreviewOnBothHalvesAndWhiteBecomesAlmostWhite) {
  folder.Put("\\__.__", "Arial\r\n20\r\nTrue\r\nFalse\r\n0\r\n50\r\n3");
  Load();
  const HWND picture = Control(kIdPicture1);
  RECT client{};
  ::GetClientRect(picture, &client);
  const RECT left{0, 0, client.right / 2 - 2, client.bottom};
  const RECT right{client.right / 2 + 2, 0, client.right, client.bottom};
  // The two halves: white with black text beside black.
  EXPECT_GT(CountPixels(picture, left, RGB(255, 255, 255)), 100);
  EXPECT_GT(CountPixels(picture, right, RGB(0, 0, 0)), 100);
  EXPECT_EQ(CountPixels(picture, client, RGB(255, 0, 0)), 0);

  Pick(RowOf("Red"));
  EXPECT_EQ(window->FontLook().ColorPicker1.Value(), 0x000000FFu);
  EXPECT_EQ(window->Flasher().LabelColor(), 0x000000FFu);
  EXPECT_GT(CountPixels(picture, left, RGB(255, 0, 0)), 10) << "red text on the white half";
  EXPECT_GT(CountPixels(picture, right, RGB(255, 0, 0)), 10) << "red text on the black half";
  EXPECT_EQ(Settings(), "Arial\r\n20\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");

  Pick(RowOf("White"));
  EXPECT_EQ(window->FontLook().ColorPicker1.Value(), 0x00FFFFFEu);
  EXPECT_EQ(window->Flasher().LabelColor(), 0x00FFFFFEu);
  EXPECT_EQ(window->FontLook().lblPreview.ForeColor(), 0x00FFFFFEu);
  EXPECT_EQ(Settings(), "Arial\r\n20\r\nTrue\r\nFalse\r\n16777214\r\n50\r\n3");
  // The box shows the colour in force.
  const LRESULT shown = ::SendMessageW(Control(kIdColorPicker1), CB_GETCURSEL, 0, 0);
  EXPECT_EQ(shown, RowOf("RGB 254, 255, 255"));
  EXPECT_GT(CountPixels(picture, right, RGB(254, 255, 255)), 10);
}

TEST_F(PanelsTest, CancellingTheFontChooserStoresThePreviewsFontWithItsSizeRounded) {
  Load();
  EXPECT_EQ(window->FontLook().lblPreview.Font().size, 9.75);
  gAnswer = IDCANCEL;
  gAnswered = false;
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 200, AnswerTimer);
  ::SendMessageW(Control(kIdCmdEditFont), BM_CLICK, 0, 0);
  ::KillTimer(nullptr, timer);
  EXPECT_TRUE(gAnswered) << "no chooser opened";
  EXPECT_EQ(window->FontLook().lblPreview.Font().size, 10);
  EXPECT_EQ(Settings(), "Arial\r\n10\r\nFalse\r\nFalse\r\n12632256\r\n1\r\n1");
}

}  // namespace
}  // namespace qm::win32
