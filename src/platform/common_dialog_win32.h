// The common dialog wrapper on Windows, in three layers:
//   cCommonDialog  the object the program uses: set its properties, call one
//                  Show... operation, read the results back; notifications
//                  of a hooked dialog come back as its events;
//   GCommonDialog  one function per system dialog, filling the system's
//                  record (from the portable half, common_dialog.h), calling
//                  the dialog and copying the results back; it keeps the
//                  last return value and extended error;
//   the hook       one pointer to the GCommonDialog of the hooked dialog
//                  that is open, through which the system's hook callback
//                  reaches it; cMemory owns the movable memory blocks of the
//                  print and page set-up records.
// Everything runs on the user-interface thread; a dialog returns when it
// closes. A cancelled or failed font chooser never raises; the file, colour
// and font choosers raise CommonDialogError for a failure (not a cancel).
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/common_dialog.h"

namespace qm::win32 {

// The wrapper's events. The settings window receives them and ignores them.
class CommonDialogEvents {
 public:
  virtual ~CommonDialogEvents() = default;
  virtual void InitDialog(HWND) {}
  virtual void FileChange(HWND) {}
  virtual void FolderChange(HWND) {}
  // Set cancel to keep the file dialog open.
  virtual void ConfirmOK(bool& cancel) { static_cast<void>(cancel); }
  virtual void TypeChange(HWND) {}
  virtual void DialogClose() {}
  virtual void WMCommand(HWND, WPARAM&, LPARAM&) {}
};

// A movable global memory block: allocated, locked, unlocked, freed when the
// object ends unless the system took it over.
class cMemory {
 public:
  cMemory() = default;
  ~cMemory() { FreeMemory(); }
  cMemory(const cMemory&) = delete;
  cMemory& operator=(const cMemory&) = delete;

  bool AllocateMemory(SIZE_T size, UINT flags = GMEM_MOVEABLE | GMEM_ZEROINIT);
  void* LockMemory();
  void UnlockMemory();
  void FreeMemory();
  SIZE_T Size() const { return handle_ ? ::GlobalSize(handle_) : 0; }
  HGLOBAL Handle() const { return handle_; }
  // Takes a block to own (one the system handed back).
  void SetHandle(HGLOBAL handle);
  void* Pointer() const { return pointer_; }
  // Forgets the block without freeing it (its new owner frees it).
  void ReleaseDontFreeMemory();

 private:
  HGLOBAL handle_ = nullptr;
  void* pointer_ = nullptr;
};

class GCommonDialog {
 public:
  std::int32_t APIReturn() const { return apiReturn_; }
  std::uint32_t ExtendedError() const { return extendedError_; }

  // The font chooser (see PrepareChooseFont for the request). Owner nullptr:
  // none. True when the user confirmed; then font, color and flags hold the
  // choice, otherwise they are as they were.
  bool VBChooseFont(DialogFont& font, std::int64_t printerDc, HWND owner, std::uint32_t& color,
                    std::int32_t minSize, std::int32_t maxSize, std::uint32_t& flags, bool hook,
                    CommonDialogEvents* sink);
  bool VBChooseColor(std::uint32_t& color, COLORREF (&customColors)[16], HWND owner, std::uint32_t& flags,
                     bool hook, CommonDialogEvents* sink);
  // File dialogs; fileName in and out (UTF-8; a multi-selection comes back
  // as the folder and the names, NUL-separated, as the system gives them).
  struct FileRequest {
    std::string fileName;
    std::string filter;  // "Text|*.txt|All|*.*" or NUL-separated
    std::int32_t filterIndex = 1;
    std::string initDir, title, defaultExt;
    std::uint32_t flags = 0;
    std::int32_t maxFileSize = 0;
    std::string fileTitle;
  };
  bool VBGetOpenFileName(FileRequest& request, HWND owner, bool hook, CommonDialogEvents* sink);
  bool VBGetSaveFileName(FileRequest& request, HWND owner, bool hook, CommonDialogEvents* sink);
  // The print dialog; its device records go through cMemory.
  struct PrintRequest {
    std::uint32_t flags = 0;
    std::int32_t fromPage = 0, toPage = 0, copies = 0;
    std::string printerName, driver, port;
  };
  bool VBPrintDlg(PrintRequest& request, HWND owner, bool hook, CommonDialogEvents* sink);
  // The page set-up dialog; margins and paper size in thousandths of an
  // inch or hundredths of a millimetre, as the system's locale gives them.
  struct PageSetupRequest {
    std::uint32_t flags = 0;
    RECT margins{};
    POINT paperSize{};
  };
  bool VBPageSetupDlg(PageSetupRequest& request, HWND owner);
  // The name the system shows for a file (its title); nothing when the
  // path is not valid.
  std::optional<std::string> VBGetFileTitle(const std::string& path);

  // The hook's work for the dialog open now: the message raised as the
  // event of the sink, if there is one.
  INT_PTR DialogHook(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

 private:
  bool FileDialog(FileRequest& request, HWND owner, bool hook, CommonDialogEvents* sink, bool save);
  std::int32_t Finish(BOOL returned);
  std::int32_t apiReturn_ = 0;
  std::uint32_t extendedError_ = 0;
  CommonDialogEvents* sink_ = nullptr;
};

class cCommonDialog {
 public:
  explicit cCommonDialog(CommonDialogEvents* events = nullptr) : events_(events) {}
  ~cCommonDialog();

  bool CancelError = false;  // kept for the caller; a cancel never raises
  std::string FileName, FileTitle, Filter, DefaultExt, DialogTitle, InitDir;
  std::int32_t FilterIndex = 1;
  std::int32_t MaxFileSize = 0;
  std::uint32_t flags = 0;
  std::uint32_t Color = 0;
  COLORREF CustomColor[16] = {};
  std::int32_t Min = 0, Max = 0;
  std::int32_t FromPage = 0, ToPage = 0, Copies = 0;
  bool PrinterDefault = false;
  HWND hwnd = nullptr;
  std::string HelpFile, HelpKey;
  std::uint32_t HelpCommand = 0;
  std::uintptr_t HelpContext = 0;
  bool HookDialog = false;
  HINSTANCE hInstance = nullptr;
  std::string TemplateName;
  std::uint32_t FontColor = 0;

  // The font the chooser starts from and returns into, made on first use.
  DialogFont& Font();
  const std::string& FontName() { return Font().name; }
  void SetFontName(std::string name) { Font().name = std::move(name); }
  // Whole points.
  std::int32_t FontSize();
  void SetFontSize(std::int32_t points) { Font().size = points; }
  bool FontBold() { return Font().bold; }
  void SetFontBold(bool bold) {
    Font().bold = bold;
    Font().weight = bold ? FW_BOLD : FW_NORMAL;
  }
  bool FontItalic() { return Font().italic; }
  void SetFontItalic(bool italic) { Font().italic = italic; }
  bool FontUnderline() { return Font().underline; }
  void SetFontUnderline(bool underline) { Font().underline = underline; }
  bool FontStrikethru() { return Font().strikethrough; }
  void SetFontStrikethru(bool strike) { Font().strikethrough = strike; }
  const std::string& PrinterName() const { return printerName_; }
  const std::string& PrinterDriver() const { return printerDriver_; }
  const std::string& PrinterOutputPort() const { return printerPort_; }

  // Each returns normally on a cancel; a failure raises CommonDialogError
  // (ShowFont, ShowColor, ShowOpen, ShowSave).
  void ShowFont();
  void ShowColor();
  void ShowOpen();
  void ShowSave();
  void ShowPrinter();
  // The help engine; the multi-key and set-position commands are refused.
  void ShowHelp();

  // Centres the dialog's frame (the parent of `dialog`) over the window, or
  // over the work area of the screen when there is none.
  static void CentreDialog(HWND dialog, HWND centreTo);
  static SIZE GetDialogSize(HWND dialog);
  // The module that holds a custom template.
  bool cdLoadLibrary(const std::wstring& dllName);
  void cdFreeLibrary();

  GCommonDialog& Worker();

 private:
  void CheckError();
  void ShowFile(bool save);
  CommonDialogEvents* events_;
  std::unique_ptr<GCommonDialog> worker_;
  std::unique_ptr<DialogFont> font_;
  std::string printerName_, printerDriver_, printerPort_;
  HMODULE templateModule_ = nullptr;
};

}  // namespace qm::win32
