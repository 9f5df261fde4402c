#include "library/library_editing.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "../../support/library_world.h"

namespace qm {
namespace {

namespace sfs = std::filesystem;
using test::Texts;

class LibraryEditingTest : public ::testing::Test, public test::LibraryWorld {
 protected:
  // Types the characters into the category box as keys, as a user would.
  void TypeCategory(std::string_view keys) {
    for (char key : keys)
      if (editing.txtEditCat_KeyPress(key) == KeyAction::Type) editing.txtEditCat += key;
  }
  void Select(std::string_view name) { ASSERT_TRUE(categories.SetListIndex(categories.Find(name))) << name; }
  // The one box shown since the last call.
  std::string Shown() {
    EXPECT_EQ(prompts.shown.size(), 1u);
    std::string text = prompts.shown.empty() ? "" : prompts.shown.back().text;
    prompts.shown.clear();
    return text;
  }
  int FilesInLists() const {
    return static_cast<int>(std::distance(sfs::directory_iterator(dir.Native("\\Lists")), {}));
  }
};

TEST_F(LibraryEditingTest, AddingACategoryFiltersKeysCreatesItsFileAndSavesTheMarks) {
  dir.Put("\\Lists\\calm.lst", "1Breathe");
  dir.Put("\\_._", "1calm");
  Start();
  int focused = 0;
  editing.SetFocus = [&](LibraryEditing::Box box) { focused += box == LibraryEditing::Box::Category; };
  TypeCategory("a.b/\\|:");
  EXPECT_EQ(editing.txtEditCat, "ab");
  TypeCategory("\r");
  EXPECT_EQ(Texts(categories), "-ab +calm ");
  EXPECT_EQ(library.SelectedCategory(), "ab");
  EXPECT_EQ(editing.txtEditCat, "");
  EXPECT_EQ(focused, 1);
  EXPECT_TRUE(prompts.shown.empty());

  // A duplicate in another case selects the existing category, says so and
  // creates nothing.
  editing.txtEditCat = "Calm";
  editing.cmdAddCat_Click();
  EXPECT_EQ(prompts.shown.at(0).icon, PromptIcon::Exclamation);
  EXPECT_EQ(Shown(), kCategoryExists);
  EXPECT_EQ(library.SelectedCategory(), "calm");
  EXPECT_EQ(Texts(phrases), "+Breathe ");
  EXPECT_EQ(FilesInLists(), 2);

  editing.txtEditCat = "   ";
  editing.cmdAddCat_Click();
  EXPECT_EQ(Shown(), kEnterCategoryName);
  EXPECT_EQ(Texts(categories), "-ab +calm ");
}

TEST_F(LibraryEditingTest, RenamingMovesTheFileAndNeverDestroysAnotherCategory) {
  dir.Put("\\Lists\\calm.lst", "1Breathe");
  dir.Put("\\Lists\\Sleep.lst", "1Rest");
  dir.Put("\\_._", "1calm\r\n0Sleep");
  Start();
  editing.cmdEditCat_Click();  // calm, the first, is selected
  EXPECT_EQ(editing.txtEditCat, "calm");
  EXPECT_EQ(editing.CategoryEditIndex(), 0);

  // Only the case changes: the list only.
  editing.txtEditCat = "Calm";
  editing.cmdAddCat_Click();
  EXPECT_EQ(Texts(categories), "+Calm -Sleep ");
  EXPECT_EQ(dir.Get("\\Lists\\calm.lst"), "1Breathe");
  EXPECT_EQ(dir.Get("\\_._"), "1Calm\r\n0Sleep");
  EXPECT_EQ(editing.CategoryEditIndex(), -1);

  // Onto another category, or onto something else at the file's path: refused,
  // nothing touched, the rename still pending.
  dir.Put("\\Lists\\Ghost.lst\\inside", "x");
  for (const char* taken : {"SLEEP", "Ghost"}) {
    editing.cmdEditCat_Click();
    editing.txtEditCat = taken;
    editing.cmdAddCat_Click();
    EXPECT_EQ(Shown(), kCategoryExists);
    EXPECT_EQ(Texts(categories), "+Calm -Sleep ");
    EXPECT_EQ(dir.Get("\\Lists\\Sleep.lst"), "1Rest");
    EXPECT_EQ(dir.Get("\\Lists\\calm.lst"), "1Breathe");
  }

  // Renamed for real: the file moves, the renamed category is selected and
  // shows its phrases, read from the moved file (sorted after Sleep now).
  editing.cmdEditCat_Click();
  editing.txtEditCat = "Tranquil";
  editing.cmdAddCat_Click();
  EXPECT_TRUE(prompts.shown.empty());
  EXPECT_EQ(Texts(categories), "-Sleep +Tranquil ");
  EXPECT_FALSE(dir.Has("\\Lists\\calm.lst"));
  EXPECT_EQ(library.SelectedCategory(), "Tranquil");
  EXPECT_EQ(Texts(phrases), "+Breathe ");

  // A category whose file went with its last phrase cannot be renamed.
  phrases.RemoveItem(0);
  library.SavePhrases();
  editing.cmdEditCat_Click();
  editing.txtEditCat = "Quiet";
  editing.cmdAddCat_Click();
  EXPECT_EQ(Shown(), kRenameFailed);
  EXPECT_EQ(Texts(categories), "+Quiet -Sleep ");
}

TEST_F(LibraryEditingTest, NamesThatCannotBeWindowsFileNamesAreRefusedBeforeAnythingChanges) {
  dir.Put("\\Lists\\Calm.lst", "1Breathe");
  Start();
  for (const std::string& bad :
       std::vector<std::string>{"CON", "con", "Com1", "LPT9", "nul.old", "a*b", "why?", "say \"hi\"", "<x>",
                                "ends.", "ends ", "tab\there", std::string(252, 'x'), "..\\x"}) {
    SCOPED_TRACE(bad);
    // Refused as a rename too (bad names to add are in the bad-input corpus).
    Select("Calm");
    editing.cmdEditCat_Click();
    editing.txtEditCat = bad;  // pasted: the key filter never saw it
    editing.cmdAddCat_Click();
    EXPECT_EQ(Shown(), CategoryNameProblem(bad).value_or("(none)"));
    EXPECT_EQ(Texts(categories), "-Calm ");
    EXPECT_EQ(FilesInLists(), 1);
    EXPECT_FALSE(dir.Has("\\_._"));
    editing.txtEditCat.clear();
  }
  for (const std::string& fine :
       std::vector<std::string>{"Calm words", "COM10", "CONsole", "\xC9t\xE9", std::string(251, 'x')})
    EXPECT_EQ(CategoryNameProblem(fine), std::nullopt) << fine;
}

TEST_F(LibraryEditingTest, DeletingACategoryAsksFirstAndKeepsWhatCouldNotBeRemoved) {
  dir.Put("\\Lists\\Calm.lst", "1Breathe");
  dir.Put("\\Lists\\Sleep.lst", "1Rest");
  dir.Put("\\_._", "1Calm\r\n1Sleep");
  Start();
  editing.cmdDeleteCat_Click();  // answered No
  EXPECT_EQ(Shown(), kConfirmDeleteCategory);
  EXPECT_EQ(Texts(categories), "+Calm +Sleep ");
  EXPECT_EQ(Texts(phrases), "+Breathe ");
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1Breathe");

  prompts.answers = {PromptAnswer::Yes};
  editing.cmdDeleteCat_Click();
  EXPECT_EQ(Shown(), kConfirmDeleteCategory);
  EXPECT_EQ(Texts(categories), "+Sleep ");
  EXPECT_EQ(categories.ListIndex(), -1);

  editing.cmdDeleteCat_Click();
  EXPECT_EQ(Shown(), kSelectCategoryToDelete);
  editing.cmdEditCat_Click();
  EXPECT_EQ(Shown(), kSelectCategoryToEdit);
}

TEST_F(LibraryEditingTest, PhrasesAreAddedCheckedReplacedAndDeletedWithTheirFileWrittenAtOnce) {
  dir.Put("\\Lists\\Calm.lst", "1Breathe");
  dir.Put("\\Lists\\Sleep.lst", "1Rest");
  Start();
  for (char key : std::string("I am calm\r")) {
    if (editing.txtEditWord_KeyPress(key) == KeyAction::Type) editing.txtEditWord += key;
  }
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1Breathe\r\n1I am calm");
  EXPECT_EQ(editing.txtEditWord, "");

  editing.txtEditWord = "BREATHE";
  editing.cmdAdd_Click();
  EXPECT_EQ(Shown(), kCategoryExists);
  EXPECT_EQ(phrases.ListIndex(), 0);
  EXPECT_EQ(Texts(phrases), "+Breathe +I am calm ");

  // A replacement may repeat another phrase.
  phrases.SetListIndex(1);
  editing.cmdEdit_Click();
  EXPECT_EQ(editing.txtEditWord, "I am calm");
  editing.txtEditWord = "Breathe";
  editing.cmdAdd_Click();
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1Breathe\r\n1Breathe");
  EXPECT_EQ(editing.PhraseEditIndex(), -1);

  // Selecting another category cancels a pending replacement: the next Add
  // adds to the category shown.
  phrases.SetListIndex(0);
  editing.cmdEdit_Click();
  Select("Sleep");
  EXPECT_EQ(editing.PhraseEditIndex(), -1);
  editing.txtEditWord = "Deep";
  editing.cmdAdd_Click();
  EXPECT_EQ(dir.Get("\\Lists\\Sleep.lst"), "1Deep\r\n1Rest");
  EXPECT_EQ(dir.Get("\\Lists\\Calm.lst"), "1Breathe\r\n1Breathe");

  phrases.SetListIndex(-1);
  editing.cmdDelete_Click();
  EXPECT_EQ(Shown(), kSelectPhraseToDelete);
  editing.cmdEdit_Click();
  EXPECT_EQ(Shown(), kSelectPhraseToEdit);
  editing.txtEditWord = " ";
  editing.cmdAdd_Click();
  EXPECT_EQ(Shown(), kEnterPhrase);

  // No category selected: nothing goes to a nameless file.
  categories.SetListIndex(-1);
  editing.txtEditWord = "Lost";
  editing.cmdAdd_Click();
  EXPECT_EQ(Shown(), kSelectCategoryForPhrase);
  EXPECT_FALSE(dir.Has("\\Lists\\.lst"));
}

}  // namespace
}  // namespace qm
