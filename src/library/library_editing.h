// The commands of the Messages page that change the library: adding,
// renaming and deleting categories (with the text box txtEditCat) and
// adding, replacing and deleting phrases (with txtEditWord). Each command
// writes the files it changes before it ends.
//
// Each list's pending edit is its edit index, kept as text in the list's
// tag: "-1" while the next Add adds a new item, the item's position while
// its rename (categories) or replacement (phrases) is pending.
//
// Nothing is ever destroyed by a name: a category is never renamed onto
// another one (or onto anything else at its file's path), and a name that
// cannot be a Windows file name is refused before anything changes. A
// phrase is added only to a selected category, and selecting another
// category cancels a pending phrase edit.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "library/checked_list.h"
#include "library/message_library.h"
#include "platform/file_system.h"
#include "platform/prompts.h"

namespace qm {

inline constexpr std::string_view kEnterCategoryName = "Please enter a category name you want to create.";
inline constexpr std::string_view kCategoryExists = "A category with that name already exists!";
inline constexpr std::string_view kRenameFailed =
    "There was an error renaming the category. Please try again later.";
inline constexpr std::string_view kSelectCategoryToEdit = "Please select a category name before clicking 'Edit'.";
inline constexpr std::string_view kSelectCategoryToDelete = "Please select a category you wish to delete.";
inline constexpr std::string_view kConfirmDeleteCategory = "Are you sure you wish to delete this category?";
inline constexpr std::string_view kDeleteCategoryFailed = "There was an error trying to remove this category.";
inline constexpr std::string_view kEnterPhrase = "Please enter a phrase you want to add to this category.";
inline constexpr std::string_view kSelectPhraseToEdit = "Please select a subliminal message to edit.";
inline constexpr std::string_view kSelectPhraseToDelete = "Please select a subliminal message you wish to delete.";
inline constexpr std::string_view kSelectCategoryForPhrase =
    "Please select the category the phrase belongs to before clicking 'Add'.";

// Why a category name (Windows-1252 text, as typed) cannot name its file
// "Lists\<name>.lst" on Windows, as a message for the user; nothing when it
// can. Refused: control characters and \ / : * ? " < > |, a last character
// that is a dot or a space, the names Windows keeps for devices (CON, PRN,
// AUX, NUL, COM1 to COM9, LPT1 to LPT9, also before a dot), a name too long
// for a file name, and "." or "..".
std::optional<std::string> CategoryNameProblem(std::string_view name);
// The message for a name typed with characters outside Windows-1252, which
// the library's files cannot hold (the window converts what is typed).
std::string CategoryNameNotInCodePage();
// The same for a phrase: the category files keep Windows-1252 text too.
std::string PhraseNotInCodePage();

// What a key typed into a text box does.
enum class KeyAction {
  Type,     // the character goes into the box
  Discard,  // the character is dropped
};

class LibraryEditing final : private CheckedListObserver {
 public:
  enum class Box { Category, Phrase };

  LibraryEditing(MessageLibrary& library, CheckedList& categories, CheckedList& phrases, FileSystem& files,
                 Prompts& prompts, EventPump& events);
  virtual ~LibraryEditing();
  LibraryEditing(const LibraryEditing&) = delete;
  LibraryEditing& operator=(const LibraryEditing&) = delete;

  // The two text boxes' contents (Windows-1252 text).
  std::string txtEditCat;
  std::string txtEditWord;
  // Moves the keyboard focus to a box (the window does it).
  std::function<void(Box)> SetFocus;

  void cmdAddCat_Click();
  void cmdEditCat_Click();
  void cmdDeleteCat_Click();
  void cmdAdd_Click();
  void cmdEdit_Click();
  void cmdDelete_Click();

  // "/", "\", ".", "|" and ":" never reach the category box; Enter (13)
  // runs the category Add and is dropped.
  KeyAction txtEditCat_KeyPress(char key);
  // Enter runs the phrase Add and is dropped; everything else is typed.
  KeyAction txtEditWord_KeyPress(char key);

  // The edit indexes, as the lists' tags hold them.
  int CategoryEditIndex() const;
  int PhraseEditIndex() const;

 private:
  // Highlighting a category loads its phrases and cancels a pending
  // phrase edit.
  void OnListChanged(const CheckedList& list, const ListChange& change) override;

  bool Tell(std::string_view text, PromptIcon icon = PromptIcon::Exclamation);
  void Focus(Box box);
  void SelectCategory(std::string_view name);
  // Renames item k to the box's name; a refused rename changes nothing.
  // `remembered` is the category to select afterwards.
  void RenameCategory(int k, std::string& remembered);
  void AddCategory(std::string& remembered);

  MessageLibrary& library_;
  CheckedList& lstMessageCategories;
  CheckedList& lstPhrases;
  FileSystem& files_;
  Prompts& prompts_;
  EventPump& events_;
};

}  // namespace qm
