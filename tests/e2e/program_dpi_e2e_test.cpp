// The real program as the system sees it: the version resource that names
// and describes it, the common controls 6 and the per-monitor scaling its
// manifest asks for, and its settings window laid out at the screen's dots
// per inch. `make test` runs these at 96 dots per inch and again in a Wine
// prefix set to 144 (QM_WINE_DPI tells the scaling the rig set up).
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../support/settings_layout_check_win32.h"
#include "program_driver_win32.h"
#include "real_input_win32.h"
#include "settings/settings_ids.h"

namespace qm::test {
namespace {

// A file's version information, read by the system; empty when it has none.
std::vector<char> VersionInfo(const std::wstring& path) {
  DWORD ignored = 0;
  const DWORD size = ::GetFileVersionInfoSizeW(path.c_str(), &ignored);
  std::vector<char> data(size);
  if (size == 0 || !::GetFileVersionInfoW(path.c_str(), 0, size, data.data())) data.clear();
  return data;
}

std::wstring Wide(const std::string& ascii) { return std::wstring(ascii.begin(), ascii.end()); }
// The text with every character outside ASCII shown as "?".
std::string Ascii(std::wstring_view text) {
  std::string out;
  for (wchar_t c : text) out += c < 128 ? static_cast<char>(c) : '?';
  return out;
}

// The fixed part's file version, "major.minor.revision".
std::string FixedVersion(const std::vector<char>& info) {
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT length = 0;
  if (info.empty() || !::VerQueryValueW(info.data(), L"\\", reinterpret_cast<void**>(&fixed), &length) || !fixed)
    return "(none)";
  return std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." + std::to_string(LOWORD(fixed->dwFileVersionMS)) +
         "." + std::to_string(HIWORD(fixed->dwFileVersionLS));
}

// A text value of the string table the translation list names first.
std::string VersionString(const std::vector<char>& info, const wchar_t* name) {
  struct Translation {
    WORD language, codePage;
  };
  Translation* translation = nullptr;
  UINT length = 0;
  if (info.empty() ||
      !::VerQueryValueW(info.data(), L"\\VarFileInfo\\Translation", reinterpret_cast<void**>(&translation),
                        &length) ||
      length < sizeof(Translation))
    return "(no translation)";
  wchar_t key[64];
  ::wsprintfW(key, L"\\StringFileInfo\\%04x%04x\\%s", translation->language, translation->codePage, name);
  wchar_t* value = nullptr;
  if (!::VerQueryValueW(info.data(), key, reinterpret_cast<void**>(&value), &length) || !value) return "(none)";
  return Ascii(value);
}

TEST(ProgramResources, TheVersionResourceNamesAndDescribesTheProgram) {
  const std::vector<char> info = VersionInfo(Wide(BuiltProgramPath()));
  ASSERT_FALSE(info.empty()) << BuiltProgramPath();
  EXPECT_EQ(VersionString(info, L"CompanyName"), "Quillmere");
  EXPECT_EQ(VersionString(info, L"ProductName"), "Quillmere");
  EXPECT_EQ(VersionString(info, L"FileDescription"), "Quillmere - flashes short phrases on the screen");
  EXPECT_EQ(VersionString(info, L"OriginalFilename"), "quillmere.exe");
  // The texts tell the same version as the numbers.
  EXPECT_EQ(VersionString(info, L"FileVersion"), FixedVersion(info));
  EXPECT_EQ(VersionString(info, L"ProductVersion"), FixedVersion(info));
}

// The registered name of a window's class, versioned as the activation
// context that made the window asked ("6.0.2600.2982!Button" for common
// controls 6, plain "Button" without them). Class names live in the
// window system's atom table, which the clipboard's format names read.
std::string ClassAtomName(HWND hwnd) {
  wchar_t name[256] = {};
  ::GetClipboardFormatNameW(static_cast<UINT>(::GetClassLongPtrW(hwnd, GCW_ATOM)), name, 256);
  return Ascii(name);
}

TEST(ProgramResources, TheRunningProgramHasCommonControls6) {
  ProgramFolder folder;
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);

  // The system's controls in the window are the common controls 6 ones,
  // as the manifest asks, not the plain ones a program without it gets.
  for (const auto& [id, kind] : {std::pair{kIdCmdStop, "!Button"}, std::pair{kIdTxtEditCat, "!Edit"}}) {
    const std::string name = ClassAtomName(Control(form, id));
    EXPECT_EQ(name.substr(0, 2), "6.") << name;
    EXPECT_TRUE(name.ends_with(kind)) << name;
  }
}

// A setting of the program's manifest as the system's own reader of
// activation contexts finds it (in the namespace where it belongs).
std::string ManifestSetting(const wchar_t* space, const wchar_t* name) {
  const std::wstring exe = Wide(BuiltProgramPath());
  ACTCTXW request{};
  request.cbSize = sizeof request;
  request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID;
  request.lpSource = exe.c_str();
  request.lpResourceName = MAKEINTRESOURCEW(1);  // the manifest a program is started with
  const HANDLE context = ::CreateActCtxW(&request);
  if (context == INVALID_HANDLE_VALUE) return "(no manifest)";
  using QuerySettings = BOOL(WINAPI*)(DWORD, HANDLE, const wchar_t*, const wchar_t*, wchar_t*, SIZE_T, SIZE_T*);
  const auto query = reinterpret_cast<QuerySettings>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "QueryActCtxSettingsW")));
  wchar_t value[128] = {};
  SIZE_T length = 0;
  const bool found = query && query(0, context, space, name, value, 128, &length);
  ::ReleaseActCtx(context);
  return found ? Ascii(value) : "(none)";
}

TEST(ProgramResources, TheManifestAsksForEachMonitorsScaling) {
  EXPECT_EQ(ManifestSetting(L"http://schemas.microsoft.com/SMI/2005/WindowsSettings", L"dpiAware"), "true/pm");
  EXPECT_EQ(ManifestSetting(L"http://schemas.microsoft.com/SMI/2016/WindowsSettings", L"dpiAwareness"),
            "PerMonitorV2, PerMonitor");
}

TEST(ProgramDpi, TheSettingsWindowStandsWhereTheLayoutPutsItAtTheScreensDpi) {
  const HDC screen = ::GetDC(nullptr);
  const int dpi = ::GetDeviceCaps(screen, LOGPIXELSY);
  ::ReleaseDC(nullptr, screen);
  if (const char* wanted = std::getenv("QM_WINE_DPI")) {
    ASSERT_EQ(dpi, std::atoi(wanted)) << "the rig's scaling";
  }

  ProgramFolder folder;
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);
  // The same rounding as at 96 (each size rounded on its own): a pixel
  // either way.
  ExpectSettingsLayout(form, dpi, 1);
}

}  // namespace
}  // namespace qm::test
