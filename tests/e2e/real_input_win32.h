// Real input for the end-to-end tests, as a person gives it: the pointer
// moved and clicked with SendInput, keys pressed and characters typed,
// message boxes and the font chooser answered, and the settings window's
// controls and texts read.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <string_view>

#include "../support/settings_layout_check_win32.h"
#include "program_driver_win32.h"
#include "settings/settings_ids.h"

namespace qm::test {

inline POINT Middle(HWND hwnd) {
  RECT r{};
  ::GetWindowRect(hwnd, &r);
  return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

// The control of the window's thread that has the keyboard focus.
inline HWND FocusedControl(HWND form) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return ::GetGUIThreadInfo(::GetWindowThreadProcessId(form, nullptr), &info) ? info.hwndFocus : nullptr;
}

inline void SendMouse(DWORD flags, POINT at, DWORD data = 0) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dx = ::MulDiv(at.x, 65535, ::GetSystemMetrics(SM_CXSCREEN) - 1);
  input.mi.dy = ::MulDiv(at.y, 65535, ::GetSystemMetrics(SM_CYSCREEN) - 1);
  input.mi.mouseData = data;
  input.mi.dwFlags = flags | MOUSEEVENTF_ABSOLUTE;
  ::SendInput(1, &input, sizeof input);
}

// A real left click at a point of the screen. Every helper below waits a
// moment after its input for the program to take it, unless `settle` is
// false (an action's last input, which a kill's delay counts from).
inline void ClickScreen(POINT at, bool settle = true) {
  SendMouse(MOUSEEVENTF_MOVE, at);
  ::Sleep(50);
  SendMouse(MOUSEEVENTF_LEFTDOWN, at);
  ::Sleep(30);
  SendMouse(MOUSEEVENTF_LEFTUP, at);
  if (settle) ::Sleep(150);
}

// A real click `dx`, `dy` pixels into a control's window (its middle when
// negative).
inline void Click(HWND control, int dx = -1, int dy = -1) {
  RECT r{};
  ::GetWindowRect(control, &r);
  ClickScreen({dx < 0 ? (r.left + r.right) / 2 : r.left + dx, dy < 0 ? (r.top + r.bottom) / 2 : r.top + dy});
}

inline void Key(WORD vk, bool up) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = vk;
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  ::SendInput(1, &input, sizeof input);
}

inline void PressKey(WORD vk, bool settle = true) {
  Key(vk, false);
  Key(vk, true);
  if (settle) ::Sleep(150);
}

// The key with Alt held: a button's access key.
inline void PressAlt(char key) {
  Key(VK_MENU, false);
  PressKey(key);
  Key(VK_MENU, true);
}

// Typed as keyboard characters into whatever has the focus.
inline void TypeText(std::wstring_view text) {
  for (wchar_t c : text) {
    INPUT input[2]{};
    for (INPUT& i : input) {
      i.type = INPUT_KEYBOARD;
      i.ki.wScan = c;
      i.ki.dwFlags = KEYEVENTF_UNICODE;
    }
    input[1].ki.dwFlags |= KEYEVENTF_KEYUP;
    ::SendInput(2, input, sizeof input[0]);
    ::Sleep(20);
  }
  ::Sleep(150);
}

// Clicks into the box, empties it and types the text.
inline void TypeInto(HWND box, std::wstring_view text) {
  Click(box);
  ::SendMessageW(box, EM_SETSEL, 0, -1);
  PressKey(VK_DELETE);
  TypeText(text);
}

// Highlights a row of a list by a click on its first row and the Down key.
inline void SelectRow(HWND form, int listId, int row) {
  Click(Control(form, listId), 60, 8);
  for (int i = 0; i < row; ++i) PressKey(VK_DOWN);
}

// Answers the open message box with the button; its text.
inline std::string Answer(const RunningProgram& program, int button) {
  HWND box = nullptr;
  if (!WaitFor([&] { return (box = program.MessageBox()) != nullptr; }, std::chrono::seconds(5)))
    return "(no message box)";
  char text[512] = {};
  ::GetDlgItemTextA(box, 0xFFFF, text, sizeof text);  // the box keeps its text in the static 0xFFFF
  ::PostMessageA(box, WM_COMMAND, button, 0);
  WaitFor([&] { return program.MessageBox() == nullptr; }, std::chrono::seconds(5));
  return text;
}

// Waits for the settings window of a "firstrun" start, checks and answers
// its hint; the window.
inline HWND StartFirstRun(RunningProgram& program) {
  EXPECT_TRUE(program.Started()) << BuiltProgramPath();
  HWND form = nullptr;
  WaitFor([&] { return (form = program.SettingsWindow()) != nullptr && ::IsWindowVisible(form); },
          std::chrono::seconds(10));
  EXPECT_EQ(Answer(program, IDOK), "To view help click the 'Help' tab at the top of this window.");
  return form;
}

// Clicks "Edit Font" and waits for the font chooser; the chooser.
inline HWND OpenFontChooser(const RunningProgram& program, HWND form) {
  Click(Control(form, kIdCmdEditFont));
  HWND chooser = nullptr;
  if (WaitFor([&] { return (chooser = program.MessageBox()) != nullptr; }, std::chrono::seconds(5)))
    ::Sleep(300);
  return chooser;
}

// The edit box of one of the chooser's combo boxes (cmb1 face, cmb2 style,
// cmb3 size).
inline HWND ChooserEdit(HWND chooser, int combo) {
  return ::FindWindowExW(::GetDlgItem(chooser, combo), nullptr, L"Edit", nullptr);
}

}  // namespace qm::test
