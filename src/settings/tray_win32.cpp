#include "settings/tray_win32.h"

#include <cstring>

#include "platform/gdi_win32.h"
#include "platform/window_win32.h"

namespace qm::win32 {

NOTIFYICONDATAA MakeTrayRecord(HWND owner, HICON icon, std::string_view tip) {
  NOTIFYICONDATAA r{};
  r.cbSize = kTrayRecordSize;
  r.hWnd = owner;
  r.uID = kTrayIconNumber;
  r.uFlags = kTrayRecordFlags;
  r.uCallbackMessage = kTrayCallbackMessage;
  r.hIcon = icon;
  const std::string fitted = FitTrayTip(tip);
  std::memcpy(r.szTip, fitted.data(), fitted.size());
  return r;
}

HICON LoadTrayIcon(int resourceId, int size) {
  return static_cast<HICON>(
      ::LoadImageA(ThisModule(), MAKEINTRESOURCEA(resourceId), IMAGE_ICON, size, size, LR_SHARED));
}

bool clsTray::ShowIcon(const TrayForm& form, std::string_view tip) {
  tip_ = tip.empty() ? form.Tag() : std::string(tip);
  NOTIFYICONDATAA record = MakeTrayRecord(form.Hwnd(), form.Icon(), tip_);
  // Wanted from here on, even when refused now: a notification area that
  // comes up later gets it through Restore.
  shown_ = true;
  return notify_(NIM_ADD, &record) != FALSE;
}

bool clsTray::ChangeToolTip(const TrayForm& form, std::string_view tip) {
  tip_ = tip;
  record_ = MakeTrayRecord(form.Hwnd(), form.Icon(), tip_);
  return notify_(NIM_MODIFY, &record_) != FALSE;
}

bool clsTray::RemoveIcon(const TrayForm& form) {
  record_ = MakeTrayRecord(form.Hwnd(), form.Icon(), "");
  const bool done = notify_(NIM_DELETE, &record_) != FALSE;
  shown_ = false;
  if (form.Hwnd() && !::IsWindowVisible(form.Hwnd())) ::ShowWindow(form.Hwnd(), SW_SHOW);
  return done;
}

bool clsTray::Restore(const TrayForm& form) {
  if (!shown_) return false;
  NOTIFYICONDATAA record = MakeTrayRecord(form.Hwnd(), form.Icon(), tip_);
  return notify_(NIM_ADD, &record) != FALSE;
}

TrayIcon::TrayIcon(TrayForm& form, TrayCommands& commands, ShellNotifyIconFn notify)
    : form_(form),
      tray_(notify),
      menu_(commands),
      taskbarCreated_(::RegisterWindowMessageA("TaskbarCreated")) {}

bool TrayIcon::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == kTrayCallbackMessage) {
    const auto mouse = TrayCallbackMouseMessage(wParam, static_cast<std::uintptr_t>(lParam));
    if (!mouse) return false;
    menu_.Form_MouseMove(*mouse, *this);
    return true;
  }
  if (taskbarCreated_ != 0 && msg == taskbarCreated_) {
    tray_.Restore(form_);
    return true;
  }
  return false;
}

TrayMenuItem TrayIcon::Popup(const TrayMenu& menu) {
  win32::Menu popup(::CreatePopupMenu());
  if (!popup) return TrayMenuItem::None;
  for (const TrayMenuEntry& e : TrayMenu::Entries()) {
    if (e.IsSeparator()) {
      ::AppendMenuA(popup.Get(), MF_SEPARATOR, 0, nullptr);
      continue;
    }
    UINT flags = MF_STRING;
    if (menu.Checked(e.item)) flags |= MF_CHECKED;
    if (!menu.Enabled(e.item)) flags |= MF_GRAYED;
    const std::string caption(e.caption);
    ::AppendMenuA(popup.Get(), flags, e.commandId, caption.c_str());
  }

  POINT at{};
  ::GetCursorPos(&at);
  const HWND owner = form_.Hwnd();
  // Without the foreground the menu would not close when the user clicks
  // elsewhere; the null message afterwards lets a second click on the icon
  // open it again at once.
  ::SetForegroundWindow(owner);
  const UINT chosen = static_cast<UINT>(::TrackPopupMenu(
      popup.Get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON | TPM_RETURNCMD | TPM_NONOTIFY, at.x, at.y,
      0, owner, nullptr));
  ::PostMessageA(owner, WM_NULL, 0, 0);
  return TrayMenu::ItemOfCommand(chosen);
}

}  // namespace qm::win32
