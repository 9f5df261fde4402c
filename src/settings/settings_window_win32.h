// The settings window, frmSettings: the program's main window and the owner
// of everything else (the message flasher, the tray icon, the settings
// record, the category and phrase lists). Its load routine is the program's
// start-up, its unload routine the shutdown.
//
// The window's pages (tab bar, lists, panels) are not built yet: the window
// stays hidden, the tray menu's Settings item is greyed, and a first run
// leaves the display stopped until the tray menu's Start. The library, the
// settings and the panels' models are loaded all the same, so the display
// runs with the user's phrases, font, colour and timings.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

#include "display/message_window_win32.h"
#include "library/checked_list.h"
#include "library/message_library.h"
#include "library/settings_store.h"
#include "platform/application_win32.h"
#include "platform/file_system.h"
#include "platform/message_loop_win32.h"
#include "platform/timer_win32.h"
#include "platform/window_win32.h"
#include "run/run_control.h"
#include "settings/font_panel.h"
#include "settings/settings_loader.h"
#include "settings/timing_panel.h"
#include "settings/tray_win32.h"

namespace qm::win32 {

inline constexpr const char* kSettingsCaption = "Quillmere - Settings";
inline constexpr std::string_view kExitQuestion = "Are you sure you wish to exit the application?";

// The window's client area in twips and its blue.
inline constexpr int kSettingsClientWidth = 6870;
inline constexpr int kSettingsClientHeight = 6255;
inline constexpr COLORREF kSettingsBlue = 0x00B36A36;

class frmSettings final : public Window,
                          private RunControlHost,
                          private TrayForm,
                          private TrayCommands {
 public:
  // The loop runs the program; files and prompts reach the disk and the
  // user; the folder holds the program's files.
  frmSettings(MessageLoop& loop, FileSystem& files, Prompts& prompts, std::string programFolder);
  ~frmSettings() override;

  // Start-up: creates the window and runs the set-up order. False when the
  // window itself could not be made (nothing else is fatal).
  bool Form_Load(std::string_view commandLine);

  // The Close button's routine (also the tray menu's Exit Application):
  // the exit question, and on Yes the shutdown.
  void cmdClose_Click();
  // Shutdown: the flasher unloaded (the desktop repainted), the tray icon
  // removed, the window destroyed and the program's loop told to end. Runs
  // once; nothing is saved.
  void Form_Unload();

  RunControl& Run() { return *runControl_; }
  TrayIcon& Tray() { return tray_; }
  frmMessage& Flasher() { return flasher_->Form(); }
  SettingsStore& Store() { return store_; }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  // FlasherHost and RunControlHost.
  bool SettingsWindowVisible() const override;
  bool TrayMenuOpen() const override;
  void ShowStatus(std::string_view tip, StatusIcon icon) override;
  void SetMenuChecks(bool startChecked, bool stopChecked) override;
  void ShowSettingsWindow() override;
  void HideSettingsWindow() override;
  FontSpec PreviewFont() const override;
  void DoEvents() override;
  bool MessageBoxOpen() const override { return prompts_.IsOpen(); }

  // TrayForm.
  HWND Hwnd() const override { return Window::Hwnd(); }
  HICON Icon() const override { return icon_; }
  std::string Tag() const override { return tag_; }

  // TrayCommands.
  void PauseForTrayMenu() override;
  bool BringOpenMessageBoxToFront() override;
  void mnuSettings_Click() override;
  void mnuStart_Click() override;
  void mnuStop_Click() override;
  void mnuExit_Click() override;

  bool CreateTheWindow();
  void SetWindowIcon(StatusIcon icon);

  MessageLoop& loop_;
  FileSystem& files_;
  Prompts& prompts_;
  MessagePump pump_;
  std::string programFolder_;

  HICON icon_ = nullptr;  // the window's (and the tray's) icon, shared
  std::string tag_;       // the status text, the tray's tip

  CheckedList lstMessageCategories_;
  CheckedList lstPhrases_;
  MessageLibrary library_;
  SettingsStore store_;
  TrayIcon tray_;
  WindowTimer STimer1_{std::chrono::seconds(1)};

  // Made in the set-up order, released in reverse at shutdown.
  std::unique_ptr<MessageWindow> flasher_;
  std::unique_ptr<TimingPanel> timingPanel_;
  std::unique_ptr<FontPanel> fontPanel_;
  std::unique_ptr<RunControl> runControl_;
  bool unloaded_ = false;
};

}  // namespace qm::win32
