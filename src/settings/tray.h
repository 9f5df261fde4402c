// The tray icon's core: the icon record's fixed values, the decoding of the
// icon's callback, and the popup menu mnuPopUp with what a click on the
// icon does (pause the display, then open the menu and run the chosen
// command).
//
// The callback: the notification area reports mouse events over the icon
// to its owner window as the callback message 0x200, which is also the
// owner's own mouse-move message. For the callback, wParam is the icon
// number (1) and lParam the mouse message (0x200 move, 0x201 left press,
// 0x202 left release, 0x204 right press, 0x205 right release...), so its
// high word is 0; for a real mouse move over the owner, lParam holds the
// position (x in the low word, y in the high word) and wParam the keys and
// buttons held. The callback is recognised by wParam 1, a high word of 0
// and a low word among the mouse messages (0x200 to 0x20E). A real move is
// taken for it only with the left button alone held (MK_LBUTTON is 1) over
// the top row (y 0) of the owner's surface at x 512 to 526, and for a
// click only at x 514 or 517 there.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qm {

inline constexpr unsigned kTrayIconNumber = 1;
inline constexpr unsigned kTrayCallbackMessage = 0x200;
// The callback-message, icon and tip fields are valid.
inline constexpr unsigned kTrayRecordFlags = 7;
// The tip field's size, its closing NUL included.
inline constexpr std::size_t kTrayTipField = 128;

inline constexpr unsigned kMouseFirst = 0x200;
inline constexpr unsigned kMouseLast = 0x20E;
inline constexpr unsigned kMouseLeftReleased = 0x202;
inline constexpr unsigned kMouseRightReleased = 0x205;

// The tip as the record holds it: at most 127 characters, so that the NUL
// fits; a NUL inside the text ends it.
std::string FitTrayTip(std::string_view tip);

// The mouse message of a tray callback, or nothing when the message is the
// owner's own mouse move (see the top of this file).
std::optional<unsigned> TrayCallbackMouseMessage(std::uintptr_t wParam, std::uintptr_t lParam);

// What the tray menu's items do; run control and the settings window
// implement them.
class TrayCommands {
 public:
  virtual ~TrayCommands() = default;
  // The first half of a click on the icon: bStopped set, overlay hidden.
  virtual void PauseForTrayMenu() = 0;
  // A click on the icon while one of the program's message boxes is open
  // brings that box to the front instead of opening a second menu: true
  // when a box was open.
  virtual bool BringOpenMessageBoxToFront() = 0;
  virtual void mnuSettings_Click() = 0;
  virtual void mnuStart_Click() = 0;
  virtual void mnuStop_Click() = 0;
  virtual void mnuExit_Click() = 0;
};

enum class TrayMenuItem { None, Settings, Start, Stop, Exit };

// One line of the popup menu, top to bottom.
struct TrayMenuEntry {
  std::string_view name;     // mnuSettings, mnuSep1...
  std::string_view caption;  // empty for a separator
  TrayMenuItem item;         // None for a separator
  unsigned commandId;        // 0 for a separator

  bool IsSeparator() const { return item == TrayMenuItem::None; }
};

class TrayMenu;

// Shows the menu as a popup at the mouse position and runs its loop; the
// item the user chose, or None when the menu was dismissed.
class TrayPopup {
 public:
  virtual ~TrayPopup() = default;
  virtual TrayMenuItem Popup(const TrayMenu& menu) = 0;
};

// The popup menu mnuPopUp, only ever shown as a popup, and the icon's
// click.
class TrayMenu {
 public:
  static const std::array<TrayMenuEntry, 6>& Entries();
  // The item of a command id; None for any other number.
  static TrayMenuItem ItemOfCommand(unsigned commandId);

  explicit TrayMenu(TrayCommands& commands) : commands_(commands) {}
  TrayMenu(const TrayMenu&) = delete;
  TrayMenu& operator=(const TrayMenu&) = delete;

  // Check marks of Start and Stop (run control sets them).
  bool mnuStartChecked = false;
  bool mnuStopChecked = false;
  // Settings stays greyed until the settings window exists.
  bool mnuSettingsEnabled = false;

  bool Checked(TrayMenuItem item) const;
  bool Enabled(TrayMenuItem item) const;

  // True exactly while the menu's loop runs: the flasher and the watchdog
  // stay quiet meanwhile.
  bool IsOpen() const { return open_; }

  // The tray callback with the mouse message as x: a left or right button
  // release pauses the display, opens the menu and runs the chosen item's
  // command once the menu has closed; anything else is ignored, and while
  // a message box of the program is open the release only brings it to the
  // front. True when the menu was opened.
  bool Form_MouseMove(unsigned x, TrayPopup& popup);

  // Runs the item's command (None and a greyed item do nothing).
  void Run(TrayMenuItem item);

 private:
  TrayCommands& commands_;
  bool open_ = false;
};

}  // namespace qm
