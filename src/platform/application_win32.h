// The application object on Windows: the program folder, the command line,
// the one-instance test, and the message boxes and event pump every routine
// that talks to the user goes through.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/handle_win32.h"
#include "platform/prompts.h"

namespace qm::win32 {

// The full path of the running executable, as the system spells it. The
// only place that asks for it: everything else derives from this.
std::wstring ProgramFilePath();

// The folder that holds the running executable, in UTF-8, without a
// closing "\" (files are addressed as this folder followed by "\name").
std::string ProgramFolder();

// The executable's file name without its extension, in UTF-8
// ("quillmere"), as error sources begin with it.
std::string ExecutableName();

// Held for the life of the program: the first copy to create the named
// object owns it; a later copy finds it taken (PrevInstance) and ends. The
// object lives in the session's namespace under a name that holds the
// user's identifier (InstanceObjectName), so that copies of other users
// and sessions, and objects other programs made under the plain name, are
// no concern of this one.
std::wstring InstanceObjectName(const char* name);

class InstanceGuard {
 public:
  explicit InstanceGuard(const char* name);
  InstanceGuard(const InstanceGuard&) = delete;
  InstanceGuard& operator=(const InstanceGuard&) = delete;

  // True when another copy of the program already runs.
  bool PrevInstance() const { return prevInstance_; }

 private:
  KernelHandle mutex_;
  bool prevInstance_ = false;
};

// Message boxes titled "Quillmere", their texts in UTF-8. A tray program's settings window is
// mostly hidden, so the boxes have no owner: each gets its own task bar
// button and comes to the foreground.
class MessageBoxPrompts final : public Prompts {
 public:
  PromptAnswer Show(std::string_view text, PromptIcon icon, PromptButtons buttons) override;
  bool IsOpen() const override { return open_ > 0; }
  // The open box is a dialog of this thread: it is raised and given the
  // focus.
  void BringToFront() override;

 private:
  int open_ = 0;  // boxes open, one inside another's loop included
};

// Runs the window messages that are waiting, then returns. A WM_QUIT met on
// the way is posted again for the main loop.
class MessagePump final : public EventPump {
 public:
  void DoEvents() override;
};

}  // namespace qm::win32
