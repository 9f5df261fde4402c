// The tab bar on screen. TabMenuWindow is a child window that shows a
// TabMenu model: the background strip across the bar, and one child window
// per tab and menu button that shows the button's current picture, its
// divider and, for a tab, its caption. Mouse input on a button becomes the
// model's input (move, button down, click = left button released over the
// button it went down on); the model's events reach the program through
// Model().events.
//
// Twips become pixels at the screen's logical dots per inch (15 twips a
// pixel at 96).
//
//   TabMenuWindow tabs;
//   tabs.Create(parent, 0, 0, 6870);
//   tabs.Model().events.ItemClick = [&] { ShowPage(tabs.Model().SelectedItem()); };
//   tabs.Model().AddButton(1, "Messages");
//   tabs.Model().SetTabFocus(1);
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "controls/tab_menu.h"
#include "platform/gdi_win32.h"
#include "platform/twips.h"
#include "platform/window_win32.h"

namespace qm::win32 {

// The bar's pictures, from the program's resources (missing ones stay
// empty and are not drawn).
struct TabPictures {
  Bitmap strip;
  Bitmap tabNormal, tabOver, tabDown;
  Bitmap menuNormal, menuOver, menuDown;
  Bitmap separator;

  static TabPictures Load();
  // The picture a button of the given kind shows in the given state.
  HBITMAP For(bool tab, TabPicture picture) const;
};

class TabMenuWindow : public Window {
 public:
  TabMenuWindow();
  ~TabMenuWindow() override;

  // Creates the bar as a child of `parent`, its top left corner at left,
  // top and `width` wide (twips); its height is the strip's. False when the
  // window cannot be made.
  bool Create(HWND parent, int left, int top, int width, int id = 0);
  // Gives the bar a new width (twips).
  void Resize(int width);
  // Lays the bar and its elements out again at the parent's new dots per
  // inch, with its caption font made anew.
  void SetDpi(int dpi);

  TabMenu& Model() { return model_; }
  const TabMenu& Model() const { return model_; }

  // The windows of tab or menu-button elements by number (null when there
  // is none), for code that drives the bar as a user would.
  HWND TabHwnd(std::int16_t index) const;
  HWND MenuButtonHwnd(std::int16_t index) const;

  // Twips to pixels on this screen.
  RECT ToPixels(const TwipRect& r) const;
  int TwipsFromPixelsX(int x) const { return PixelsToTwips(x, dpiX_); }
  int TwipsFromPixelsY(int y) const { return PixelsToTwips(y, dpiY_); }

  const TabPictures& Pictures() const { return pictures_; }
  HFONT CaptionFont() const { return captionFont_.Get(); }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  class ElementWindow;
  void Attach(TabElement& element);
  void MakeCaptionFont();
  HWND FindHwnd(bool tab, std::int16_t index) const;

  TabMenu model_;
  int dpiX_ = 96;
  int dpiY_ = 96;
  int left_ = 0;  // the bar's top left corner in its parent (twips)
  int top_ = 0;
  TabPictures pictures_;
  Font captionFont_;
  std::vector<std::unique_ptr<ElementWindow>> elements_;
};

}  // namespace qm::win32
