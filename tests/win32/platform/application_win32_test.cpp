#include "platform/application_win32.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace qm::win32 {
namespace {

// The one-instance guard's object carries the user's identifier: objects
// under the plain name or another user's name block nothing, its own does.
// (The program's folder in any script and a second copy ending at once are
// checked end to end: those tests run the program from a folder named in
// Cyrillic and Chinese.)
TEST(Application, ObjectsUnderThePlainNameOrAnotherUsersNameBlockNothing) {
  const char* name = "Quillmere.Test.Squatted";
  // Another program (or another user's copy) holds the plain name, in the
  // global and the session namespace, and a name with another identifier.
  const HANDLE plain = ::CreateMutexW(nullptr, FALSE, L"Quillmere.Test.Squatted");
  const HANDLE global = ::CreateMutexW(nullptr, FALSE, L"Global\\Quillmere.Test.Squatted");
  const HANDLE other = ::CreateMutexW(nullptr, FALSE, L"Local\\Quillmere.Test.Squatted.S-1-5-21-1-2-3-1001");
  ASSERT_TRUE(plain && global && other);
  const std::wstring own = InstanceObjectName(name);
  EXPECT_EQ(own.rfind(L"Local\\Quillmere.Test.Squatted.S-1-", 0), 0u) << own.size();
  InstanceGuard guard(name);
  EXPECT_FALSE(guard.PrevInstance());
  EXPECT_TRUE(InstanceGuard(name).PrevInstance());
  ::CloseHandle(plain);
  ::CloseHandle(global);
  ::CloseHandle(other);
}

// Answers the message box that Show opens, remembering its title and text.
BOOL CALLBACK TextOfChild(HWND child, LPARAM text) {
  wchar_t buffer[256] = {};
  if (::GetDlgCtrlID(child) == 0xFFFF && ::GetWindowTextW(child, buffer, 256) > 0)
    *reinterpret_cast<std::wstring*>(text) = buffer;
  return TRUE;
}

TEST(Application, MessageBoxesShowUtf8Texts) {
  std::wstring seenText;
  std::atomic<bool> answered{false};
  std::thread answerer([&] {
    for (int i = 0; i < 1000 && !answered; ++i) {
      if (HWND box = ::FindWindowW(L"#32770", L"Quillmere")) {
        ::EnumChildWindows(box, TextOfChild, reinterpret_cast<LPARAM>(&seenText));
        ::PostMessageW(box, WM_COMMAND, IDYES, 0);
        answered = true;
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  });
  MessageBoxPrompts prompts;
  const PromptAnswer answer = prompts.Show("Удалить «Été»?", PromptIcon::Question, PromptButtons::YesNo);
  answerer.join();
  ASSERT_TRUE(answered);
  EXPECT_EQ(answer, PromptAnswer::Yes);
  EXPECT_EQ(seenText, L"\u0423\u0434\u0430\u043b\u0438\u0442\u044c \u00ab\u00c9t\u00e9\u00bb?");
  EXPECT_FALSE(prompts.IsOpen());
}

}  // namespace
}  // namespace qm::win32
