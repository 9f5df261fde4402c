// Real input for the end-to-end tests, as a person gives it: the pointer
// moved and clicked with SendInput, keys pressed and characters typed,
// message boxes and the font chooser answered, and the settings window's
// controls and texts read.
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
// The control of the window's thread that has the keyboard focus.
HWND FocusedControl(HWND form);

void SendMouse(DWORD flags, POINT at, DWORD data = 0);
// A real left click at a point of the screen. Every helper below waits a
// moment after its input for the program to take it, unless `settle` is
// false (an action's last input, which a kill's delay counts from).
void ClickScreen(POINT at, bool settle = true);
// A real click `dx`, `dy` pixels into a control's window (its middle when
// negative).
void Click(HWND control, int dx = -1, int dy = -1);
void Key(WORD vk, bool up);
void PressKey(WORD vk, bool settle = true);
// The key with Alt held: a button's access key.
void PressAlt(char key);
// Typed as keyboard characters into whatever has the focus.
void TypeText(std::wstring_view text);
// Clicks into the box, empties it and types the text.
void TypeInto(HWND box, std::wstring_view text);
// Highlights a row of a list by a click on its first row and the Down key.
void SelectRow(HWND form, int listId, int row);
// Answers the open message box with the button; its text.
std::string Answer(const RunningProgram& program, int button);
// Waits for the settings window of a "firstrun" start, checks and answers
// its hint; the window.
HWND StartFirstRun(RunningProgram& program);
// Clicks "Edit Font" and waits for the font chooser; the chooser.
HWND OpenFontChooser(const RunningProgram& program, HWND form);
// The edit box of one of the chooser's combo boxes (cmb1 face, cmb2 style,
// cmb3 size).
HWND ChooserEdit(HWND chooser, int combo);

}  // namespace qm::test
