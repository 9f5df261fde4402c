// Libraries are loaded from the system folder only once the program has
// asked for the safe search, and the system functions it looks up there
// work.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "platform/system_dll_win32.h"

namespace qm::win32 {
namespace {

std::wstring BesideTheTest(const wchar_t* name) {
  wchar_t path[MAX_PATH] = {};
  const DWORD n = ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring folder(path, n);
  return folder.substr(0, folder.find_last_of(L'\\') + 1) + name;
}

TEST(SystemLibraries, ALibraryBesideTheProgramIsNotLoadedByNameOnceTheSearchIsSafe) {
  // The library beside the test program loads by its path: it is there.
  const HMODULE byPath = ::LoadLibraryW(BesideTheTest(L"planted_probe.dll").c_str());
  ASSERT_NE(byPath, nullptr);
  ::FreeLibrary(byPath);
  ASSERT_EQ(::GetModuleHandleW(L"planted_probe.dll"), nullptr);

  sys::UseSafeLibrarySearch();
  const HMODULE byName = ::LoadLibraryW(L"planted_probe.dll");
  EXPECT_EQ(byName, nullptr);
  if (byName) ::FreeLibrary(byName);

  // The system's own functions are found in its folder.
  MMRESULT raised = sys::timeBeginPeriod(1);
  EXPECT_EQ(raised, static_cast<MMRESULT>(TIMERR_NOERROR));
  if (raised == TIMERR_NOERROR) sys::timeEndPeriod(1);
  DWORD ignored = 0;
  EXPECT_GT(sys::GetFileVersionInfoSizeW(BesideTheTest(L"planted_probe.dll").c_str(), &ignored) +
                sys::GetFileVersionInfoSizeW(L"kernel32.dll", &ignored),
            0u);
}

}  // namespace
}  // namespace qm::win32
