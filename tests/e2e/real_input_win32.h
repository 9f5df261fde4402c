// Real input for the end-to-end tests, as a person gives it: the pointer
// moved and clicked with SendInput, keys pressed and characters typed, text
// pasted from the clipboard, message boxes answered, and the settings
// window's controls and texts read.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "program_driver_win32.h"

namespace qm::test {

// The settings window's child by id, directly or in the panel Picture2.
HWND Control(HWND form, int id);
std::wstring WideText(HWND hwnd);
// The text with every character outside ASCII shown as "?".
std::string AsciiText(HWND hwnd);
POINT Middle(HWND hwnd);

void SendMouse(DWORD flags, POINT at, DWORD data = 0);
// A real left click at a point of the screen.
void ClickScreen(POINT at);
// A real click `dx`, `dy` pixels into a control's window (its middle when
// negative).
void Click(HWND control, int dx = -1, int dy = -1);
void Key(WORD vk, bool up);
void PressKey(WORD vk);
// Typed as keyboard characters into whatever has the focus.
void TypeText(std::wstring_view text);
// Clicks into the box, empties it and types the text.
void TypeInto(HWND box, std::wstring_view text);
// Puts the text on the clipboard and pastes it into the box.
void PasteInto(HWND box, std::wstring_view text);
// Answers the open message box with the button; its text.
std::string Answer(const RunningProgram& program, int button);
// Waits for the settings window of a "firstrun" start, checks and answers
// its hint; the window.
HWND StartFirstRun(RunningProgram& program);

}  // namespace qm::test
