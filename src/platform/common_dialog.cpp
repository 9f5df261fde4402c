#include "platform/common_dialog.h"

#include "platform/rounding.h"

namespace qm {

using namespace choose_font;

ChooseFontRequest PrepareChooseFont(const DialogFont& font, const ChooseFontArgs& args, float twipsPerPixelY) {
  ChooseFontRequest request;
  std::uint32_t flags = args.flags;
  bool printerDc = false;
  if (args.printerDc == -1) {
    printerDc = (flags & kPrinterFonts) != 0;
  } else {
    printerDc = args.printerDc != 0;
    flags |= kPrinterFonts;
  }
  if ((flags & kPrinterFonts) == 0) flags |= kScreenFonts;
  if (args.color != 0) flags |= kEffects;
  if (args.minSize != 0 || args.maxSize != 0) flags |= kLimitSize;
  flags &= ~(kEnableHook | kEnableTemplate | kApply);
  flags |= kInitToLogFontStruct;

  const double twips = twipsPerPixelY > 0 ? twipsPerPixelY : 15.0;
  request.logFont.height = -RoundHalfEven(font.size * 20.0 / twips);
  request.logFont.weight = font.weight;
  request.logFont.italic = font.italic;
  request.logFont.underline = font.underline;
  request.logFont.strikeOut = font.strikethrough;
  request.logFont.faceName = font.name.substr(0, kFaceNameField - 1);

  ChooseFontFields& r = request.record;
  r.hasOwner = args.owner != -1 && args.owner != 0;
  r.printerDc = printerDc;
  r.pointSize = RoundHalfEven(font.size * 10.0);
  r.color = args.color;
  r.sizeMin = args.minSize;
  r.sizeMax = args.maxSize;
  if (args.hook) {
    flags |= kEnableHook;
    r.hook = true;
  }
  r.flags = flags;
  return request;
}

void ApplyChooseFontResult(const ChooseFontResult& result, DialogFont& font, std::uint32_t& flags,
                           std::uint32_t& color) {
  flags = result.flags;
  color = result.color;
  font.bold = (result.fontType & kBoldFontType) != 0;
  font.italic = result.italic;
  font.strikethrough = result.strikeOut;
  font.underline = result.underline;
  font.weight = result.weight;
  font.size = result.pointSize / 10.0;
  font.name = result.faceName;
}

DialogOutcome DialogOutcomeOf(std::int32_t apiReturn) {
  if (apiReturn == 1) return DialogOutcome::Confirmed;
  if (apiReturn == 0) return DialogOutcome::Cancelled;
  return DialogOutcome::Failed;
}

std::string CommonDialogSource(std::string_view executableName) {
  std::string source(executableName);
  source += ".cCommonDialog";
  return source;
}

RuntimeError CommonDialogError(std::uint32_t extendedError, std::string_view executableName) {
  return RuntimeError(static_cast<std::int32_t>(extendedError | 0x348Au), CommonDialogSource(executableName), "");
}

std::optional<RuntimeError> RefusedHelpCommand(std::int32_t helpCommand, std::string_view executableName) {
  if (helpCommand != 513 && helpCommand != 515) return std::nullopt;
  return RuntimeError(kErrInvalidHelpCommand, CommonDialogSource(executableName),
                      std::string(kInvalidHelpCommandText));
}

MultiFileName ParseMultiFileName(std::string_view result) {
  std::vector<std::string_view> parts;
  while (!result.empty()) {
    const std::size_t nul = result.find('\0');
    const std::string_view part = result.substr(0, nul);
    if (part.empty()) break;  // the double NUL ends the list
    parts.push_back(part);
    if (nul == std::string_view::npos) break;
    result.remove_prefix(nul + 1);
  }
  MultiFileName parsed;
  if (parts.empty()) return parsed;
  if (parts.size() == 1) {
    // One file: its full path, split at the last "\".
    const std::size_t slash = parts[0].find_last_of('\\');
    if (slash == std::string_view::npos) {
      parsed.files.emplace_back(parts[0]);
    } else {
      parsed.folder = std::string(parts[0].substr(0, slash));
      parsed.files.emplace_back(parts[0].substr(slash + 1));
    }
    return parsed;
  }
  parsed.folder = std::string(parts[0]);
  for (std::size_t i = 1; i < parts.size(); ++i) parsed.files.emplace_back(parts[i]);
  return parsed;
}

std::string MultiFileName::Path(std::size_t index) const {
  std::string path = folder;
  if (!path.empty() && path.back() != '\\') path += '\\';
  path += files.at(index);
  return path;
}

DialogEvent DialogEventOf(std::uint32_t message, std::int32_t notifyCode) {
  switch (message) {
    case 272: return DialogEvent::InitDialog;
    case 2: return DialogEvent::DialogClose;
    case 273: return DialogEvent::WMCommand;
    case 78:
      switch (notifyCode) {
        case -607: return DialogEvent::TypeChange;
        case -606: return DialogEvent::ConfirmOK;
        case -603: return DialogEvent::FolderChange;
        case -602: return DialogEvent::FileChange;
        default: return DialogEvent::None;
      }
    default: return DialogEvent::None;
  }
}

}  // namespace qm
