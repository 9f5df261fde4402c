#include "settings/tray.h"

namespace qm {
namespace {

// Holds the flag up for a scope, whichever way the scope is left.
class OpenWhile {
 public:
  explicit OpenWhile(bool& flag) : flag_(flag) { flag_ = true; }
  ~OpenWhile() { flag_ = false; }
  OpenWhile(const OpenWhile&) = delete;
  OpenWhile& operator=(const OpenWhile&) = delete;

 private:
  bool& flag_;
};

}  // namespace

std::string FitTrayTip(std::string_view tip) {
  const std::size_t nul = tip.find('\0');
  if (nul != std::string_view::npos) tip = tip.substr(0, nul);
  return std::string(tip.substr(0, kTrayTipField - 1));
}

std::optional<unsigned> TrayCallbackMouseMessage(std::uintptr_t wParam, std::uintptr_t lParam) {
  const std::uint32_t low32 = static_cast<std::uint32_t>(lParam);
  if (wParam != kTrayIconNumber || (low32 >> 16) != 0) return std::nullopt;
  // On 64-bit Windows the upper half of lParam is not part of the message.
  const unsigned message = low32 & 0xFFFFu;
  if (message < kMouseFirst || message > kMouseLast) return std::nullopt;
  return message;
}

const std::array<TrayMenuEntry, 6>& TrayMenu::Entries() {
  static const std::array<TrayMenuEntry, 6> entries{{
      {"mnuSettings", "Settings", TrayMenuItem::Settings, 1},
      {"mnuSep1", "", TrayMenuItem::None, 0},
      {"mnuStart", "Start", TrayMenuItem::Start, 2},
      {"mnuStop", "Stop", TrayMenuItem::Stop, 3},
      {"mnuSep2", "", TrayMenuItem::None, 0},
      {"mnuExit", "Exit Application", TrayMenuItem::Exit, 4},
  }};
  return entries;
}

TrayMenuItem TrayMenu::ItemOfCommand(unsigned commandId) {
  if (commandId == 0) return TrayMenuItem::None;
  for (const TrayMenuEntry& e : Entries())
    if (e.commandId == commandId) return e.item;
  return TrayMenuItem::None;
}

bool TrayMenu::Checked(TrayMenuItem item) const {
  if (item == TrayMenuItem::Start) return mnuStartChecked;
  if (item == TrayMenuItem::Stop) return mnuStopChecked;
  return false;
}

bool TrayMenu::Enabled(TrayMenuItem item) const {
  return item != TrayMenuItem::Settings || mnuSettingsEnabled;
}

bool TrayMenu::Form_MouseMove(unsigned x, TrayPopup& popup) {
  if (x != kMouseLeftReleased && x != kMouseRightReleased) return false;
  // A second click while the menu is open reaches the menu, not here.
  if (open_) return false;
  if (commands_.BringOpenMessageBoxToFront()) return false;
  commands_.PauseForTrayMenu();
  TrayMenuItem chosen = TrayMenuItem::None;
  {
    OpenWhile open(open_);
    chosen = popup.Popup(*this);
  }
  Run(chosen);
  return true;
}

void TrayMenu::Run(TrayMenuItem item) {
  if (!Enabled(item)) return;
  switch (item) {
    case TrayMenuItem::Settings:
      commands_.mnuSettings_Click();
      break;
    case TrayMenuItem::Start:
      commands_.mnuStart_Click();
      break;
    case TrayMenuItem::Stop:
      commands_.mnuStop_Click();
      break;
    case TrayMenuItem::Exit:
      commands_.mnuExit_Click();
      break;
    case TrayMenuItem::None:
      break;
  }
}

}  // namespace qm
