// The user-interface thread's message loop. Besides window messages it
// waits on handles that timers hand it (waitable timers), so a timer finer
// than SetTimer's 10 ms floor still ticks on this one thread, between
// window messages and never inside one. Signalled handles come before
// waiting messages: after every message the loop looks at them again.
//
// Nested loops (popup menus, message boxes, dialogs) do not run this loop:
// a timer that must tick during them also arms a SetTimer of its own.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace qm::win32 {

class MessageLoop {
 public:
  using Handler = std::function<void()>;
  // Offered each message before it is dispatched; true when it took the
  // message (as IsDialogMessage does).
  using Filter = std::function<bool(MSG& msg)>;

  // The most handles one wait can watch beside the message queue.
  static constexpr std::size_t kMaxHandles = MAXIMUM_WAIT_OBJECTS - 1;

  MessageLoop() = default;
  MessageLoop(const MessageLoop&) = delete;
  MessageLoop& operator=(const MessageLoop&) = delete;

  // Runs handler each time the handle is signalled while the loop waits.
  // The handle must stay open until Unwatch. False when the loop already
  // watches kMaxHandles handles or this one.
  bool Watch(HANDLE handle, Handler handler);
  void Unwatch(HANDLE handle);

  void SetFilter(Filter filter) { filter_ = std::move(filter); }

  // Runs until WM_QUIT and returns its exit code (for WinMain).
  int Run();
  // Runs until done() is true or the time has passed; done is asked after
  // every message and handler. True when done() said so; false when the
  // time ran out or WM_QUIT came (it is posted again for the outer loop).
  bool RunUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout);
  // Runs for a while (tests, benchmarks, demos). False when WM_QUIT came.
  bool RunFor(std::chrono::milliseconds time);

 private:
  enum class Step { Handled, Idle, Quit };
  enum class Outcome { Done, TimedOut, Quit };
  // One wait of at most timeoutMs: runs one signalled handle's handler or
  // dispatches one message.
  Step Once(DWORD timeoutMs, int& exitCode);
  Outcome Pump(const std::function<bool()>& done, std::chrono::milliseconds timeout);

  std::vector<HANDLE> handles_;
  // Shared so that a handler may unwatch itself while it runs.
  std::vector<std::shared_ptr<Handler>> handlers_;
  Filter filter_;
};

}  // namespace qm::win32
