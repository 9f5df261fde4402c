// The tray icon and its menu on the real (virtual) display.
#include "settings/tray_win32.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "platform/window_win32.h"
#include "settings/tray_res.h"

namespace qm::win32 {
namespace {

using namespace std::chrono_literals;

// Every call of the notification function, with a copy of its record.
struct Call {
  DWORD message;
  NOTIFYICONDATAA record;
};
std::vector<Call> gCalls;
BOOL gAnswer = TRUE;

BOOL WINAPI RecordNotify(DWORD message, PNOTIFYICONDATAA data) {
  gCalls.push_back({message, *data});
  return gAnswer;
}

class RecordingCommands final : public TrayCommands {
 public:
  void PauseForTrayMenu() override { log.push_back("pause"); }
  bool BringOpenMessageBoxToFront() override { return false; }
  void mnuSettings_Click() override { log.push_back("settings"); }
  void mnuStart_Click() override { log.push_back("start"); }
  void mnuStop_Click() override { log.push_back("stop"); }
  void mnuExit_Click() override { log.push_back("exit"); }
  std::vector<std::string> log;
};

// A hidden window that owns the icon and hands its messages to the tray.
class Owner final : public Window, public TrayForm {
 public:
  Owner() {
    CreateArgs a;
    a.className = "QuillmereTrayTestOwner";
    Create(a);
  }
  HWND Hwnd() const override { return Window::Hwnd(); }
  HICON Icon() const override { return icon; }
  std::string Tag() const override { return tag; }

  HICON icon = LoadTrayIcon(IDI_TRAY_RUNNING);
  std::string tag = "Click for menu options.";
  TrayIcon* tray = nullptr;
  int ownMouseMoves = 0;

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
    if (tray && tray->HandleMessage(msg, wParam, lParam)) return 0;
    if (msg == WM_MOUSEMOVE) ++ownMouseMoves;
    return Window::HandleMessage(msg, wParam, lParam);
  }
};

class TrayWin32Test : public ::testing::Test {
 protected:
  TrayWin32Test() {
    gCalls.clear();
    gAnswer = TRUE;
  }
  Owner owner;
};

void ExpectRecord(const Call& call, DWORD message, HWND owner, HICON icon, const std::string& tip) {
  const NOTIFYICONDATAA& r = call.record;
  EXPECT_EQ(call.message, message);
  EXPECT_EQ(r.cbSize, kTrayRecordSize);
  EXPECT_EQ(r.hWnd, owner);
  EXPECT_EQ(r.uID, 1u);
  EXPECT_EQ(r.uFlags, static_cast<UINT>(NIF_MESSAGE | NIF_ICON | NIF_TIP));
  EXPECT_EQ(r.uCallbackMessage, 0x200u);
  EXPECT_EQ(r.hIcon, icon);
  EXPECT_EQ(std::string(r.szTip), tip);
  // The tip's unused characters and the balloon fields stay zero.
  const auto* bytes = reinterpret_cast<const unsigned char*>(&r);
  const std::size_t tipEnd = offsetof(NOTIFYICONDATAA, szTip) + tip.size();
  for (std::size_t i = tipEnd; i < r.cbSize; ++i) ASSERT_EQ(bytes[i], 0) << "byte " << i;
}

TEST_F(TrayWin32Test, AddsChangesRestoresAndDeletesTheIconWithTheRightRecords) {
  clsTray tray(&RecordNotify);
  const HICON running = owner.icon;
  const HICON stopped = LoadTrayIcon(IDI_TRAY_STOPPED);
  ASSERT_TRUE(running && stopped && running != stopped);

  gAnswer = FALSE;  // the notification area is not there yet
  EXPECT_FALSE(tray.ShowIcon(owner, ""));
  gAnswer = TRUE;
  owner.icon = stopped;
  EXPECT_TRUE(tray.ChangeToolTip(owner, std::string(140, 't')));
  // The notification area comes (back): the last tip with the current icon.
  EXPECT_TRUE(tray.Restore(owner));
  owner.icon = running;
  ASSERT_FALSE(::IsWindowVisible(owner.Hwnd()));
  EXPECT_TRUE(tray.RemoveIcon(owner));
  EXPECT_FALSE(tray.Restore(owner));

  ASSERT_EQ(gCalls.size(), 4u);
  ExpectRecord(gCalls[0], NIM_ADD, owner.Hwnd(), running, "Click for menu options.");
  ExpectRecord(gCalls[1], NIM_MODIFY, owner.Hwnd(), stopped, std::string(127, 't'));
  ExpectRecord(gCalls[2], NIM_ADD, owner.Hwnd(), stopped, std::string(127, 't'));
  ExpectRecord(gCalls[3], NIM_DELETE, owner.Hwnd(), running, "");
  // Removing the icon brings the hidden window back.
  EXPECT_TRUE(::IsWindowVisible(owner.Hwnd()));
}

HWND FindTrayIconWindow() {
  const HWND tray = ::FindWindowA("__winex11_standalone_tray", nullptr);
  return tray ? ::FindWindowExA(tray, nullptr, "__winex11_tray_icon", nullptr) : nullptr;
}

TEST_F(TrayWin32Test, TheSystemsTrayShowsTheIcon) {
  clsTray tray;
  ASSERT_TRUE(tray.ShowIcon(owner, ""));
  EXPECT_TRUE(
      test::WaitFor([] { return FindTrayIconWindow() && ::IsWindowVisible(FindTrayIconWindow()); }, 2s));

  owner.icon = LoadTrayIcon(IDI_TRAY_STOPPED);
  EXPECT_TRUE(tray.ChangeToolTip(owner, "Subliminal Message are OFF."));

  EXPECT_TRUE(tray.RemoveIcon(owner));
  EXPECT_TRUE(
      test::WaitFor([] { return !FindTrayIconWindow() || !::IsWindowVisible(FindTrayIconWindow()); }, 2s));
}

// What the test saw while the menu's loop ran, from a timer of the owner
// that then dismisses the menu.
struct MenuProbe {
  TrayIcon* icon = nullptr;
  HWND owner = nullptr;
  bool sawMenu = false;
  bool openWhileShown = false;
  std::vector<std::string> items;
} gProbe;

// The popup menu's window while it is shown.
HWND OpenMenuWindow() {
  const HWND menu = ::FindWindowA("#32768", nullptr);
  return menu && ::IsWindowVisible(menu) ? menu : nullptr;
}

// "Caption [checked] [greyed]" for each item, "-" for a separator.
std::vector<std::string> DescribeMenu(HMENU menu) {
  std::vector<std::string> out;
  for (int i = 0; i < ::GetMenuItemCount(menu); ++i) {
    const UINT state = ::GetMenuState(menu, i, MF_BYPOSITION);
    if (state & MF_SEPARATOR) {
      out.push_back("-");
      continue;
    }
    char text[64] = {};
    ::GetMenuStringA(menu, i, text, sizeof text, MF_BYPOSITION);
    std::string line = text;
    if (state & MF_CHECKED) line += " [checked]";
    if (state & MF_GRAYED) line += " [greyed]";
    out.push_back(line);
  }
  return out;
}

void CALLBACK ProbeMenu(HWND hwnd, UINT, UINT_PTR id, DWORD) {
  ::KillTimer(hwnd, id);
  const HWND menu = OpenMenuWindow();
  gProbe.sawMenu = menu != nullptr;
  gProbe.openWhileShown = gProbe.icon->Menu().IsOpen();
  if (menu) gProbe.items = DescribeMenu(reinterpret_cast<HMENU>(::SendMessageA(menu, MN_GETHMENU, 0, 0)));
  ::PostMessageA(gProbe.owner, WM_CANCELMODE, 0, 0);
}

class TrayMenuWin32Test : public TrayWin32Test {
 protected:
  TrayMenuWin32Test() {
    owner.tray = &icon;
    // The menu opens where the pointer is: put it somewhere predictable.
    ::SetCursorPos(120, 80);
    gProbe = MenuProbe{};
    gProbe.icon = &icon;
    gProbe.owner = owner.Hwnd();
  }
  ~TrayMenuWin32Test() override { owner.tray = nullptr; }

  // Delivers the tray's callback while a timer probes the menu.
  void Callback(WPARAM wParam, LPARAM lParam) {
    ::SetTimer(owner.Hwnd(), 7, 400, &ProbeMenu);
    ::SendMessageA(owner.Hwnd(), 0x200, wParam, lParam);
    ::KillTimer(owner.Hwnd(), 7);
  }

  RecordingCommands commands;
  TrayIcon icon{owner, commands, &RecordNotify};
};

// The menu's items are drawn from the model's marks each time it opens,
// and a dismissed menu runs nothing. (Which releases open it, the core's
// tests check; choosing each item from the real menu, the end-to-end
// tests.)
TEST_F(TrayMenuWin32Test, TheMenuShowsTheModelsMarksEachTimeItOpens) {
  icon.Menu().mnuStartChecked = true;
  Callback(1, 0x205);
  EXPECT_TRUE(gProbe.sawMenu);
  EXPECT_TRUE(gProbe.openWhileShown);
  EXPECT_EQ(gProbe.items, (std::vector<std::string>{"Settings [greyed]", "-", "Start [checked]", "Stop", "-",
                                                    "Exit Application"}));
  EXPECT_EQ(commands.log, std::vector<std::string>{"pause"});
  EXPECT_TRUE(test::WaitFor([] { return OpenMenuWindow() == nullptr; }, 2s));

  icon.Menu().mnuSettingsEnabled = true;
  icon.Menu().mnuStartChecked = false;
  icon.Menu().mnuStopChecked = true;
  Callback(1, 0x202);
  EXPECT_EQ(gProbe.items,
            (std::vector<std::string>{"Settings", "-", "Start", "Stop [checked]", "-", "Exit Application"}));
  EXPECT_FALSE(icon.Menu().IsOpen());
}

TEST_F(TrayMenuWin32Test, TheOwnersOwnMouseMovesReachItAndTheIconComesBackWithTheNotificationArea) {
  icon.Tray().ShowIcon(owner, "");
  // The owner's own move over x 514: no button held, or below the top row.
  ::SendMessageA(owner.Hwnd(), WM_MOUSEMOVE, 0, MAKELPARAM(514, 0));
  ::SendMessageA(owner.Hwnd(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(517, 3));
  EXPECT_EQ(owner.ownMouseMoves, 2);
  EXPECT_TRUE(commands.log.empty());
  EXPECT_EQ(OpenMenuWindow(), nullptr);

  ::SendMessageA(owner.Hwnd(), ::RegisterWindowMessageA("TaskbarCreated"), 0, 0);
  ASSERT_EQ(gCalls.size(), 2u);
  EXPECT_EQ(gCalls[1].message, static_cast<DWORD>(NIM_ADD));
}

}  // namespace
}  // namespace qm::win32
