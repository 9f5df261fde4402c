#include "library/message_library.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "../../support/fake_prompts.h"
#include "../../support/temp_folder.h"

namespace qm {
namespace {

using Texts = std::vector<std::string>;

// The machine's file system, watched: every change is counted, and writes
// or deletions can be made to fail without touching the disk.
class WatchedFileSystem final : public FileSystem {
 public:
  explicit WatchedFileSystem(const test::CountingEventPump& pump) : pump_(pump) {}

  std::optional<std::string> ReadAll(const std::string& path) override { return real_.ReadAll(path); }
  bool WriteAll(const std::string& path, std::string_view bytes) override {
    eventsBeforeWrite.push_back(pump_.count);
    if (failingWrites > 0) {
      --failingWrites;
      return false;
    }
    return real_.WriteAll(path, bytes);
  }
  bool Exists(const std::string& path) override { return real_.Exists(path); }
  std::vector<std::string> List(const std::string& folder, std::string_view extension) override {
    return real_.List(folder, extension);
  }
  bool Copy(const std::string& from, const std::string& to) override {
    ++changes;
    return real_.Copy(from, to);
  }
  bool Remove(const std::string& path) override {
    ++changes;
    return !failRemove && real_.Remove(path);
  }
  bool MakeFolder(const std::string& path) override {
    ++changes;
    return real_.MakeFolder(path);
  }

  int Writes() const { return static_cast<int>(eventsBeforeWrite.size()); }

  int failingWrites = 0;  // the next this many writes fail
  bool failRemove = false;
  int changes = 0;  // copies, deletions and new folders
  std::vector<int> eventsBeforeWrite;

 private:
  FileSystem& real_ = SystemFileSystem();
  const test::CountingEventPump& pump_;
};

class MessageLibraryTest : public ::testing::Test {
 protected:
  test::TempFolder dir;
  test::CountingEventPump pump;
  WatchedFileSystem fs{pump};
  test::FakePrompts prompts;
  CheckedList categories;
  CheckedList phrases;
  MessageLibrary library{dir.Path(), fs, prompts, pump, categories, phrases};

  void Select(std::string_view name) {
    ASSERT_TRUE(categories.SetListIndex(categories.Find(name))) << name;
    library.lstMessageCategories_Click();
  }
  static Texts Names(const CheckedList& list) {
    Texts names;
    for (const auto& item : list.Items()) names.push_back((item.checked ? "+" : "-") + item.text);
    return names;
  }
  void ExpectOneCriticalNaming(std::string_view name) {
    ASSERT_EQ(prompts.shown.size(), 1u);
    EXPECT_EQ(prompts.shown[0].icon, PromptIcon::Critical);
    EXPECT_NE(prompts.shown[0].text.find("\"" + std::string(name) + "\""), std::string::npos);
  }
};

TEST_F(MessageLibraryTest, AddUniqueItemFindsDuplicatesWithoutRegardToCase) {
  categories.Assign({{"Calm"}, {"\xC9T\xC9"}});
  EXPECT_TRUE(AddUniqueItem(categories, "CALM", "dup", prompts));
  EXPECT_EQ(categories.ListIndex(), 0);
  ASSERT_EQ(prompts.shown.size(), 1u);
  EXPECT_EQ(prompts.shown[0].text, "dup");
  EXPECT_EQ(prompts.shown[0].icon, PromptIcon::Exclamation);
  EXPECT_EQ(prompts.shown[0].buttons, PromptButtons::Ok);
  EXPECT_TRUE(AddUniqueItem(categories, "\xE9t\xE9", "dup", prompts));
  EXPECT_EQ(categories.ListIndex(), 1);

  EXPECT_FALSE(AddUniqueItem(categories, "Relax", "dup", prompts));
  EXPECT_EQ(Names(categories), (Texts{"-Calm", "-Relax", "-\xC9T\xC9"}));
  EXPECT_EQ(categories.ListIndex(), 1);
  EXPECT_EQ(prompts.shown.size(), 2u);

  SetItemChecked(categories, "\xE9t\xE9", true);
  SetItemChecked(categories, "relax", true);
  SetItemChecked(categories, "Nowhere", true);
  EXPECT_EQ(Names(categories), (Texts{"-Calm", "+Relax", "+\xC9T\xC9"}));
}

TEST_F(MessageLibraryTest, ListsCategoryFilesSortedAndFindsTheirFilesInAnyCase) {
  library.ListCategories();
  EXPECT_EQ(categories.ListCount(), 0);  // no "Lists" folder
  dir.Put("\\Lists\\Sleep.lst", "1Deep");
  dir.Put("\\Lists\\calm.lst", "1Slow");
  dir.Put("\\Lists\\notes.txt", "");
  library.ListCategories();
  EXPECT_EQ(Names(categories), (Texts{"-calm", "-Sleep"}));
  EXPECT_EQ(categories.ListIndex(), -1);

  // Renamed in the list only by case, the category keeps its file.
  categories.SetItemText(0, "Calm");
  Select("Calm");
  EXPECT_EQ(Names(phrases), Texts{"+Slow"});
  phrases.SetItemChecked(0, false);
  EXPECT_TRUE(library.lstPhrases_ItemCheck().Ok());
  EXPECT_EQ(dir.Get("\\Lists\\calm.lst"), "0Slow");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Native("\\Lists")), {}), 3);
}

TEST_F(MessageLibraryTest, StartUpLoadsMarksAndTheFirstCategoryWritingNothing) {
  dir.Put("\\Lists\\Calm.lst", "0Zeta\r\n1alpha");
  dir.Put("\\Lists\\Sleep.lst", "1A\r\n0B");
  dir.Put("\\Lists\\Focus.lst", "");
  // A line for a category without a file, and a hand-edited line without
  // a mark, which unchecks the category it names.
  dir.Put("\\_._", "1calm\r\n1Ghost\r\n1Focus\r\nFocus\r\n1Sleep");
  library.StartUp();
  EXPECT_EQ(Names(categories), (Texts{"+Calm", "-Focus", "+Sleep"}));
  EXPECT_EQ(categories.ListIndex(), 0);
  EXPECT_EQ(Names(phrases), (Texts{"+alpha", "-Zeta"}));
  Select("Sleep");
  EXPECT_EQ(Names(phrases), (Texts{"+A", "-B"}));
  EXPECT_EQ(fs.Writes(), 0);
  EXPECT_EQ(fs.changes, 0);
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "0Zeta\r\n1alpha");
}

TEST_F(MessageLibraryTest, HandEditedLinesLoadInFull) {
  dir.Put("\\Lists\\Mixed.lst", "Calm words\r\n\r\n2x\r\n1ok\r\n");
  library.StartUp();
  EXPECT_EQ(Names(phrases), (Texts{"-", "-", "-Calm words", "+ok", "-x"}));
}

TEST_F(MessageLibraryTest, SavesPhrasesInListOrderAndRoundTripsTheirBytes) {
  dir.Put("\\Lists\\Sleep.lst", "1A\r\n0B");
  dir.Put("\\Lists\\Calm.lst", "0Zeta\r\n1alpha");
  library.StartUp();
  ASSERT_EQ(library.SelectedCategory(), "Calm");
  phrases.SetListIndex(1);
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Written);
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1alpha\r\n0Zeta");
  EXPECT_EQ(phrases.ListIndex(), 1);

  Select("Sleep");
  EXPECT_TRUE(library.SavePhrases().Ok());
  EXPECT_EQ(dir.Get("\\Lists\\Sleep.lst"), "1A\r\n0B");
  // Unchecking the only checked phrase.
  phrases.SetItemChecked(0, false);
  library.lstPhrases_ItemCheck();
  EXPECT_EQ(dir.Get("\\Lists\\Sleep.lst"), "0A\r\n0B");
  EXPECT_TRUE(prompts.shown.empty());
}

TEST_F(MessageLibraryTest, AnEmptiedCategoryLosesItsFileAndIsNotListedAgain) {
  dir.Put("\\Lists\\Calm.lst", "1Only");
  dir.Put("\\Lists\\Sleep.lst", "1A");
  dir.Put("\\_._", "1Calm\r\n1Sleep");
  library.StartUp();
  phrases.RemoveItem(0);
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Deleted);
  EXPECT_FALSE(dir.Has("\\Lists\\Calm.lst"));
  EXPECT_EQ(Names(categories), (Texts{"+Calm", "+Sleep"}));  // until the next start
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::NoFile);

  library.StartUp();
  EXPECT_EQ(Names(categories), Texts{"+Sleep"});
}

TEST_F(MessageLibraryTest, TheListsFolderIsMadeForTheFirstCategoryFile) {
  EXPECT_TRUE(library.CreateCategoryFile("Calm"));
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "");
  dir.Put("\\Lists\\Calm.lst", "1Kept");
  EXPECT_TRUE(library.CreateCategoryFile("CALM"));
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1Kept");

  std::filesystem::remove_all(dir.Native("\\Lists"));
  phrases.AddItem("New", true);
  EXPECT_TRUE(library.SavePhrases().Ok());  // no category: the nameless file
  EXPECT_EQ(dir.Get("\\Lists\\.lst"), "1New");
}

TEST_F(MessageLibraryTest, AFailedWriteOrDeletionIsReportedAndKeepsTheFile) {
  dir.Put("\\Lists\\Calm.lst", "1A\r\n0B");
  library.StartUp();
  phrases.SetItemChecked(1, true);
  fs.failingWrites = 1;
  EXPECT_EQ(library.lstPhrases_ItemCheck().status, SaveStatus::WriteFailed);
  ExpectOneCriticalNaming("Calm");
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1A\r\n0B");

  prompts.shown.clear();
  fs.failRemove = true;
  phrases.Clear();
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::DeleteFailed);
  ExpectOneCriticalNaming("Calm");
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1A\r\n0B");
}

TEST_F(MessageLibraryTest, AReadOnlyCategoryFileIsNotReplaced) {
  dir.Put("\\Lists\\Calm.lst", "1A");
  namespace sfs = std::filesystem;
  sfs::permissions(dir.Native("\\Lists\\Calm.lst"),
                   sfs::perms::owner_write | sfs::perms::group_write | sfs::perms::others_write,
                   sfs::perm_options::remove);
  library.StartUp();
  phrases.AddItem("B", true);
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::WriteFailed);
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1A");
}

TEST_F(MessageLibraryTest, AnUnreadableCategoryFileIsNeverOverwrittenOrDeleted) {
  dir.Put("\\Lists\\Big.lst", "1A");
  dir.Put("\\Lists\\Small.lst", "1S");
  std::filesystem::resize_file(dir.Native("\\Lists\\Big.lst"), kMaxReadBytes + 1);
  library.StartUp();
  ASSERT_EQ(library.SelectedCategory(), "Big");
  EXPECT_FALSE(library.lstMessageCategories_Click());
  EXPECT_EQ(phrases.ListCount(), 0);

  // The user adds a phrase to what looks like an empty list.
  EXPECT_FALSE(AddUniqueItem(phrases, "New", "dup", prompts));
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Unreadable);
  ExpectOneCriticalNaming("Big");
  phrases.Clear();
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Unreadable);
  EXPECT_EQ(std::filesystem::file_size(dir.Native("\\Lists\\Big.lst")), kMaxReadBytes + 1);
  EXPECT_EQ(fs.Writes(), 0);

  // Another category that reads is saved as usual.
  Select("Small");
  EXPECT_TRUE(library.SavePhrases().Ok());
}

TEST_F(MessageLibraryTest, TheCategoryStateIsWrittenWithUpTo101Attempts) {
  dir.Put("\\Lists\\Calm.lst", "1A");
  dir.Put("\\Lists\\Sleep.lst", "1A");
  dir.Put("\\_._", "0Calm\r\n0Sleep");
  library.StartUp();
  categories.SetListIndex(1);

  categories.SetItemChecked(0, true);
  fs.failingWrites = 100;
  EXPECT_TRUE(library.lstMessageCategories_ItemCheck());
  ASSERT_EQ(fs.Writes(), 101);
  for (int attempt = 0; attempt < 101; ++attempt) EXPECT_EQ(fs.eventsBeforeWrite[attempt], attempt + 1);
  EXPECT_EQ(dir.Get("\\_._"), "1Calm\r\n0Sleep");
  EXPECT_EQ(categories.ListIndex(), 1);

  categories.SetItemChecked(1, true);
  fs.failingWrites = 101;
  EXPECT_FALSE(library.SaveCheckedCategories());
  EXPECT_EQ(fs.Writes(), 202);
  EXPECT_EQ(dir.Get("\\_._"), "1Calm\r\n0Sleep");
  EXPECT_TRUE(prompts.shown.empty());

  // With no category listed the file keeps its last content.
  categories.Clear();
  EXPECT_TRUE(library.SaveCheckedCategories());
  EXPECT_EQ(fs.Writes(), 202);
}

TEST_F(MessageLibraryTest, AnUnreadableCategoryStateFileKeepsItsMarks) {
  dir.Put("\\Lists\\Calm.lst", "1A");
  dir.Put("\\_._", "1Calm");
  std::filesystem::resize_file(dir.Native("\\_._"), kMaxReadBytes + 1);
  library.StartUp();
  EXPECT_EQ(Names(categories), Texts{"-Calm"});
  categories.SetItemChecked(0, true);
  EXPECT_FALSE(library.lstMessageCategories_ItemCheck());
  EXPECT_EQ(fs.Writes(), 0);
  EXPECT_EQ(std::filesystem::file_size(dir.Native("\\_._")), kMaxReadBytes + 1);
}

}  // namespace
}  // namespace qm
