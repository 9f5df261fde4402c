#include "platform/message_loop_win32.h"

#include <algorithm>

namespace qm::win32 {

bool MessageLoop::Watch(HANDLE handle, Handler handler) {
  if (!handle || handles_.size() >= kMaxHandles) return false;
  if (std::find(handles_.begin(), handles_.end(), handle) != handles_.end()) return false;
  handles_.push_back(handle);
  handlers_.push_back(std::make_shared<Handler>(std::move(handler)));
  return true;
}

void MessageLoop::Unwatch(HANDLE handle) {
  const auto it = std::find(handles_.begin(), handles_.end(), handle);
  if (it == handles_.end()) return;
  const auto index = it - handles_.begin();
  handles_.erase(it);
  handlers_.erase(handlers_.begin() + index);
}

MessageLoop::Step MessageLoop::Once(DWORD timeoutMs, int& exitCode) {
  const auto count = static_cast<DWORD>(handles_.size());
  DWORD woken =
      ::MsgWaitForMultipleObjectsEx(count, handles_.data(), timeoutMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  if (woken < WAIT_OBJECT_0 + count) {
    const std::shared_ptr<Handler> handler = handlers_[woken - WAIT_OBJECT_0];
    if (*handler) (*handler)();
    return Step::Handled;
  }
  // A handle that cannot be waited on: wait for messages alone (the
  // timers' SetTimer backups still come) rather than spin.
  if (woken == WAIT_FAILED)
    woken = ::MsgWaitForMultipleObjectsEx(0, nullptr, timeoutMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  if (woken == WAIT_TIMEOUT) return Step::Idle;
  MSG msg;
  if (!::PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) return Step::Handled;
  if (msg.message == WM_QUIT) {
    exitCode = static_cast<int>(msg.wParam);
    return Step::Quit;
  }
  if (!filter_ || !filter_(msg)) {
    ::TranslateMessage(&msg);
    ::DispatchMessageA(&msg);
  }
  return Step::Handled;
}

int MessageLoop::Run() {
  int exitCode = 0;
  while (Once(INFINITE, exitCode) != Step::Quit) {
  }
  return exitCode;
}

MessageLoop::Outcome MessageLoop::Pump(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + timeout;
  for (;;) {
    if (done && done()) return Outcome::Done;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    if (left.count() <= 0) return Outcome::TimedOut;
    int exitCode = 0;
    if (Once(static_cast<DWORD>(left.count()), exitCode) == Step::Quit) {
      ::PostQuitMessage(exitCode);
      return Outcome::Quit;
    }
  }
}

bool MessageLoop::RunUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  return Pump(done, timeout) == Outcome::Done;
}

bool MessageLoop::RunFor(std::chrono::milliseconds time) {
  return Pump({}, time) != Outcome::Quit;
}

}  // namespace qm::win32
