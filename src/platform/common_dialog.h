// The common dialog wrapper's portable half: the font chooser's request
// (the flag arithmetic and the fields of its font record and request
// record) and what it copies back on confirmation, the error a failed
// dialog raises, the help commands ShowHelp refuses, the splitting of a
// multi-select file result, and the routing of dialog notifications to the
// wrapper's events. The Win32 half (common_dialog_win32) fills the system's
// records from these and calls the dialogs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/screen_error.h"

namespace qm {

// The font chooser's flags, as the system defines them.
namespace choose_font {
inline constexpr std::uint32_t kScreenFonts = 0x1;
inline constexpr std::uint32_t kPrinterFonts = 0x2;
inline constexpr std::uint32_t kEnableHook = 0x8;
inline constexpr std::uint32_t kEnableTemplate = 0x10;
inline constexpr std::uint32_t kInitToLogFontStruct = 0x40;
inline constexpr std::uint32_t kEffects = 0x100;
inline constexpr std::uint32_t kApply = 0x200;
inline constexpr std::uint32_t kLimitSize = 0x2000;
// The chosen font's type: bold.
inline constexpr std::uint32_t kBoldFontType = 0x100;
// The request record's size in the 32-bit layout.
inline constexpr std::uint32_t kRecordSize32 = 60;
// A face name holds at most this many bytes, its closing NUL included.
inline constexpr std::size_t kFaceNameField = 32;
}  // namespace choose_font

// The wrapper's font object.
struct DialogFont {
  std::string name;  // Windows-1252
  double size = 0;   // points
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikethrough = false;
  std::int32_t weight = 400;

  friend bool operator==(const DialogFont&, const DialogFont&) = default;
};

// The font record the chooser starts from (the fields the wrapper sets;
// every other field is 0).
struct LogFontFields {
  std::int32_t height = 0;  // negative: the character height in pixels
  std::int32_t weight = 0;
  bool italic = false;
  bool underline = false;
  bool strikeOut = false;
  std::string faceName;  // at most 31 bytes

  friend bool operator==(const LogFontFields&, const LogFontFields&) = default;
};

// The request record's fields (every other field is 0).
struct ChooseFontFields {
  bool hasOwner = false;   // hwndOwner: the owner window, or none
  bool printerDc = false;  // hDC: the printer's device context, or none
  std::uint32_t flags = 0;
  std::int32_t pointSize = 0;  // tenths of a point
  std::uint32_t color = 0;     // rgbColors
  std::int32_t sizeMin = 0;
  std::int32_t sizeMax = 0;
  bool hook = false;  // lpfnHook set

  friend bool operator==(const ChooseFontFields&, const ChooseFontFields&) = default;
};

struct ChooseFontRequest {
  LogFontFields logFont;
  ChooseFontFields record;
};

// The arguments of the font chooser call. printerDc -1 stands for none
// given; owner -1 for none.
struct ChooseFontArgs {
  std::int64_t printerDc = -1;
  std::int64_t owner = -1;
  std::uint32_t color = 0;
  std::int32_t minSize = 0;
  std::int32_t maxSize = 0;
  std::uint32_t flags = 0;
  bool hook = false;
};

// The request for the font and arguments, on a screen of the given twips
// per vertical pixel:
//   - a printer context given (not -1) adds the printer-fonts flag; none
//     given uses the printer only when the flags ask for printer fonts;
//   - without printer fonts, screen fonts are added;
//   - a colour other than 0 adds the effects (colour, underline, strikeout);
//   - a least or greatest size other than 0 adds the size limit;
//   - hook, template and apply are removed, init-to-font-record added (and
//     hook again when a hook is asked for);
//   - the font record's height is -(points x 20 / twips per pixel) rounded
//     half to even, its face name the font's cut to 31 bytes;
//   - the record's point size is tenths of a point.
ChooseFontRequest PrepareChooseFont(const DialogFont& font, const ChooseFontArgs& args, float twipsPerPixelY);

// What a confirmed chooser returns.
struct ChooseFontResult {
  std::uint32_t flags = 0;
  std::uint32_t color = 0;
  std::uint32_t fontType = 0;
  std::int32_t pointSize = 0;  // tenths
  std::int32_t weight = 0;
  bool italic = false;
  bool underline = false;
  bool strikeOut = false;
  std::string faceName;
};

// Copies a confirmed result back into the font, the flags and the colour.
void ApplyChooseFontResult(const ChooseFontResult& result, DialogFont& font, std::uint32_t& flags,
                           std::uint32_t& color);

// The chooser's outcome from the system's return value: 1 confirmed, 0
// cancelled or closed (nothing copied back, no error), anything else a
// failure whose extended error is to be read.
enum class DialogOutcome { Confirmed, Cancelled, Failed };
DialogOutcome DialogOutcomeOf(std::int32_t apiReturn);

// The error a failed dialog raises: the extended error OR 0x348A, from the
// executable's name followed by ".cCommonDialog", without a description.
RuntimeError CommonDialogError(std::uint32_t extendedError, std::string_view executableName);
std::string CommonDialogSource(std::string_view executableName);

// ShowHelp refuses the multi-key (513) and set-position (515) commands with
// this error.
inline constexpr std::int32_t kErrInvalidHelpCommand = 13705;
inline constexpr std::string_view kInvalidHelpCommandText = "Invalid WinHelp Command Passed to ShowHelp function.";
std::optional<RuntimeError> RefusedHelpCommand(std::int32_t helpCommand, std::string_view executableName);

// A multi-select file result: the folder, then the file names, each ended
// by a NUL, the list by a second NUL (a single selection is one full
// path). A file's path is the folder, "\" and its name.
struct MultiFileName {
  std::string folder;
  std::vector<std::string> files;
  std::string Path(std::size_t index) const;
};
MultiFileName ParseMultiFileName(std::string_view result);

// The wrapper's event for a notification of a hooked dialog: initialised
// (272), closed (2), a command (273), and of the file dialogs' notices
// (78) the type (-607), OK (-606), folder (-603) and selection (-602)
// changes; None for anything else.
enum class DialogEvent { None, InitDialog, DialogClose, TypeChange, ConfirmOK, FolderChange, FileChange, WMCommand };
DialogEvent DialogEventOf(std::uint32_t message, std::int32_t notifyCode);

}  // namespace qm
