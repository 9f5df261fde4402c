// The library and the settings on Windows' own file system when the folder
// is against them: files marked read-only, files another program holds open
// sharing nothing, and a program folder whose path is longer than MAX_PATH.
// Each change is refused with one stop box and the file kept byte for byte,
// or it is saved.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "../../support/file_holder_win32.h"
#include "../../support/library_world.h"
#include "platform/wide_text_win32.h"

namespace qm {
namespace {

using Program = test::LibraryWorld;

struct Change {
  const char* file;
  std::function<void(Program&)> make;
  // The checked categories' file gives up silently; the others say so.
  int boxesWhenRefused = 1;
};

// One change of each file, made again by a second call.
const Change kChanges[] = {
    {"\\_._",
     [](Program& p) {
       p.categories.SetItemChecked(p.categories.Find("Sleep"), true);
       p.library.lstMessageCategories_ItemCheck();
     },
     0},
    {"\\__.__",
     [](Program& p) {
       p.settings.Record().frequency =
           static_cast<std::int16_t>(p.settings.Record().frequency.value_or(0) + 1);
       p.settings.SaveSettings();
     }},
    {"\\Lists\\Calm.lst",
     [](Program& p) {
       p.editing.txtEditWord = "Phrase " + std::to_string(p.phrases.ListCount());
       p.editing.cmdAdd_Click();
     }},
};

// A library and settings in a fresh folder, read as the program starts.
class HostileFolders : public ::testing::Test, public test::LibraryWorld {
 protected:
  HostileFolders() : LibraryWorld("", &SystemFileSystem()) {
    dir.Put("\\Lists\\Calm.lst", "1A");
    dir.Put("\\Lists\\Sleep.lst", "1Z");
    dir.Put("\\_._", "1Calm\r\n0Sleep");
    dir.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
    Start();
  }
};

TEST_F(HostileFolders, AReadOnlyFileIsRefusedWithAStopBoxAndKept) {
  for (const Change& change : kChanges) {
    SCOPED_TRACE(change.file);
    const std::string before = dir.Get(change.file);
    ASSERT_TRUE(::SetFileAttributesW(dir.Native(change.file).c_str(), FILE_ATTRIBUTE_READONLY));
    change.make(*this);
    EXPECT_EQ(StopBoxes(), change.boxesWhenRefused);
    EXPECT_EQ(dir.Get(change.file), before);
    ::SetFileAttributesW(dir.Native(change.file).c_str(), FILE_ATTRIBUTE_NORMAL);
  }
}

TEST_F(HostileFolders, AFileHeldByAnotherProgramIsWaitedForThenToldAndKept) {
  for (const Change& change : kChanges) {
    SCOPED_TRACE(change.file);
    const std::string before = dir.Get(change.file);
    // Held well beyond the wait: the change must give up before it ends.
    test::FileHolder holder(QM_HOLD_FILE_EXE, dir.Native(change.file).wstring(), 6000);
    ASSERT_TRUE(holder.Held());
    change.make(*this);
    EXPECT_EQ(StopBoxes(), change.boxesWhenRefused);
    holder.Release();
    EXPECT_EQ(dir.Get(change.file), before);
    change.make(*this);
    EXPECT_EQ(StopBoxes(), 0);
    EXPECT_NE(dir.Get(change.file), before);
  }
}

// A hidden file is kept, not replaced by a new category's empty file.
TEST_F(HostileFolders, ANewCategoryNeverReplacesAHiddenFileOfItsName) {
  dir.Put("\\Lists\\Hidden.lst", "1Secret");
  ASSERT_TRUE(::SetFileAttributesW(dir.Native("\\Lists\\Hidden.lst").c_str(), FILE_ATTRIBUTE_HIDDEN));
  EXPECT_FALSE(library.CreateCategoryFile("HIDDEN"));
  EXPECT_EQ(dir.Get("\\Lists\\Hidden.lst"), "1Secret");
}

// Setting up and checking a long path goes around the code under test, in
// the long form.
std::filesystem::path Long(const std::string& path) {
  return L"\\\\?\\" + *win32::WidenStrict(path);
}
void PutLong(const std::string& path, std::string_view bytes) {
  std::ofstream(Long(path), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}
std::string GetLong(const std::string& path) {
  std::ifstream file(Long(path), std::ios::binary);
  return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(no file)";
}

// Inside the fixture's folder, another program folder whose paths are longer
// than MAX_PATH.
TEST_F(HostileFolders, AProgramFolderBeyondMaxPathIsReadAndWritten) {
  const std::string outer = dir.Path() + "\\" + std::string(120, 'a');
  const std::string longFolder = outer + "\\" + std::string(120, 'b');
  for (const std::string& part : {outer, longFolder, longFolder + "\\Lists"})
    ASSERT_TRUE(std::filesystem::create_directory(Long(part)));
  PutLong(longFolder + "\\Lists\\Calm.lst", "1A");
  PutLong(longFolder + "\\_._", "1Calm");
  {
    // Given with a "." part, which the long form does not resolve itself.
    Program program(outer + "\\.\\" + std::string(120, 'b'), &SystemFileSystem());
    program.Start();
    ASSERT_GT(program.library.CategoryPath("Calm").size(), std::size_t{MAX_PATH});
    ASSERT_EQ(program.categories.ListCount(), 1);
    EXPECT_TRUE(program.categories.Items()[0].checked);
    ASSERT_EQ(program.phrases.ListCount(), 1);
    program.editing.txtEditWord = "B";
    program.editing.cmdAdd_Click();
    program.editing.txtEditCat = "Sleep";
    program.editing.cmdAddCat_Click();
    program.settings.Record().frequency = 7;
    program.settings.SaveSettings();
    EXPECT_EQ(program.StopBoxes(), 0);
  }
  EXPECT_EQ(GetLong(longFolder + "\\Lists\\Calm.lst"), "1A\r\n1B");
  EXPECT_EQ(GetLong(longFolder + "\\Lists\\Sleep.lst"), "");
  EXPECT_EQ(GetLong(longFolder + "\\_._"), "1Calm\r\n0Sleep");
  EXPECT_EQ(GetLong(longFolder + "\\__.__"), "\r\n\r\n\r\n\r\n\r\n\r\n7");
  // Moved to a short path, the longFolder goes with the temporary one.
  std::filesystem::rename(Long(outer), Long(dir.Path() + "\\a"));
}

}  // namespace
}  // namespace qm
