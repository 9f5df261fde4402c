// The machine's file system, watched: writes are counted (with the events
// pumped before each, when a pump is given), copies, deletions and new
// folders are logged, and named steps can fail without touching the disk.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "fake_prompts.h"
#include "platform/file_system.h"

namespace qm::test {

class WatchedFiles final : public FileSystem {
 public:
  explicit WatchedFiles(const CountingEventPump* pump = nullptr) : pump_(pump) {}

  std::optional<std::string> ReadAll(const std::string& p) override { return real.ReadAll(p); }
  bool WriteAll(const std::string& p, std::string_view bytes) override {
    eventsBeforeWrite.push_back(pump_ ? pump_->count : 0);
    if (failingWrites-- > 0 || failing.contains("write")) return false;
    return real.WriteAll(p, bytes);
  }
  bool Exists(const std::string& p) override { return real.Exists(p); }
  bool Occupied(const std::string& p) override { return real.Occupied(p); }
  void RemoveTemporaryFiles(const std::string& f) override { real.RemoveTemporaryFiles(f); }
  std::vector<std::string> List(const std::string& f, std::string_view e) override { return real.List(f, e); }
  bool Copy(const std::string& from, const std::string& to) override { return Step("copy") && real.Copy(from, to); }
  // Logged as "remove" and the file's name, e.g. "remove DATA01".
  bool Remove(const std::string& p) override { return Step("remove " + p.substr(p.rfind('\\') + 1)) && real.Remove(p); }
  bool MakeFolder(const std::string& p) override { return Step("folder") && real.MakeFolder(p); }

  int Writes() const { return static_cast<int>(eventsBeforeWrite.size()); }
  // Copies, deletions and new folders.
  int Changes() const { return static_cast<int>(steps.size()); }

  FileSystem& real = SystemFileSystem();
  int failingWrites = 0;        // the next this many writes fail
  std::set<std::string> failing;  // steps that fail: "write", "copy", "remove NAME", "folder"
  std::vector<int> eventsBeforeWrite;
  std::vector<std::string> steps;

 private:
  bool Step(const std::string& step) {
    steps.push_back(step);
    return !failing.contains(step);
  }
  const CountingEventPump* pump_;
};

}  // namespace qm::test
