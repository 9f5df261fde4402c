// The real program as the system sees it: the version resource that names
// and describes it and the per-monitor scaling its manifest asks for; and,
// in one run, its settings window with the common controls 6, laid out at
// the screen's dots per inch, its tabs showing their pages and About the
// program's version. `make test` runs the window's test at 96 dots per inch
// and again in a Wine prefix set to 144 (QM_WINE_DPI tells the scaling the
// rig set up).
#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

#include "real_input_win32.h"
#include "settings/settings_ids.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

// A value of the built program's version resource: a text of the string
// table the translation list names first, or with no name the fixed part's
// file version, "major.minor.revision".
std::string VersionValue(const wchar_t* name = nullptr) {
  const std::string path = BuiltProgramPath();
  DWORD ignored = 0;
  std::vector<char> info(::GetFileVersionInfoSizeA(path.c_str(), &ignored));
  void* value = nullptr;
  UINT length = 0;
  if (info.empty() || !::GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(info.size()), info.data()))
    return "(no version resource)";
  if (!name) {
    if (!::VerQueryValueW(info.data(), L"\\", &value, &length) || !value) return "(none)";
    const auto* fixed = static_cast<VS_FIXEDFILEINFO*>(value);
    return std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
           std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
           std::to_string(HIWORD(fixed->dwFileVersionLS));
  }
  if (!::VerQueryValueW(info.data(), L"\\VarFileInfo\\Translation", &value, &length) || length < 4)
    return "(no translation)";
  wchar_t key[64];
  ::wsprintfW(key, L"\\StringFileInfo\\%04x%04x\\%s", static_cast<WORD*>(value)[0],
              static_cast<WORD*>(value)[1], name);
  if (!::VerQueryValueW(info.data(), key, &value, &length) || !value) return "(none)";
  return Ascii(static_cast<const wchar_t*>(value));
}

TEST(ProgramResources, TheVersionResourceNamesAndDescribesTheProgram) {
  EXPECT_EQ(VersionValue(L"CompanyName"), "Quillmere");
  EXPECT_EQ(VersionValue(L"ProductName"), "Quillmere");
  EXPECT_EQ(VersionValue(L"FileDescription"), "Quillmere - flashes short phrases on the screen");
  EXPECT_EQ(VersionValue(L"OriginalFilename"), "quillmere.exe");
  // The texts tell the same version as the numbers.
  EXPECT_EQ(VersionValue(L"FileVersion"), VersionValue());
  EXPECT_EQ(VersionValue(L"ProductVersion"), VersionValue());
}

// A setting of the program's manifest as the system's own reader of
// activation contexts finds it (in the namespace where it belongs).
std::string ManifestSetting(const wchar_t* space, const wchar_t* name) {
  const std::string exe = BuiltProgramPath();
  const std::wstring wideExe(exe.begin(), exe.end());
  ACTCTXW request{};
  request.cbSize = sizeof request;
  request.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID;
  request.lpSource = wideExe.c_str();
  request.lpResourceName = MAKEINTRESOURCEW(1);  // the manifest a program is started with
  const HANDLE context = ::CreateActCtxW(&request);
  if (context == INVALID_HANDLE_VALUE) return "(no manifest)";
  using QuerySettings =
      BOOL(WINAPI*)(DWORD, HANDLE, const wchar_t*, const wchar_t*, wchar_t*, SIZE_T, SIZE_T*);
  const auto query = reinterpret_cast<QuerySettings>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "QueryActCtxSettingsW")));
  wchar_t value[128] = {};
  SIZE_T length = 0;
  const bool found = query && query(0, context, space, name, value, 128, &length);
  ::ReleaseActCtx(context);
  return found ? Ascii(value) : "(none)";
}

TEST(ProgramResources, TheManifestAsksForEachMonitorsScaling) {
  EXPECT_EQ(ManifestSetting(L"http://schemas.microsoft.com/SMI/2005/WindowsSettings", L"dpiAware"),
            "true/pm");
  EXPECT_EQ(ManifestSetting(L"http://schemas.microsoft.com/SMI/2016/WindowsSettings", L"dpiAwareness"),
            "PerMonitorV2, PerMonitor");
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

TEST(ProgramDpi, TheSettingsWindowHasCommonControls6StandsWhereTheLayoutPutsItAndAboutTellsTheVersion) {
  const HDC screen = ::GetDC(nullptr);
  const int dpiX = ::GetDeviceCaps(screen, LOGPIXELSX), dpi = ::GetDeviceCaps(screen, LOGPIXELSY);
  ::ReleaseDC(nullptr, screen);
  if (const char* wanted = std::getenv("QM_WINE_DPI")) {
    ASSERT_EQ(dpi, std::atoi(wanted)) << "the rig's scaling";
  }

  ProgramFolder folder;
  folder.Put("\\About.rtf", "{\\rtf1\\ansi All about it\\par}");
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
  // The same rounding as at 96 (each size rounded on its own): a pixel
  // either way.
  ExpectSettingsLayout(form, dpi, 1);

  // A tab of the tab bar by its number (1 Messages, 2 Help, 3 About),
  // clicked in the middle: the tabs are 1050 twips wide and 525 high.
  const auto clickTab = [&](int n) {
    POINT at{::MulDiv(1050 * (n - 1) + 525, dpiX, 1440), ::MulDiv(262, dpi, 1440)};
    ::ClientToScreen(form, &at);
    ClickScreen(at);
  };
  // (What each page shows is the shell tests' part: here the real clicks
  // find the tabs, and About tells the version the resource holds.)
  const HWND rtf = Control(form, kIdRtfHelp), version = Control(form, kIdLblVersion);
  const HWND categories = Control(form, kIdLstMessageCategories);
  clickTab(3);
  EXPECT_TRUE(WaitFor([&] { return Text(rtf).find("All about it") != std::string::npos; }, 2s));
  EXPECT_FALSE(::IsWindowVisible(categories));
  EXPECT_EQ(Text(version), "Version " + VersionValue());
  clickTab(1);
  EXPECT_TRUE(WaitFor([&] { return ::IsWindowVisible(categories) != FALSE; }, 2s));
  EXPECT_FALSE(::IsWindowVisible(rtf));
  EXPECT_FALSE(::IsWindowVisible(version));
}

}  // namespace
}  // namespace qm::test
