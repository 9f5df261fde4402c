// The functions of the system libraries that Windows does not load from its
// own folder by itself (visual styles, the multimedia timer's resolution,
// version information, the desktop compositor), and those an older system
// lacks (the shell's notification state). Importing them would let a
// library of the same name placed in the program's folder, which the user
// may be able to write, be loaded instead; so they are looked up at their
// first use in the system folder only, and a function that cannot be found
// there behaves as the system does when the feature is missing.
#pragma once

#include <windows.h>
#include <dwmapi.h>
#include <mmsystem.h>
#include <shellapi.h>
#include <uxtheme.h>

namespace qm::win32::sys {

// Limits the libraries the program loads itself to the system folder, and
// drops the current folder from the search: the first thing the program
// does.
void UseSafeLibrarySearch();

// Visual styles. Without them: no theme (nullptr, E_NOTIMPL, false).
HTHEME OpenThemeData(HWND window, LPCWSTR classList);
HRESULT CloseThemeData(HTHEME theme);
HRESULT DrawThemeBackground(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const RECT* clip);
HRESULT DrawThemeParentBackground(HWND window, HDC dc, const RECT* rect);
HRESULT GetThemeBackgroundRegion(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HRGN* region);
BOOL IsThemeActive();
HRESULT SetWindowTheme(HWND window, LPCWSTR subApp, LPCWSTR idList);

// The system timer's resolution (TIMERR_NOCANDO when unavailable).
MMRESULT timeBeginPeriod(UINT period);
MMRESULT timeEndPeriod(UINT period);

// A file's version information (0 or FALSE when unavailable).
DWORD GetFileVersionInfoSizeW(LPCWSTR file, LPDWORD handle);
BOOL GetFileVersionInfoW(LPCWSTR file, DWORD handle, DWORD size, LPVOID data);
BOOL VerQueryValueW(LPCVOID block, LPCWSTR subBlock, LPVOID* buffer, PUINT length);

// The desktop compositor (E_NOTIMPL where there is none: a system before
// composition, or one that does not offer these).
HRESULT DwmIsCompositionEnabled(BOOL* enabled);
HRESULT DwmGetCompositionTimingInfo(HWND window, DWM_TIMING_INFO* timing);
HRESULT DwmFlush();

// The shell's word on whether the user welcomes notifications now
// (E_NOTIMPL where the shell cannot say).
HRESULT SHQueryUserNotificationState(QUERY_USER_NOTIFICATION_STATE* state);

}  // namespace qm::win32::sys
