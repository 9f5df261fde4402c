// The overlay among other programs: a click at a phrase's place reaches the
// window beneath, and while another program fills the screen no phrase
// appears, until it closes.
#include <gtest/gtest.h>

#include <string>

#include "../support/test_helpers_win32.h"
#include "program_driver_win32.h"
#include "real_input_win32.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr COLORREF kRed = RGB(255, 0, 0);

// The clicks the test's own window was given, in screen pixels.
int gClicks = 0;
POINT gLastClick{};

LRESULT CALLBACK ProgramWindowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_LBUTTONDOWN) {
    ++gClicks;
    gLastClick = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    ::ClientToScreen(hwnd, &gLastClick);
    return 0;
  }
  return ::DefWindowProcW(hwnd, msg, wParam, lParam);
}

// Another program's window in front: a borderless popup of the given
// height across the primary monitor.
HWND OpenProgramWindow(int height) {
  static const ATOM windowClass = [] {
    WNDCLASSW c{};
    c.lpfnWndProc = ProgramWindowProc;
    c.hInstance = ::GetModuleHandleW(nullptr);
    c.hbrBackground = static_cast<HBRUSH>(::GetStockObject(GRAY_BRUSH));
    c.lpszClassName = L"QuillmereE2eOtherProgram";
    return ::RegisterClassW(&c);
  }();
  const HWND window =
      ::CreateWindowExW(0, reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(windowClass)), L"Other program",
                        WS_POPUP | WS_VISIBLE, 0, 0, ::GetSystemMetrics(SM_CXSCREEN), height, nullptr,
                        nullptr, ::GetModuleHandleW(nullptr), nullptr);
  ::SetForegroundWindow(window);
  Pump();
  return window;
}

bool PhraseOnScreen(const RunningProgram& program) {
  Pump();
  const HWND overlay = program.Overlay();
  RECT r{};
  return overlay && ::IsWindowVisible(overlay) && ::GetWindowRect(overlay, &r) &&
         CountScreenColour(r, kRed) > 0;
}

TEST(OverlayAmongPrograms, ClicksGoThroughAPhraseAndAFullScreenProgramKeepsPhrasesAwayUntilItCloses) {
  ProgramFolder folder;
  folder.Put("\\Lists\\Calm.lst", "1First phrase\r\n1Second phrase\r\n1Third phrase");
  folder.Put("\\_._", "1Calm");
  // Red, bold, 28 points, 1000 ms on the screen every second.
  folder.Put("\\__.__", "Arial\r\n28\r\nTrue\r\nFalse\r\n255\r\n1000\r\n1");
  RunningProgram program(folder);
  ASSERT_TRUE(program.Started()) << BuiltProgramPath();
  ASSERT_TRUE(WaitFor([&] { return program.SettingsWindow() && program.Overlay(); }, 10s));

  // A program one row short of the screen is not full-screen: phrases come
  // over it, and a click at a phrase reaches it, which stays in front.
  const int screenHeight = ::GetSystemMetrics(SM_CYSCREEN);
  const HWND other = OpenProgramWindow(screenHeight - 1);
  ASSERT_EQ(::GetForegroundWindow(), other);
  ASSERT_TRUE(WaitFor([&] { return PhraseOnScreen(program); }, 10s))
      << "a phrase over a window that fills not all";
  RECT phrase{};
  ::GetWindowRect(program.Overlay(), &phrase);
  const POINT at{(phrase.left + phrase.right) / 2, (phrase.top + phrase.bottom) / 2};
  ASSERT_LT(at.y, screenHeight - 1);
  ClickScreen(at);
  EXPECT_TRUE(WaitFor(
      [&] {
        Pump();
        return gClicks > 0;
      },
      2s))
      << "the click went to the overlay, not through it";
  EXPECT_EQ(gLastClick.x, at.x);
  EXPECT_EQ(gLastClick.y, at.y);
  EXPECT_EQ(::GetForegroundWindow(), other);

  // Full-screen: within the watchdog's second the display pauses, and no
  // phrase comes while the program fills the screen.
  ::SetWindowPos(other, HWND_TOP, 0, 0, ::GetSystemMetrics(SM_CXSCREEN), screenHeight, 0);
  ::SetForegroundWindow(other);
  EXPECT_TRUE(WaitFor(
      [&] {
        Pump();
        return !::IsWindowVisible(program.Overlay());
      },
      3s))
      << "the overlay is put away";
  const std::string before = program.OverlayPhrase().value_or("");
  EXPECT_FALSE(
      WaitFor([&] { return PhraseOnScreen(program) || program.OverlayPhrase().value_or("") != before; }, 4s))
      << "a phrase came over a full-screen program";
  ASSERT_EQ(::GetForegroundWindow(), other);

  // Closed, and the user back in an ordinary window: phrases come back by
  // themselves.
  ::DestroyWindow(other);
  const HWND ordinary = OpenProgramWindow(screenHeight / 2);
  const bool resumed =
      WaitFor([&] { return PhraseOnScreen(program) && program.OverlayPhrase().value_or("") != before; }, 8s);
  const HWND front = ::GetForegroundWindow();
  wchar_t frontClass[64] = L"";
  RECT frontRect{};
  if (front) {
    ::GetClassNameW(front, frontClass, 64);
    ::GetWindowRect(front, &frontRect);
  }
  EXPECT_TRUE(resumed) << "phrases resume after the full-screen program (the window in front: class "
                       << std::string(frontClass, frontClass + ::lstrlenW(frontClass)) << ", " << frontRect.left
                       << "," << frontRect.top << " to " << frontRect.right << "," << frontRect.bottom << ")";
  ::DestroyWindow(ordinary);
}

}  // namespace
}  // namespace qm::test
