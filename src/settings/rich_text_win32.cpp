#include "settings/rich_text_win32.h"

#include <richedit.h>

#include <cstring>

#include <string>
#include <vector>

namespace qm::win32 {
namespace {

// msftedit.dll from the system folder by its full path.
HMODULE LoadRichEditLibrary() {
  wchar_t folder[MAX_PATH] = {};
  const UINT length = ::GetSystemDirectoryW(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  std::wstring path(folder, length);
  path += L"\\msftedit.dll";
  return ::LoadLibraryW(path.c_str());
}

struct StreamSource {
  std::string_view bytes;
  std::size_t offset = 0;
};

DWORD CALLBACK ReadChunk(DWORD_PTR cookie, LPBYTE buffer, LONG wanted, LONG* given) {
  auto* source = reinterpret_cast<StreamSource*>(cookie);
  const std::size_t left = source->bytes.size() - source->offset;
  const std::size_t n = left < static_cast<std::size_t>(wanted) ? left : static_cast<std::size_t>(wanted);
  std::memcpy(buffer, source->bytes.data() + source->offset, n);
  source->offset += n;
  *given = static_cast<LONG>(n);
  return 0;
}

}  // namespace

RichTextBox::~RichTextBox() {
  if (hwnd_) ::DestroyWindow(hwnd_);
  hwnd_ = nullptr;
  if (library_) ::FreeLibrary(library_);
}

bool RichTextBox::Create(HWND parent, const RECT& bounds, COLORREF background, int id) {
  if (!library_) library_ = LoadRichEditLibrary();
  if (!library_) return false;
  hwnd_ = ::CreateWindowExW(0, MSFTEDIT_CLASS,
                            L"", WS_CHILD | WS_CLIPSIBLINGS | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL,
                            bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr), nullptr);
  if (!hwnd_) return false;
  ::SendMessageW(hwnd_, EM_SETBKGNDCOLOR, 0, static_cast<LPARAM>(background));
  return true;
}

bool RichTextBox::LoadRtf(std::string_view bytes) {
  if (!hwnd_) return false;
  StreamSource source{bytes};
  EDITSTREAM stream{};
  stream.dwCookie = reinterpret_cast<DWORD_PTR>(&source);
  stream.pfnCallback = &ReadChunk;
  const bool rich = bytes.starts_with("{\\rtf");
  ::SendMessageW(hwnd_, EM_STREAMIN, rich ? SF_RTF : SF_TEXT, reinterpret_cast<LPARAM>(&stream));
  ::SendMessageW(hwnd_, EM_SETSEL, 0, 0);
  ::SendMessageW(hwnd_, EM_SCROLLCARET, 0, 0);
  return stream.dwError == 0;
}

std::string RichTextBox::Text() const {
  if (!hwnd_) return {};
  const int length = ::GetWindowTextLengthW(hwnd_);
  std::wstring wide(static_cast<std::size_t>(length) + 1, L'\0');
  const int got = ::GetWindowTextW(hwnd_, wide.data(), length + 1);
  wide.resize(static_cast<std::size_t>(got > 0 ? got : 0));
  if (wide.empty()) return {};
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0,
                                         nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(), size, nullptr,
                        nullptr);
  return text;
}

}  // namespace qm::win32
