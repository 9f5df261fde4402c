#include "settings/settings_window_win32.h"

#include <utility>

#include "platform/gdi_win32.h"
#include "platform/screen_win32.h"
#include "platform/twips.h"
#include "settings/tray_res.h"

namespace qm::win32 {

frmSettings::frmSettings(MessageLoop& loop, FileSystem& files, Prompts& prompts, std::string programFolder)
    : loop_(loop),
      files_(files),
      prompts_(prompts),
      programFolder_(std::move(programFolder)),
      library_(programFolder_, files_, prompts_, pump_, lstMessageCategories_, lstPhrases_),
      store_(files_, programFolder_),
      tray_(*this, *this) {
  STimer1_.SetTick([this] {
    if (runControl_) runControl_->STimer1_Timer();
  });
  store_.Tell = [this](const std::string& message) {
    prompts_.Show(message, PromptIcon::Critical, PromptButtons::Ok);
  };
}

frmSettings::~frmSettings() {
  Form_Unload();
  Destroy();
}

bool frmSettings::CreateTheWindow() {
  // The client area's size in pixels of this screen, centred on it.
  const Dpi dpi = ScreenLogicalDpi();
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
  RECT frame{0, 0, TwipsToPixels(kSettingsClientWidth, dpi.x), TwipsToPixels(kSettingsClientHeight, dpi.y)};
  ::AdjustWindowRectEx(&frame, style, FALSE, 0);
  const int width = frame.right - frame.left;
  const int height = frame.bottom - frame.top;

  static Brush blue(::CreateSolidBrush(kSettingsBlue));  // the class's, for the program's life
  CreateArgs args;
  args.className = "QuillmereSettings";
  args.background = blue.Get();
  args.icon = LoadTrayIcon(IDI_TRAY_RUNNING, 32);
  args.smallIcon = LoadTrayIcon(IDI_TRAY_RUNNING, 16);
  args.title = kSettingsCaption;
  args.style = style;
  args.x = (::GetSystemMetrics(SM_CXSCREEN) - width) / 2;
  args.y = (::GetSystemMetrics(SM_CYSCREEN) - height) / 2;
  args.width = width;
  args.height = height;
  return Create(args);
}

bool frmSettings::Form_Load(std::string_view commandLine) {
  // (The one-instance test ran before: WinMain ends a second copy at once.)
  if (!CreateTheWindow()) return false;

  // From here on a failing step is passed over and set-up goes on. The
  // temporary files of writes that an earlier run did not finish go first
  // (this is the only copy running).
  files_.RemoveTemporaryFiles(programFolder_);
  files_.RemoveTemporaryFiles(ListsFolderPath(programFolder_));
  PromotePendingData(files_, programFolder_);

  // The tray icon with the running icon and the start-up tip.
  SetWindowIcon(StatusIcon::Running);
  tag_ = kTipStartUp;
  tray_.Tray().ShowIcon(*this, tag_);

  // The category list with its marks, the first category's phrases.
  library_.StartUp();

  // The message window, stopped at once, with the checked categories'
  // phrases.
  RunControlHost& host = *this;
  flasher_ = std::make_unique<MessageWindow>(static_cast<const FlasherHost&>(host), loop_);
  runControl_ = std::make_unique<RunControl>(flasher_->Form(), host, files_, programFolder_);
  runControl_->StartUpBegin();

  // The stored settings, applied to the panels and the message window.
  timingPanel_ = std::make_unique<TimingPanel>(store_, flasher_->Form());
  fontPanel_ = std::make_unique<FontPanel>(store_, flasher_->Form());
  LoadSettings(store_, {fontPanel_->lblPreview, fontPanel_->ColorPicker1, timingPanel_->bvlWHEEL1,
                       timingPanel_->bvlWHEEL2, flasher_->Form()});

  // The watchdog runs from here to shutdown.
  STimer1_.SetEnabled(true);

  // Until the window has its pages a first run has nothing to show: the
  // display stays stopped until the tray menu's Start.
  if (!RunControl::IsFirstRun(commandLine)) runControl_->StartUpEnd(commandLine, prompts_);
  return true;
}

void frmSettings::cmdClose_Click() {
  if (prompts_.Show(kExitQuestion, PromptIcon::Question, PromptButtons::YesNo) != PromptAnswer::Yes) return;
  Form_Unload();
}

void frmSettings::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  STimer1_.SetEnabled(false);
  // Every other window: the flasher's unload repaints the desktop.
  runControl_.reset();
  fontPanel_.reset();
  timingPanel_.reset();
  flasher_.reset();
  if (Window::Hwnd()) {
    tray_.Tray().RemoveIcon(*this);
    Destroy();
  }
}

LRESULT frmSettings::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (tray_.HandleMessage(msg, wParam, lParam)) return 0;
  switch (msg) {
    case WM_CLOSE:
      // Closing the window by any other means than the Close button
      // unloads it without a question, and so ends the program.
      Form_Unload();
      return 0;
    case WM_ENDSESSION:
      if (wParam) Form_Unload();
      return 0;
    case WM_DESTROY:
      ::PostQuitMessage(0);
      return 0;
    default:
      return Window::HandleMessage(msg, wParam, lParam);
  }
}

bool frmSettings::SettingsWindowVisible() const {
  return Window::Hwnd() && ::IsWindowVisible(Window::Hwnd());
}

bool frmSettings::TrayMenuOpen() const { return tray_.Menu().IsOpen(); }

void frmSettings::SetWindowIcon(StatusIcon icon) {
  const int id = icon == StatusIcon::Running ? IDI_TRAY_RUNNING : IDI_TRAY_STOPPED;
  icon_ = LoadTrayIcon(id, 16);
  if (const HWND hwnd = Window::Hwnd()) {
    ::SendMessageA(hwnd, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon_));
    ::SendMessageA(hwnd, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(LoadTrayIcon(id, 32)));
  }
}

void frmSettings::ShowStatus(std::string_view tip, StatusIcon icon) {
  tag_ = tip;
  SetWindowIcon(icon);
  tray_.Tray().ChangeToolTip(*this, tag_);
}

void frmSettings::SetMenuChecks(bool startChecked, bool stopChecked) {
  tray_.Menu().mnuStartChecked = startChecked;
  tray_.Menu().mnuStopChecked = stopChecked;
}

void frmSettings::ShowSettingsWindow() {
  ::ShowWindow(Window::Hwnd(), SW_SHOW);
  ::SetForegroundWindow(Window::Hwnd());
}

void frmSettings::HideSettingsWindow() { ::ShowWindow(Window::Hwnd(), SW_HIDE); }

FontSpec frmSettings::PreviewFont() const { return fontPanel_->lblPreview.Font(); }

void frmSettings::DoEvents() { pump_.DoEvents(); }

// The icon is shown before the flasher exists, and a message box of the
// library's start-up runs a nested loop: a click on the icon then finds
// nothing to pause or start yet, and its menu commands do nothing.
void frmSettings::PauseForTrayMenu() {
  if (runControl_) runControl_->PauseForTrayMenu();
}
bool frmSettings::BringOpenMessageBoxToFront() {
  if (!prompts_.IsOpen()) return false;
  prompts_.BringToFront();
  return true;
}
void frmSettings::mnuSettings_Click() {
  if (runControl_) runControl_->mnuSettings_Click();
}
void frmSettings::mnuStart_Click() {
  if (runControl_) runControl_->mnuStart_Click();
}
void frmSettings::mnuStop_Click() {
  if (runControl_) runControl_->mnuStop_Click();
}
void frmSettings::mnuExit_Click() { cmdClose_Click(); }

}  // namespace qm::win32
