// The settings window, frmSettings: the program's main window and the owner
// of everything else (the message flasher, the tray icon, the settings
// record, the category and phrase lists). Its load routine is the program's
// start-up, its unload routine the shutdown.
//
// The window holds three pages behind its tab bar: Messages (the category
// and phrase lists with their text boxes and editing buttons, and the two
// frames of the timing and font panels), Help and About (a read-only
// rich-text view of Help.rtf or About.rtf in the program folder, read again
// at every click of the tab). Start, Exit and the tab bar are on every
// page. Geometry is in twips, turned into pixels at the window's dots per
// inch: that of the monitor it shows on, followed when it moves to a
// monitor of another scaling.
//
// Keyboard: Tab and Shift+Tab walk the edit boxes, the lists, the editing
// buttons, Start and Exit; Alt+S presses Start and Alt+X Exit.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>

#include "controls/is_button_win32.h"
#include "controls/tab_menu_win32.h"
#include "display/message_window_win32.h"
#include "library/library_editing.h"
#include "library/checked_list.h"
#include "library/message_library.h"
#include "library/settings_store.h"
#include "platform/application_win32.h"
#include "platform/common_dialog_win32.h"
#include "platform/gdi_win32.h"
#include "platform/file_system.h"
#include "platform/message_loop_win32.h"
#include "platform/timer_win32.h"
#include "platform/window_win32.h"
#include "run/run_control.h"
#include "settings/checked_list_view_win32.h"
#include "settings/font_panel.h"
#include "settings/panels_win32.h"
#include "settings/rich_text_win32.h"
#include "settings/settings_ids.h"
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

// The plain panel Picture2: the blue ground beneath the lists and frames,
// holding the buttons and labels. What its children tell it (colours,
// commands, notifications) goes on to the window.
class SettingsPanel final : public Window {
 public:
  bool Create(HWND parent, const RECT& bounds, HBRUSH background, int id);

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;
};

// "Version " and the major, minor and revision numbers of the program's
// own version resource ("Version 1.0.7"); empty when there is none.
std::string VersionText();

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

  // Pages: the tab bar's SelectedItem decides which one shows.
  void TabMenu_ItemClick();

  // The Start button: the phrases gathered afresh, the display started.
  void cmdStart_Click();

  RunControl& Run() { return *runControl_; }
  TabMenuWindow& TabMenu() { return TabMenu_; }
  LibraryEditing& Editing() { return *editing_; }
  TrayIcon& Tray() { return tray_; }
  frmMessage& Flasher() { return flasher_->Form(); }
  SettingsStore& Store() { return store_; }
  // The panels' models (present once the window has loaded).
  TimingPanel& Timing() { return *timingPanel_; }
  FontPanel& FontLook() { return *fontPanel_; }

  // "Edit Font": the font chooser through CommonDialog1 (no owner window);
  // returns when it closes.
  void cmdEditFont_Click();

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
  void CreateControls();
  HWND MakeControl(const wchar_t* className, const wchar_t* text, DWORD style, HWND parent, const RECT& bounds,
                   int id, HFONT font, DWORD exStyle = 0);
  void AddTooltip(HWND control, const char* text);
  isButtonWindow& MakeButton(isButtonWindow& button, const char* caption, int id, std::function<void()> click,
                             bool blueBack);
  void SetWindowIcon(StatusIcon icon);
  RECT Pixels(int left, int top, int width, int height) const;
  // A control's place from the layout, in pixels at the window's dpi.
  RECT Pixels(int id) const;
  // The window's outer size whose client area is the layout's at `dpi`.
  SIZE OuterSize(int dpi) const;
  // The client area as large as the layout wants at the window's dpi.
  void FitClientArea();
  // Picture2 as high as the window, so that it reaches the bottom edge.
  void FitPanel();
  // The fonts of the labels, lists and boxes at the window's dpi.
  void MakeFonts();
  // WM_DPICHANGED: the window goes to `suggested` and lays itself out
  // again, fonts and all, at `dpi`.
  void DpiChanged(int dpi, const RECT& suggested);
  void SizeRtfHelp();
  void ShowPage(std::string_view rtfFile);
  void ShowMessagesPage(bool show);
  void ShowTimingCaptions();
  // The panels' controls show their models from now on.
  void BindPanels();
  void UnbindPanels();
  LRESULT ColorStatic(HDC dc, HWND control);
  // Offered every message of the program's loop before it is dispatched:
  // the access keys and the dialog keys of the window.
  bool PreTranslate(MSG& msg);

  // The editing commands with the text boxes read into the core before and
  // written back after. A command that needs the text of a box whose
  // characters the library cannot store is refused with a message.
  enum class NeedsText { None, Category, Phrase };
  void RunEditing(NeedsText needs, const std::function<void()>& command);
  // A character typed into one of the boxes; true when it is dropped.
  bool EditKeyPress(LibraryEditing::Box box, wchar_t ch);
  // The frames' own painting: blue, an etched edge, a white caption.
  void PaintFrame(HWND frame, HDC dc) const;
  static LRESULT CALLBACK FrameProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR self);
  static LRESULT CALLBACK EditProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                   DWORD_PTR self);

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

  // The controls, made with the window.
  int dpi_ = 96;       // the window's dots per inch, both ways
  Font labelFont_;    // Arial 9.75 pt bold: Label1, Label2, the frames' captions
  Font listFont_;     // Arial 9.75 pt: the lists, the timing captions
  Font versionFont_;  // Arial 8.25 pt: lblVersion
  Font guiFont_;      // the default interface font: the boxes, Stop, the colours
  TabMenuWindow TabMenu_;
  SettingsPanel Picture2_;
  HWND Label1_ = nullptr;
  HWND Label2_ = nullptr;
  HWND lblVersion_ = nullptr;
  isButtonWindow cmdAddCat_, cmdEditCat_, cmdDeleteCat_, cmdAdd_, cmdEdit_, cmdDelete_, cmdStart_, cmdClose_;
  HWND txtEditCat_ = nullptr;
  HWND txtEditWord_ = nullptr;
  CheckedListView lstMessageCategoriesView_{lstMessageCategories_};
  CheckedListView lstPhrasesView_{lstPhrases_};
  HWND fraTimesAndDuration_ = nullptr;
  HWND fraFont_ = nullptr;
  HWND lblDuration_ = nullptr;
  HWND lblFrequency_ = nullptr;
  WheelView bvlWHEEL1_;
  WheelView bvlWHEEL2_;
  isButtonWindow cmdEditFont_;
  ColorPickerView ColorPicker1_;
  PreviewPicture Picture1_;
  RichTextBox rtfHelp_;
  HWND cmdStop_ = nullptr;
  HWND tooltips_ = nullptr;
  std::unique_ptr<LibraryEditing> editing_;
  WindowTimer STimer1_{std::chrono::seconds(1)};

  // Made in the set-up order, released in reverse at shutdown.
  std::unique_ptr<MessageWindow> flasher_;
  std::unique_ptr<TimingPanel> timingPanel_;
  std::unique_ptr<FontPanel> fontPanel_;
  std::unique_ptr<RunControl> runControl_;
  // Released first at shutdown.
  CommonDialogEvents commonDialogEvents_;
  std::unique_ptr<cCommonDialog> CommonDialog1_;
  bool unloaded_ = false;
};

}  // namespace qm::win32
