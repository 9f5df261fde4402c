// The file system on Windows' own terms: hidden and system marks, files
// another program holds open, the system's own code page 1252, and leftovers
// of a copy that still runs.
#include <windows.h>
// After windows.h:
#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <thread>

#include "../../support/leftovers_check.h"
#include "../../support/temp_folder.h"
#include "platform/ansi_text.h"
#include "platform/file_system.h"

namespace qm {
namespace {

using test::TempFolder;
namespace sfs = std::filesystem;

class FileSystemTest : public ::testing::Test {
 protected:
  FileSystem& fs = SystemFileSystem();
  TempFolder dir;

  int FilesInFolder() const {
    return static_cast<int>(std::distance(sfs::directory_iterator(dir.Native("")), {}));
  }
};

// Another process that runs while the test does.
unsigned long AnotherRunningProcess() {
  const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  unsigned long found = 0;
  for (BOOL more = ::Process32FirstW(snapshot, &entry); more && !found;
       more = ::Process32NextW(snapshot, &entry))
    if (entry.th32ProcessID != 0 && entry.th32ProcessID != ::GetCurrentProcessId())
      found = entry.th32ProcessID;
  ::CloseHandle(snapshot);
  return found;
}

TEST_F(FileSystemTest, RemovesItsOwnLeftoversAndNothingElse) {
  test::CheckRemovesOnlyItsOwnLeftovers(fs, dir, AnotherRunningProcess());
}

DWORD AttributesOf(const sfs::path& p) {
  return ::GetFileAttributesW(p.c_str());
}

// Hidden and system files are occupied names but not files the library may
// use; replaced, they keep their marks.
TEST_F(FileSystemTest, HiddenAndSystemFilesAreOccupiedAndKeepTheirMarksWhenReplaced) {
  for (const DWORD marks : {DWORD{FILE_ATTRIBUTE_HIDDEN}, DWORD{FILE_ATTRIBUTE_SYSTEM},
                            DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM}}) {
    dir.Put("\\Marked.lst", "old");
    ASSERT_TRUE(::SetFileAttributesW(dir.Native("\\Marked.lst").c_str(), marks));
    EXPECT_FALSE(fs.Exists(dir("\\marked.lst"))) << marks;
    EXPECT_TRUE(fs.Occupied(dir("\\marked.lst"))) << marks;
    ASSERT_TRUE(fs.WriteAll(dir("\\Marked.lst"), "new")) << marks;
    EXPECT_EQ(dir.Get("\\Marked.lst"), "new");
    EXPECT_EQ(AttributesOf(dir.Native("\\Marked.lst")) & marks, marks) << marks;
    ::SetFileAttributesW(dir.Native("\\Marked.lst").c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  // A new file is an ordinary one.
  ASSERT_TRUE(fs.WriteAll(dir("\\new.lst"), "1A"));
  EXPECT_EQ(AttributesOf(dir.Native("\\new.lst")) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM), 0u);
  EXPECT_EQ(FilesInFolder(), 2);  // no temporary file left
}

// Another program holds the file open, sharing nothing, for a while.
class Holder {
 public:
  Holder(const sfs::path& p, std::chrono::milliseconds time) {
    std::promise<void> opened;
    auto isOpen = opened.get_future();
    thread_ = std::thread([p, time, &opened] {
      const HANDLE h =
          ::CreateFileW(p.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
      opened.set_value();
      std::this_thread::sleep_for(time);
      if (h != INVALID_HANDLE_VALUE) ::CloseHandle(h);
    });
    isOpen.wait();
  }
  ~Holder() { thread_.join(); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

 private:
  std::thread thread_;
};

TEST_F(FileSystemTest, AFileHeldOpenForAMomentIsWrittenReadAndRemovedOnceReleased) {
  using namespace std::chrono_literals;
  dir.Put("\\_._", "old");
  {
    Holder holder(dir.Native("\\_._"), 300ms);
    EXPECT_TRUE(fs.WriteAll(dir("\\_._"), "new"));
  }
  EXPECT_EQ(dir.Get("\\_._"), "new");
  {
    Holder holder(dir.Native("\\_._"), 300ms);
    EXPECT_EQ(fs.ReadAll(dir("\\_._")), "new");
  }
  {
    Holder holder(dir.Native("\\_._"), 300ms);
    EXPECT_TRUE(fs.Remove(dir("\\_._")));
  }
  EXPECT_EQ(FilesInFolder(), 0);  // nor a temporary file
}

// The system's own conversion of code page 1252 is the oracle for every
// byte.
TEST(AnsiUtf8, AgreesWithTheSystemsCodePage1252) {
  for (int i = 0; i < 256; ++i) {
    const char byte = static_cast<char>(i);
    wchar_t wide[2] = {};
    ASSERT_EQ(::MultiByteToWideChar(1252, 0, &byte, 1, wide, 2), 1) << i;
    char utf8[8] = {};
    const int n = ::WideCharToMultiByte(CP_UTF8, 0, wide, 1, utf8, sizeof utf8, nullptr, nullptr);
    EXPECT_EQ(AnsiToUtf8(std::string(1, byte)), std::string(utf8, n)) << "byte " << i;
  }
}

}  // namespace
}  // namespace qm
