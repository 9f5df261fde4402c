// The timing panel in the real settings window: the system's trackbars
// with their ranges, turned by keys and the mouse wheel, and values the
// program sets shown on them, each followed to the captions, the flasher
// and the bytes of the settings file. (The colour drop-down and the font
// chooser are used in the end-to-end tests.)
#include "settings/settings_window_win32.h"

#include <gtest/gtest.h>
// After windows.h:
#include <commctrl.h>

#include <string>

#include "../../support/test_helpers_win32.h"
#include "../../support/fake_prompts.h"
#include "../../support/temp_folder.h"
#include "settings/settings_ids.h"

namespace qm::win32 {
namespace {

using test::Pump;
using test::Text;

using namespace std::chrono_literals;
using test::FakePrompts;
using test::TempFolder;

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

  // Page Down and Page Up move 50 milliseconds, within the range.
  Key(kIdBvlWheel1, VK_NEXT);
  EXPECT_EQ(Position(kIdBvlWheel1), 100);
  EXPECT_EQ(window->Flasher().TimerDisplayLength().Interval(), 100ms);
  EXPECT_EQ(Settings(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n100\r\n3");
  Key(kIdBvlWheel1, VK_PRIOR);
  Key(kIdBvlWheel1, VK_PRIOR);
  EXPECT_EQ(Position(kIdBvlWheel1), 1);
  EXPECT_EQ(Text(Control(kIdLblDuration)), "Duration: 1 Millisecond(s)");

  // A notch away from the user raises the frequency by one; a turn towards
  // the user past the bottom stops at 1.
  ::SendMessageW(Control(kIdBvlWheel2), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
  Pump();
  EXPECT_EQ(window->Flasher().TimerFrequency().Interval(), 4000ms);
  ::SendMessageW(Control(kIdBvlWheel2), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-10 * WHEEL_DELTA)), 0);
  Pump();
  EXPECT_EQ(Text(Control(kIdLblFrequency)), "Frequency: 1 Second(s)");
  EXPECT_EQ(Settings(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n1\r\n1");

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
  EXPECT_EQ(Settings(), stored);
}

}  // namespace
}  // namespace qm::win32
