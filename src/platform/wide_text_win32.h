// The edge between the program's UTF-8 strings and Windows' UTF-16 calls:
// every path and every text shown by a wide (*W) call passes here once.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace qm::win32 {

// Nothing when the text is not valid UTF-8: a path that no file can have.
inline std::optional<std::wstring> WidenStrict(std::string_view utf8) {
  if (utf8.empty()) return std::wstring();
  const int size = static_cast<int>(utf8.size());
  const int n = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), size, nullptr, 0);
  if (n <= 0) return std::nullopt;
  std::wstring wide(static_cast<std::size_t>(n), L'\0');
  ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), size, wide.data(), n);
  return wide;
}

// For texts shown to the user: bytes that are not UTF-8 become U+FFFD
// rather than losing the whole text.
inline std::wstring Widen(std::string_view utf8) {
  if (utf8.empty()) return std::wstring();
  const int size = static_cast<int>(utf8.size());
  const int n = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
  if (n <= 0) return std::wstring();
  std::wstring wide(static_cast<std::size_t>(n), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), n);
  return wide;
}

// Nothing when the text holds a lone surrogate (a name the file system
// allows but UTF-8 cannot spell).
inline std::optional<std::string> NarrowStrict(std::wstring_view wide) {
  if (wide.empty()) return std::string();
  const int size = static_cast<int>(wide.size());
  const int n =
      ::WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, wide.data(), size, nullptr, 0, nullptr, nullptr);
  if (n <= 0) return std::nullopt;
  std::string utf8(static_cast<std::size_t>(n), '\0');
  ::WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, wide.data(), size, utf8.data(), n, nullptr, nullptr);
  return utf8;
}

}  // namespace qm::win32
