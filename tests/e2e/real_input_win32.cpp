#include "real_input_win32.h"

#include <gtest/gtest.h>

#include "settings/settings_ids.h"

namespace qm::test {

using namespace std::chrono_literals;

HWND Control(HWND form, int id) {
  if (const HWND direct = ::GetDlgItem(form, id)) return direct;
  return ::GetDlgItem(::GetDlgItem(form, kIdPicture2), id);
}

std::wstring WideText(HWND hwnd) {
  wchar_t text[8192] = {};
  ::SendMessageTimeoutW(hwnd, WM_GETTEXT, 8192, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 2000,
                        nullptr);
  return text;
}

std::string AsciiText(HWND hwnd) {
  std::string out;
  for (wchar_t c : WideText(hwnd)) out += c < 128 ? static_cast<char>(c) : '?';
  return out;
}

POINT Middle(HWND hwnd) {
  RECT r{};
  ::GetWindowRect(hwnd, &r);
  return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

HWND FocusedControl(HWND form) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return ::GetGUIThreadInfo(::GetWindowThreadProcessId(form, nullptr), &info) ? info.hwndFocus : nullptr;
}

void SendMouse(DWORD flags, POINT at, DWORD data) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dx = ::MulDiv(at.x, 65535, ::GetSystemMetrics(SM_CXSCREEN) - 1);
  input.mi.dy = ::MulDiv(at.y, 65535, ::GetSystemMetrics(SM_CYSCREEN) - 1);
  input.mi.mouseData = data;
  input.mi.dwFlags = flags | MOUSEEVENTF_ABSOLUTE;
  ::SendInput(1, &input, sizeof input);
}

void ClickScreen(POINT at, bool settle) {
  SendMouse(MOUSEEVENTF_MOVE, at);
  ::Sleep(50);
  SendMouse(MOUSEEVENTF_LEFTDOWN, at);
  ::Sleep(30);
  SendMouse(MOUSEEVENTF_LEFTUP, at);
  if (settle) ::Sleep(150);
}

void Click(HWND control, int dx, int dy) {
  RECT r{};
  ::GetWindowRect(control, &r);
  ClickScreen({dx < 0 ? (r.left + r.right) / 2 : r.left + dx, dy < 0 ? (r.top + r.bottom) / 2 : r.top + dy});
}

void Key(WORD vk, bool up) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = vk;
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  ::SendInput(1, &input, sizeof input);
}

void PressKey(WORD vk, bool settle) {
  Key(vk, false);
  Key(vk, true);
  if (settle) ::Sleep(150);
}

void PressAlt(char key) {
  Key(VK_MENU, false);
  PressKey(key);
  Key(VK_MENU, true);
}

void TypeText(std::wstring_view text) {
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

void TypeInto(HWND box, std::wstring_view text) {
  Click(box);
  ::SendMessageW(box, EM_SETSEL, 0, -1);
  PressKey(VK_DELETE);
  TypeText(text);
}

void SelectRow(HWND form, int listId, int row) {
  Click(Control(form, listId), 60, 8);
  for (int i = 0; i < row; ++i) PressKey(VK_DOWN);
}

std::string Answer(const RunningProgram& program, int button) {
  HWND box = nullptr;
  if (!WaitFor([&] { return (box = program.MessageBox()) != nullptr; }, 5s)) return "(no message box)";
  const std::string text = RunningProgram::MessageBoxText(box);
  ::PostMessageA(box, WM_COMMAND, button, 0);
  WaitFor([&] { return program.MessageBox() == nullptr; }, 5s);
  return text;
}

HWND StartFirstRun(RunningProgram& program) {
  EXPECT_TRUE(program.Started()) << BuiltProgramPath();
  HWND form = nullptr;
  WaitFor([&] { return (form = program.SettingsWindow()) != nullptr && ::IsWindowVisible(form); }, 10s);
  EXPECT_EQ(Answer(program, IDOK), "To view help click the 'Help' tab at the top of this window.");
  return form;
}

HWND OpenFontChooser(const RunningProgram& program, HWND form) {
  Click(Control(form, kIdCmdEditFont));
  HWND chooser = nullptr;
  if (WaitFor([&] { return (chooser = program.MessageBox()) != nullptr; }, 5s)) ::Sleep(300);
  return chooser;
}

HWND ChooserEdit(HWND chooser, int combo) {
  return ::FindWindowExW(::GetDlgItem(chooser, combo), nullptr, L"Edit", nullptr);
}

}  // namespace qm::test
