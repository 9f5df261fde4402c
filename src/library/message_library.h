// The message library: the user's phrases, grouped into categories, as the
// settings window shows them in its two checked lists and keeps them in the
// program folder.
//
//   "\Lists\" & name & ".lst"  one category file per category: its phrases,
//                              one marked line each (1 checked, 0 not)
//   "\_._"                     the category-state file: one marked line per
//                              category, its mark and its name
//
// Both are line files (line_file.h). A category exists when its file does;
// its file is found without regard to case on every file system. The lists
// are the working copy and every change is written at once.
//
// Nothing already saved is lost: a category file or the category-state file
// that exists but could not be read when it was loaded (too large, no
// permission, locked) is neither overwritten nor deleted by what the lists
// show in its place; and every write replaces its file atomically.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "library/checked_list.h"
#include "platform/file_system.h"
#include "platform/prompts.h"

namespace qm {

inline constexpr std::string_view kCategoryStateFile = "\\_._";
inline constexpr std::string_view kListsFolder = "Lists";
inline constexpr std::string_view kListsExtension = "lst";

// The category-state file, the "Lists" folder and a category's file, under
// the program folder (a UTF-8 path). Category names are Windows-1252 text,
// as the lists and files hold them.
std::string CategoryStatePath(std::string_view programFolder);
std::string ListsFolderPath(std::string_view programFolder);
std::string CategoryFilePath(std::string_view programFolder, std::string_view name);
// True when the name's file stays inside "Lists": no separator or drive
// colon, and neither "." nor "..". A hand-edited "\_._" may name anything.
bool NamesFileInLists(std::string_view name);

// Empties the list and adds the name, less its last four characters, of
// every file with the extension in the folder of the program folder. A
// missing folder gives an empty list. The list sorts the names. A file
// whose name Windows-1252 cannot spell is passed over.
void FillComboWithFiles(CheckedList& list, FileSystem& files, std::string_view programFolder,
                        std::string_view folder, std::string_view extension);

// Looks for the text among the items without regard to case. When it is
// there, highlights that item, shows the message (exclamation, OK) and
// returns true; otherwise adds the text at its sorted place, highlights it
// there and returns false.
bool AddUniqueItem(CheckedList& list, std::string_view text, std::string_view message, Prompts& prompts);

// Sets the mark of the first item whose text equals the name without regard
// to case; does nothing when there is none.
void SetItemChecked(CheckedList& list, std::string_view name, bool checked);

enum class SaveStatus {
  Written,       // the category file holds the list
  Deleted,       // the list was empty and the file was deleted
  NoFile,        // the list was empty and there was no file
  WriteFailed,   // the file could not be written; it is as it was
  DeleteFailed,  // the list was empty and the file could not be deleted
  Unreadable,    // the file could not be read when loaded; left untouched
};

struct SaveResult {
  SaveStatus status = SaveStatus::Written;
  std::string category;  // the category concerned, as listed

  bool Ok() const {
    return status == SaveStatus::Written || status == SaveStatus::Deleted || status == SaveStatus::NoFile;
  }
};

// The library routines of the settings window, working on its two lists.
// Highlighting an item of lstMessageCategories is meant to load that
// category's phrases: the window runs lstMessageCategories_Click when the
// list reports a Highlighted change.
class MessageLibrary {
 public:
  MessageLibrary(std::string programFolder, FileSystem& files, Prompts& prompts, EventPump& events,
                 CheckedList& categories, CheckedList& phrases);

  // The library's share of the settings window's loading: lists the
  // categories, applies their marks, highlights the first one, and loads
  // its phrases directly once more.
  void StartUp();

  // Lists every category (lstMessageCategories); none is highlighted.
  void ListCategories();
  // Applies the category-state file's marks to the listed categories: a
  // line marked 1 checks the category it names, any other line unchecks
  // it, and a name that is not listed changes nothing. Writes nothing.
  void LoadCheckedCategories();
  // Loads the highlighted category's phrases into lstPhrases (no category:
  // the file ".lst"). A missing file gives an empty list. Writes nothing.
  // Returns false when the file exists but could not be read: the list
  // stays empty and SavePhrases keeps that file from being replaced.
  bool lstMessageCategories_Click();

  // Writes the highlighted category's file from lstPhrases, or deletes it
  // when lstPhrases is empty, creating the "Lists" folder when needed. A
  // failure leaves the file as it was and is shown to the user here, with
  // the stop icon, in one of these texts (NAME: the category's name):
  //   The phrases of the category "NAME" could not be saved.
  //     Its file was left as it was.
  //   The category "NAME" has no phrases left, but its file could not be
  //     deleted.
  //   The phrases of the category "NAME" could not be read, so they were
  //     not saved. Its file was left as it was.
  // Callers show nothing more.
  SaveResult SavePhrases();
  // Writes the category-state file from lstMessageCategories, with up to
  // 101 attempts, letting pending window events run before each; gives up
  // silently. Only the last attempt waits for a file another program holds
  // open, so a held file costs about a second, not one for each attempt.
  // An empty list writes nothing (the file keeps its content), and neither
  // does a list whose marks could not be read from the file at loading (the
  // file keeps its own). Returns false when the list's marks could not be
  // saved.
  bool SaveCheckedCategories();

  // The user changed a category's mark (the list holds it already). A
  // file that cannot be written is given up silently after the attempts:
  // it keeps the marks saved before.
  bool lstMessageCategories_ItemCheck() { return SaveCheckedCategories(); }
  // The user changed a phrase's mark (the list holds it already).
  SaveResult lstPhrases_ItemCheck() { return SavePhrases(); }

  // The highlighted category's name, empty when none is highlighted.
  std::string SelectedCategory() const;
  // The "Lists" folder: programFolder "\Lists".
  std::string ListsPath() const { return ListsFolderPath(programFolder_); }
  // The category's file: programFolder "\Lists\" name ".lst".
  std::string CategoryPath(std::string_view name) const;
  // Creates the category's file, empty, and the "Lists" folder when it is
  // missing; anything already at its path (a hidden file, a folder) is left
  // as it is. True when the category's ordinary file exists afterwards.
  bool CreateCategoryFile(std::string_view name);

 private:
  bool WriteCategoryFile(const std::string& path, std::string_view bytes);
  SaveResult Report(SaveStatus status, std::string category);

  std::string programFolder_;
  FileSystem& files_;
  Prompts& prompts_;
  EventPump& events_;
  CheckedList& lstMessageCategories;
  CheckedList& lstPhrases;
  // The category whose file could not be read when last loaded.
  std::optional<std::string> unreadableCategory_;
  bool stateUnreadable_ = false;
};

}  // namespace qm
