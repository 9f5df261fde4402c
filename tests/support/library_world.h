// The library and the settings as the settings window holds them, over a
// fresh program folder (or a given one): the two lists, the message library,
// the editing commands and the settings store, on the machine's file system
// (as the tests watch it, unless told otherwise), with message boxes and events recorded. The
// settings store tells its failures in a stop box, as the window does.
#pragma once

#include <string>

#include "fake_prompts.h"
#include "library/library_editing.h"
#include "library/settings_store.h"
#include "temp_folder.h"
#include "watched_files.h"

namespace qm::test {

// A list's items, each as "+text" or "-text" followed by `separator`.
inline std::string Texts(const CheckedList& list, char separator = ' ') {
  std::string texts;
  for (const auto& item : list.Items()) texts += (item.checked ? "+" : "-") + item.text + separator;
  return texts;
}

struct LibraryWorld {
  // Over the given program folder, or over the fresh one; on the given file
  // system, or on the watched one.
  explicit LibraryWorld(std::string programFolder = "", FileSystem* fileSystem = nullptr)
      : folder(programFolder.empty() ? dir.Path() : std::move(programFolder)),
        fs(fileSystem ? *fileSystem : files) {
    settings.Tell = [this](const std::string& text) { Stop(text); };
  }
  LibraryWorld(const LibraryWorld&) = delete;
  LibraryWorld& operator=(const LibraryWorld&) = delete;

  // Reads the library and the settings, as the program does when it starts;
  // what was shown meanwhile is forgotten.
  void Start() {
    library.StartUp();
    settings.ReadSettings();
    prompts.shown.clear();
  }
  void Stop(const std::string& text) { prompts.Show(text, PromptIcon::Critical, PromptButtons::Ok); }
  // The stop boxes shown since the last call.
  int StopBoxes() {
    int count = 0;
    for (const ShownPrompt& shown : prompts.shown) count += shown.icon == PromptIcon::Critical;
    prompts.shown.clear();
    return count;
  }

  TempFolder dir;
  std::string folder;
  CountingEventPump pump;
  FakePrompts prompts;
  WatchedFiles files{&pump};
  FileSystem& fs;
  CheckedList categories, phrases;
  MessageLibrary library{folder, fs, prompts, pump, categories, phrases};
  LibraryEditing editing{library, categories, phrases, fs, prompts, pump};
  SettingsStore settings{fs, folder};
};

}  // namespace qm::test
