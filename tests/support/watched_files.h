// The machine's file system, watched: writes are counted (with the events
// pumped before each, when a pump is given), copies, deletions and new
// folders are logged, and named steps can fail without touching the disk.
// Writes and copies run the machine's own write steps, any of which can
// fail too: "create", "put" (the bytes), "flush", "close", "replace",
// "delete" (also every deletion), and "disk full" (the bytes are taken
// only in part, then no more).
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
    return WriteAtomically(steps_, p, bytes);
  }
  bool TryWriteAll(const std::string& p, std::string_view bytes) override { return WriteAll(p, bytes); }
  bool Exists(const std::string& p) override { return real.Exists(p); }
  bool Occupied(const std::string& p) override { return real.Occupied(p); }
  void RemoveTemporaryFiles(const std::string& f) override { real.RemoveTemporaryFiles(f); }
  std::vector<std::string> List(const std::string& f, std::string_view e) override { return real.List(f, e); }
  bool Copy(const std::string& from, const std::string& to) override {
    if (!Step("copy")) return false;
    const auto bytes = real.ReadAll(from);
    return bytes && WriteAtomically(steps_, to, *bytes);
  }
  // Logged as "remove" and the file's name, e.g. "remove DATA01".
  bool Remove(const std::string& p) override {
    return Step("remove " + p.substr(p.rfind('\\') + 1)) && !failing.contains("delete") && real.Remove(p);
  }
  bool MakeFolder(const std::string& p) override { return Step("folder") && real.MakeFolder(p); }

  // The machine's write steps, failing those named in `failing`.
  class FaultySteps final : public WriteSteps {
   public:
    explicit FaultySteps(const std::set<std::string>& failing) : failing_(failing) {}
    Target Inspect(const std::string& p) override { return real_.Inspect(p); }
    Created Create(const std::string& p, Handle& file) override {
      full_ = false;
      return Fails("create") ? Created::Failed : real_.Create(p, file);
    }
    std::size_t Write(Handle file, std::string_view bytes) override {
      if (Fails("put") || full_) return 0;
      if (Fails("disk full")) {
        full_ = true;
        bytes = bytes.substr(0, bytes.size() / 2);
        if (bytes.empty()) return 0;
      }
      return real_.Write(file, bytes);
    }
    bool Flush(Handle file) override { return !Fails("flush") && real_.Flush(file); }
    // The file is closed all the same: the fault is in the answer.
    bool Close(Handle file) override { return real_.Close(file) && !Fails("close"); }
    bool Replace(const std::string& f, const std::string& t) override {
      return !Fails("replace") && real_.Replace(f, t);
    }
    bool Delete(const std::string& p) override { return !Fails("delete") && real_.Delete(p); }

   private:
    bool Fails(const char* step) const { return failing_.contains(step); }
    WriteSteps& real_ = SystemWriteSteps();
    const std::set<std::string>& failing_;
    bool full_ = false;
  };

  int Writes() const { return static_cast<int>(eventsBeforeWrite.size()); }
  // Copies, deletions and new folders.
  int Changes() const { return static_cast<int>(steps.size()); }

  FileSystem& real = SystemFileSystem();
  int failingWrites = 0;        // the next this many writes fail
  // Steps that fail: "write", "copy", "remove NAME", "folder", and the
  // write steps above.
  std::set<std::string> failing;
  std::vector<int> eventsBeforeWrite;
  std::vector<std::string> steps;

 private:
  bool Step(const std::string& step) {
    steps.push_back(step);
    return !failing.contains(step);
  }
  const CountingEventPump* pump_;
  FaultySteps steps_{failing};
};

}  // namespace qm::test
