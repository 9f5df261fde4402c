#include "display/message_window_win32.h"

#include <exception>

namespace qm::win32 {
namespace {

std::unique_ptr<clsScreen> CreateScreen() {
  try {
    return std::make_unique<clsScreen>();
  } catch (const std::exception&) {
    return nullptr;  // it has told the user
  }
}

// Width is read before Height, as the load routine does.
ScreenMetrics ReadMetrics(const clsScreen* screen) {
  if (!screen) {
    return {static_cast<float>(::GetSystemMetrics(SM_CXSCREEN)),
            static_cast<float>(::GetSystemMetrics(SM_CYSCREEN))};
  }
  const float width = screen->Width();
  const float height = screen->Height();
  return {width, height, screen->TwipsPerPixelX(), screen->TwipsPerPixelY()};
}

}  // namespace

unsigned SecondsSinceMidnight() {
  SYSTEMTIME now;
  ::GetLocalTime(&now);
  return now.wHour * 3600u + now.wMinute * 60u + now.wSecond;
}

MessageWindow::MessageWindow(const FlasherHost& host, MessageLoop& loop)
    : screen_(CreateScreen()),
      timerDisplayLength_(loop, kDefaultDisplayLength),
      frameWait_(loop, kFrameCheck),
      form_(overlay_, timerFrequency_, timerDisplayLength_, random_, host) {
  form_.WaitForFrames(&frames_, &frameWait_);
  form_.HeedUser(&attention_);
  form_.Form_Load(ReadMetrics(screen_.get()), SecondsSinceMidnight());
}

MessageWindow::~MessageWindow() {
  timerFrequency_.SetEnabled(false);
  timerDisplayLength_.SetEnabled(false);
  frameWait_.SetEnabled(false);
  overlay_.Destroy();
  screen_.reset();  // repaints the desktop, now without the overlay
}

}  // namespace qm::win32
