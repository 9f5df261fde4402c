#include "platform/common_dialog_win32.h"

#include <commdlg.h>

#include <algorithm>
#include <cstring>

#include "platform/application_win32.h"
#include "platform/screen_win32.h"
#include "platform/wide_text_win32.h"

namespace qm::win32 {
namespace {

// The one hooked dialog open now: the system's hook callback finds its
// worker here. A plain pointer, set for the length of the dialog call.
GCommonDialog* gHooked = nullptr;

UINT_PTR CALLBACK HookProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  return gHooked ? static_cast<UINT_PTR>(gHooked->DialogHook(dialog, message, wParam, lParam)) : 0;
}

// Registers the worker for the hook while a dialog is open.
class HookScope {
 public:
  HookScope(GCommonDialog* worker, bool hook) : active_(hook) {
    if (active_) gHooked = worker;
  }
  ~HookScope() {
    if (active_) gHooked = nullptr;
  }
  HookScope(const HookScope&) = delete;
  HookScope& operator=(const HookScope&) = delete;

 private:
  bool active_;
};

// "Text files|*.txt|All|*.*" as the system wants it: NUL-separated pairs,
// a second NUL at the end.
std::wstring FilterText(const std::string& filter) {
  std::wstring wide = Widen(filter);
  std::replace(wide.begin(), wide.end(), L'|', L'\0');
  wide.push_back(L'\0');
  wide.push_back(L'\0');
  return wide;
}

std::string Narrow(std::wstring_view wide) { return NarrowStrict(wide).value_or(std::string()); }

}  // namespace

bool cMemory::AllocateMemory(SIZE_T size, UINT flags) {
  FreeMemory();
  handle_ = ::GlobalAlloc(flags, size);
  return handle_ != nullptr;
}

void* cMemory::LockMemory() {
  if (handle_ && !pointer_) pointer_ = ::GlobalLock(handle_);
  return pointer_;
}

void cMemory::UnlockMemory() {
  if (handle_ && pointer_) ::GlobalUnlock(handle_);
  pointer_ = nullptr;
}

void cMemory::FreeMemory() {
  UnlockMemory();
  if (handle_) ::GlobalFree(handle_);
  handle_ = nullptr;
}

void cMemory::SetHandle(HGLOBAL handle) {
  if (handle == handle_) return;
  FreeMemory();
  handle_ = handle;
}

void cMemory::ReleaseDontFreeMemory() {
  UnlockMemory();
  handle_ = nullptr;
}

std::int32_t GCommonDialog::Finish(BOOL returned) {
  apiReturn_ = static_cast<std::int32_t>(returned);
  sink_ = nullptr;
  if (DialogOutcomeOf(apiReturn_) == DialogOutcome::Failed || (!returned && ::CommDlgExtendedError() != 0))
    extendedError_ = ::CommDlgExtendedError();
  return apiReturn_;
}

bool GCommonDialog::VBChooseFont(DialogFont& font, std::int64_t printerDc, HWND owner, std::uint32_t& color,
                                 std::int32_t minSize, std::int32_t maxSize, std::uint32_t& flags, bool hook,
                                 CommonDialogEvents* sink) {
  apiReturn_ = 0;
  extendedError_ = 0;
  ChooseFontArgs args;
  args.printerDc = printerDc;
  args.owner = owner ? reinterpret_cast<std::intptr_t>(owner) : -1;
  args.color = color;
  args.minSize = minSize;
  args.maxSize = maxSize;
  args.flags = flags;
  args.hook = hook;
  const Dpi dpi = ScreenLogicalDpi();
  const ChooseFontRequest request = PrepareChooseFont(font, args, 1440.0f / static_cast<float>(dpi.y));

  LOGFONTA logFont{};
  logFont.lfHeight = request.logFont.height;
  logFont.lfWeight = request.logFont.weight;
  logFont.lfItalic = request.logFont.italic;
  logFont.lfUnderline = request.logFont.underline;
  logFont.lfStrikeOut = request.logFont.strikeOut;
  std::memcpy(logFont.lfFaceName, request.logFont.faceName.data(), request.logFont.faceName.size());

  CHOOSEFONTA record{};
  record.lStructSize = sizeof record;  // 60 in the 32-bit layout
  record.hwndOwner = request.record.hasOwner ? owner : nullptr;
  // No printer is ever opened here: the program never prints, and a
  // printer context would come from the print dialog.
  record.hDC = nullptr;
  record.lpLogFont = &logFont;
  record.iPointSize = request.record.pointSize;
  record.Flags = request.record.flags;
  record.rgbColors = request.record.color;
  record.nSizeMin = request.record.sizeMin;
  record.nSizeMax = request.record.sizeMax;
  if (request.record.hook) {
    record.lpfnHook = HookProc;
    sink_ = sink;
  }
  BOOL returned;
  {
    HookScope scope(this, request.record.hook);
    returned = ::ChooseFontA(&record);
  }
  if (Finish(returned) != 1) return false;

  ChooseFontResult result;
  result.flags = record.Flags;
  result.color = record.rgbColors;
  result.fontType = record.nFontType;
  result.pointSize = record.iPointSize;
  result.weight = logFont.lfWeight;
  result.italic = logFont.lfItalic != 0;
  result.underline = logFont.lfUnderline != 0;
  result.strikeOut = logFont.lfStrikeOut != 0;
  result.faceName.assign(logFont.lfFaceName, strnlen(logFont.lfFaceName, LF_FACESIZE));
  ApplyChooseFontResult(result, font, flags, color);
  return true;
}

bool GCommonDialog::VBChooseColor(std::uint32_t& color, COLORREF (&customColors)[16], HWND owner,
                                  std::uint32_t& flags, bool hook, CommonDialogEvents* sink) {
  apiReturn_ = 0;
  extendedError_ = 0;
  CHOOSECOLORW record{};
  record.lStructSize = sizeof record;
  record.hwndOwner = owner;
  record.rgbResult = color;
  record.lpCustColors = customColors;
  record.Flags = (flags | CC_RGBINIT) & ~(CC_ENABLETEMPLATE | CC_ENABLEHOOK);
  if (hook) {
    record.Flags |= CC_ENABLEHOOK;
    record.lpfnHook = HookProc;
    sink_ = sink;
  }
  BOOL returned;
  {
    HookScope scope(this, hook);
    returned = ::ChooseColorW(&record);
  }
  if (Finish(returned) != 1) return false;
  color = record.rgbResult;
  flags = record.Flags;
  return true;
}

namespace {

bool RunFileDialog(GCommonDialog::FileRequest& request, HWND owner, bool hook, bool save,
                   BOOL(WINAPI* dialog)(LPOPENFILENAMEW), LPOFNHOOKPROC hookProc) {
  const std::size_t size = std::max<std::size_t>(request.maxFileSize > 0 ? request.maxFileSize : 0, 32768);
  std::wstring file = Widen(request.fileName);
  file.resize(size, L'\0');
  std::wstring title(MAX_PATH, L'\0');
  const std::wstring filter = FilterText(request.filter);
  const std::wstring initDir = Widen(request.initDir);
  const std::wstring dialogTitle = Widen(request.title);
  const std::wstring defaultExt = Widen(request.defaultExt);

  OPENFILENAMEW record{};
  record.lStructSize = sizeof record;
  record.hwndOwner = owner;
  record.lpstrFilter = request.filter.empty() ? nullptr : filter.c_str();
  record.nFilterIndex = static_cast<DWORD>(request.filterIndex);
  record.lpstrFile = file.data();
  record.nMaxFile = static_cast<DWORD>(file.size());
  record.lpstrFileTitle = title.data();
  record.nMaxFileTitle = static_cast<DWORD>(title.size());
  record.lpstrInitialDir = initDir.empty() ? nullptr : initDir.c_str();
  record.lpstrTitle = dialogTitle.empty() ? nullptr : dialogTitle.c_str();
  record.lpstrDefExt = defaultExt.empty() ? nullptr : defaultExt.c_str();
  record.Flags = (request.flags | OFN_EXPLORER) & ~(OFN_ENABLETEMPLATE | OFN_ENABLEHOOK);
  if (save) record.Flags &= ~OFN_ALLOWMULTISELECT;
  if (hook) {
    record.Flags |= OFN_ENABLEHOOK;
    record.lpfnHook = hookProc;
  }
  if (!dialog(&record)) return false;
  // A multi-selection is the folder and the names, NUL-separated.
  std::size_t end = 0;
  while (end + 1 < file.size() && !(file[end] == L'\0' && file[end + 1] == L'\0')) ++end;
  std::string chosen = Narrow(std::wstring_view(file.data(), end));
  request.fileName = std::move(chosen);
  request.fileTitle = Narrow(title.c_str());
  request.filterIndex = static_cast<std::int32_t>(record.nFilterIndex);
  request.flags = record.Flags;
  return true;
}

UINT_PTR CALLBACK FileHookProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  return HookProc(dialog, message, wParam, lParam);
}

}  // namespace

bool GCommonDialog::FileDialog(FileRequest& request, HWND owner, bool hook, CommonDialogEvents* sink, bool save) {
  apiReturn_ = 0;
  extendedError_ = 0;
  if (hook) sink_ = sink;
  HookScope scope(this, hook);
  const bool chosen = RunFileDialog(request, owner, hook, save, save ? ::GetSaveFileNameW : ::GetOpenFileNameW,
                                    FileHookProc);
  return Finish(chosen ? TRUE : FALSE) == 1;
}

bool GCommonDialog::VBGetOpenFileName(FileRequest& request, HWND owner, bool hook, CommonDialogEvents* sink) {
  return FileDialog(request, owner, hook, sink, false);
}

bool GCommonDialog::VBGetSaveFileName(FileRequest& request, HWND owner, bool hook, CommonDialogEvents* sink) {
  return FileDialog(request, owner, hook, sink, true);
}

bool GCommonDialog::VBPrintDlg(PrintRequest& request, HWND owner, bool hook, CommonDialogEvents* sink) {
  apiReturn_ = 0;
  extendedError_ = 0;
  cMemory devMode, devNames;
  PRINTDLGW record{};
  record.lStructSize = sizeof record;
  record.hwndOwner = owner;
  record.Flags = request.flags & ~(PD_ENABLEPRINTHOOK | PD_ENABLESETUPHOOK | PD_ENABLEPRINTTEMPLATE);
  record.nFromPage = static_cast<WORD>(request.fromPage);
  record.nToPage = static_cast<WORD>(request.toPage);
  record.nMinPage = 0;
  record.nMaxPage = 0xFFFF;
  record.nCopies = static_cast<WORD>(request.copies > 0 ? request.copies : 1);
  if (hook) {
    record.Flags |= PD_ENABLEPRINTHOOK;
    record.lpfnPrintHook = FileHookProc;
    sink_ = sink;
  }
  BOOL returned;
  {
    HookScope scope(this, hook);
    returned = ::PrintDlgW(&record);
  }
  // The device records are the program's to free from here on.
  devMode.SetHandle(record.hDevMode);
  devNames.SetHandle(record.hDevNames);
  if (Finish(returned) != 1) return false;
  request.flags = record.Flags;
  request.fromPage = record.nFromPage;
  request.toPage = record.nToPage;
  request.copies = record.nCopies;
  if (const auto* names = static_cast<const DEVNAMES*>(devNames.LockMemory())) {
    const auto* base = reinterpret_cast<const wchar_t*>(names);
    request.driver = Narrow(base + names->wDriverOffset);
    request.printerName = Narrow(base + names->wDeviceOffset);
    request.port = Narrow(base + names->wOutputOffset);
  }
  if (record.hDC) ::DeleteDC(record.hDC);
  return true;
}

bool GCommonDialog::VBPageSetupDlg(PageSetupRequest& request, HWND owner) {
  apiReturn_ = 0;
  extendedError_ = 0;
  cMemory devMode, devNames;
  PAGESETUPDLGW record{};
  record.lStructSize = sizeof record;
  record.hwndOwner = owner;
  record.Flags = request.flags & ~(PSD_ENABLEPAGESETUPHOOK | PSD_ENABLEPAGEPAINTHOOK | PSD_ENABLEPAGESETUPTEMPLATE);
  record.rtMargin = request.margins;
  BOOL returned = ::PageSetupDlgW(&record);
  // The device records are the program's to free from here on.
  devMode.SetHandle(record.hDevMode);
  devNames.SetHandle(record.hDevNames);
  if (Finish(returned) != 1) return false;
  request.flags = record.Flags;
  request.margins = record.rtMargin;
  request.paperSize = record.ptPaperSize;
  return true;
}

std::optional<std::string> GCommonDialog::VBGetFileTitle(const std::string& path) {
  const std::wstring wide = Widen(path);
  wchar_t title[MAX_PATH] = {};
  if (::GetFileTitleW(wide.c_str(), title, MAX_PATH) != 0) return std::nullopt;
  return Narrow(title);
}

INT_PTR GCommonDialog::DialogHook(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!sink_) return 0;
  const std::int32_t code =
      message == WM_NOTIFY && lParam ? static_cast<std::int32_t>(reinterpret_cast<const NMHDR*>(lParam)->code) : 0;
  switch (DialogEventOf(message, code)) {
    case DialogEvent::InitDialog: sink_->InitDialog(dialog); break;
    case DialogEvent::DialogClose: sink_->DialogClose(); break;
    case DialogEvent::TypeChange: sink_->TypeChange(dialog); break;
    case DialogEvent::FolderChange: sink_->FolderChange(dialog); break;
    case DialogEvent::FileChange: sink_->FileChange(dialog); break;
    case DialogEvent::ConfirmOK: {
      bool cancel = false;
      sink_->ConfirmOK(cancel);
      // The dialog's message result tells the file dialog to stay open.
      ::SetWindowLongPtrW(dialog, DWLP_MSGRESULT, cancel ? 1 : 0);
      return cancel ? 1 : 0;
    }
    case DialogEvent::WMCommand: sink_->WMCommand(dialog, wParam, lParam); break;
    case DialogEvent::None: break;
  }
  return 0;
}

cCommonDialog::~cCommonDialog() { cdFreeLibrary(); }

GCommonDialog& cCommonDialog::Worker() {
  if (!worker_) worker_ = std::make_unique<GCommonDialog>();
  return *worker_;
}

DialogFont& cCommonDialog::Font() {
  if (!font_) font_ = std::make_unique<DialogFont>(DialogFont{"Arial", 8, false, false, false, false, FW_NORMAL});
  return *font_;
}

std::int32_t cCommonDialog::FontSize() { return static_cast<std::int32_t>(Font().size); }

void cCommonDialog::CheckError() {
  if (Worker().APIReturn() == 0) return;
  throw CommonDialogError(Worker().ExtendedError(), ExecutableName());
}

void cCommonDialog::ShowFont() {
  if (!Worker().VBChooseFont(Font(), -1, hwnd, Color, Min, Max, flags, HookDialog, events_)) CheckError();
}

void cCommonDialog::ShowColor() {
  if (!Worker().VBChooseColor(Color, CustomColor, hwnd, flags, HookDialog, events_)) CheckError();
}

void cCommonDialog::ShowFile(bool save) {
  GCommonDialog::FileRequest request{FileName, Filter, FilterIndex, InitDir, DialogTitle, DefaultExt, flags,
                                     MaxFileSize, FileTitle};
  const bool chosen = save ? Worker().VBGetSaveFileName(request, hwnd, HookDialog, events_)
                           : Worker().VBGetOpenFileName(request, hwnd, HookDialog, events_);
  if (!chosen) return CheckError();
  FileName = request.fileName;
  FileTitle = request.fileTitle;
  FilterIndex = request.filterIndex;
  flags = request.flags;
}

void cCommonDialog::ShowOpen() { ShowFile(false); }

void cCommonDialog::ShowSave() { ShowFile(true); }

void cCommonDialog::ShowPrinter() {
  GCommonDialog::PrintRequest request{flags, FromPage, ToPage, Copies, {}, {}, {}};
  if (!Worker().VBPrintDlg(request, hwnd, HookDialog, events_)) return;
  flags = request.flags;
  FromPage = request.fromPage;
  ToPage = request.toPage;
  Copies = request.copies;
  printerName_ = request.printerName;
  printerDriver_ = request.driver;
  printerPort_ = request.port;
}

void cCommonDialog::ShowHelp() {
  if (auto refused = RefusedHelpCommand(static_cast<std::int32_t>(HelpCommand), ExecutableName())) throw *refused;
  const ULONG_PTR data = HelpKey.empty() ? HelpContext : reinterpret_cast<ULONG_PTR>(HelpKey.c_str());
  if (::WinHelpA(hwnd, HelpFile.c_str(), HelpCommand, data)) return;
  const DWORD error = ::GetLastError();
  char text[512] = {};
  ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text, sizeof text,
                   nullptr);
  throw RuntimeError(static_cast<std::int32_t>(error), CommonDialogSource(ExecutableName()), text);
}

void cCommonDialog::CentreDialog(HWND dialog, HWND centreTo) {
  const HWND frame = ::GetParent(dialog) ? ::GetParent(dialog) : dialog;
  RECT own;
  ::GetWindowRect(frame, &own);
  RECT area;
  if (centreTo) {
    ::GetWindowRect(centreTo, &area);
  } else {
    ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  }
  const int width = own.right - own.left;
  const int height = own.bottom - own.top;
  ::SetWindowPos(frame, nullptr, area.left + (area.right - area.left - width) / 2,
                 area.top + (area.bottom - area.top - height) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

SIZE cCommonDialog::GetDialogSize(HWND dialog) {
  const HWND frame = ::GetParent(dialog) ? ::GetParent(dialog) : dialog;
  RECT r{};
  ::GetWindowRect(frame, &r);
  return {r.right - r.left, r.bottom - r.top};
}

bool cCommonDialog::cdLoadLibrary(const std::wstring& dllName) {
  cdFreeLibrary();
  // A template module is data only: nothing of it runs.
  templateModule_ = ::LoadLibraryExW(dllName.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  hInstance = templateModule_;
  return templateModule_ != nullptr;
}

void cCommonDialog::cdFreeLibrary() {
  if (templateModule_) ::FreeLibrary(templateModule_);
  templateModule_ = nullptr;
  hInstance = nullptr;
}

}  // namespace qm::win32
