// The file system on Windows. Paths arrive in UTF-8 and are converted to
// UTF-16 here, once, for the wide calls; nothing goes through the ANSI code
// page, so a program folder named in any script works. Contents are bytes.
#include <windows.h>

#include <algorithm>
#include <string>
#include <thread>

#include "platform/ansi_text.h"
#include "platform/file_system.h"
#include "platform/handle_win32.h"
#include "platform/wide_text_win32.h"

namespace qm {
namespace {

using win32::FileHandle;
using win32::FindHandle;
using win32::KernelHandle;
using win32::NarrowStrict;
using win32::WidenStrict;

// Paths from this length on take the long form: CreateDirectory refuses
// longer ones without it (room for an 8.3 name), other calls MAX_PATH.
constexpr std::size_t kLongPath = MAX_PATH - 12;

// The wide path for the system's calls. A long one is made absolute and
// normalised (backslashes, no "." or ".." parts) and given the "\\?\"
// prefix ("\\?\UNC\" for a share), which lifts the MAX_PATH limit.
std::optional<std::wstring> NativePath(std::string_view utf8) {
  std::optional<std::wstring> wide = WidenStrict(utf8);
  if (!wide || wide->size() < kLongPath || wide->starts_with(L"\\\\?\\")) return wide;
  const DWORD size = ::GetFullPathNameW(wide->c_str(), 0, nullptr, nullptr);
  if (size == 0) return wide;
  std::wstring full(size, L'\0');
  const DWORD length = ::GetFullPathNameW(wide->c_str(), size, full.data(), nullptr);
  if (length == 0 || length >= size) return wide;
  full.resize(length);
  if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC\\" + full.substr(2);
  return L"\\\\?\\" + full;
}

bool IsOrdinaryFile(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM)) == 0;
}

// Another program has the file open for a moment, or it is being deleted
// (a file whose deletion is pending answers "access denied").
bool IsBusy(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED;
}

// Runs attempt until it succeeds or fails for another reason than a busy
// file, pausing kBusyPause between tries; the last error stays set.
template <typename Attempt, typename Busy>
bool RetryWhileBusy(Attempt attempt, Busy busy) {
  for (int tries = 0;; ++tries) {
    if (attempt()) return true;
    const DWORD error = ::GetLastError();
    if (tries >= kBusyRetries || !busy(error)) {
      ::SetLastError(error);
      return false;
    }
    std::this_thread::sleep_for(kBusyPause);
  }
}

DWORD Attributes(const std::wstring& path) {
  return ::GetFileAttributesW(path.c_str());
}

bool MoveInto(const std::wstring& temp, const std::wstring& target, bool wait) {
  return RetryWhileBusy(
      [&] {
        return ::MoveFileExW(temp.c_str(), target.c_str(),
                             MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
      },
      [&](DWORD error) { return wait && IsBusy(error); });
}

// The path with its last part spelled as the file system spells it, so
// that replacing "CALM.lst" keeps the name "Calm.lst".
std::wstring OnDiskSpelling(const std::wstring& path) {
  const auto sep = path.find_last_of(L"\\/");
  if (path.find_first_of(L"*?", sep == std::wstring::npos ? 0 : sep) != std::wstring::npos) return path;
  WIN32_FIND_DATAW data;
  const FindHandle found(::FindFirstFileW(path.c_str(), &data));
  if (!found) return path;
  return sep == std::wstring::npos ? std::wstring(data.cFileName) : path.substr(0, sep + 1) + data.cFileName;
}

// Nobody holds the file open in a way that stops it being replaced.
bool FreeToReplace(const std::wstring& path) {
  const FileHandle probe(::CreateFileW(path.c_str(), DELETE,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return probe.Valid();
}

// Puts the temporary file in the target's place with one rename that
// replaces it, so the target always holds its old or its new content,
// whenever the program is stopped. (ReplaceFile is not used: it may be done
// in several steps, and some implementations delete the target before the
// new file is moved in.) The temporary file is given the target's marks
// first, so a hidden file stays hidden. A target held open by another
// program is waited for.
bool ReplaceWith(const std::wstring& temp, const std::wstring& path, DWORD targetAttributes, bool wait) {
  constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                          FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  if (targetAttributes & kKept) ::SetFileAttributesW(temp.c_str(), targetAttributes & kKept);
  const std::wstring target = OnDiskSpelling(path);
  const bool free = RetryWhileBusy(
      [&] { return FreeToReplace(target) || ::GetLastError() == ERROR_FILE_NOT_FOUND; },
      [&](DWORD error) { return wait && IsBusy(error); });
  if (!free) return false;
  return MoveInto(temp, target, wait);
}

// The steps of a write; `wait` says whether a file another program holds
// open is waited for.
class Win32WriteSteps final : public WriteSteps {
 public:
  explicit Win32WriteSteps(bool wait) : wait_(wait) {}

  Target Inspect(const std::string& path) override {
    const auto wide = NativePath(path);
    if (!wide) return Target::Refused;
    const DWORD attributes = Attributes(*wide);
    if (attributes == INVALID_FILE_ATTRIBUTES) return Target::Missing;
    // A folder is not replaced, and neither is a file the user marked
    // read-only (not every rename refuses it).
    return attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY) ? Target::Refused
                                                                              : Target::Replaceable;
  }

  Created Create(const std::string& path, Handle& file) override {
    const auto name = NativePath(path);
    if (!name) return Created::Failed;
    HANDLE made = INVALID_HANDLE_VALUE;
    const bool ok = RetryWhileBusy(
        [&] {
          made = ::CreateFileW(name->c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                               nullptr);
          return made != INVALID_HANDLE_VALUE;
        },
        // A taken name that is being deleted: not worth waiting for.
        [&](DWORD error) { return wait_ && error != ERROR_ACCESS_DENIED && IsBusy(error); });
    if (ok) {
      file = reinterpret_cast<Handle>(made);
      return Created::Made;
    }
    const DWORD error = ::GetLastError();
    const bool taken = error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS ||
                       (error == ERROR_ACCESS_DENIED && Attributes(*name) != INVALID_FILE_ATTRIBUTES);
    // A folder that refuses us: another name will not help.
    return taken ? Created::NameTaken : Created::Failed;
  }

  std::size_t Write(Handle file, std::string_view bytes) override {
    // Pieces below 4 GiB; one WriteFile counts in a DWORD.
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 30));
    DWORD wrote = 0;
    if (!::WriteFile(reinterpret_cast<HANDLE>(file), bytes.data(), piece, &wrote, nullptr)) return 0;
    return wrote;
  }

  bool Flush(Handle file) override { return ::FlushFileBuffers(reinterpret_cast<HANDLE>(file)) != 0; }
  bool Close(Handle file) override { return ::CloseHandle(reinterpret_cast<HANDLE>(file)) != 0; }

  bool Replace(const std::string& file, const std::string& target) override {
    const auto from = NativePath(file);
    const auto to = NativePath(target);
    if (!from || !to) return false;
    const DWORD old = Attributes(*to);
    return old != INVALID_FILE_ATTRIBUTES ? ReplaceWith(*from, *to, old, wait_) : MoveInto(*from, *to, wait_);
  }

  bool Delete(const std::string& path) override {
    // The caller's failure is what matters: its error stays set.
    const DWORD error = ::GetLastError();
    const auto wide = NativePath(path);
    const bool deleted = wide && ::DeleteFileW(wide->c_str()) != 0;
    ::SetLastError(error);
    return deleted;
  }

 private:
  bool wait_;
};

Win32WriteSteps& QuickWriteSteps() {
  static Win32WriteSteps steps(false);
  return steps;
}

// A process of this machine that is still running.
bool ProcessRuns(unsigned long pid) {
  if (pid == ::GetCurrentProcessId()) return true;
  const KernelHandle process(
      ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(pid)));
  if (!process) return ::GetLastError() == ERROR_ACCESS_DENIED;  // another user's
  DWORD code = 0;
  return ::GetExitCodeProcess(process.Get(), &code) && code == STILL_ACTIVE;
}

class Win32FileSystem final : public FileSystem {
 public:
  std::optional<std::string> ReadAll(const std::string& path) override {
    const auto wide = NativePath(path);
    if (!wide) return std::nullopt;
    FileHandle file;
    RetryWhileBusy(
        [&] {
          file.Reset(::CreateFileW(
              wide->c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
          return file.Valid();
        },
        [](DWORD error) { return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION; });
    if (!file) return std::nullopt;
    LARGE_INTEGER size;
    if (!::GetFileSizeEx(file.Get(), &size) || size.QuadPart < 0 ||
        static_cast<unsigned long long>(size.QuadPart) > kMaxReadBytes)
      return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
      DWORD got = 0;
      if (!::ReadFile(file.Get(), bytes.data() + done, static_cast<DWORD>(bytes.size() - done), &got,
                      nullptr))
        return std::nullopt;
      if (got == 0) break;  // the file shrank while it was read
      done += got;
    }
    bytes.resize(done);
    return bytes;
  }

  bool WriteAll(const std::string& path, std::string_view bytes) override {
    return WriteAtomically(SystemWriteSteps(), path, bytes);
  }

  bool TryWriteAll(const std::string& path, std::string_view bytes) override {
    return WriteAtomically(QuickWriteSteps(), path, bytes);
  }

  bool Exists(const std::string& path) override {
    const auto wide = NativePath(path);
    return wide && IsOrdinaryFile(Attributes(*wide));
  }

  bool Occupied(const std::string& path) override {
    const auto wide = NativePath(path);
    if (!wide) return false;
    if (Attributes(*wide) != INVALID_FILE_ATTRIBUTES) return true;
    // Only a clear "not there" counts as free: a file the system will not
    // describe (in use, no permission) is still something.
    const DWORD error = ::GetLastError();
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND && error != ERROR_INVALID_NAME &&
           error != ERROR_BAD_PATHNAME && error != ERROR_DIRECTORY;
  }

  std::vector<std::string> List(const std::string& folder, std::string_view extension) override {
    std::vector<std::string> names;
    std::string suffix = ".";
    suffix += extension;
    std::string pattern = "*";
    pattern += suffix;
    ForEach(folder, pattern, [&](const WIN32_FIND_DATAW& data, const std::string& name) {
      // The pattern also matches longer extensions through 8.3 short names.
      if (IsOrdinaryFile(data.dwFileAttributes) && EndsWithNoCase(name, suffix)) names.push_back(name);
    });
    return names;
  }

  bool Copy(const std::string& from, const std::string& to) override {
    const auto bytes = ReadAll(from);
    return bytes && WriteAll(to, *bytes);
  }

  bool Remove(const std::string& path) override {
    const auto wide = NativePath(path);
    return wide && Exists(path) && RetryWhileBusy([&] { return ::DeleteFileW(wide->c_str()) != 0; }, IsBusy);
  }

  bool MakeFolder(const std::string& path) override {
    const auto wide = NativePath(path);
    if (!wide) return false;
    if (::CreateDirectoryW(wide->c_str(), nullptr)) return true;
    const DWORD a = Attributes(*wide);
    return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
  }

  void RemoveTemporaryFiles(const std::string& folder) override {
    std::vector<std::wstring> leftovers;
    ForEach(folder, "~qm*.tmp", [&](const WIN32_FIND_DATAW& data, const std::string& name) {
      if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) return;
      const auto owner = TemporaryFileOwner(name);
      if (owner && (*owner == ::GetCurrentProcessId() || !ProcessRuns(*owner)))
        leftovers.push_back(*NativePath(folder + "\\" + name));
    });
    for (const std::wstring& leftover : leftovers) {
      // One of ours may have been marked read-only since; it is ours still.
      ::SetFileAttributesW(leftover.c_str(), FILE_ATTRIBUTE_NORMAL);
      ::DeleteFileW(leftover.c_str());
    }
  }

 private:
  // Calls visit with every entry of the folder matching the pattern whose
  // name UTF-8 can spell.
  template <typename Visit>
  static void ForEach(const std::string& folder, const std::string& pattern, Visit visit) {
    const auto wide = NativePath(folder + "\\" + pattern);
    if (!wide) return;
    WIN32_FIND_DATAW data;
    const FindHandle find(::FindFirstFileW(wide->c_str(), &data));
    if (!find) return;
    do {
      if (const auto name = NarrowStrict(data.cFileName)) visit(data, *name);
    } while (::FindNextFileW(find.Get(), &data));
  }
};

}  // namespace

unsigned long CurrentProcessId() { return ::GetCurrentProcessId(); }

FileSystem& SystemFileSystem() {
  static Win32FileSystem fs;
  return fs;
}

WriteSteps& SystemWriteSteps() {
  static Win32WriteSteps steps(true);
  return steps;
}

}  // namespace qm
