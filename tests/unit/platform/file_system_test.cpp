#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "../../support/temp_folder.h"

namespace qm {
namespace {

using test::TempFolder;

class FileSystemTest : public ::testing::Test {
 protected:
  FileSystem& fs = SystemFileSystem();
  TempFolder dir;

  std::vector<std::string> Leftovers() {
    std::vector<std::string> names;
    for (auto& e : std::filesystem::recursive_directory_iterator(dir.Native("")))
      if (e.path().filename().string().rfind("~qm", 0) == 0) names.push_back(e.path().string());
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
  ASSERT_TRUE(fs.WriteAll(dir("\\a.lst"), ""));
  EXPECT_EQ(fs.ReadAll(dir("\\a.lst")), "");
  EXPECT_TRUE(Leftovers().empty());
}

TEST_F(FileSystemTest, ReadingWhatIsNotAFileFails) {
  EXPECT_EQ(fs.ReadAll(dir("\\missing")), std::nullopt);
  std::filesystem::create_directory(dir.Native("\\folder.lst"));
  EXPECT_EQ(fs.ReadAll(dir("\\folder.lst")), std::nullopt);
  EXPECT_FALSE(fs.Exists(dir("\\folder.lst")));
  EXPECT_FALSE(fs.Exists(dir("\\missing")));
}

TEST_F(FileSystemTest, RefusesToReadAHugeFile) {
  dir.Put("\\huge", "x");
  std::filesystem::resize_file(dir.Native("\\huge"), kMaxReadBytes + 1);
  EXPECT_EQ(fs.ReadAll(dir("\\huge")), std::nullopt);
  EXPECT_TRUE(fs.Exists(dir("\\huge")));
}

TEST_F(FileSystemTest, AFailedWriteLeavesTheOldFileAndNoTemporaryFile) {
  // Into a missing folder.
  EXPECT_FALSE(fs.WriteAll(dir("\\NoSuchFolder\\a.lst"), "x"));
  EXPECT_FALSE(dir.Has("\\NoSuchFolder"));
  // Over a read-only file.
  dir.Put("\\keep.lst", "1old");
  std::filesystem::permissions(dir.Native("\\keep.lst"), std::filesystem::perms::owner_read |
                                                             std::filesystem::perms::group_read |
                                                             std::filesystem::perms::others_read);
  EXPECT_FALSE(fs.WriteAll(dir("\\keep.lst"), "1new"));
  EXPECT_EQ(dir.Get("\\keep.lst"), "1old");
  // Over a folder.
  std::filesystem::create_directory(dir.Native("\\sub"));
  EXPECT_FALSE(fs.WriteAll(dir("\\sub"), "x"));
  EXPECT_TRUE(std::filesystem::is_directory(dir.Native("\\sub")));
  EXPECT_TRUE(Leftovers().empty());
}

TEST_F(FileSystemTest, NamesMatchWithoutRegardToCase) {
  dir.Put("\\Lists\\Calm.lst", "1A");
  EXPECT_TRUE(fs.Exists(dir("\\lists\\CALM.LST")));
  EXPECT_EQ(fs.ReadAll(dir("\\LISTS\\calm.lst")), "1A");
  // Writing through another spelling replaces the same file.
  ASSERT_TRUE(fs.WriteAll(dir("\\Lists\\CALM.lst"), "0B"));
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "0B");
  EXPECT_EQ(fs.List(dir("\\Lists"), "lst"), std::vector<std::string>{"Calm.lst"});
  EXPECT_TRUE(fs.Remove(dir("\\Lists\\calm.LST")));
  EXPECT_FALSE(dir.Has("\\Lists\\Calm.lst"));
}

TEST_F(FileSystemTest, ListsOrdinaryFilesOfExactlyTheExtension) {
  dir.Put("\\Lists\\Calm.lst", "");
  dir.Put("\\Lists\\Sleep.LST", "");
  dir.Put("\\Lists\\notes.lstx", "");
  dir.Put("\\Lists\\readme.txt", "");
  dir.Put("\\Lists\\lst", "");
  std::filesystem::create_directory(dir.Native("\\Lists\\folder.lst"));
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
  EXPECT_FALSE(dir.Has("\\a"));

  EXPECT_TRUE(fs.MakeFolder(dir("\\Lists")));
  EXPECT_TRUE(fs.MakeFolder(dir("\\Lists")));
  EXPECT_TRUE(std::filesystem::is_directory(dir.Native("\\Lists")));
  EXPECT_FALSE(fs.MakeFolder(dir("\\No\\Parents")));
}

}  // namespace
}  // namespace qm
