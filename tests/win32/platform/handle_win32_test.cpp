// The handle owners with the system's own handles of each kind.
#include <windows.h>

#include <gtest/gtest.h>

#include <utility>

#include "platform/handle_win32.h"

namespace qm {
namespace {

bool IsOpenHandle(HANDLE h) {
  DWORD flags = 0;
  return ::GetHandleInformation(h, &flags) != 0;
}

TEST(HandleOwners, OwnRealKernelHandlesOfEachKind) {
  HANDLE raw = nullptr;
  {
    win32::KernelHandle event(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    ASSERT_TRUE(event);
    raw = event.Get();
    win32::KernelHandle moved(std::move(event));
    EXPECT_FALSE(event);
    EXPECT_TRUE(IsOpenHandle(raw));
  }
  EXPECT_FALSE(IsOpenHandle(raw));

  // The two answers for "no handle" are told apart.
  const win32::FileHandle missing(::CreateFileW(L"C:\\no-such-folder-qm\\x", GENERIC_READ, 0, nullptr,
                                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  EXPECT_EQ(missing.Get(), INVALID_HANDLE_VALUE);
  EXPECT_FALSE(missing);
  WIN32_FIND_DATAW data;
  const win32::FindHandle none(::FindFirstFileW(L"C:\\no-such-folder-qm\\*", &data));
  EXPECT_FALSE(none);
  const win32::FindHandle some(::FindFirstFileW(L"C:\\*", &data));
  EXPECT_TRUE(some);
  EXPECT_FALSE(win32::KernelHandle());
}

}  // namespace
}  // namespace qm
