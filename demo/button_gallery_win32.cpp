// The image button in every look: styles 0 to 10 in each state (normal,
// hover, pressed, disabled, focused, a toggle button down), a row of
// Style 10 buttons with an icon, on the settings window's blue (left) and
// on a light background (right); below, the settings window's own buttons
// at their own sizes. Each button is put in its state by the messages a
// user would cause, and then kept in it. `button_gallery [seconds]` closes
// itself after that many seconds (default: stays until closed).
#include <windows.h>
// After windows.h:
#include <commctrl.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "controls/is_button_win32.h"

namespace qm::win32 {
namespace {

constexpr int kPanelWidth = 512;
constexpr int kPanelHeight = 470;
constexpr int kLabelWidth = 30;
constexpr int kHeaderHeight = 24;
constexpr TwipBounds kCell{0, 0, 1050, 405};  // 70 x 27 pixels
constexpr int kColumnStep = 78;
constexpr int kRowStep = 31;
constexpr int kIconRow = 11;
const char* const kStates[] = {"Normal", "Hover", "Pressed", "Disabled", "Focused", "Down"};
constexpr OleColor kLight = 0x00F0F0F0;

// Keeps a staged button in its state: the pointer's own moves, the
// leave notice and the loss of focus or capture do not reach it.
LRESULT CALLBACK HoldState(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
  switch (msg) {
    case WM_MOUSEMOVE:
    case WM_MOUSELEAVE:
    case WM_KILLFOCUS:
    case WM_CAPTURECHANGED:
      return 0;
    default:
      return ::DefSubclassProc(hwnd, msg, wParam, lParam);
  }
}

class Panel : public Window {
 public:
  Panel(OleColor colour, OleColor ink, bool labels) : colour_(colour), ink_(ink), labels_(labels) {}
  ~Panel() override { Destroy(); }

  bool Create(HWND parent, int x, int y, int width, int height) {
    CreateArgs args;
    args.className = "QmButtonGalleryPanel";
    args.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
    args.x = x;
    args.y = y;
    args.width = width;
    args.height = height;
    args.parent = parent;
    return Window::Create(args);
  }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
    if (msg == WM_ERASEBKGND || msg == WM_PRINTCLIENT) {
      HDC dc = reinterpret_cast<HDC>(wParam);
      RECT client{};
      ::GetClientRect(Hwnd(), &client);
      Brush brush(::CreateSolidBrush(colour_));
      ::FillRect(dc, &client, brush.Get());
      return 1;
    }
    if (msg == WM_PAINT && labels_) {
      PaintScope paint(Hwnd());
      ::SetBkMode(paint.Dc(), TRANSPARENT);
      ::SetTextColor(paint.Dc(), ink_);
      SelectGuard font(paint.Dc(), ::GetStockObject(DEFAULT_GUI_FONT));
      for (int c = 0; c < 6; ++c) {
        ::TextOutA(paint.Dc(), kLabelWidth + c * kColumnStep + 12, 5, kStates[c], lstrlenA(kStates[c]));
      }
      for (int r = 0; r <= kIconRow; ++r) {
        const std::string label = r == kIconRow ? "icon" : std::to_string(r);
        ::TextOutA(paint.Dc(), 6, kHeaderHeight + r * kRowStep + 7, label.c_str(),
                   static_cast<int>(label.size()));
      }
      return 0;
    }
    return Window::HandleMessage(msg, wParam, lParam);
  }

 private:
  OleColor colour_;
  OleColor ink_;
  bool labels_;
};

class Gallery : public Window {
 public:
  ~Gallery() override { Destroy(); }

  bool Create() {
    CreateArgs args;
    args.className = "QmButtonGallery";
    args.title = "button_gallery";
    args.style = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN;
    args.x = 0;
    args.y = 0;
    args.width = 2 * kPanelWidth;
    args.height = kPanelHeight + 80;
    if (!Window::Create(args)) return false;
    panels_.push_back(std::make_unique<Panel>(kSettingsBlue, 0x00FFFFFF, true));
    panels_.push_back(std::make_unique<Panel>(kLight, 0, true));
    for (int p = 0; p < 2; ++p) {
      if (!panels_[p]->Create(Hwnd(), p * kPanelWidth, 0, kPanelWidth, kPanelHeight)) return false;
      for (int style = 0; style <= 10; ++style) AddRow(panels_[p]->Hwnd(), style, style, false);
      AddRow(panels_[p]->Hwnd(), kIconRow, 10, true);
    }
    settings_ = std::make_unique<Panel>(kSettingsBlue, 0x00FFFFFF, false);
    if (!settings_->Create(Hwnd(), 0, kPanelHeight, 2 * kPanelWidth, 80)) return false;
    AddSettingsRow(settings_->Hwnd());
    return true;
  }

 private:
  isButtonWindow& Add(HWND parent, const TwipBounds& at, const PropertyStore& stored) {
    buttons_.push_back(std::make_unique<isButtonWindow>());
    buttons_.back()->Create(parent, at, stored);
    return *buttons_.back();
  }

  void AddRow(HWND parent, int row, int style, bool withIcon) {
    for (int c = 0; c < 6; ++c) {
      TwipBounds at = kCell;
      at.left = (kLabelWidth + c * kColumnStep) * 15;
      at.top = (kHeaderHeight + row * kRowStep) * 15;
      std::string caption = withIcon ? "Info" : kStates[c];
      if (style == 10 && c == 0 && !withIcon) caption = "&Start";
      PropertyStore stored{
          {"Style", style}, {"iNonThemeStyle", 5}, {"Caption", caption}, {"ShowFocus", true}};
      if (withIcon) {
        stored.Set("Icon", Picture{reinterpret_cast<std::uintptr_t>(::LoadIconA(nullptr, IDI_INFORMATION))});
        stored.Set("CaptionAlign", std::int64_t{1});
      }
      isButtonWindow& b = Add(parent, at, stored);
      Stage(b, c);
    }
  }

  // The states, as a user's pointer and keys would cause them.
  static void Stage(isButtonWindow& b, int state) {
    HWND h = b.Hwnd();
    switch (state) {
      case 1:
        ::SendMessageA(h, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
        break;
      case 2:
        ::SendMessageA(h, WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
        ::SendMessageA(h, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
        // The pointer stays free for the others; held, the button does
        // not hear that it lost the mouse (it would drop its pressed look).
        ::SetWindowSubclass(h, &HoldState, 1, 0);
        ::ReleaseCapture();
        break;
      case 3:
        b.Model().SetEnabled(false);
        break;
      case 4:
        ::SendMessageA(h, WM_SETFOCUS, 0, 0);
        break;
      case 5:
        b.Model().SetButtonType(1);
        b.Model().SetValue(true);
        break;
      default:
        break;
    }
    ::SetWindowSubclass(h, &HoldState, 1, 0);
  }

  // The settings window's buttons, at their own sizes.
  void AddSettingsRow(HWND parent) {
    struct Placed {
      const char* caption;
      int left;
      int width;
    };
    const Placed row[] = {{"Add", 180, 975},         {"Edit", 1290, 975},    {"Delete", 2400, 975},
                        {"Edit Font", 3480, 1395}, {"&Start", 5040, 1395}, {"E&xit", 6600, 1395}};
    for (const Placed& s : row) {
      Add(parent, {s.left, 300, s.width, 435},
          {{"Style", 10},
           {"iNonThemeStyle", 0},
           {"Caption", s.caption},
           {"BackColor", 0x00B36A36u},
           {"ToolTipType", 0}});
    }
    // One of them hovered, one pressed, as the pointer leaves them.
    isButtonWindow& edit = *buttons_[buttons_.size() - 5];
    isButtonWindow& start = *buttons_[buttons_.size() - 2];
    Stage(edit, 1);
    Stage(start, 2);
    // And one that the real pointer will rest on, to show its balloon.
    tip_ = &Add(parent, {8400, 300, 1395, 435},
                {{"Style", 10},
                 {"Caption", "Help"},
                 {"ToolTipText", "Shows how to use the program"},
                 {"Tooltiptitle", "Help"},
                 {"ToolTipIcon", 1},
                 {"ToolTipType", 1}});
  }

 public:
  // Puts the pointer on the tooltip button, `nudge` pixels off its middle.
  void PointAtTip(int nudge) const {
    RECT r{};
    ::GetWindowRect(tip_->Hwnd(), &r);
    ::SetCursorPos((r.left + r.right) / 2 + nudge, (r.top + r.bottom) / 2);
  }

 private:
  isButtonWindow* tip_ = nullptr;

  std::vector<std::unique_ptr<Panel>> panels_;
  std::unique_ptr<Panel> settings_;
  std::vector<std::unique_ptr<isButtonWindow>> buttons_;
};

}  // namespace
}  // namespace qm::win32

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int) {
  // The pointer away in the corner while the buttons are staged.
  ::SetCursorPos(1023, 767);
  qm::win32::Gallery gallery;
  if (!gallery.Create()) return 1;
  // The pointer comes to rest on the tooltip button: the first move shows
  // the hover look and makes the tooltip, the second starts its timer.
  gallery.PointAtTip(0);
  const UINT_PTR nudge = ::SetTimer(nullptr, 0, 400, nullptr);
  const int seconds = std::atoi(commandLine);
  const UINT_PTR end = seconds > 0 ? ::SetTimer(nullptr, 0, static_cast<UINT>(seconds) * 1000, nullptr) : 0;
  MSG msg;
  while (::GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (msg.message == WM_TIMER && msg.hwnd == nullptr && msg.wParam == nudge) {
      ::KillTimer(nullptr, nudge);
      gallery.PointAtTip(1);
      continue;
    }
    if (msg.message == WM_TIMER && msg.hwnd == nullptr && msg.wParam == end) break;
    ::TranslateMessage(&msg);
    ::DispatchMessageA(&msg);
  }
  return 0;
}
