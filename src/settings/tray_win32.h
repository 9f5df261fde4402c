// The tray icon on Windows: clsTray adds, changes and removes the icon of
// the settings window in the notification area with the 8-bit record, and
// TrayIcon joins it to the popup menu: the owner's window procedure hands
// every message to TrayIcon::HandleMessage first, which decodes the icon's
// callback, opens the menu on a click and adds the icon again when the
// notification area is re-created ("TaskbarCreated").
#pragma once

#include <windows.h>
// After windows.h.
#include <shellapi.h>

#include <string>
#include <string_view>

#include "settings/tray.h"

namespace qm::win32 {

// The record's size as the program hands it over: the layout that carries
// the balloon-tip fields (left zero), 488 bytes in a 32-bit program and the
// same layout for the pointers of a 64-bit one.
inline constexpr DWORD kTrayRecordSize = NOTIFYICONDATAA_V2_SIZE;
#if !defined(_WIN64)
static_assert(kTrayRecordSize == 488);
#endif

using ShellNotifyIconFn = BOOL(WINAPI*)(DWORD message, PNOTIFYICONDATAA data);

// The window that owns the icon (the settings window), as the tray reads it.
class TrayForm {
 public:
  virtual ~TrayForm() = default;
  virtual HWND Hwnd() const = 0;
  // The window's current icon, running or stopped.
  virtual HICON Icon() const = 0;
  // The status text the window keeps as its tag.
  virtual std::string Tag() const = 0;
};

// A record for the owner: icon number 1, flags 7, callback 0x200, the icon
// and the tip cut to 127 characters; everything else zero.
NOTIFYICONDATAA MakeTrayRecord(HWND owner, HICON icon, std::string_view tip);

// One of the tray's icons (IDI_TRAY_RUNNING, IDI_TRAY_STOPPED of
// settings/tray_res.h) from the program's resources, at a size in pixels
// (16 for the notification area, 32 for a window's large icon); shared, so
// never destroyed. Null when the program lacks the resources.
HICON LoadTrayIcon(int resourceId, int size = 16);

class clsTray {
 public:
  // The notification call is reachable for tests; the system's by default.
  explicit clsTray(ShellNotifyIconFn notify = &::Shell_NotifyIconA) : notify_(notify) {}
  clsTray(const clsTray&) = delete;
  clsTray& operator=(const clsTray&) = delete;

  // Adds the icon with the form's icon and the tip (the form's tag when the
  // tip is empty). Each method reports whether the system took the call;
  // a refused call leaves the tray as it was.
  bool ShowIcon(const TrayForm& form, std::string_view tip);
  // Replaces tip and icon (the icon is always the form's current one).
  bool ChangeToolTip(const TrayForm& form, std::string_view tip);
  // Deletes the icon, then shows the form if it is hidden.
  bool RemoveIcon(const TrayForm& form);
  // Adds the icon again, with its last tip and the form's current icon,
  // after the notification area was re-created; nothing when no icon is
  // shown.
  bool Restore(const TrayForm& form);

  // True between ShowIcon and RemoveIcon.
  bool Shown() const { return shown_; }

 private:
  ShellNotifyIconFn notify_;
  // The record ChangeToolTip and RemoveIcon fill; ShowIcon builds its own.
  NOTIFYICONDATAA record_{};
  std::string tip_;
  bool shown_ = false;
};

class TrayIcon final : private TrayPopup {
 public:
  TrayIcon(TrayForm& form, TrayCommands& commands, ShellNotifyIconFn notify = &::Shell_NotifyIconA);
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;

  clsTray& Tray() { return tray_; }
  TrayMenu& Menu() { return menu_; }
  const TrayMenu& Menu() const { return menu_; }

  // True when the message was the tray's: its callback (answered 0) or the
  // notification area's re-creation. The owner's own mouse moves are not.
  bool HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam);

 private:
  // Opens the menu at the mouse position and runs its loop.
  TrayMenuItem Popup(const TrayMenu& menu) override;

  TrayForm& form_;
  clsTray tray_;
  TrayMenu menu_;
  UINT taskbarCreated_;
};

}  // namespace qm::win32
