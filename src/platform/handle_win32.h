// Owners of Windows kernel and shell handles, beside the GDI and USER
// owners of gdi_win32.h: each kind is UniqueHandle (unique_handle.h) with
// its traits. Kernel calls disagree about "no handle": CreateFile and
// FindFirstFile answer INVALID_HANDLE_VALUE, CreateMutex and
// CreateWaitableTimer answer null; the traits keep the two apart.
#pragma once

#include <windows.h>
// After windows.h:
#include <uxtheme.h>

#include "platform/unique_handle.h"
#include "platform/system_dll_win32.h"

namespace qm::win32 {

// Mutexes, events, waitable timers, processes, threads: null is none.
struct KernelHandleTraits {
  using Handle = HANDLE;
  static Handle Invalid() noexcept { return nullptr; }
  static bool Close(Handle h) noexcept { return ::CloseHandle(h) != 0; }
};

// Files from CreateFile: INVALID_HANDLE_VALUE is none.
struct FileHandleTraits {
  using Handle = HANDLE;
  static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static bool Close(Handle h) noexcept { return ::CloseHandle(h) != 0; }
};

// Searches from FindFirstFile, closed with FindClose.
struct FindHandleTraits {
  using Handle = HANDLE;
  static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static bool Close(Handle h) noexcept { return ::FindClose(h) != 0; }
};

// Visual-style data from OpenThemeData, closed with CloseThemeData (looked up in the
// system folder).
struct ThemeHandleTraits {
  using Handle = HTHEME;
  static Handle Invalid() noexcept { return nullptr; }
  static bool Close(Handle h) noexcept { return SUCCEEDED(sys::CloseThemeData(h)); }
};

using KernelHandle = UniqueHandle<KernelHandleTraits>;
using FileHandle = UniqueHandle<FileHandleTraits>;
using FindHandle = UniqueHandle<FindHandleTraits>;
using ThemeHandle = UniqueHandle<ThemeHandleTraits>;

}  // namespace qm::win32
