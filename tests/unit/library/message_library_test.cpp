#include "library/message_library.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "../../support/library_world.h"

namespace qm {
namespace {

namespace sfs = std::filesystem;
// A UTF-8 byte-order mark, as other editors write one.
const std::string kBom = "\xEF\xBB\xBF";
using test::Texts;

class MessageLibraryTest : public ::testing::Test, public test::LibraryWorld {
 protected:
  void Select(std::string_view name) {
    ASSERT_TRUE(categories.SetListIndex(categories.Find(name))) << name;
    library.lstMessageCategories_Click();
  }
  void ExpectOneStopBoxNaming(std::string_view name) {
    ASSERT_EQ(prompts.shown.size(), 1u);
    EXPECT_EQ(prompts.shown[0].icon, PromptIcon::Critical);
    EXPECT_NE(prompts.shown[0].text.find("\"" + std::string(name) + "\""), std::string::npos);
    prompts.shown.clear();
  }
  void MakeHuge(std::string_view relative) { sfs::resize_file(dir.Native(relative), kMaxReadBytes + 1); }
};

TEST_F(MessageLibraryTest, StartUpListsMarksAndLoadsWritingNothing) {
  dir.Put("\\Lists\\Sleep.lst", "1A\r\n0B");
  dir.Put("\\Lists\\calm.lst", kBom + "0Zeta\n1alpha\n");
  dir.Put("\\Lists\\Mixed.lst", "Calm words\r\n\r\n2x\r\n1ok\r\n");
  dir.Put("\\Lists\\notes.txt", "");
  // Saved by another editor (a byte-order mark, LF line ends); a category
  // without a file, and a hand-edited line without a mark, which unchecks
  // the category it names.
  dir.Put("\\_._", kBom + "1Calm\n1Ghost\n1Mixed\nMixed\n1Sleep\n");
  library.StartUp();
  EXPECT_EQ(Texts(categories), "+calm -Mixed +Sleep ");
  EXPECT_EQ(categories.ListIndex(), 0);
  EXPECT_EQ(Texts(phrases), "+alpha -Zeta ");
  Select("Mixed");
  EXPECT_EQ(Texts(phrases), "- -Calm words +ok -x ");
  EXPECT_EQ(files.Writes() + files.Changes(), 0);

  sfs::remove_all(dir.Native("\\Lists"));
  library.StartUp();
  EXPECT_EQ(categories.ListCount() + phrases.ListCount(), 0);
  EXPECT_EQ(categories.ListIndex(), -1);
}

TEST_F(MessageLibraryTest, CategoryNamesAreWindows1252AndTheirFilesAreNamedInUnicode) {
  // On disk "\u00C9t\u00E9.lst" (UTF-8 here); a name no Windows-1252 text can
  // spell names no category.
  dir.Put("\\Lists\\\xC3\x89t\xC3\xA9.lst", "1Soleil");
  dir.Put("\\Lists\\\xD0\x96.lst", "1Zhe");
  dir.Put("\\_._", "1\xC9t\xE9");
  library.StartUp();
  EXPECT_EQ(Texts(categories), "+\xC9t\xE9 ");
  EXPECT_EQ(Texts(phrases), "+Soleil ");
  phrases.AddItem("Plage", true);
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Written);
  EXPECT_EQ(dir.Get("\\Lists\\\xC3\x89t\xC3\xA9.lst"), "1Plage\r\n1Soleil");
  EXPECT_TRUE(library.CreateCategoryFile("\x8Cuvre"));
  EXPECT_TRUE(dir.Has("\\Lists\\\xC5\x92uvre.lst"));
  // A message naming the category shows it in Unicode.
  files.failingWrites = 1;
  library.SavePhrases();
  ExpectOneStopBoxNaming("\xC3\x89t\xC3\xA9");
}

TEST_F(MessageLibraryTest, SavesPhrasesSortedIntoTheCategorysOwnFile) {
  dir.Put("\\Lists\\calm.lst", "0Zeta\r\n1alpha");
  dir.Put("\\Lists\\Sleep.lst", "1A\r\n0B");
  library.StartUp();
  // Renamed in the list only by case, the category keeps its file.
  categories.SetItemText(0, "Calm");
  phrases.SetListIndex(1);
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Written);
  EXPECT_EQ(dir.Get("\\Lists\\calm.lst"), "1alpha\r\n0Zeta");
  EXPECT_EQ(std::distance(sfs::directory_iterator(dir.Native("\\Lists")), {}), 2);
  EXPECT_EQ(phrases.ListIndex(), 1);

  Select("Sleep");
  phrases.SetItemChecked(0, false);  // the only checked phrase
  EXPECT_TRUE(library.lstPhrases_ItemCheck().Ok());
  EXPECT_EQ(dir.Get("\\Lists\\Sleep.lst"), "0A\r\n0B");
  EXPECT_TRUE(prompts.shown.empty());

  // Emptied, the category loses its file and is not listed at the next start.
  phrases.Clear();
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Deleted);
  EXPECT_FALSE(dir.Has("\\Lists\\Sleep.lst"));
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::NoFile);
  EXPECT_EQ(Texts(categories), "-Calm -Sleep ");
  library.StartUp();
  EXPECT_EQ(Texts(categories), "-calm ");  // listed from its file
}

TEST_F(MessageLibraryTest, TheListsFolderIsMadeForTheFirstCategoryFile) {
  EXPECT_TRUE(library.CreateCategoryFile("Calm"));
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "");
  dir.Put("\\Lists\\Calm.lst", "1Kept");
  EXPECT_TRUE(library.CreateCategoryFile("CALM"));
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1Kept");

  // Something else of that name is never replaced by an empty category.
  sfs::create_directories(dir.Native("\\Lists\\Folder.lst"));
  EXPECT_FALSE(library.CreateCategoryFile("Folder"));
  EXPECT_TRUE(sfs::is_directory(dir.Native("\\Lists\\Folder.lst")));

  sfs::remove_all(dir.Native("\\Lists"));
  phrases.AddItem("New", true);
  EXPECT_TRUE(library.SavePhrases().Ok());  // no category: the nameless file
  EXPECT_EQ(dir.Get("\\Lists\\.lst"), "1New");
}

TEST_F(MessageLibraryTest, FilesThatCouldNotBeReadAreNeverOverwritten) {
  dir.Put("\\Lists\\Big.lst", "1A");
  dir.Put("\\Lists\\Small.lst", "1S");
  dir.Put("\\_._", "1Big");
  MakeHuge("\\Lists\\Big.lst");
  MakeHuge("\\_._");
  library.StartUp();
  EXPECT_FALSE(library.lstMessageCategories_Click());
  EXPECT_EQ(Texts(categories), "-Big -Small ");
  EXPECT_EQ(phrases.ListCount(), 0);

  // The user adds a phrase to what looks like an empty list, then empties it.
  EXPECT_FALSE(AddUniqueItem(phrases, "New", "dup", prompts));
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Unreadable);
  ExpectOneStopBoxNaming("Big");
  phrases.Clear();
  EXPECT_EQ(library.SavePhrases().status, SaveStatus::Unreadable);
  // The category marks the state file could not give are not written over it.
  categories.SetItemChecked(1, true);
  EXPECT_FALSE(library.lstMessageCategories_ItemCheck());
  EXPECT_EQ(files.Writes() + files.Changes(), 0);
  EXPECT_EQ(sfs::file_size(dir.Native("\\Lists\\Big.lst")), kMaxReadBytes + 1);

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
  files.failingWrites = 100;
  EXPECT_TRUE(library.lstMessageCategories_ItemCheck());
  ASSERT_EQ(files.Writes(), 101);
  for (int attempt = 0; attempt < 101; ++attempt) EXPECT_EQ(files.eventsBeforeWrite[attempt], attempt + 1);
  EXPECT_EQ(dir.Get("\\_._"), "1Calm\r\n0Sleep");
  EXPECT_EQ(categories.ListIndex(), 1);

  categories.SetItemChecked(1, true);
  files.failingWrites = 101;
  EXPECT_FALSE(library.SaveCheckedCategories());
  EXPECT_EQ(files.Writes(), 202);
  EXPECT_EQ(dir.Get("\\_._"), "1Calm\r\n0Sleep");
  EXPECT_TRUE(prompts.shown.empty());
  categories.Clear();  // with no category listed the file keeps its content
  EXPECT_TRUE(library.SaveCheckedCategories());
  EXPECT_EQ(files.Writes(), 202);
}

TEST_F(MessageLibraryTest, AMarkChangedWhileTheStateIsBeingSavedIsNotWrittenOver) {
  dir.Put("\\Lists\\Calm.lst", "1A");
  dir.Put("\\Lists\\Sleep.lst", "1A");
  dir.Put("\\_._", "0Calm\r\n0Sleep");
  library.StartUp();
  categories.SetListIndex(1);
  categories.SetItemChecked(0, true);
  // The file is busy at the first attempt; meanwhile the user's click on
  // Sleep's box is handled and saved, and a new category sorts in before
  // the highlighted one.
  files.failingWrites = 1;
  pump.onEvents = [&] {
    categories.SetItemChecked(1, true);
    EXPECT_TRUE(library.lstMessageCategories_ItemCheck());
    categories.AddItem("Alpha");
  };
  EXPECT_TRUE(library.lstMessageCategories_ItemCheck());
  EXPECT_EQ(dir.Get("\\_._"), "0Alpha\r\n1Calm\r\n1Sleep");
  // Sleep stays highlighted; position 1 now names Calm and is not taken.
  EXPECT_EQ(library.SelectedCategory(), "Sleep");

  // The events remove the highlighted last category: its position is past
  // the end now, and nothing is highlighted again.
  categories.SetListIndex(2);
  pump.onEvents = [&] { categories.RemoveItem(2); };
  EXPECT_TRUE(library.SaveCheckedCategories());
  EXPECT_EQ(dir.Get("\\_._"), "0Alpha\r\n1Calm");
  EXPECT_EQ(categories.ListIndex(), -1);
}

}  // namespace
}  // namespace qm
