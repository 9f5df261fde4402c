#include "run/run_control.h"

#include <algorithm>
#include <cstdint>
#include <vector>
#include <utility>

#include "library/line_file.h"
#include "library/message_library.h"
#include "platform/ansi_text.h"

namespace qm {

RunControl::RunControl(frmMessage& flasher, RunControlHost& host, FileSystem& files, std::string programFolder)
    : flasher_(flasher), host_(host), files_(files), programFolder_(std::move(programFolder)) {}

void RunControl::SetStatus(std::string_view tip, StatusIcon icon) {
  statusText_ = tip;
  icon_ = icon;
  host_.ShowStatus(statusText_, icon_);
}

void RunControl::SetChecks(bool start, bool stop) {
  menuStartChecked_ = start;
  menuStopChecked_ = stop;
  host_.SetMenuChecks(start, stop);
}

void RunControl::mnuStart_Click() {
  SetStatus(kTipOn, StatusIcon::Running);
  SetChecks(true, false);
  flasher_.bStopped = false;
  flasher_.HideLabel();
  flasher_.Show();
  host_.HideSettingsWindow();
  flasher_.Begin();
}

void RunControl::cmdStart_Click() {
  flasher_.SetLabelFont(host_.PreviewFont());
  flasher_.MessageList = GetCheckedPhrases();
  flasher_.bStopped = false;
  flasher_.Show();
  mnuStart_Click();
  // Repeats what the Start command did; changes nothing further.
  host_.HideSettingsWindow();
  flasher_.Show();
  flasher_.Begin();
}

void RunControl::mnuStop_Click() {
  SetStatus(kTipOff, StatusIcon::Stopped);
  SetChecks(false, true);
  flasher_.bStopped = true;
}

void RunControl::cmdStop_Click() {
  flasher_.bStopped = true;
  flasher_.Hide();
}

void RunControl::mnuSettings_Click() { host_.ShowSettingsWindow(); }

void RunControl::PauseForTrayMenu() {
  flasher_.bStopped = true;
  flasher_.Hide();
}

void RunControl::STimer1_Timer() {
  // While the user is busy with the whole screen the display waits, paused
  // as a tray click pauses it, and resumes below once that ends.
  if (flasher_.Quiet()) {
    flasher_.bStopped = true;
    flasher_.HideLabel();
    flasher_.Hide();
    return;
  }
  if (host_.TrayMenuOpen() || host_.SettingsWindowVisible() || menuStopChecked_ || host_.MessageBoxOpen())
    return;
  if (!flasher_.TimerDisplayLength().Enabled() && !flasher_.TimerFrequency().Enabled()) {
    flasher_.Begin();
  } else if (flasher_.Visible()) {
    flasher_.bStopped = false;
  } else {
    flasher_.Show();
    flasher_.bStopped = false;
  }
}

namespace {

// The rotation list as it is gathered: each phrase kept once, at its first
// spelling. An open-addressing table of positions in the list, keyed by a
// hash of the lower-cased phrase, stands in for InArray's walk through the
// whole list, so each phrase costs the same however many came before.
class Gathering {
 public:
  // Room for about this many more phrases (a category file's line count).
  void Expect(std::size_t more) {
    list_.reserve(list_.size() + more);
    hashes_.reserve(hashes_.size() + more);
    while ((hashes_.size() + more) * 2 > slots_.size()) Grow();
  }

  void Add(std::string_view text) {
    if ((hashes_.size() + 1) * 2 > slots_.size()) Grow();
    const std::size_t hash = HashNoCase(text);
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    for (; slots_[slot] != 0; slot = (slot + 1) & mask) {
      const std::size_t at = slots_[slot] - 1;
      if (hashes_[at] == hash && EqualsNoCase(list_[at], text)) return;
    }
    slots_[slot] = hashes_.size() + 1;
    hashes_.push_back(hash);
    list_.emplace_back(text);
  }

  // Unset when nothing was gathered.
  PhraseList Take() {
    if (list_.empty()) return std::nullopt;
    return std::move(list_);
  }

 private:
  // FNV-1a over the lower-cased bytes.
  static std::size_t HashNoCase(std::string_view text) {
    std::uint64_t hash = 14695981039346656037ull;
    for (char c : text) {
      hash ^= static_cast<unsigned char>(LowerAnsiChar(c));
      hash *= 1099511628211ull;
    }
    return static_cast<std::size_t>(hash ^ (hash >> 32));
  }

  void Grow() {
    std::vector<std::size_t> bigger(slots_.empty() ? 64 : slots_.size() * 2, 0);
    const std::size_t mask = bigger.size() - 1;
    for (std::size_t at = 0; at < hashes_.size(); ++at) {
      std::size_t slot = hashes_[at] & mask;
      while (bigger[slot] != 0) slot = (slot + 1) & mask;
      bigger[slot] = at + 1;
    }
    slots_.swap(bigger);
  }

  std::vector<std::string> list_;
  std::vector<std::size_t> hashes_;  // of each phrase in the list
  std::vector<std::size_t> slots_;   // 0 empty, else a position in the list + 1
};

}  // namespace

PhraseList RunControl::GetCheckedPhrases() const {
  const auto state = files_.ReadAll(CategoryStatePath(programFolder_));
  if (!state) return {};
  Gathering gathered;
  ForEachLine(*state, [&](std::string_view line) {
    // Any digit but 0 marks a checked category here.
    if (line.empty() || line[0] < '1' || line[0] > '9') return;
    // A hand-edited line cannot send the gathering outside "Lists".
    if (!NamesFileInLists(line.substr(1))) return;
    const auto text = files_.ReadAll(CategoryFilePath(programFolder_, line.substr(1)));
    if (!text || TrimSpaces(*text).empty()) return;
    gathered.Expect(static_cast<std::size_t>(std::count(text->begin(), text->end(), '\n')) + 1);
    ForEachLine(*text, [&](std::string_view phraseLine) {
      const MarkedLine phrase = ParseMarkedLine(phraseLine);
      // A phrase whose own check mark is cleared stays out of the rotation.
      if (phrase.checked) gathered.Add(phrase.text);
    });
  });
  return gathered.Take();
}

void RunControl::AddToArray(PhraseList& list, std::string_view text) {
  if (!list) {
    list.emplace();
  } else if (InArray(list, text)) {
    return;
  }
  list->emplace_back(text);
}

bool RunControl::InArray(const PhraseList& list, std::string_view text) {
  if (!list) return false;
  for (const std::string& element : *list)
    if (EqualsNoCase(element, text)) return true;
  return false;
}

void RunControl::StartUpBegin() {
  flasher_.bStopped = true;
  flasher_.MessageList = GetCheckedPhrases();
}

bool RunControl::IsFirstRun(std::string_view commandLine) {
  return LowerAnsi(commandLine).find("firstrun") != std::string::npos;
}

void RunControl::StartUpEnd(std::string_view commandLine, Prompts& prompts) {
  if (IsFirstRun(commandLine)) {
    host_.ShowSettingsWindow();
    host_.DoEvents();
    prompts.Show(kFirstRunHint, PromptIcon::Information, PromptButtons::Ok);
    return;
  }
  cmdStart_Click();
}

}  // namespace qm
