// The file services the program needs, and nothing more: whole-file reads,
// whole-file atomic writes, the existence of an ordinary file, the names of
// one folder's files with one extension, copy, delete and folder creation.
//
// Paths are 8-bit strings in the system's ANSI code page, formed the Windows
// way: the program folder followed by a relative part that begins with "\"
// (ProgramPath). Names match without regard to case on every platform, as
// they do on Windows: on a case-sensitive file system an existing file whose
// name differs only in case is the same file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qm {

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // The whole content, or nothing when the file cannot be read (missing,
  // a folder, no permission, larger than kMaxReadBytes).
  virtual std::optional<std::string> ReadAll(const std::string& path) = 0;

  // Replaces the whole content atomically: the bytes go to a temporary file
  // in the same folder, which is flushed and then moved over the target.
  // On failure the target is left exactly as it was.
  virtual bool WriteAll(const std::string& path, std::string_view bytes) = 0;

  // True for an ordinary file; folders, hidden and system files count as
  // not found.
  virtual bool Exists(const std::string& path) = 0;
  // True when anything at all is at the path: any file, hidden or not, or
  // a folder.
  virtual bool Occupied(const std::string& path) { return Exists(path); }

  // The names (with their extension) of the ordinary files in the folder
  // whose extension is the given one, without regard to case; empty when
  // the folder is missing. Order: as the platform enumerates them.
  virtual std::vector<std::string> List(const std::string& folder, std::string_view extension) = 0;

  virtual bool Copy(const std::string& from, const std::string& to) = 0;
  virtual bool Remove(const std::string& path) = 0;
  // Creates the folder (not its parents); true when it exists afterwards.
  virtual bool MakeFolder(const std::string& path) = 0;
};

// Files larger than this are refused by ReadAll: no list of the program's
// comes near it, and reading one whole must not exhaust the memory of a
// 32-bit process.
inline constexpr std::size_t kMaxReadBytes = 64u * 1024u * 1024u;

// The machine's own file system (POSIX natively, Win32 on Windows).
FileSystem& SystemFileSystem();

// The program folder's path followed by a relative part beginning with "\".
inline std::string ProgramPath(std::string_view programFolder, std::string_view relative) {
  std::string path(programFolder);
  path += relative;
  return path;
}

}  // namespace qm
