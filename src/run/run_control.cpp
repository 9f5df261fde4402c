#include "run/run_control.h"

#include <unordered_set>
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
// spelling, with a set of the lower-cased phrases standing in for InArray's
// walk through the list.
class Gathering {
 public:
  void Add(std::string_view text) {
    if (!seen_.insert(LowerAnsi(text)).second) return;
    if (!list_) list_.emplace();
    list_->emplace_back(text);
  }
  PhraseList Take() { return std::move(list_); }

 private:
  PhraseList list_;
  std::unordered_set<std::string> seen_;
};

}  // namespace

PhraseList RunControl::GetCheckedPhrases() const {
  const auto state = files_.ReadAll(CategoryStatePath(programFolder_));
  if (!state) return {};
  Gathering gathered;
  ForEachLine(*state, [&](std::string_view line) {
    // Any digit but 0 marks a checked category here.
    if (line.empty() || line[0] < '1' || line[0] > '9') return;
    const auto text = files_.ReadAll(CategoryFilePath(programFolder_, line.substr(1)));
    if (!text || TrimSpaces(*text).empty()) return;
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
