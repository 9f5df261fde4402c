#include "settings/settings_window_win32.h"

// After windows.h:
#include <commctrl.h>
#include <uxtheme.h>
#include <winver.h>

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

#include "platform/ansi_text.h"
#include "platform/system_dll_win32.h"
#include "platform/screen_win32.h"
#include "platform/twips.h"
#include "platform/window_dpi_win32.h"
#include "platform/wide_text_win32.h"
#include "settings/tray_res.h"

namespace qm::win32 {
namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);

// What the Help and About tabs show.
constexpr std::string_view kHelpFile = "\\Help.rtf";
constexpr std::string_view kAboutFile = "\\About.rtf";

// The rich-text view's size: the window's outer size less these (twips).
constexpr int kRtfWidthMargin = 450;
constexpr int kRtfHeightMargin = 1700;
// The view ends this far above the Start row, so that Start and Exit stay
// in sight on the Help and About pages.
constexpr int kRtfGapAboveStart = 60;
constexpr int kStartRowTop = 525 + 5160;

// Where every control stands, in twips (left, top, width, height), in its
// container: the panel Picture2 for the labels and buttons on it (Label1
// and Label2, the six editing buttons, Start, Exit, lblVersion), the
// window's client area for the rest. The controls of the two frames are
// placed in the window at the frame's corner plus their place in the
// frame. The window places its controls from this table when it is made
// and again whenever its dots per inch change.
struct Placement {
  int id;
  TwipBounds bounds;
};
constexpr int kTimesLeft = 180, kFontLeft = 3540, kFramesTop = 3660;
constexpr Placement kLayout[] = {
    {kIdPicture2, {0, 525, kSettingsClientWidth, 5655}},
    {kIdLabel1, {180, 180, 3195, 315}},
    {kIdLabel2, {3480, 180, 3195, 315}},
    {kIdCmdAddCat, {180, 540, 975, 435}},
    {kIdCmdEditCat, {1290, 540, 975, 435}},
    {kIdCmdDeleteCat, {2400, 540, 975, 435}},
    {kIdCmdAdd, {3480, 540, 975, 435}},
    {kIdCmdEdit, {4590, 540, 975, 435}},
    {kIdCmdDelete, {5700, 540, 975, 435}},
    {kIdTxtEditCat, {180, 1560, 3195, 375}},
    {kIdTxtEditWord, {3480, 1560, 3195, 375}},
    {kIdLstMessageCategories, {180, 1980, 3195, 1410}},
    {kIdLstPhrases, {3480, 1980, 3195, 1410}},
    {kIdFraTimesAndDuration, {kTimesLeft, kFramesTop, 3135, 1755}},
    {kIdFraFont, {kFontLeft, kFramesTop, 3135, 1755}},
    {kIdLblDuration, {kTimesLeft + 120, kFramesTop + 300, 2775, 375}},
    {kIdBvlWheel1, {kTimesLeft + 120, kFramesTop + 600, 2895, 315}},
    {kIdLblFrequency, {kTimesLeft + 120, kFramesTop + 960, 2775, 375}},
    {kIdBvlWheel2, {kTimesLeft + 120, kFramesTop + 1260, 2895, 315}},
    {kIdCmdEditFont, {kFontLeft + 240, kFramesTop + 360, 1335, 435}},
    {kIdColorPicker1, {kFontLeft + 1680, kFramesTop + 360, 1275, 435}},
    {kIdPicture1, {kFontLeft + 240, kFramesTop + 840, 2715, 795}},
    // The rich-text view's size is set after the window's (SizeRtfHelp).
    {kIdRtfHelp, {180, 600, 6420, 4500}},
    {kIdCmdStart, {1920, 5160, 1395, 435}},
    {kIdCmdClose, {3540, 5160, 1395, 435}},
    {kIdLblVersion, {5340, 5280, 1395, 255}},
    // Only the top pixel of Stop lies inside the window.
    {kIdCmdStop, {2700, 6240, 1395, 435}},
};

constexpr TwipBounds LayoutOf(int id) {
  for (const Placement& p : kLayout)
    if (p.id == id) return p.bounds;
  return {};
}

// Asked by Windows 10 (1703 and later) before a move to another dpi: the
// window's size at the new dpi (WM_GETDPISCALEDSIZE, newer than the
// headers the program builds against).
constexpr UINT kGetDpiScaledSize = 0x02E4;

// The tooltips' widest line (twips).
constexpr int kTooltipWidth = 4500;

// A font of the given face and size in points (hundredths), at `dpiY`.
HFONT MakeFont(const wchar_t* face, int hundredthsOfPoint, bool bold, int dpiY) {
  LOGFONTW lf{};
  lf.lfHeight = -MulDivRound(hundredthsOfPoint, dpiY, 7200);
  lf.lfWeight = bold ? FW_BOLD : FW_NORMAL;
  lf.lfCharSet = DEFAULT_CHARSET;
  lf.lfQuality = DEFAULT_QUALITY;
  lstrcpynW(lf.lfFaceName, face, LF_FACESIZE);
  return ::CreateFontIndirectW(&lf);
}

// The system's default interface font (the text boxes, Stop, the colour
// list) at `dpi`: the stock font is made for the screen's logical dpi.
HFONT MakeGuiFont(int dpi) {
  LOGFONTW lf{};
  if (!::GetObjectW(::GetStockObject(DEFAULT_GUI_FONT), sizeof lf, &lf)) return nullptr;
  const int stockDpi = ScreenLogicalDpi().y;
  lf.lfHeight = ::MulDiv(lf.lfHeight, dpi, stockDpi);
  return ::CreateFontIndirectW(&lf);
}

// A box's text as Windows-1252; nothing when it holds a character that
// Windows-1252 cannot hold.
std::optional<std::string> WindowTextAnsi(HWND hwnd) {
  const int length = ::GetWindowTextLengthW(hwnd);
  std::wstring wide(static_cast<std::size_t>(length) + 1, L'\0');
  const int got = ::GetWindowTextW(hwnd, wide.data(), length + 1);
  wide.resize(static_cast<std::size_t>(got > 0 ? got : 0));
  const std::optional<std::string> utf8 = NarrowStrict(wide);
  if (!utf8) return std::nullopt;
  return Utf8ToAnsi(*utf8);
}

void SetWindowTextAnsi(HWND hwnd, std::string_view ansi) {
  ::SetWindowTextW(hwnd, Widen(AnsiToUtf8(ansi)).c_str());
}

// The window's blue, for the window class, the panel and the labels: one
// brush for the program's life (the classes keep it).
HBRUSH BlueBrush() {
  static Brush blue(::CreateSolidBrush(kSettingsBlue));
  return blue.Get();
}

}  // namespace

std::string VersionText() {
  const std::wstring path = ProgramFilePath();
  DWORD ignored = 0;
  const DWORD size = sys::GetFileVersionInfoSizeW(path.c_str(), &ignored);
  if (size == 0) return {};
  std::vector<unsigned char> data(size);
  if (!sys::GetFileVersionInfoW(path.c_str(), 0, size, data.data())) return {};
  VS_FIXEDFILEINFO* info = nullptr;
  UINT length = 0;
  if (!sys::VerQueryValueW(data.data(), L"\\", reinterpret_cast<void**>(&info), &length) || !info ||
      length < sizeof(VS_FIXEDFILEINFO))
    return {};
  return "Version " + std::to_string(HIWORD(info->dwFileVersionMS)) + "." +
         std::to_string(LOWORD(info->dwFileVersionMS)) + "." + std::to_string(HIWORD(info->dwFileVersionLS));
}

bool SettingsPanel::Create(HWND parent, const RECT& bounds, HBRUSH background, int id) {
  CreateArgs args;
  args.className = kPanelClassName;
  args.background = background;
  args.style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
  args.exStyle = WS_EX_CONTROLPARENT;
  args.Child(parent, bounds, id);
  return Window::Create(args);
}

LRESULT SettingsPanel::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_CTLCOLORSTATIC:
    case WM_COMMAND:
    case WM_NOTIFY:
      return ::SendMessageW(::GetParent(Hwnd()), msg, wParam, lParam);
    default:
      return Window::HandleMessage(msg, wParam, lParam);
  }
}

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
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  CreateArgs args;
  args.className = kSettingsClassName;
  args.background = BlueBrush();
  args.icon = LoadTrayIcon(IDI_TRAY_RUNNING, 32);
  args.smallIcon = LoadTrayIcon(IDI_TRAY_RUNNING, 16);
  args.title = kSettingsCaption;
  args.style = style;
  args.exStyle = WS_EX_CONTROLPARENT;
  // Made in the middle of the screen, on the monitor it will show on; its
  // size follows from that monitor's dots per inch.
  args.x = ::GetSystemMetrics(SM_CXSCREEN) / 2;
  args.y = ::GetSystemMetrics(SM_CYSCREEN) / 2;
  args.width = 1;
  args.height = 1;
  if (!Create(args)) return false;
  dpi_ = WindowDpi(Window::Hwnd());

  // The client area's size in pixels at that dpi, centred on the screen.
  const SIZE outer = OuterSize(dpi_);
  ::SetWindowPos(Window::Hwnd(), nullptr, (::GetSystemMetrics(SM_CXSCREEN) - outer.cx) / 2,
                 (::GetSystemMetrics(SM_CYSCREEN) - outer.cy) / 2, outer.cx, outer.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  FitClientArea();
  CreateControls();
  return true;
}

SIZE frmSettings::OuterSize(int dpi) const {
  const HWND form = Window::Hwnd();
  const RECT outer = OuterRectForDpi(
      RECT{0, 0, TwipsToPixels(kSettingsClientWidth, dpi), TwipsToPixels(kSettingsClientHeight, dpi)},
      static_cast<DWORD>(::GetWindowLongPtrW(form, GWL_STYLE)),
      static_cast<DWORD>(::GetWindowLongPtrW(form, GWL_EXSTYLE)), dpi);
  return SIZE{outer.right - outer.left, outer.bottom - outer.top};
}

void frmSettings::FitClientArea() {
  // The frame's own measure may differ from the one assumed: the client
  // area is what the layout needs, whatever the frame takes.
  const HWND form = Window::Hwnd();
  RECT client{};
  RECT outer{};
  if (!::GetClientRect(form, &client) || !::GetWindowRect(form, &outer)) return;
  const int wantWidth = TwipsToPixels(kSettingsClientWidth, dpi_);
  const int wantHeight = TwipsToPixels(kSettingsClientHeight, dpi_);
  if (client.right == wantWidth && client.bottom == wantHeight) return;
  ::SetWindowPos(form, nullptr, 0, 0, outer.right - outer.left + wantWidth - client.right,
                 outer.bottom - outer.top + wantHeight - client.bottom, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

RECT frmSettings::Pixels(int left, int top, int width, int height) const {
  const int x = TwipsToPixels(left, dpi_);
  const int y = TwipsToPixels(top, dpi_);
  return RECT{x, y, x + TwipsToPixels(width, dpi_), y + TwipsToPixels(height, dpi_)};
}

RECT frmSettings::Pixels(int id) const {
  const TwipBounds b = LayoutOf(id);
  return Pixels(b.left, b.top, b.width, b.height);
}

void frmSettings::MakeFonts() {
  labelFont_.Reset(MakeFont(L"Arial", 975, true, dpi_));
  listFont_.Reset(MakeFont(L"Arial", 975, false, dpi_));
  versionFont_.Reset(MakeFont(L"Arial", 825, false, dpi_));
  guiFont_.Reset(MakeGuiFont(dpi_));
}

HWND frmSettings::MakeControl(const wchar_t* className, const wchar_t* text, DWORD style, HWND parent,
                              const RECT& bounds, int id, HFONT font, DWORD exStyle) {
  const HWND hwnd = ::CreateWindowExW(exStyle, className, text, WS_CHILD | WS_CLIPSIBLINGS | style, bounds.left,
                                      bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, parent,
                                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ThisModule(), nullptr);
  if (hwnd && font) ::SendMessageW(hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  return hwnd;
}

void frmSettings::AddTooltip(HWND control, const char* text) {
  if (!tooltips_ || !control) return;
  std::wstring wide = Widen(text);
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = Window::Hwnd();
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = wide.data();
  ::SendMessageW(tooltips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

isButtonWindow& frmSettings::MakeButton(isButtonWindow& button, const char* caption, int id,
                                        std::function<void()> click, bool blueBack) {
  PropertyStore stored{{"Style", 10}, {"iNonThemeStyle", 0}, {"Caption", caption}, {"ToolTipType", 0}};
  if (blueBack) stored.Set("BackColor", std::int64_t{0x00B36A36});
  button.Create(Picture2_.Hwnd(), LayoutOf(id), stored, id);
  button.Model().events.Click = std::move(click);
  return button;
}

void frmSettings::CreateControls() {
  const HWND form = Window::Hwnd();
  MakeFonts();

  INITCOMMONCONTROLSEX common{sizeof common, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_STANDARD_CLASSES};
  ::InitCommonControlsEx(&common);
  tooltips_ = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, CW_USEDEFAULT,
                                CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, ThisModule(), nullptr);
  if (tooltips_) ::SendMessageW(tooltips_, TTM_SETMAXTIPWIDTH, 0, TwipsToPixels(kTooltipWidth, dpi_));

  // Children of the window, in the order the Tab key visits them; the
  // panel Picture2 goes beneath them all, its buttons last in the order.
  TabMenu_.Create(form, 0, 0, kSettingsClientWidth, kIdTabMenu);

  txtEditCat_ = MakeControl(WC_EDITW, L"", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, form,
                            Pixels(kIdTxtEditCat), kIdTxtEditCat, guiFont_.Get(), WS_EX_CLIENTEDGE);
  txtEditWord_ = MakeControl(WC_EDITW, L"", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, form,
                             Pixels(kIdTxtEditWord), kIdTxtEditWord, guiFont_.Get(), WS_EX_CLIENTEDGE);
  for (HWND box : {txtEditCat_, txtEditWord_})
    if (box) ::SetWindowSubclass(box, &frmSettings::EditProc, static_cast<UINT_PTR>(::GetDlgCtrlID(box)),
                                 reinterpret_cast<DWORD_PTR>(this));
  lstMessageCategoriesView_.Create(form, Pixels(kIdLstMessageCategories), listFont_.Get(), kIdLstMessageCategories);
  lstPhrasesView_.Create(form, Pixels(kIdLstPhrases), listFont_.Get(), kIdLstPhrases);
  lstMessageCategoriesView_.ItemCheck = [this] { library_.lstMessageCategories_ItemCheck(); };
  lstPhrasesView_.ItemCheck = [this] { library_.lstPhrases_ItemCheck(); };

  // The timing panel in its frame (180, 3660): each caption above its
  // wheel, so that a screen reader names the wheel after it.
  bvlWHEEL1_.Create(form, Pixels(kIdBvlWheel1), kIdBvlWheel1, kIdWheel1Min, versionFont_.Get(),
                    Wheel{1, 1000, 1}, 50);
  bvlWHEEL2_.Create(form, Pixels(kIdBvlWheel2), kIdBvlWheel2, kIdWheel2Min,
                    versionFont_.Get(), Wheel{1, 30, 1}, 5);
  lblDuration_ = MakeControl(WC_STATICW, L"Duration: 1 Millisecond(s)", WS_VISIBLE | SS_CENTER, form,
                             Pixels(kIdLblDuration), kIdLblDuration, listFont_.Get());
  lblFrequency_ = MakeControl(WC_STATICW, L"Frequency: 1 Second(s)", WS_VISIBLE | SS_CENTER, form,
                              Pixels(kIdLblFrequency), kIdLblFrequency, listFont_.Get());
  // Each caption goes just above its wheel in the z-order (and so in the
  // tab order's reading).
  if (lblDuration_ && bvlWHEEL1_.Hwnd())
    ::SetWindowPos(lblDuration_, bvlWHEEL1_.MaxLabel(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  if (lblFrequency_ && bvlWHEEL2_.Hwnd())
    ::SetWindowPos(lblFrequency_, bvlWHEEL2_.MaxLabel(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

  // The font panel in its frame (3540, 3660).
  {
    PropertyStore stored{{"Style", 10}, {"iNonThemeStyle", 0}, {"Caption", "Edit Font"}, {"ToolTipType", 0}};
    stored.Set("BackColor", std::int64_t{0x00B36A36});
    cmdEditFont_.Create(form, LayoutOf(kIdCmdEditFont), stored, kIdCmdEditFont);
    cmdEditFont_.Model().events.Click = [this] { cmdEditFont_Click(); };
  }
  ColorPicker1_.Create(form, Pixels(kIdColorPicker1), kIdColorPicker1, guiFont_.Get());
  Picture1_.Create(form, Pixels(kIdPicture1), kIdPicture1, dpi_, dpi_);

  fraTimesAndDuration_ = MakeControl(WC_BUTTONW, L"Times and Duration", WS_VISIBLE | BS_GROUPBOX, form,
                                     Pixels(kIdFraTimesAndDuration), kIdFraTimesAndDuration, labelFont_.Get());
  fraFont_ = MakeControl(WC_BUTTONW, L"Font", WS_VISIBLE | BS_GROUPBOX, form, Pixels(kIdFraFont),
                         kIdFraFont, labelFont_.Get());
  // The frames paint themselves blue with their white captions, under
  // every visual style.
  for (HWND frame : {fraTimesAndDuration_, fraFont_})
    if (frame) {
      sys::SetWindowTheme(frame, L"", L"");
      ::SetWindowSubclass(frame, &frmSettings::FrameProc, static_cast<UINT_PTR>(::GetDlgCtrlID(frame)),
                          reinterpret_cast<DWORD_PTR>(this));
    }
  rtfHelp_.Create(form, Pixels(kIdRtfHelp), kSettingsBlue, kIdRtfHelp);

  cmdStop_ = MakeControl(WC_BUTTONW, L"Stop", WS_VISIBLE | BS_PUSHBUTTON, form, Pixels(kIdCmdStop),
                         kIdCmdStop, guiFont_.Get());

  Picture2_.Create(form, Pixels(kIdPicture2), BlueBrush(), kIdPicture2);
  ::SetWindowPos(Picture2_.Hwnd(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  const HWND panel = Picture2_.Hwnd();
  Label1_ = MakeControl(WC_STATICW, L"Select Your Categories", WS_VISIBLE | SS_CENTER, panel,
                        Pixels(kIdLabel1), kIdLabel1, labelFont_.Get());
  Label2_ = MakeControl(WC_STATICW, L"Add/Edit Subliminal Phrases", WS_VISIBLE | SS_CENTER, panel,
                        Pixels(kIdLabel2), kIdLabel2, labelFont_.Get());
  MakeButton(cmdAddCat_, "Add", kIdCmdAddCat,
             [this] { RunEditing(NeedsText::Category, [this] { editing_->cmdAddCat_Click(); }); }, true);
  MakeButton(cmdEditCat_, "Edit", kIdCmdEditCat,
             [this] { RunEditing(NeedsText::None, [this] { editing_->cmdEditCat_Click(); }); }, false);
  MakeButton(cmdDeleteCat_, "Delete", kIdCmdDeleteCat,
             [this] { RunEditing(NeedsText::None, [this] { editing_->cmdDeleteCat_Click(); }); }, false);
  MakeButton(cmdAdd_, "Add", kIdCmdAdd,
             [this] { RunEditing(NeedsText::Phrase, [this] { editing_->cmdAdd_Click(); }); }, false);
  cmdAdd_.Model().SetBackColor(0x00FF8080);
  MakeButton(cmdEdit_, "Edit", kIdCmdEdit,
             [this] { RunEditing(NeedsText::None, [this] { editing_->cmdEdit_Click(); }); }, false);
  MakeButton(cmdDelete_, "Delete", kIdCmdDelete,
             [this] { RunEditing(NeedsText::None, [this] { editing_->cmdDelete_Click(); }); }, true);
  MakeButton(cmdStart_, "&Start", kIdCmdStart, [this] { cmdStart_Click(); }, false);
  MakeButton(cmdClose_, "E&xit", kIdCmdClose, [this] { cmdClose_Click(); }, false);
  lblVersion_ = MakeControl(WC_STATICW, L"", SS_RIGHT, panel, Pixels(kIdLblVersion), kIdLblVersion,
                            versionFont_.Get());

  AddTooltip(txtEditCat_, "You can enter or edit subliminal message categories here");
  AddTooltip(txtEditWord_,
             "To add a subliminal message first select a category and then type in a new message and click "
             "'Add'");
  AddTooltip(lstMessageCategoriesView_.Hwnd(),
             "This is the list of subliminal message categories. Check the ones who want to view.");
  AddTooltip(lstPhrasesView_.Hwnd(), "List is the list of subliminal messages for the selected category.");
  AddTooltip(cmdStop_, "Click this button to stop the subliminal messages");
  AddTooltip(ColorPicker1_.Hwnd(), "Select the font color here");
  AddTooltip(Picture1_.Hwnd(),
             "This is a preview of how the subliminal message will look on a dark and light background");

  TabMenu_.Model().events.ItemClick = [this] { TabMenu_ItemClick(); };
  editing_ = std::make_unique<LibraryEditing>(library_, lstMessageCategories_, lstPhrases_, files_, prompts_, pump_);
  editing_->SetFocus = [this](LibraryEditing::Box box) {
    ::SetFocus(box == LibraryEditing::Box::Category ? txtEditCat_ : txtEditWord_);
  };
  loop_.SetFilter([this](MSG& msg) { return PreTranslate(msg); });
}

void frmSettings::FitPanel() {
  // The panel always reaches the bottom edge: as high as the window.
  RECT outer{};
  if (Picture2_.Hwnd() && ::GetWindowRect(Window::Hwnd(), &outer))
    ::SetWindowPos(Picture2_.Hwnd(), nullptr, 0, 0, TwipsToPixels(kSettingsClientWidth, dpi_), outer.bottom - outer.top,
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void frmSettings::DpiChanged(int dpi, const RECT& suggested) {
  dpi_ = UsableDpi(dpi);
  const HWND form = Window::Hwnd();
  ::SetWindowPos(form, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
  FitClientArea();

  // The fonts at the new dpi, handed to their controls before they move.
  MakeFonts();
  const auto setFont = [](HWND control, HFONT font) {
    if (control) ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  };
  for (HWND control : {Label1_, Label2_, fraTimesAndDuration_, fraFont_}) setFont(control, labelFont_.Get());
  for (HWND control : {lblDuration_, lblFrequency_}) setFont(control, listFont_.Get());
  setFont(lblVersion_, versionFont_.Get());
  for (HWND control : {txtEditCat_, txtEditWord_, cmdStop_}) setFont(control, guiFont_.Get());
  if (tooltips_) ::SendMessageW(tooltips_, TTM_SETMAXTIPWIDTH, 0, TwipsToPixels(kTooltipWidth, dpi_));

  // Every control from the layout, in the new measure.
  TabMenu_.SetDpi(dpi_);
  const auto move = [this](HWND control, int id) {
    const RECT r = Pixels(id);
    if (control) ::MoveWindow(control, r.left, r.top, r.right - r.left, r.bottom - r.top, TRUE);
  };
  move(Picture2_.Hwnd(), kIdPicture2);
  FitPanel();
  for (HWND control : {Label1_, Label2_, txtEditCat_, txtEditWord_, fraTimesAndDuration_, fraFont_, lblDuration_,
                       lblFrequency_, lblVersion_, cmdStop_})
    if (control) move(control, ::GetDlgCtrlID(control));
  for (isButtonWindow* button : {&cmdAddCat_, &cmdEditCat_, &cmdDeleteCat_, &cmdAdd_, &cmdEdit_, &cmdDelete_,
                                 &cmdStart_, &cmdClose_, &cmdEditFont_})
    if (button->Hwnd()) button->SetDpi(dpi_, LayoutOf(::GetDlgCtrlID(button->Hwnd())));
  lstMessageCategoriesView_.Place(Pixels(kIdLstMessageCategories), listFont_.Get());
  lstPhrasesView_.Place(Pixels(kIdLstPhrases), listFont_.Get());
  bvlWHEEL1_.Place(Pixels(kIdBvlWheel1), dpi_, versionFont_.Get());
  bvlWHEEL2_.Place(Pixels(kIdBvlWheel2), dpi_, versionFont_.Get());
  ColorPicker1_.Place(Pixels(kIdColorPicker1), dpi_, guiFont_.Get());
  Picture1_.Place(Pixels(kIdPicture1), dpi_);
  SizeRtfHelp();
  ::RedrawWindow(form, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void frmSettings::SizeRtfHelp() {
  RECT outer{};
  if (!rtfHelp_.Hwnd() || !::GetWindowRect(Window::Hwnd(), &outer)) return;
  const int outerWidth = PixelsToTwips(outer.right - outer.left, dpi_);
  const int outerHeight = PixelsToTwips(outer.bottom - outer.top, dpi_);
  int height = outerHeight - kRtfHeightMargin;
  if (600 + height > kStartRowTop - kRtfGapAboveStart) height = kStartRowTop - kRtfGapAboveStart - 600;
  const RECT r = Pixels(180, 600, outerWidth - kRtfWidthMargin, height);
  ::MoveWindow(rtfHelp_.Hwnd(), r.left, r.top, r.right - r.left, r.bottom - r.top, TRUE);
}

void frmSettings::ShowTimingCaptions() {
  if (!timingPanel_) return;
  if (lblDuration_) ::SetWindowTextW(lblDuration_, Widen(timingPanel_->lblDuration).c_str());
  if (lblFrequency_) ::SetWindowTextW(lblFrequency_, Widen(timingPanel_->lblFrequency).c_str());
  for (HWND label : {lblDuration_, lblFrequency_})
    if (label) ::RedrawWindow(label, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE);
}

void frmSettings::BindPanels() {
  timingPanel_->Changed = [this] {
    ShowTimingCaptions();
    bvlWHEEL1_.Show();
    bvlWHEEL2_.Show();
  };
  fontPanel_->Changed = [this] {
    ColorPicker1_.Show();
    if (Picture1_.Hwnd()) ::InvalidateRect(Picture1_.Hwnd(), nullptr, FALSE);
  };
  fontPanel_->lblPreview.Changed = [this] {
    if (Picture1_.Hwnd()) {
      ::InvalidateRect(Picture1_.Hwnd(), nullptr, FALSE);
      ::UpdateWindow(Picture1_.Hwnd());
    }
  };
  bvlWHEEL1_.Bind(&timingPanel_->bvlWHEEL1);
  bvlWHEEL2_.Bind(&timingPanel_->bvlWHEEL2);
  ColorPicker1_.Bind(&fontPanel_->ColorPicker1);
  Picture1_.Bind(&fontPanel_->lblPreview);
}

void frmSettings::UnbindPanels() {
  bvlWHEEL1_.Bind(nullptr);
  bvlWHEEL2_.Bind(nullptr);
  ColorPicker1_.Bind(nullptr);
  Picture1_.Bind(nullptr);
}

void frmSettings::cmdEditFont_Click() {
  if (!fontPanel_ || !CommonDialog1_) return;
  CommonDialogFontChooser chooser(*CommonDialog1_);
  fontPanel_->cmdEditFont_Click(chooser);
}

void frmSettings::ShowMessagesPage(bool show) {
  const int how = show ? SW_SHOW : SW_HIDE;
  for (HWND control : {Label1_, Label2_, lstMessageCategoriesView_.Hwnd(), lstPhrasesView_.Hwnd(), txtEditWord_,
                       txtEditCat_, cmdAdd_.Hwnd(), cmdEdit_.Hwnd(), cmdDelete_.Hwnd(), cmdAddCat_.Hwnd(),
                       cmdEditCat_.Hwnd(), cmdDeleteCat_.Hwnd(), fraTimesAndDuration_, fraFont_, lblDuration_,
                       lblFrequency_, bvlWHEEL1_.Hwnd(), bvlWHEEL1_.MinLabel(), bvlWHEEL1_.MaxLabel(),
                       bvlWHEEL2_.Hwnd(), bvlWHEEL2_.MinLabel(), bvlWHEEL2_.MaxLabel(), cmdEditFont_.Hwnd(),
                       ColorPicker1_.Hwnd(), Picture1_.Hwnd()})
    if (control) ::ShowWindow(control, how);
}

void frmSettings::ShowPage(std::string_view rtfFile) {
  if (rtfHelp_.Hwnd()) {
    ::ShowWindow(rtfHelp_.Hwnd(), SW_SHOW);
    // A missing or unreadable file leaves the box as it was, silently.
    if (const auto bytes = files_.ReadAll(ProgramPath(programFolder_, rtfFile))) rtfHelp_.LoadRtf(*bytes);
  }
  ShowMessagesPage(false);
  if (lblVersion_) ::ShowWindow(lblVersion_, SW_SHOW);
}

void frmSettings::TabMenu_ItemClick() {
  const std::string& item = TabMenu_.Model().SelectedItem();
  if (item == "About") {
    ShowPage(kAboutFile);
  } else if (item == "Help") {
    ShowPage(kHelpFile);
  } else {
    if (lblVersion_) ::ShowWindow(lblVersion_, SW_HIDE);
    if (rtfHelp_.Hwnd()) ::ShowWindow(rtfHelp_.Hwnd(), SW_HIDE);
    ShowMessagesPage(true);
  }
}

bool frmSettings::Form_Load(std::string_view commandLine) {
  // (The one-instance test ran before: WinMain ends a second copy at once.)
  if (!CreateTheWindow()) return false;

  // From here on a failing step is passed over and set-up goes on.
  if (lblVersion_) ::SetWindowTextW(lblVersion_, Widen(VersionText()).c_str());

  // The temporary files of writes that an earlier run did not finish go
  // first (this is the only copy running); then the pending data file.
  files_.RemoveTemporaryFiles(programFolder_);
  files_.RemoveTemporaryFiles(ListsFolderPath(programFolder_));
  PromotePendingData(files_, programFolder_);

  // The tabs; the first one selected shows the Messages page.
  TabMenu_.Model().AddButton(1, "Messages");
  TabMenu_.Model().AddButton(1, "Help");
  TabMenu_.Model().AddButton(1, "About");
  TabMenu_.Model().SetTabFocus(1);

  // The tray icon with the running icon and the start-up tip; its menu
  // opens this window.
  SetWindowIcon(StatusIcon::Running);
  tag_ = kTipStartUp;
  tray_.Menu().mnuSettingsEnabled = true;
  tray_.Tray().ShowIcon(*this, tag_);

  // The common dialog object, for the font chooser; its events are
  // received and ignored.
  CommonDialog1_ = std::make_unique<cCommonDialog>(&commonDialogEvents_);

  // The category list with its marks, the first category highlighted
  // (which loads its phrases).
  library_.ListCategories();
  library_.LoadCheckedCategories();
  if (lstMessageCategories_.ListCount() > 0) lstMessageCategories_.SetListIndex(0);

  // The Help and About view, hidden, sized after the window.
  if (rtfHelp_.Hwnd()) ::ShowWindow(rtfHelp_.Hwnd(), SW_HIDE);
  SizeRtfHelp();

  // The highlighted category's phrases once more.
  library_.lstMessageCategories_Click();

  // The message window, stopped at once, with the checked categories'
  // phrases.
  RunControlHost& host = *this;
  flasher_ = std::make_unique<MessageWindow>(static_cast<const FlasherHost&>(host), loop_);
  runControl_ = std::make_unique<RunControl>(flasher_->Form(), host, files_, programFolder_);
  runControl_->StartUpBegin();

  // The stored settings, applied to the panels and the message window.
  timingPanel_ = std::make_unique<TimingPanel>(store_, flasher_->Form());
  fontPanel_ = std::make_unique<FontPanel>(store_, flasher_->Form());
  BindPanels();
  LoadSettings(store_, {fontPanel_->lblPreview, fontPanel_->ColorPicker1, timingPanel_->bvlWHEEL1,
                       timingPanel_->bvlWHEEL2, flasher_->Form()});
  ShowTimingCaptions();

  // The watchdog runs from here to shutdown.
  STimer1_.SetEnabled(true);

  // A first run shows this window with its hint and leaves the display
  // stopped; otherwise Start is pressed, which hides the window.
  runControl_->StartUpEnd(commandLine, prompts_);
  return true;
}

void frmSettings::cmdStart_Click() {
  if (runControl_) runControl_->cmdStart_Click();
}

void frmSettings::cmdClose_Click() {
  if (prompts_.Show(kExitQuestion, PromptIcon::Question, PromptButtons::YesNo) != PromptAnswer::Yes) return;
  Form_Unload();
}

void frmSettings::Form_Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  STimer1_.SetEnabled(false);
  CommonDialog1_.reset();
  // Every other window: the flasher's unload repaints the desktop.
  loop_.SetFilter(nullptr);
  runControl_.reset();
  UnbindPanels();
  fontPanel_.reset();
  timingPanel_.reset();
  flasher_.reset();
  if (Window::Hwnd()) {
    tray_.Tray().RemoveIcon(*this);
    Destroy();
  }
}

LRESULT frmSettings::ColorStatic(HDC dc, HWND control) {
  // The frames' captions cover their line; the timing captions and the
  // wheels' ends are rewritten in place, so each new text covers the old.
  const bool frame = control == fraTimesAndDuration_ || control == fraFont_ || control == lblDuration_ ||
                     control == lblFrequency_ || control == bvlWHEEL1_.MinLabel() ||
                     control == bvlWHEEL1_.MaxLabel() || control == bvlWHEEL2_.MinLabel() ||
                     control == bvlWHEEL2_.MaxLabel();
  ::SetTextColor(dc, control == lblVersion_ ? kBlack : kWhite);
  ::SetBkColor(dc, kSettingsBlue);
  // A frame's caption covers its line; the labels are transparent.
  ::SetBkMode(dc, frame ? OPAQUE : TRANSPARENT);
  return reinterpret_cast<LRESULT>(BlueBrush());
}

LRESULT frmSettings::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (tray_.HandleMessage(msg, wParam, lParam)) return 0;
  switch (msg) {
    case WM_CTLCOLORSTATIC:
      return ColorStatic(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
    case WM_HSCROLL: {
      const auto bar = reinterpret_cast<HWND>(lParam);
      if (bar && bar == bvlWHEEL1_.Hwnd()) bvlWHEEL1_.Scrolled();
      if (bar && bar == bvlWHEEL2_.Hwnd()) bvlWHEEL2_.Scrolled();
      return 0;
    }
    case WM_MEASUREITEM: {
      auto& item = *reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
      if (item.CtlID != kIdColorPicker1) return Window::HandleMessage(msg, wParam, lParam);
      ColorPicker1_.Measure(item);
      return TRUE;
    }
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (item.CtlID != kIdColorPicker1) return Window::HandleMessage(msg, wParam, lParam);
      ColorPicker1_.Draw(item);
      return TRUE;
    }
    case WM_COMMAND:
      if (LOWORD(wParam) == kIdColorPicker1) ColorPicker1_.Command(HIWORD(wParam));
      if (LOWORD(wParam) == kIdCmdStop && HIWORD(wParam) == BN_CLICKED && runControl_) runControl_->cmdStop_Click();
      return 0;
    case WM_NOTIFY: {
      const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
      if (lstMessageCategoriesView_.HandleNotify(header) || lstPhrasesView_.HandleNotify(header)) return 0;
      return Window::HandleMessage(msg, wParam, lParam);
    }
    case CheckedListView::kResyncMessage:
      if (static_cast<int>(wParam) == kIdLstMessageCategories) lstMessageCategoriesView_.ShowModelHighlight();
      if (static_cast<int>(wParam) == kIdLstPhrases) lstPhrasesView_.ShowModelHighlight();
      return 0;
    case WM_SIZE:
      FitPanel();
      return 0;
    case kGetDpiScaledSize: {
      // The window grows with the dpi exactly as its client area does.
      auto& size = *reinterpret_cast<SIZE*>(lParam);
      size = OuterSize(static_cast<int>(wParam));
      return TRUE;
    }
    case WM_GETMINMAXINFO: {
      // The window keeps the size of its layout even where the screen is
      // smaller (a small screen at a large scaling).
      const LRESULT result = Window::HandleMessage(msg, wParam, lParam);
      auto& info = *reinterpret_cast<MINMAXINFO*>(lParam);
      const SIZE outer = OuterSize(dpi_);
      info.ptMaxTrackSize.x = std::max(info.ptMaxTrackSize.x, outer.cx);
      info.ptMaxTrackSize.y = std::max(info.ptMaxTrackSize.y, outer.cy);
      return result;
    }
    case WM_DPICHANGED:
      // Moved to a monitor of another scaling (or its scaling changed):
      // the new dpi comes with the message, with the place to go.
      DpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return 0;
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

bool frmSettings::PreTranslate(MSG& msg) {
  const HWND form = Window::Hwnd();
  if (!form || !::IsWindowVisible(form) || !msg.hwnd || (msg.hwnd != form && !::IsChild(form, msg.hwnd)))
    return false;
  if (msg.message == WM_SYSCHAR) {
    // Alt and a button's access key press it (Start, Exit).
    const char key = static_cast<char>(std::toupper(static_cast<unsigned char>(msg.wParam & 0xFF)));
    for (isButtonWindow* button : {&cmdStart_, &cmdClose_, &cmdAddCat_, &cmdEditCat_, &cmdDeleteCat_, &cmdAdd_,
                                   &cmdEdit_, &cmdDelete_}) {
      if (!button->Hwnd() || !::IsWindowVisible(button->Hwnd())) continue;
      const char access = ParseAccessKey(button->Model().Caption()).key;
      if (access != 0 && access == key) {
        button->AccessKeyPress();
        return true;
      }
    }
  }
  return ::IsDialogMessageW(form, &msg) != FALSE;
}

void frmSettings::RunEditing(NeedsText needs, const std::function<void()>& command) {
  if (!editing_) return;
  const std::optional<std::string> category = WindowTextAnsi(txtEditCat_);
  const std::optional<std::string> phrase = WindowTextAnsi(txtEditWord_);
  if (needs == NeedsText::Category && !category) {
    prompts_.Show(CategoryNameNotInCodePage(), PromptIcon::Exclamation, PromptButtons::Ok);
    return;
  }
  if (needs == NeedsText::Phrase && !phrase) {
    prompts_.Show(PhraseNotInCodePage(), PromptIcon::Exclamation, PromptButtons::Ok);
    return;
  }
  if (category) editing_->txtEditCat = *category;
  if (phrase) editing_->txtEditWord = *phrase;
  const std::string categoryBefore = editing_->txtEditCat;
  const std::string phraseBefore = editing_->txtEditWord;
  command();
  if (editing_->txtEditCat != categoryBefore) SetWindowTextAnsi(txtEditCat_, editing_->txtEditCat);
  if (editing_->txtEditWord != phraseBefore) SetWindowTextAnsi(txtEditWord_, editing_->txtEditWord);
}

bool frmSettings::EditKeyPress(LibraryEditing::Box box, wchar_t ch) {
  if (!editing_ || ch >= 128) return false;
  const bool category = box == LibraryEditing::Box::Category;
  const char key = static_cast<char>(ch);
  if (key == '\r') {
    // Enter runs the box's Add, and is dropped.
    RunEditing(category ? NeedsText::Category : NeedsText::Phrase, [&] {
      if (category)
        editing_->txtEditCat_KeyPress(key);
      else
        editing_->txtEditWord_KeyPress(key);
    });
    return true;
  }
  const KeyAction action = category ? editing_->txtEditCat_KeyPress(key) : editing_->txtEditWord_KeyPress(key);
  return action == KeyAction::Discard;
}

void frmSettings::PaintFrame(HWND frame, HDC dc) const {
  RECT client{};
  ::GetClientRect(frame, &client);
  ::FillRect(dc, &client, BlueBrush());
  const HGDIOBJ oldFont = ::SelectObject(dc, labelFont_.Get());
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(dc, &metrics);
  RECT edge = client;
  edge.top += metrics.tmHeight / 2;
  ::DrawEdge(dc, &edge, EDGE_ETCHED, BF_RECT);
  wchar_t caption[128] = {};
  const int length = ::GetWindowTextW(frame, caption, 128);
  if (length > 0) {
    SIZE size{};
    ::GetTextExtentPoint32W(dc, caption, length, &size);
    const int gap = metrics.tmAveCharWidth;
    RECT text{gap, 0, gap + size.cx + gap / 2, metrics.tmHeight};
    ::SetTextColor(dc, kWhite);
    ::SetBkColor(dc, kSettingsBlue);
    ::SetBkMode(dc, OPAQUE);
    ::ExtTextOutW(dc, gap, 0, ETO_OPAQUE, &text, caption, static_cast<UINT>(length), nullptr);
  }
  ::SelectObject(dc, oldFont);
}

LRESULT CALLBACK frmSettings::FrameProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                        DWORD_PTR self) {
  const auto* form = reinterpret_cast<const frmSettings*>(self);
  switch (msg) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT ps{};
      if (const HDC dc = ::BeginPaint(hwnd, &ps)) {
        form->PaintFrame(hwnd, dc);
        ::EndPaint(hwnd, &ps);
      }
      return 0;
    }
    case WM_NCDESTROY:
      ::RemoveWindowSubclass(hwnd, &frmSettings::FrameProc, id);
      break;
    default:
      break;
  }
  return ::DefSubclassProc(hwnd, msg, wParam, lParam);
}

LRESULT CALLBACK frmSettings::EditProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR self) {
  auto* form = reinterpret_cast<frmSettings*>(self);
  const auto box = id == kIdTxtEditCat ? LibraryEditing::Box::Category : LibraryEditing::Box::Phrase;
  switch (msg) {
    case WM_GETDLGCODE: {
      // The box takes Enter itself, so that the dialog keys leave it alone.
      const auto* key = reinterpret_cast<const MSG*>(lParam);
      LRESULT code = ::DefSubclassProc(hwnd, msg, wParam, lParam);
      if (key && key->message == WM_KEYDOWN && key->wParam == VK_RETURN) code |= DLGC_WANTALLKEYS;
      return code;
    }
    case WM_CHAR:
      try {
        if (form->EditKeyPress(box, static_cast<wchar_t>(wParam))) return 0;
      } catch (...) {
        return 0;
      }
      break;
    case WM_NCDESTROY:
      ::RemoveWindowSubclass(hwnd, &frmSettings::EditProc, id);
      break;
    default:
      break;
  }
  return ::DefSubclassProc(hwnd, msg, wParam, lParam);
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
