// The file services the program needs, and nothing more: whole-file reads,
// whole-file atomic writes, the existence of an ordinary file, the names of
// one folder's files with one extension, copy, delete and folder creation.
//
// Paths are UTF-8, so a program folder named in any script works; they are
// formed the Windows way: the program folder followed by a relative part
// that begins with "\" (ProgramPath). The Windows implementation converts
// them to UTF-16 at its edge and uses only the wide calls; the POSIX one
// passes the bytes on. A category name, which is Windows-1252 like every
// list text, goes through AnsiToUtf8 (ansi_text.h) before it becomes part
// of a path, and a listed file name through Utf8ToAnsi before it becomes a
// list text. File contents are bytes, never converted.
//
// Names match without regard to case on every platform, as they do on
// Windows: on a case-sensitive file system an existing file whose name
// differs only in case is the same file.
//
// A file that another program holds open for a moment (a virus scanner, a
// backup or indexing service, an editor saving) makes Windows refuse to
// open, replace or delete it. Reads, writes and deletions try again every
// kBusyPause, kBusyRetries times, before they report the failure.
#pragma once

#include <chrono>
#include <cstdint>
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
  // in the same folder ("~qm<process id>-<n>.tmp", another n when a name is
  // taken), which is flushed and then moved over the target. An existing
  // target keeps its attributes (hidden, system; on POSIX its permission
  // bits). A read-only target or a folder is refused. On failure the target
  // is left exactly as it was and the temporary file removed.
  virtual bool WriteAll(const std::string& path, std::string_view bytes) = 0;
  // WriteAll in one try: a file another program holds open is not waited
  // for. For callers that try again themselves. (Implementations that never
  // wait keep this default.)
  virtual bool TryWriteAll(const std::string& path, std::string_view bytes) { return WriteAll(path, bytes); }

  // True for an ordinary file; folders, hidden and system files count as
  // not found.
  virtual bool Exists(const std::string& path) = 0;
  // True when anything at all is at the path: an ordinary, hidden or system
  // file, or a folder. A new file is made only where nothing is, so that a
  // hidden file is never replaced by an empty one. (Implementations that
  // cannot see more than Exists does keep this default.)
  virtual bool Occupied(const std::string& path) { return Exists(path); }

  // Deletes the temporary files that writes of an earlier run of the
  // program left in the folder (one that ended during a write), and nothing
  // else: only names of the form above, not those of a copy that is still
  // running. Call it while no write is under way. (Test doubles may keep
  // this default, which does nothing.)
  virtual void RemoveTemporaryFiles(const std::string& folder) { static_cast<void>(folder); }

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

// A busy file is tried again this many times, this long apart: about one
// second in all before a failure is reported.
inline constexpr int kBusyRetries = 20;
inline constexpr std::chrono::milliseconds kBusyPause{50};
// Temporary names tried by one write before it gives up.
inline constexpr int kTemporaryNameTries = 100;

// The name of a write's temporary file: "~qm<process id>-<n>.tmp".
std::string TemporaryFileName(unsigned long processId, int n);
// The running program's process number, as its temporary names carry it.
unsigned long CurrentProcessId();
// Whether a file name has that form (case ignored), and whose it is.
std::optional<unsigned long> TemporaryFileOwner(std::string_view name);

// The machine's own file system (POSIX natively, Win32 on Windows).
FileSystem& SystemFileSystem();

// The raw steps of one atomic write, as the machine offers them. Each
// implementation of the file system provides them and WriteAtomically puts
// them together, so that the sequence is the same everywhere and any step
// can be made to fail in a test. Paths are UTF-8, as above.
class WriteSteps {
 public:
  using Handle = std::intptr_t;
  enum class Target {
    Missing,      // nothing at the path
    Replaceable,  // an ordinary file that may be replaced
    Refused,      // a folder or a read-only file: never replaced
  };
  enum class Created { Made, NameTaken, Failed };

  virtual ~WriteSteps() = default;
  virtual Target Inspect(const std::string& path) = 0;
  // Creates a new, empty file for writing, only where nothing is.
  virtual Created Create(const std::string& path, Handle& file) = 0;
  // Writes the bytes or some of them: how many, 0 on failure.
  virtual std::size_t Write(Handle file, std::string_view bytes) = 0;
  // Puts what was written on the disk.
  virtual bool Flush(Handle file) = 0;
  virtual bool Close(Handle file) = 0;
  // Moves the file over the target with one rename, so the target holds
  // its old or its new content at every moment. An existing target's marks
  // (hidden, system; permission bits) are given to the file first.
  virtual bool Replace(const std::string& file, const std::string& target) = 0;
  virtual bool Delete(const std::string& path) = 0;
};

// The machine's own steps, waiting about a second for a file another
// program holds open (kBusyRetries, kBusyPause).
WriteSteps& SystemWriteSteps();

// Replaces the file's whole content: a temporary file beside it
// (TemporaryFileName, another number while a name is taken), the bytes
// written, flushed and closed, then one Replace. A refused target is not
// touched; on any failure the temporary file is deleted and the target is
// as it was.
bool WriteAtomically(WriteSteps& steps, const std::string& path, std::string_view bytes);

// The program folder's path followed by a relative part beginning with "\".
inline std::string ProgramPath(std::string_view programFolder, std::string_view relative) {
  std::string path(programFolder);
  path += relative;
  return path;
}

}  // namespace qm
