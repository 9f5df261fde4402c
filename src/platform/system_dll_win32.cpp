#include "platform/system_dll_win32.h"

#include <string>

namespace qm::win32::sys {
namespace {

// A library of the system folder, loaded once for the program's life.
HMODULE SystemLibrary(const wchar_t* name) {
  HMODULE module = ::LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (module) return module;
  // A system without the search flag: the full path in the system folder.
  wchar_t folder[MAX_PATH] = {};
  const UINT length = ::GetSystemDirectoryW(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  std::wstring path(folder, length);
  path += L'\\';
  path += name;
  return ::LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

template <class F>
F Lookup(const wchar_t* library, const char* function) {
  const HMODULE module = SystemLibrary(library);
  return module ? reinterpret_cast<F>(reinterpret_cast<void*>(::GetProcAddress(module, function))) : nullptr;
}

#define QM_SYSTEM_FUNCTION(library, name, failure, ...)                                      \
  using name##Type = decltype(&::name);                                                      \
  static const name##Type function = Lookup<name##Type>(library, #name);                    \
  return function ? function(__VA_ARGS__) : failure

}  // namespace

void UseSafeLibrarySearch() {
  using SetDefault = BOOL(WINAPI*)(DWORD);
  const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
  if (const auto setDefault = reinterpret_cast<SetDefault>(
          reinterpret_cast<void*>(::GetProcAddress(kernel, "SetDefaultDllDirectories"))))
    setDefault(LOAD_LIBRARY_SEARCH_SYSTEM32);
  ::SetDllDirectoryW(L"");
}

HTHEME OpenThemeData(HWND window, LPCWSTR classList) {
  QM_SYSTEM_FUNCTION(L"uxtheme.dll", OpenThemeData, nullptr, window, classList);
}
HRESULT CloseThemeData(HTHEME theme) { QM_SYSTEM_FUNCTION(L"uxtheme.dll", CloseThemeData, E_NOTIMPL, theme); }
HRESULT DrawThemeBackground(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const RECT* clip) {
  QM_SYSTEM_FUNCTION(L"uxtheme.dll", DrawThemeBackground, E_NOTIMPL, theme, dc, part, state, rect, clip);
}
HRESULT DrawThemeParentBackground(HWND window, HDC dc, const RECT* rect) {
  QM_SYSTEM_FUNCTION(L"uxtheme.dll", DrawThemeParentBackground, E_NOTIMPL, window, dc, const_cast<RECT*>(rect));
}
HRESULT GetThemeBackgroundRegion(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HRGN* region) {
  QM_SYSTEM_FUNCTION(L"uxtheme.dll", GetThemeBackgroundRegion, E_NOTIMPL, theme, dc, part, state, rect, region);
}
BOOL IsThemeActive() { QM_SYSTEM_FUNCTION(L"uxtheme.dll", IsThemeActive, FALSE); }
HRESULT SetWindowTheme(HWND window, LPCWSTR subApp, LPCWSTR idList) {
  QM_SYSTEM_FUNCTION(L"uxtheme.dll", SetWindowTheme, E_NOTIMPL, window, subApp, idList);
}

MMRESULT timeBeginPeriod(UINT period) { QM_SYSTEM_FUNCTION(L"winmm.dll", timeBeginPeriod, TIMERR_NOCANDO, period); }
MMRESULT timeEndPeriod(UINT period) { QM_SYSTEM_FUNCTION(L"winmm.dll", timeEndPeriod, TIMERR_NOCANDO, period); }

DWORD GetFileVersionInfoSizeW(LPCWSTR file, LPDWORD handle) {
  QM_SYSTEM_FUNCTION(L"version.dll", GetFileVersionInfoSizeW, 0, file, handle);
}
BOOL GetFileVersionInfoW(LPCWSTR file, DWORD handle, DWORD size, LPVOID data) {
  QM_SYSTEM_FUNCTION(L"version.dll", GetFileVersionInfoW, FALSE, file, handle, size, data);
}
BOOL VerQueryValueW(LPCVOID block, LPCWSTR subBlock, LPVOID* buffer, PUINT length) {
  QM_SYSTEM_FUNCTION(L"version.dll", VerQueryValueW, FALSE, block, subBlock, buffer, length);
}

HRESULT DwmIsCompositionEnabled(BOOL* enabled) {
  QM_SYSTEM_FUNCTION(L"dwmapi.dll", DwmIsCompositionEnabled, E_NOTIMPL, enabled);
}
HRESULT DwmGetCompositionTimingInfo(HWND window, DWM_TIMING_INFO* timing) {
  QM_SYSTEM_FUNCTION(L"dwmapi.dll", DwmGetCompositionTimingInfo, E_NOTIMPL, window, timing);
}
HRESULT DwmFlush() { QM_SYSTEM_FUNCTION(L"dwmapi.dll", DwmFlush, E_NOTIMPL); }

HRESULT SHQueryUserNotificationState(QUERY_USER_NOTIFICATION_STATE* state) {
  QM_SYSTEM_FUNCTION(L"shell32.dll", SHQueryUserNotificationState, E_NOTIMPL, state);
}

}  // namespace qm::win32::sys
