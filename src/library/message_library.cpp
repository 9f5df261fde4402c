#include "library/message_library.h"

#include <utility>
#include <vector>

#include "library/line_file.h"
#include "platform/ansi_text.h"

namespace qm {
namespace {

// Attempts at writing the category-state file before giving up.
constexpr int kStateWriteAttempts = 101;

// A message naming a category: the name is Windows-1252, the message UTF-8.
std::string Quoted(std::string_view before, std::string_view name, std::string_view after) {
  std::string text(before);
  text += '"';
  text += AnsiToUtf8(name);
  text += '"';
  text += after;
  return text;
}

// The list as a line file's text: one marked line per item, in list order.
std::string MarkedText(const CheckedList& list) {
  std::vector<std::string> lines;
  lines.reserve(list.Items().size());
  for (const CheckedList::Item& item : list.Items())
    lines.push_back(FormatMarkedLine(item.checked, item.text));
  return JoinLines(lines);
}

}  // namespace

std::string CategoryStatePath(std::string_view programFolder) {
  return ProgramPath(programFolder, kCategoryStateFile);
}

std::string ListsFolderPath(std::string_view programFolder) {
  std::string relative = "\\";
  relative += kListsFolder;
  return ProgramPath(programFolder, relative);
}

std::string CategoryFilePath(std::string_view programFolder, std::string_view name) {
  std::string path = ListsFolderPath(programFolder);
  path += '\\';
  path += AnsiToUtf8(name);
  path += '.';
  path += kListsExtension;
  return path;
}

bool NamesFileInLists(std::string_view name) {
  return name.find_first_of("\\/:") == std::string_view::npos && name != "." && name != "..";
}

void FillComboWithFiles(CheckedList& list, FileSystem& files, std::string_view programFolder,
                        std::string_view folder, std::string_view extension) {
  std::string path(programFolder);
  path += '\\';
  path += folder;
  std::vector<CheckedList::Item> items;
  for (const std::string& fileName : files.List(path, extension)) {
    // A file name that Windows-1252 cannot spell names no category: its
    // name could not be shown, stored in "\_._" or typed.
    std::optional<std::string> name = Utf8ToAnsi(fileName);
    if (!name) continue;
    name->resize(name->size() >= 4 ? name->size() - 4 : 0);
    items.push_back({std::move(*name), false});
  }
  // One sort for the whole folder rather than one insertion per file.
  list.Assign(std::move(items));
}

bool AddUniqueItem(CheckedList& list, std::string_view text, std::string_view message, Prompts& prompts) {
  const int existing = list.Find(text);
  if (existing >= 0) {
    list.SetListIndex(existing);
    prompts.Show(message, PromptIcon::Exclamation, PromptButtons::Ok);
    return true;
  }
  list.SetListIndex(list.AddItem(std::string(text)));
  return false;
}

void SetItemChecked(CheckedList& list, std::string_view name, bool checked) {
  list.SetItemChecked(list.Find(name), checked);
}

MessageLibrary::MessageLibrary(std::string programFolder, FileSystem& files, Prompts& prompts,
                               EventPump& events, CheckedList& categories, CheckedList& phrases)
    : programFolder_(std::move(programFolder)),
      files_(files),
      prompts_(prompts),
      events_(events),
      lstMessageCategories(categories),
      lstPhrases(phrases) {}

void MessageLibrary::StartUp() {
  ListCategories();
  LoadCheckedCategories();
  if (lstMessageCategories.ListCount() > 0) lstMessageCategories.SetListIndex(0);
  lstMessageCategories_Click();
}

void MessageLibrary::ListCategories() {
  FillComboWithFiles(lstMessageCategories, files_, programFolder_, kListsFolder, kListsExtension);
}

void MessageLibrary::LoadCheckedCategories() {
  const std::string path = CategoryStatePath(programFolder_);
  const std::optional<std::string> text = files_.ReadAll(path);
  // A state file that is there but cannot be read keeps its marks: the
  // categories show unchecked, and SaveCheckedCategories leaves it alone.
  stateUnreadable_ = !text && files_.Exists(path);
  if (!text) return;
  ForEachLine(*text, [&](std::string_view line) {
    MarkedLine marked = ParseMarkedLine(line);
    SetItemChecked(lstMessageCategories, marked.text, marked.checked);
  });
}

bool MessageLibrary::lstMessageCategories_Click() {
  const std::string name = SelectedCategory();
  const std::string path = CategoryPath(name);
  lstPhrases.Clear();
  unreadableCategory_.reset();
  if (!files_.Exists(path)) return true;
  const std::optional<std::string> text = files_.ReadAll(path);
  if (!text) {
    unreadableCategory_ = name;
    return false;
  }
  std::vector<CheckedList::Item> items;
  ForEachLine(*text, [&](std::string_view line) {
    MarkedLine marked = ParseMarkedLine(line);
    items.push_back({std::move(marked.text), marked.checked});
  });
  // Each mark stays with the phrase of its own line; one sort for the lot.
  lstPhrases.Assign(std::move(items));
  return true;
}

SaveResult MessageLibrary::SavePhrases() {
  std::string name = SelectedCategory();
  const std::string path = CategoryPath(name);
  if (unreadableCategory_ && EqualsNoCase(*unreadableCategory_, name))
    return Report(SaveStatus::Unreadable, std::move(name));

  if (lstPhrases.ListCount() == 0) {
    // A category whose last phrase went loses its file.
    if (!files_.Exists(path)) return {SaveStatus::NoFile, std::move(name)};
    if (!files_.Remove(path)) return Report(SaveStatus::DeleteFailed, std::move(name));
    return {SaveStatus::Deleted, std::move(name)};
  }

  const int highlighted = lstPhrases.ListIndex();
  const bool written = WriteCategoryFile(path, MarkedText(lstPhrases));
  lstPhrases.SetListIndex(highlighted);
  if (!written) return Report(SaveStatus::WriteFailed, std::move(name));
  return {SaveStatus::Written, std::move(name)};
}

bool MessageLibrary::SaveCheckedCategories() {
  if (lstMessageCategories.ListCount() == 0) return true;
  if (stateUnreadable_) return false;

  const int highlighted = lstMessageCategories.ListIndex();
  const std::string highlightedName = SelectedCategory();
  const std::string path = CategoryStatePath(programFolder_);

  // The file may be held briefly by another program: try again after
  // letting the window events run, and after the last attempt say nothing.
  // A mark changed by an event run here is saved by its own handler; the
  // text is built after the events, so no attempt writes an older state
  // over it.
  bool written = false;
  for (int attempt = 0; attempt < kStateWriteAttempts && !written; ++attempt) {
    events_.DoEvents();
    if (lstMessageCategories.ListCount() == 0) return true;
    const std::string text = MarkedText(lstMessageCategories);
    const bool last = attempt + 1 == kStateWriteAttempts;
    written = last ? files_.WriteAll(path, text) : files_.TryWriteAll(path, text);
  }
  // The events may have added or removed categories: the remembered
  // position is highlighted again only while it names the same category.
  if (highlighted >= 0 && highlighted < lstMessageCategories.ListCount() &&
      lstMessageCategories.ItemText(highlighted) == highlightedName)
    lstMessageCategories.SetListIndex(highlighted);
  return written;
}

std::string MessageLibrary::SelectedCategory() const {
  const int index = lstMessageCategories.ListIndex();
  return index >= 0 ? lstMessageCategories.ItemText(index) : std::string();
}

std::string MessageLibrary::CategoryPath(std::string_view name) const {
  return CategoryFilePath(programFolder_, name);
}

bool MessageLibrary::CreateCategoryFile(std::string_view name) {
  const std::string path = CategoryPath(name);
  // Anything already there, a hidden file or a folder included, is kept:
  // a new category never replaces it with an empty file.
  if (files_.Occupied(path)) return files_.Exists(path);
  return WriteCategoryFile(path, {});
}

bool MessageLibrary::WriteCategoryFile(const std::string& path, std::string_view bytes) {
  // The "Lists" folder is made when the first category file goes into it.
  files_.MakeFolder(ListsFolderPath(programFolder_));
  return files_.WriteAll(path, bytes);
}

SaveResult MessageLibrary::Report(SaveStatus status, std::string category) {
  std::string text;
  switch (status) {
    case SaveStatus::WriteFailed:
      text = Quoted("The phrases of the category ", category,
                    " could not be saved. Its file was left as it was.");
      break;
    case SaveStatus::DeleteFailed:
      text = Quoted("The category ", category, " has no phrases left, but its file could not be deleted.");
      break;
    case SaveStatus::Unreadable:
      text = Quoted("The phrases of the category ", category,
                    " could not be read, so they were not saved. Its file was left as it was.");
      break;
    default:
      break;
  }
  if (!text.empty()) prompts_.Show(text, PromptIcon::Critical, PromptButtons::Ok);
  return {status, std::move(category)};
}

}  // namespace qm
