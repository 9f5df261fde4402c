// The file system on Windows, through the ANSI entry points: the program's
// paths and names are bytes of the system's ANSI code page.
#include <windows.h>

#include <string>

#include "platform/ansi_text.h"
#include "platform/file_system.h"

namespace qm {
namespace {

class Handle {
 public:
  explicit Handle(HANDLE h) : h_(h) {}
  ~Handle() { Close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  bool Valid() const { return h_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return h_; }
  bool Close() {
    if (!Valid()) return true;
    const bool ok = ::CloseHandle(h_) != 0;
    h_ = INVALID_HANDLE_VALUE;
    return ok;
  }

 private:
  HANDLE h_;
};

std::string FolderOf(const std::string& path) {
  const auto sep = path.find_last_of("\\/");
  return sep == std::string::npos ? std::string(".") : path.substr(0, sep);
}

bool IsOrdinaryFile(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) == 0;
}

class Win32FileSystem final : public FileSystem {
 public:
  std::optional<std::string> ReadAll(const std::string& path) override {
    Handle file(::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file.Valid()) return std::nullopt;
    LARGE_INTEGER size;
    if (!::GetFileSizeEx(file.Get(), &size) || size.QuadPart < 0 ||
        static_cast<unsigned long long>(size.QuadPart) > kMaxReadBytes)
      return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
      DWORD got = 0;
      if (!::ReadFile(file.Get(), bytes.data() + done, static_cast<DWORD>(bytes.size() - done), &got, nullptr))
        return std::nullopt;
      if (got == 0) break;  // the file shrank while it was read
      done += got;
    }
    bytes.resize(done);
    return bytes;
  }

  bool WriteAll(const std::string& path, std::string_view bytes) override {
    // A read-only file or a folder is not replaced (the move below would
    // refuse it on Windows; not every implementation of it does).
    const DWORD old = ::GetFileAttributesA(path.c_str());
    if (old != INVALID_FILE_ATTRIBUTES && (old & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY))) return false;
    static LONG counter = 0;
    const std::string temp = FolderOf(path) + "\\~qm" + std::to_string(::GetCurrentProcessId()) + "-" +
                             std::to_string(::InterlockedIncrement(&counter)) + ".tmp";
    {
      Handle file(::CreateFileA(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                                nullptr));
      if (!file.Valid()) return false;
      bool ok = true;
      std::size_t done = 0;
      while (ok && done < bytes.size()) {
        DWORD wrote = 0;
        ok = ::WriteFile(file.Get(), bytes.data() + done, static_cast<DWORD>(bytes.size() - done), &wrote,
                         nullptr) != 0 &&
             wrote > 0;
        done += wrote;
      }
      ok = ok && ::FlushFileBuffers(file.Get()) != 0;
      ok = file.Close() && ok;
      if (!ok) {
        ::DeleteFileA(temp.c_str());
        return false;
      }
    }
    if (!::MoveFileExA(temp.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
      ::DeleteFileA(temp.c_str());
      return false;
    }
    return true;
  }

  bool Exists(const std::string& path) override { return IsOrdinaryFile(::GetFileAttributesA(path.c_str())); }

  std::vector<std::string> List(const std::string& folder, std::string_view extension) override {
    std::vector<std::string> names;
    const std::string suffix = "." + std::string(extension);
    WIN32_FIND_DATAA data;
    HANDLE find = ::FindFirstFileA((folder + "\\*" + suffix).c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return names;
    do {
      // The pattern also matches longer extensions through 8.3 short names.
      const std::string name = data.cFileName;
      if (IsOrdinaryFile(data.dwFileAttributes) && EndsWithNoCase(name, suffix)) names.push_back(name);
    } while (::FindNextFileA(find, &data));
    ::FindClose(find);
    return names;
  }

  bool Copy(const std::string& from, const std::string& to) override {
    const auto bytes = ReadAll(from);
    return bytes && WriteAll(to, *bytes);
  }

  bool Remove(const std::string& path) override {
    return Exists(path) && ::DeleteFileA(path.c_str()) != 0;
  }

  bool MakeFolder(const std::string& path) override {
    if (::CreateDirectoryA(path.c_str(), nullptr)) return true;
    const DWORD a = ::GetFileAttributesA(path.c_str());
    return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
  }
};

}  // namespace

FileSystem& SystemFileSystem() {
  static Win32FileSystem fs;
  return fs;
}

}  // namespace qm
