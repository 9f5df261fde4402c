#include "library/library_editing.h"

#include <array>
#include <charconv>

#include "platform/ansi_text.h"

namespace qm {
namespace {

// The longest file name Windows takes is 255 characters; ".lst" uses four.
constexpr std::size_t kMaxCategoryName = 255 - 4;

constexpr std::string_view kForbiddenInFileNames = "\\/:*?\"<>|";
constexpr std::string_view kDroppedFromCategoryNames = "/\\.|:";
constexpr char kEnter = 13;

bool IsReservedDeviceName(std::string_view name) {
  // The part before the first dot counts: "CON.old" is CON too.
  const std::string stem = LowerAnsi(name.substr(0, name.find('.')));
  static constexpr std::array<std::string_view, 4> kPlain{"con", "prn", "aux", "nul"};
  for (std::string_view reserved : kPlain)
    if (TrimSpaces(stem) == reserved) return true;
  const std::string_view s = TrimSpaces(stem);
  return s.size() == 4 && (s.starts_with("com") || s.starts_with("lpt")) && s[3] >= '1' && s[3] <= '9';
}

int ParseIndex(const std::string& tag) {
  int value = -1;
  const auto [end, error] = std::from_chars(tag.data(), tag.data() + tag.size(), value);
  return error == std::errc{} && end == tag.data() + tag.size() ? value : -1;
}

std::string Quoted(std::string_view name) {
  std::string text = "\"";
  text += name;
  text += '"';
  return text;
}

}  // namespace

std::optional<std::string> CategoryNameProblem(std::string_view name) {
  const std::string shown = Quoted(name);
  for (char c : name) {
    if (static_cast<unsigned char>(c) < 32)
      return "The category name " + shown + " holds a control character. Please type the name again.";
    if (kForbiddenInFileNames.find(c) != std::string_view::npos)
      return "A category name cannot hold any of the characters \\ / : * ? \" < > |. Please choose "
             "another name than " +
             shown + ".";
  }
  if (name == "." || name == "..") return "A category name cannot be " + shown + ". Please choose another name.";
  if (!name.empty() && (name.back() == '.' || name.back() == ' '))
    return "A category name cannot end in a dot or a space. Please choose another name than " + shown + ".";
  if (IsReservedDeviceName(name))
    return "Windows keeps the name " + shown +
           " for a device (as it does CON, PRN, AUX, NUL, COM1 to COM9 and LPT1 to LPT9), so a "
           "category cannot have it. Please choose another name.";
  if (name.size() > kMaxCategoryName)
    return "A category name can be at most " + std::to_string(kMaxCategoryName) +
           " characters long. Please choose a shorter name.";
  return std::nullopt;
}

std::string CategoryNameNotInCodePage() {
  return "The category name holds characters that the library's files cannot store (they keep "
         "Western European text). Please choose another name.";
}

std::string PhraseNotInCodePage() {
  return "The phrase holds characters that the library's files cannot store (they keep Western European "
         "text). Please type the phrase without them.";
}

LibraryEditing::LibraryEditing(MessageLibrary& library, CheckedList& categories, CheckedList& phrases,
                               FileSystem& files, Prompts& prompts, EventPump& events)
    : library_(library),
      lstMessageCategories(categories),
      lstPhrases(phrases),
      files_(files),
      prompts_(prompts),
      events_(events) {
  lstMessageCategories.AddObserver(*this);
}

LibraryEditing::~LibraryEditing() { lstMessageCategories.RemoveObserver(*this); }

int LibraryEditing::CategoryEditIndex() const { return ParseIndex(lstMessageCategories.Tag()); }
int LibraryEditing::PhraseEditIndex() const { return ParseIndex(lstPhrases.Tag()); }

void LibraryEditing::OnListChanged(const CheckedList&, const ListChange& change) {
  if (change.kind != ListChange::Kind::Highlighted) return;
  library_.lstMessageCategories_Click();
  lstPhrases.SetTag("-1");
}

bool LibraryEditing::Tell(std::string_view text, PromptIcon icon) {
  // Category names are Windows-1252; the boxes take UTF-8.
  prompts_.Show(AnsiToUtf8(text), icon, PromptButtons::Ok);
  return false;
}

void LibraryEditing::Focus(Box box) {
  if (SetFocus) SetFocus(box);
}

void LibraryEditing::SelectCategory(std::string_view name) {
  const int index = lstMessageCategories.Find(name);
  if (index >= 0 && index != lstMessageCategories.ListIndex()) lstMessageCategories.SetListIndex(index);
}

void LibraryEditing::AddCategory(std::string& remembered) {
  const std::string name = txtEditCat;
  if (AddUniqueItem(lstMessageCategories, name, kCategoryExists, prompts_)) {
    remembered = lstMessageCategories.ItemText(lstMessageCategories.ListIndex());
    return;
  }
  remembered = name;
  lstPhrases.Clear();
  if (!library_.CreateCategoryFile(name)) {
    // Nothing is listed that has no file behind it.
    lstMessageCategories.RemoveItem(lstMessageCategories.Find(name));
    remembered.clear();
    // Say which: the folder, which something else may be in the way of,
    // or the file.
    const std::string why =
        files_.MakeFolder(library_.ListsPath())
            ? "its file could not be written in the Lists folder of the program folder."
            : "the folder \"Lists\" could not be made in the program folder (a file of that name may be "
              "in the way, or the folder may not allow new files).";
    Tell("The category " + Quoted(name) + " could not be created: " + why, PromptIcon::Critical);
  }
}

void LibraryEditing::RenameCategory(int k, std::string& remembered) {
  const std::string oldName = lstMessageCategories.ItemText(k);
  const std::string newName = txtEditCat;
  const bool sameFile = EqualsNoCase(oldName, newName);
  // Another category, or anything else at the new file's path, is never
  // replaced.
  if (!sameFile && (lstMessageCategories.Find(newName) >= 0 || files_.Occupied(library_.CategoryPath(newName)))) {
    Tell(kCategoryExists);
    remembered = oldName;
    return;
  }
  const int position = lstMessageCategories.SetItemText(k, newName);
  lstMessageCategories.SetListIndex(-1);
  events_.DoEvents();
  if (!sameFile) {
    const std::string from = library_.CategoryPath(oldName);
    const std::string to = library_.CategoryPath(newName);
    files_.Copy(from, to);
    if (files_.Exists(to))
      files_.Remove(from);
    else
      Tell(kRenameFailed, PromptIcon::Critical);
  }
  lstMessageCategories.SetListIndex(position);
  lstMessageCategories.SetTag("-1");
  txtEditCat.clear();
  remembered = newName;
}

void LibraryEditing::cmdAddCat_Click() {
  if (TrimSpaces(txtEditCat).empty()) {
    Tell(kEnterCategoryName);
    return;
  }
  if (const auto problem = CategoryNameProblem(txtEditCat)) {
    Tell(*problem);
    return;
  }
  std::string remembered;
  const int k = CategoryEditIndex();
  if (k < 0 || k >= lstMessageCategories.ListCount())
    AddCategory(remembered);
  else
    RenameCategory(k, remembered);
  library_.SaveCheckedCategories();
  if (!remembered.empty()) SelectCategory(remembered);
  txtEditCat.clear();
  Focus(Box::Category);
}

void LibraryEditing::cmdEditCat_Click() {
  const int selected = lstMessageCategories.ListIndex();
  if (selected < 0) {
    Tell(kSelectCategoryToEdit);
    return;
  }
  lstMessageCategories.SetTag(std::to_string(selected));
  txtEditCat = lstMessageCategories.ItemText(selected);
}

void LibraryEditing::cmdDeleteCat_Click() {
  const int selected = lstMessageCategories.ListIndex();
  if (selected < 0) {
    Tell(kSelectCategoryToDelete);
    return;
  }
  if (prompts_.Show(kConfirmDeleteCategory, PromptIcon::Question, PromptButtons::YesNo) != PromptAnswer::Yes)
    return;
  lstPhrases.Clear();
  const std::string path = library_.CategoryPath(lstMessageCategories.ItemText(selected));
  if (files_.Exists(path)) files_.Remove(path);
  if (files_.Exists(path)) {
    Tell(kDeleteCategoryFailed, PromptIcon::Critical);
    return;
  }
  lstMessageCategories.RemoveItem(selected);
  lstMessageCategories.SetTag("-1");
  library_.SaveCheckedCategories();
  Focus(Box::Category);
}

void LibraryEditing::cmdAdd_Click() {
  if (TrimSpaces(txtEditWord).empty()) {
    Tell(kEnterPhrase);
    return;
  }
  if (lstMessageCategories.ListIndex() < 0) {
    Tell(kSelectCategoryForPhrase);
    return;
  }
  const int k = PhraseEditIndex();
  if (k < 0 || k >= lstPhrases.ListCount()) {
    if (!AddUniqueItem(lstPhrases, txtEditWord, kCategoryExists, prompts_))
      lstPhrases.SetItemChecked(lstPhrases.ListIndex(), true);  // a new phrase starts checked
  } else {
    // A replacement is not tested for duplicates.
    lstPhrases.SetItemText(k, txtEditWord);
  }
  library_.SavePhrases();
  txtEditWord.clear();
  Focus(Box::Phrase);
  lstPhrases.SetTag("-1");
}

void LibraryEditing::cmdEdit_Click() {
  const int highlighted = lstPhrases.ListIndex();
  if (highlighted < 0) {
    Tell(kSelectPhraseToEdit);
    return;
  }
  txtEditWord = lstPhrases.ItemText(highlighted);
  lstPhrases.SetTag(std::to_string(highlighted));
}

void LibraryEditing::cmdDelete_Click() {
  const int highlighted = lstPhrases.ListIndex();
  if (highlighted < 0) {
    Tell(kSelectPhraseToDelete);
    return;
  }
  lstPhrases.RemoveItem(highlighted);
  lstPhrases.SetTag("-1");
  library_.SavePhrases();
}

KeyAction LibraryEditing::txtEditCat_KeyPress(char key) {
  if (key == kEnter) {
    cmdAddCat_Click();
    return KeyAction::Discard;
  }
  return kDroppedFromCategoryNames.find(key) == std::string_view::npos ? KeyAction::Type : KeyAction::Discard;
}

KeyAction LibraryEditing::txtEditWord_KeyPress(char key) {
  if (key == kEnter) {
    cmdAdd_Click();
    return KeyAction::Discard;
  }
  return KeyAction::Type;
}

}  // namespace qm
