// A window of one colour with the flasher cycling its built-in list over
// it: a phrase every second for 500 ms, in red Arial 28 bold. Ends after
// the number of seconds given on the command line (default 30).
#include <windows.h>

#include <chrono>
#include <cstdlib>

#include "display/message_window_win32.h"

namespace {

class Host final : public qm::FlasherHost {
 public:
  bool SettingsWindowVisible() const override { return false; }
  bool TrayMenuOpen() const override { return false; }
};

LRESULT CALLBACK BackdropProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_DESTROY) ::PostQuitMessage(0);
  return ::DefWindowProcA(hwnd, msg, wParam, lParam);
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int) {
  using namespace std::chrono_literals;
  const int seconds = std::atoi(commandLine) > 0 ? std::atoi(commandLine) : 30;

  WNDCLASSA wc{};
  wc.lpfnWndProc = BackdropProc;
  wc.hInstance = instance;
  wc.hbrBackground = ::CreateSolidBrush(RGB(30, 60, 110));
  wc.lpszClassName = "QuillmereDemoBackdrop";
  ::RegisterClassA(&wc);
  ::CreateWindowExA(0, wc.lpszClassName, "Flash demo", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                    ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr,
                    instance, nullptr);

  Host host;
  qm::win32::MessageLoop loop;
  qm::win32::MessageWindow flasher(host, loop);
  qm::frmMessage& form = flasher.Form();
  form.SetLabelFont({"Arial", 28, true, false, false, false});
  form.SetLabelColor(qm::Rgb(220, 20, 20));
  form.TimerFrequency().SetInterval(1000ms);
  form.TimerDisplayLength().SetInterval(500ms);
  form.MessageList.reset();  // the built-in fallback list
  form.bStopped = false;
  form.HideLabel();
  form.Show();
  form.Begin();

  loop.RunFor(std::chrono::seconds(seconds));
  return 0;
}
