// A fresh, empty folder for one test, removed with everything in it at the
// end. Its path is the kind of program folder the core works on: no trailing
// separator, relative parts appended with "\". Paths are UTF-8, as the core
// takes them, on every platform.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/file_system.h"

namespace qm::test {

class TempFolder {
 public:
  TempFolder() {
    static std::atomic<int> counter{0};
    const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("quillmere-test-" + std::to_string(stamp) + "-" + std::to_string(++counter));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    // Read-only files left by a test must not keep the folder alive.
    for (auto& e : std::filesystem::recursive_directory_iterator(path_, ec))
      std::filesystem::permissions(e.path(), std::filesystem::perms::owner_all,
                                   std::filesystem::perm_options::add, ec);
    std::filesystem::remove_all(path_, ec);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // The folder as the core addresses it.
  std::string Path() const { return Utf8(path_); }
  // The folder's path followed by a relative part beginning with "\".
  std::string operator()(std::string_view relative) const { return ProgramPath(Path(), relative); }

  // Direct access for setting up and checking, bypassing the code under test.
  std::filesystem::path Native(std::string_view relative) const {
    std::string r(relative);
    for (char& c : r)
      if (c == '\\') c = '/';
    while (!r.empty() && r.front() == '/') r.erase(r.begin());
    return path_ / std::filesystem::path(std::u8string(r.begin(), r.end()));
  }
  // A path's UTF-8 spelling (std::filesystem's own narrow one is the ANSI
  // code page on some systems).
  static std::string Utf8(const std::filesystem::path& p) {
    const std::u8string s = p.u8string();
    return std::string(s.begin(), s.end());
  }
  void Put(std::string_view relative, std::string_view bytes) const {
    const auto p = Native(relative);
    std::filesystem::create_directories(p.parent_path());
    std::ofstream(p, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  std::string Get(std::string_view relative) const {
    std::ifstream in(Native(relative), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  bool Has(std::string_view relative) const { return std::filesystem::exists(Native(relative)); }

 private:
  std::filesystem::path path_;
};

}  // namespace qm::test
