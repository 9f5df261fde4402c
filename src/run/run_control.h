// Run control: when the message flasher runs. The start and stop commands
// (the settings window's Start and Stop buttons, the tray menu's Start and
// Stop), the pause a click on the tray icon causes, the one-second watchdog
// that resumes a paused display once the settings window and the tray menu
// are out of the way (unless the user chose Stop), the gathering of the
// rotation list from the checked categories, and the display's share of
// start-up.
//
// Run state: the status text (the tray tip), the window icon (running or
// stopped), the check marks of the tray menu's Start and Stop, and the
// flasher's bStopped, MessageList, visibility and timers.
#pragma once

#include <string>
#include <string_view>

#include "display/message_flasher.h"
#include "platform/file_system.h"
#include "platform/font_spec.h"
#include "platform/prompts.h"

namespace qm {

inline constexpr std::string_view kTipStartUp = "Click for menu options.";
inline constexpr std::string_view kTipOn = "Subliminal Message are ON.";
inline constexpr std::string_view kTipOff = "Subliminal Message are OFF.";
inline constexpr std::string_view kFirstRunHint = "To view help click the 'Help' tab at the top of this window.";

enum class StatusIcon { Running, Stopped };

// The settings window and its tray icon and menu, as run control drives
// them. The flasher asks the same window whether it is shown and whether
// its tray menu is open.
class RunControlHost : public FlasherHost {
 public:
  // The window icon and the tray icon with its tip (the tray's
  // ChangeToolTip).
  virtual void ShowStatus(std::string_view tip, StatusIcon icon) = 0;
  virtual void SetMenuChecks(bool startChecked, bool stopChecked) = 0;
  // Makes the settings window visible and gives it the focus.
  virtual void ShowSettingsWindow() = 0;
  virtual void HideSettingsWindow() = 0;
  // The font of the preview label, which the Start button hands to the
  // flasher.
  virtual FontSpec PreviewFont() const = 0;
  // Lets the window events that are waiting run (before the first-run hint).
  virtual void DoEvents() = 0;
  // True while one of the program's message boxes is open (the exit
  // question, an error): the watchdog then leaves the display paused.
  virtual bool MessageBoxOpen() const = 0;
};

class RunControl {
 public:
  RunControl(frmMessage& flasher, RunControlHost& host, FileSystem& files, std::string programFolder);

  // Start (tray menu): resume with the list and font of the last Start
  // button press or of start-up.
  void mnuStart_Click();
  // Start button: gather the list afresh, hand over the preview font, start.
  void cmdStart_Click();
  // Stop (tray menu): suspend and show the stopped state.
  void mnuStop_Click();
  // Stop button: suspend and hide the overlay only; the watchdog resumes
  // once the settings window is hidden again.
  void cmdStop_Click();
  void mnuSettings_Click();
  // The first half of a click on the tray icon: pause before the menu opens.
  void PauseForTrayMenu();
  // The watchdog, once a second. Besides the open tray menu, the shown
  // settings window and Stop, an open message box of the program keeps it
  // waiting: nobody answers a question with phrases flashing over it. While
  // the flasher is quiet (the user busy with the whole screen) it pauses
  // the display, and resumes it as ever once nothing holds it back.
  void STimer1_Timer();

  // The rotation list: every phrase of every checked category, without
  // case-insensitive duplicates (the first spelling kept), categories in the
  // order of the category-state file; unset when nothing was gathered. The
  // duplicates are found through a hash of the lower-cased phrases, so
  // gathering takes time in proportion to the phrases, not to their square.
  PhraseList GetCheckedPhrases() const;
  // One phrase added to a list at the end unless an equal one (without
  // regard to case) is in it already; InArray looks through the list.
  static void AddToArray(PhraseList& list, std::string_view text);
  static bool InArray(const PhraseList& list, std::string_view text);

  // The display's share of start-up, after the flasher was created: stop
  // it at once and give it the gathered list. (Settings are applied after
  // this, then StartUpEnd runs.)
  void StartUpBegin();
  // The last step of start-up: on a first run ("firstrun" anywhere in the
  // command line, in any case) show the settings window with its hint and
  // leave the display stopped; otherwise press Start.
  void StartUpEnd(std::string_view commandLine, Prompts& prompts);
  static bool IsFirstRun(std::string_view commandLine);

  const std::string& StatusText() const { return statusText_; }
  StatusIcon Icon() const { return icon_; }
  bool MenuStartChecked() const { return menuStartChecked_; }
  bool MenuStopChecked() const { return menuStopChecked_; }

 private:
  void SetStatus(std::string_view tip, StatusIcon icon);
  void SetChecks(bool start, bool stop);

  frmMessage& flasher_;
  RunControlHost& host_;
  FileSystem& files_;
  std::string programFolder_;
  std::string statusText_{kTipStartUp};
  StatusIcon icon_ = StatusIcon::Running;
  bool menuStartChecked_ = false;
  bool menuStopChecked_ = false;
};

}  // namespace qm
