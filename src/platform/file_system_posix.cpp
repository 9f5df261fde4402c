// The file system on POSIX machines (the native build of the core), made to
// behave like Windows' where the program relies on it: "\" separates path
// parts, and names match without regard to case.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
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

bool LstatOk(const std::string& p, struct stat& st) { return ::lstat(p.c_str(), &st) == 0; }

// The existing entry of `dir` whose name equals `name` without regard to
// case, preferring the exact name; `name` itself when there is none.
std::string MatchInFolder(const std::string& dir, const std::string& name) {
  struct stat st;
  if (LstatOk(dir + "/" + name, st)) return name;
  DIR* d = ::opendir(dir.c_str());
  if (!d) return name;
  std::string found = name;
  while (dirent* e = ::readdir(d)) {
    if (EqualsNoCase(e->d_name, name)) {
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

bool WriteFully(int fd, std::string_view bytes) {
  const char* p = bytes.data();
  std::size_t left = bytes.size();
  while (left > 0) {
    const ssize_t n = ::write(fd, p, left);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    p += n;
    left -= static_cast<std::size_t>(n);
  }
  return true;
}

std::string FolderOf(const std::string& posixPath) {
  const auto slash = posixPath.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : posixPath.substr(0, slash);
}

class PosixFileSystem final : public FileSystem {
 public:
  std::optional<std::string> ReadAll(const std::string& path) override {
    const std::string p = Resolve(path);
    const int fd = ::open(p.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || static_cast<std::size_t>(st.st_size) > kMaxReadBytes) {
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
    const std::string target = Resolve(path);
    struct stat st;
    if (::lstat(target.c_str(), &st) == 0) {
      // Like Windows: a folder or a read-only file is not replaced.
      if (!S_ISREG(st.st_mode) || (st.st_mode & 0222) == 0) return false;
    }
    static std::atomic<unsigned> counter{0};
    const std::string temp =
        FolderOf(target) + "/~qm" + std::to_string(::getpid()) + "-" + std::to_string(++counter) + ".tmp";
    const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    bool ok = WriteFully(fd, bytes) && ::fsync(fd) == 0;
    ok = (::close(fd) == 0) && ok;
    if (ok) ok = ::rename(temp.c_str(), target.c_str()) == 0;
    if (!ok) {
      ::unlink(temp.c_str());
      return false;
    }
    const int dirfd = ::open(FolderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirfd >= 0) {
      ::fsync(dirfd);
      ::close(dirfd);
    }
    return true;
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

FileSystem& SystemFileSystem() {
  static PosixFileSystem fs;
  return fs;
}

}  // namespace qm
