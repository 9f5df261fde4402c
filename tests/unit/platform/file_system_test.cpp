#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "../../support/leftovers_check.h"
#include "../../support/temp_folder.h"

#ifndef _WIN32
#include <unistd.h>
#endif

namespace qm {
namespace {

using test::TempFolder;
namespace sfs = std::filesystem;

// A leftover name of this process in the folder's top, as a relative part.
std::string Leftover(int n) {
  return "\\" + TemporaryFileName(CurrentProcessId(), n);
}

class FileSystemTest : public ::testing::Test {
 protected:
  FileSystem& fs = SystemFileSystem();
  TempFolder dir;

  std::vector<std::string> Leftovers() {
    std::vector<std::string> names;
    for (auto& e : sfs::recursive_directory_iterator(dir.Native("")))
      if (TempFolder::Utf8(e.path().filename()).rfind("~qm", 0) == 0)
        names.push_back(TempFolder::Utf8(e.path()));
    return names;
  }
};

TEST_F(FileSystemTest, WritesAndReadsEveryByteExactly) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  all += "\r\n\r\n";
  ASSERT_TRUE(fs.WriteAll(dir("\\a.lst"), all));
  EXPECT_EQ(dir.Get("\\a.lst"), all);
  EXPECT_EQ(fs.ReadAll(dir("\\a.lst")), all);

  ASSERT_TRUE(fs.WriteAll(dir("\\a.lst"), "short"));
  EXPECT_EQ(dir.Get("\\a.lst"), "short");
  EXPECT_TRUE(Leftovers().empty());
}

// A missing file, a folder and a file beyond the size limit read as nothing;
// only the last one exists.
TEST_F(FileSystemTest, ReadingWhatIsNotAFileOrIsHugeFails) {
  EXPECT_EQ(fs.ReadAll(dir("\\missing")), std::nullopt);
  sfs::create_directory(dir.Native("\\folder.lst"));
  EXPECT_EQ(fs.ReadAll(dir("\\folder.lst")), std::nullopt);
  EXPECT_FALSE(fs.Exists(dir("\\folder.lst")));
  dir.Put("\\huge", "x");
  sfs::resize_file(dir.Native("\\huge"), kMaxReadBytes + 1);
  EXPECT_EQ(fs.ReadAll(dir("\\huge")), std::nullopt);
  EXPECT_TRUE(fs.Exists(dir("\\huge")));
}

TEST_F(FileSystemTest, AFailedWriteLeavesTheOldFileAndNoTemporaryFile) {
  // Into a missing folder.
  EXPECT_FALSE(fs.WriteAll(dir("\\NoSuchFolder\\a.lst"), "x"));
  EXPECT_FALSE(dir.Has("\\NoSuchFolder"));
  // Over a read-only file.
  dir.Put("\\keep.lst", "1old");
  sfs::permissions(dir.Native("\\keep.lst"),
                   sfs::perms::owner_read | sfs::perms::group_read | sfs::perms::others_read);
  EXPECT_FALSE(fs.WriteAll(dir("\\keep.lst"), "1new"));
  EXPECT_EQ(dir.Get("\\keep.lst"), "1old");
  // Over a folder.
  sfs::create_directory(dir.Native("\\sub"));
  EXPECT_FALSE(fs.WriteAll(dir("\\sub"), "x"));
  EXPECT_TRUE(sfs::is_directory(dir.Native("\\sub")));
  EXPECT_TRUE(Leftovers().empty());
}

// Names match without regard to case, Latin letters beyond Latin-1 too (Š
// and š, Œ and œ); different accented letters stay different names. Occupied
// also sees folders, which Exists does not.
TEST_F(FileSystemTest, NamesMatchWithoutRegardToCaseAndOccupiedSeesFolders) {
  dir.Put("\\Lists\\Calm.lst", "1A");
  EXPECT_EQ(fs.ReadAll(dir("\\LISTS\\calm.lst")), "1A");
  ASSERT_TRUE(fs.WriteAll(dir("\\Lists\\CALM.lst"), "0B"));
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "0B");
  dir.Put("\\ŠŒÊ.lst", "S O E");
  EXPECT_EQ(fs.ReadAll(dir("\\šœê.lst")), "S O E");
  EXPECT_FALSE(fs.Exists(dir("\\ŠŒÚ.lst")));

  sfs::create_directory(dir.Native("\\Lists\\Folder.lst"));
  EXPECT_TRUE(fs.Occupied(dir("\\Lists\\calm.LST")));
  EXPECT_FALSE(fs.Exists(dir("\\Lists\\folder.lst")));
  EXPECT_TRUE(fs.Occupied(dir("\\Lists\\folder.lst")));
  EXPECT_TRUE(fs.Occupied(dir("\\LISTS")));
  EXPECT_FALSE(fs.Occupied(dir("\\Lists\\Sleep.lst")));
  EXPECT_FALSE(fs.Occupied(dir("\\Missing\\Sleep.lst")));
  EXPECT_TRUE(fs.Remove(dir("\\Lists\\calm.LST")));
  EXPECT_FALSE(dir.Has("\\Lists\\Calm.lst"));
}

TEST_F(FileSystemTest, ListsOrdinaryFilesOfExactlyTheExtension) {
  dir.Put("\\Lists\\Calm.lst", "");
  dir.Put("\\Lists\\Sleep.LST", "");
  dir.Put("\\Lists\\notes.lstx", "");
  dir.Put("\\Lists\\readme.txt", "");
  dir.Put("\\Lists\\lst", "");
  sfs::create_directory(dir.Native("\\Lists\\folder.lst"));
  auto names = fs.List(dir("\\Lists"), "lst");
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"Calm.lst", "Sleep.LST"}));
  EXPECT_TRUE(fs.List(dir("\\Missing"), "lst").empty());
}

TEST_F(FileSystemTest, CopiesRemovesAndMakesFolders) {
  dir.Put("\\a", "content");
  dir.Put("\\b", "old");
  ASSERT_TRUE(fs.Copy(dir("\\a"), dir("\\b")));
  EXPECT_EQ(dir.Get("\\b"), "content");
  EXPECT_FALSE(fs.Copy(dir("\\missing"), dir("\\c")));
  EXPECT_FALSE(dir.Has("\\c"));

  EXPECT_TRUE(fs.Remove(dir("\\a")));
  EXPECT_FALSE(fs.Remove(dir("\\a")));

  EXPECT_TRUE(fs.MakeFolder(dir("\\Lists")));
  EXPECT_TRUE(fs.MakeFolder(dir("\\Lists")));
  EXPECT_TRUE(sfs::is_directory(dir.Native("\\Lists")));
  EXPECT_FALSE(fs.MakeFolder(dir("\\No\\Parents")));
}

TEST(TemporaryFileNames, AreTheProgramsOwnAndTellTheirProcess) {
  EXPECT_EQ(TemporaryFileName(4242, 7), "~qm4242-7.tmp");
  EXPECT_EQ(TemporaryFileOwner("~qm4242-7.tmp"), 4242u);
  EXPECT_EQ(TemporaryFileOwner("~QM12-1.TMP"), 12u);
  for (const char* other :
       {"~qm.tmp", "~qm12.tmp", "~qm12-.tmp", "~qm-1.tmp", "~qm+1-2.tmp", "~qm1-2.tmp.bak", "~qm1-2x.tmp",
        "qm1-2.tmp", "~qm1-2.lst", "notes.tmp", "~qmA-1.tmp"})
    EXPECT_EQ(TemporaryFileOwner(other), std::nullopt) << other;
}

TEST_F(FileSystemTest, NamesLeftByAnEarlierRunDoNotStopAWrite) {
  // A run under this process's number that ended during its writes.
  for (int n = 1; n <= 50; ++n) dir.Put(Leftover(n), "left " + std::to_string(n));
  sfs::create_directory(dir.Native(Leftover(51)));
  ASSERT_TRUE(fs.WriteAll(dir("\\_._"), "1Calm"));
  EXPECT_EQ(dir.Get("\\_._"), "1Calm");
  ASSERT_TRUE(fs.WriteAll(dir("\\_._"), "0Calm"));
  EXPECT_EQ(dir.Get("\\_._"), "0Calm");
  EXPECT_EQ(dir.Get(Leftover(50)), "left 50");
  EXPECT_EQ(Leftovers().size(), 51u);  // untouched, and no new one
}

#ifndef _WIN32
TEST_F(FileSystemTest, RemovesItsOwnLeftoversAndNothingElse) {
  // The parent process (the test runner) is a running copy's stand-in.
  test::CheckRemovesOnlyItsOwnLeftovers(fs, dir, static_cast<unsigned long>(::getppid()));
}
#endif

// The bytes on disk under the name as spelled, found through the standard
// library's own conversion; Cyrillic capitals and small letters spell one
// name.
TEST_F(FileSystemTest, FoldersAndFilesNamedInAnyScriptWork) {
  const std::string folder = "\\Папка-測試";
  ASSERT_TRUE(fs.MakeFolder(dir(folder)));
  ASSERT_TRUE(fs.WriteAll(dir(folder + "\\Ж-測.lst"), "1\xC9t\xE9"));
  EXPECT_EQ(dir.Get(folder + "\\Ж-測.lst"), "1\xC9t\xE9");
  EXPECT_EQ(fs.ReadAll(dir("\\ПАПКА-測試\\ж-測.LST")), "1\xC9t\xE9");
  EXPECT_EQ(fs.List(dir(folder), "lst"), std::vector<std::string>{"Ж-測.lst"});
  EXPECT_TRUE(Leftovers().empty());
}

}  // namespace
}  // namespace qm
