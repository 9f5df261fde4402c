// The file system on POSIX machines (the native build of the core), made to
// behave like Windows' where the program relies on it: "\" separates path
// parts, and names match without regard to case. Paths are UTF-8 and go to
// the system as they are.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/ansi_text.h"
#include "platform/file_system.h"

namespace qm {
namespace {

std::string ToPosix(std::string path) {
  for (char& c : path)
    if (c == '\\') c = '/';
  return path;
}

bool LstatOk(const std::string& p, struct stat& st) {
  return ::lstat(p.c_str(), &st) == 0;
}

// The small letter of a capital, for the alphabets with case that names are
// likely written in (Latin, Greek, Cyrillic, Armenian, full-width Latin);
// other characters are their own. Windows folds with a larger table; these
// are the letters a user would notice.
char32_t LowerCodePoint(char32_t c) {
  if ((c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) return c + 0x20;
  if (c >= 0x100 && c <= 0x17F) {
    if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149 || c == 0x17F) return c;
    if (c == 0x178) return 0xFF;
    // Pairs of capital and small: even capitals, except between 0x139 and
    // 0x148 and from 0x179 on, where the capitals are odd.
    const bool oddCapitals = (c >= 0x139 && c <= 0x148) || c >= 0x179;
    return (c % 2 == 1) == oddCapitals ? c + 1 : c;
  }
  if ((c >= 0x391 && c <= 0x3AB && c != 0x3A2) || (c >= 0x410 && c <= 0x42F)) return c + 0x20;
  if (c == 0x386) return 0x3AC;
  if (c >= 0x388 && c <= 0x38A) return c + 37;
  if (c == 0x38C) return 0x3CC;
  if (c == 0x38E || c == 0x38F) return c + 63;
  if (c >= 0x400 && c <= 0x40F) return c + 0x50;
  if ((c >= 0x460 && c <= 0x481) || (c >= 0x48A && c <= 0x4BF) || (c >= 0x4D0 && c <= 0x52F))
    return c % 2 == 0 ? c + 1 : c;
  if (c >= 0x531 && c <= 0x556) return c + 0x30;
  if (c >= 0xFF21 && c <= 0xFF3A) return c + 0x20;
  return c;
}

// Two names equal without regard to case. Bytes that are not UTF-8 match
// only themselves (or, for ASCII letters, their other case).
bool NamesMatch(std::string_view a, std::string_view b) {
  std::size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    auto x = NextUtf8CodePoint(a, i);
    auto y = NextUtf8CodePoint(b, j);
    // A stray byte stands for itself, beyond every code point.
    if (!x) x = 0x110000 + static_cast<unsigned char>(a[i++]);
    if (!y) y = 0x110000 + static_cast<unsigned char>(b[j++]);
    if (LowerCodePoint(*x) != LowerCodePoint(*y)) return false;
  }
  return i == a.size() && j == b.size();
}

// The existing entry of `dir` whose name equals `name` without regard to
// case, preferring the exact name; `name` itself when there is none.
std::string MatchInFolder(const std::string& dir, const std::string& name) {
  struct stat st;
  if (LstatOk(dir + "/" + name, st)) return name;
  DIR* d = ::opendir(dir.c_str());
  if (!d) return name;
  std::string found = name;
  while (dirent* e = ::readdir(d)) {
    if (NamesMatch(e->d_name, name)) {
      found = e->d_name;
      break;
    }
  }
  ::closedir(d);
  return found;
}

// The path as the file system spells it, each part matched without regard
// to case; parts that do not exist are kept as given.
std::string Resolve(const std::string& windowsPath) {
  const std::string path = ToPosix(windowsPath);
  struct stat st;
  if (LstatOk(path, st)) return path;
  std::string out = path.starts_with('/') ? "/" : "";
  std::size_t pos = out.size();
  while (pos < path.size()) {
    std::size_t next = path.find('/', pos);
    if (next == std::string::npos) next = path.size();
    std::string part = path.substr(pos, next - pos);
    if (!part.empty()) {
      if (part != "." && part != "..") part = MatchInFolder(out.empty() ? "." : out, part);
      if (!out.empty() && out.back() != '/') out += '/';
      out += part;
    }
    pos = next + 1;
  }
  return out;
}

bool IsRegular(const std::string& posixPath) {
  struct stat st;
  return ::stat(posixPath.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::string FolderOf(const std::string& posixPath) {
  const auto slash = posixPath.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : posixPath.substr(0, slash);
}

// The steps of a write. Paths are resolved at each step, so a folder named
// in another case is found.
class PosixWriteSteps final : public WriteSteps {
 public:
  Target Inspect(const std::string& path) override {
    struct stat st;
    if (::lstat(Resolve(path).c_str(), &st) != 0) return Target::Missing;
    // Like Windows: a folder or a read-only file is not replaced.
    return S_ISREG(st.st_mode) && (st.st_mode & 0222) != 0 ? Target::Replaceable : Target::Refused;
  }

  Created Create(const std::string& path, Handle& file) override {
    const int fd = ::open(Resolve(path).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) return errno == EEXIST ? Created::NameTaken : Created::Failed;
    file = fd;
    return Created::Made;
  }

  std::size_t Write(Handle file, std::string_view bytes) override {
    for (;;) {
      const ssize_t n = ::write(static_cast<int>(file), bytes.data(), bytes.size());
      if (n >= 0) return static_cast<std::size_t>(n);
      if (errno != EINTR) return 0;
    }
  }

  bool Flush(Handle file) override { return ::fsync(static_cast<int>(file)) == 0; }
  bool Close(Handle file) override { return ::close(static_cast<int>(file)) == 0; }

  bool Replace(const std::string& file, const std::string& target) override {
    const std::string from = Resolve(file);
    const std::string to = Resolve(target);
    // The replaced file's permission bits stay as the user set them.
    struct stat st;
    if (::lstat(to.c_str(), &st) == 0 && ::chmod(from.c_str(), st.st_mode & 07777) != 0) return false;
    if (::rename(from.c_str(), to.c_str()) != 0) return false;
    const int dirfd = ::open(FolderOf(to).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirfd >= 0) {
      ::fsync(dirfd);
      ::close(dirfd);
    }
    return true;
  }

  bool Delete(const std::string& path) override { return ::unlink(Resolve(path).c_str()) == 0; }
};

class PosixFileSystem final : public FileSystem {
 public:
  std::optional<std::string> ReadAll(const std::string& path) override {
    const std::string p = Resolve(path);
    const int fd = ::open(p.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) ||
        static_cast<std::size_t>(st.st_size) > kMaxReadBytes) {
      ::close(fd);
      return std::nullopt;
    }
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(st.st_size));
    char buf[65536];
    for (;;) {
      const ssize_t n = ::read(fd, buf, sizeof buf);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0 || bytes.size() + static_cast<std::size_t>(n) > kMaxReadBytes) {
        ::close(fd);
        return std::nullopt;
      }
      if (n == 0) break;
      bytes.append(buf, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return bytes;
  }

  bool WriteAll(const std::string& path, std::string_view bytes) override {
    return WriteAtomically(SystemWriteSteps(), path, bytes);
  }

  bool Occupied(const std::string& path) override {
    struct stat st;
    return LstatOk(Resolve(path), st);
  }

  void RemoveTemporaryFiles(const std::string& folder) override {
    const std::string dir = Resolve(folder);
    DIR* d = ::opendir(dir.c_str());
    if (!d) return;
    std::vector<std::string> leftovers;
    while (dirent* e = ::readdir(d)) {
      const auto owner = TemporaryFileOwner(e->d_name);
      if (!owner || !IsRegular(dir + "/" + e->d_name)) continue;
      // A copy that still runs may be writing it. (Another process under
      // that number since is taken for the writer; its file stays.)
      const bool plausible = *owner > 0 && *owner <= 0x7FFFFFFFul;
      const auto pid = static_cast<pid_t>(*owner);
      const bool otherRuns = plausible && pid != ::getpid() && (::kill(pid, 0) == 0 || errno == EPERM);
      if (!otherRuns) leftovers.push_back(dir + "/" + e->d_name);
    }
    ::closedir(d);
    for (const std::string& leftover : leftovers) ::unlink(leftover.c_str());
  }

  bool Exists(const std::string& path) override { return IsRegular(Resolve(path)); }

  std::vector<std::string> List(const std::string& folder, std::string_view extension) override {
    std::vector<std::string> names;
    const std::string dir = Resolve(folder);
    DIR* d = ::opendir(dir.c_str());
    if (!d) return names;
    const std::string suffix = "." + std::string(extension);
    while (dirent* e = ::readdir(d)) {
      const std::string name = e->d_name;
      if (name.size() < suffix.size() || !EndsWithNoCase(name, suffix)) continue;
      if (IsRegular(dir + "/" + name)) names.push_back(name);
    }
    ::closedir(d);
    return names;
  }

  bool Copy(const std::string& from, const std::string& to) override {
    const auto bytes = ReadAll(from);
    return bytes && WriteAll(to, *bytes);
  }

  bool Remove(const std::string& path) override {
    const std::string p = Resolve(path);
    if (!IsRegular(p)) return false;
    return ::unlink(p.c_str()) == 0;
  }

  bool MakeFolder(const std::string& path) override {
    const std::string p = Resolve(path);
    if (::mkdir(p.c_str(), 0755) == 0) return true;
    struct stat st;
    return ::stat(p.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
  }
};

}  // namespace

unsigned long CurrentProcessId() { return static_cast<unsigned long>(::getpid()); }

FileSystem& SystemFileSystem() {
  static PosixFileSystem fs;
  return fs;
}

WriteSteps& SystemWriteSteps() {
  static PosixWriteSteps steps;
  return steps;
}

}  // namespace qm
