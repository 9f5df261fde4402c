// The tab bar: `TabMenu` holds a row of captioned tabs (`TabButton`) and
// narrow menu buttons (`TabButtonMenu`), each with a divider
// (`TabSeparator`) at its right edge. The controls only show pictures and a
// caption; this model keeps which picture each one shows, the caption and
// its colour, and where each one sits, and turns mouse input into the bar's
// events. The Win32 control mirrors it.
//
// Geometry is in twips (15 twips a pixel at 96 dpi), relative to the bar
// (an element's Left and Top) or to the element (its parts). Element numbers
// and the positions that the bar computes are 16-bit, as the bar's callers
// expect; element 1 of each collection is a hidden template, so the first
// tab added is element 2.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ole_color.h"

namespace qm {

// Which of the three hidden picture holders `ImgButton` currently shows.
enum class TabPicture : std::uint8_t {
  Normal,  // ImgNormal
  Over,    // ImgOver: the mouse moved over the button
  Down,    // ImgDown: pressed, and for a tab also focused
};

struct TwipRect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  bool Contains(int x, int y) const { return x >= left && x < left + width && y >= top && y < top + height; }
  friend bool operator==(const TwipRect&, const TwipRect&) = default;
};

// Sizes of the parts, in twips.
inline constexpr int kStripHeight = 525;  // the background strip, 35 pixels
inline constexpr int kTabWidth = 1050;
inline constexpr int kTabHeight = 525;
inline constexpr int kMenuButtonWidth = 405;
inline constexpr int kMenuButtonHeight = 525;
// The picture boxes; the dividers follow them.
inline constexpr int kTabPictureWidth = 975;
inline constexpr int kMenuPictureWidth = 330;
inline constexpr OleColor kTabCaptionColor = 0x00400000;
inline constexpr OleColor kFocusedTabCaptionColor = 0x00FFFFFF;

// The divider: its picture `ImgSep` is stretched to the control, and the
// control always takes the size of `ImgSep`.
class TabSeparator {
 public:
  static constexpr int kImgSepWidth = 70;
  static constexpr int kImgSepHeight = 375;

  TabSeparator(int left, int top) : left_(left), top_(top) {}
  // Where the divider lies in its button.
  TwipRect Bounds() const { return {left_, top_, kImgSepWidth, kImgSepHeight}; }

 private:
  int left_;
  int top_;
};

// What a tab and a menu button share: a place on the bar, the picture box
// `ImgButton` showing one of the three pictures, the background strip
// `ImgBG` across the whole button and the divider at its right edge.
class TabElement {
 public:
  struct Events {
    std::function<void()> Click;
    std::function<void()> MouseMove;
  };

  virtual ~TabElement() = default;
  TabElement(const TabElement&) = delete;
  TabElement& operator=(const TabElement&) = delete;

  // Element number in its collection.
  std::int16_t Index() const { return index_; }
  virtual bool IsTab() const = 0;

  // Place on the bar and size (fixed for each kind of button).
  TwipRect Bounds() const { return {left_, top_, width_, height_}; }
  void Move(int left, int top);
  bool Visible() const { return visible_; }
  void SetVisible(bool visible);

  // The parts, relative to the button.
  TwipRect ImgBG() const { return {0, 0, width_, kStripHeight}; }
  virtual TwipRect ImgButtonRect() const = 0;
  const TabSeparator& Separator() const { return separator_; }
  // Where mouse input reaches the button (`ImgButton`, and a tab's caption).
  virtual bool Hits(int x, int y) const { return ImgButtonRect().Contains(x, y); }

  TabPicture ImgButton() const { return picture_; }

  // Mouse input on the button.
  virtual void ImgButton_MouseMove() = 0;
  void ImgButton_MouseDown() { ShowPicture(TabPicture::Down); }
  virtual void ImgButton_Click() = 0;

  virtual void MoveMouseOff() = 0;

  Events events;
  // Called whenever anything shown changes (picture, caption, colour,
  // place, visibility), so that a view can redraw.
  std::function<void()> Changed;

 protected:
  TabElement(std::int16_t index, int width, int height, int separatorLeft);
  void ShowPicture(TabPicture picture);
  void NotifyChanged() const;
  static void Raise(const std::function<void()>& event);

 private:
  std::int16_t index_;
  int left_ = 0;
  int top_ = 0;
  int width_;
  int height_;
  bool visible_ = false;
  TabPicture picture_ = TabPicture::Normal;
  TabSeparator separator_;
};

// One captioned tab, 1050 x 525.
class TabButton final : public TabElement {
 public:
  static constexpr const char* kDesignText = "ItemText";

  explicit TabButton(std::int16_t index);

  bool IsTab() const override { return true; }
  TwipRect ImgButtonRect() const override { return {0, 0, kTabPictureWidth, kTabHeight}; }
  TwipRect LblTextRect() const { return {0, 190, kTabPictureWidth, 255}; }
  bool Hits(int x, int y) const override;

  bool HasFocus() const { return hasFocus_; }
  const std::string& ButtonText() const { return buttonText_; }
  const std::string& LblText() const { return lblText_; }
  OleColor LblTextColor() const { return lblTextColor_; }

  // Raises Click; only after the receivers are done does the tab take its
  // focused look.
  void Click();
  void SetFocus();
  void RemoveFocus();
  void MoveMouseOff() override;
  void SetText(const std::string& NewCaption);

  void ImgButton_MouseMove() override;
  void ImgButton_Click() override { Click(); }

 private:
  void SetCaptionColor(OleColor color);

  bool hasFocus_ = false;
  std::string buttonText_;
  std::string lblText_ = kDesignText;
  OleColor lblTextColor_ = kTabCaptionColor;
};

// A narrow uncaptioned button meant to open a menu, 405 x 525. It has no
// focused state.
class TabButtonMenu final : public TabElement {
 public:
  explicit TabButtonMenu(std::int16_t index);

  bool IsTab() const override { return false; }
  TwipRect ImgButtonRect() const override { return {0, 0, kMenuPictureWidth, kMenuButtonHeight}; }

  void MoveMouseOff() override { ShowPicture(TabPicture::Normal); }
  void ImgButton_MouseMove() override;
  void ImgButton_Click() override { Raise(events.Click); }
};

// The bar.
class TabMenu {
 public:
  struct Events {
    std::function<void()> ItemClick;      // a tab was clicked
    std::function<void()> ItemMenuClick;  // a menu button was clicked
  };
  static constexpr std::int16_t kTabStyle = 1;
  static constexpr std::int16_t kMenuStyle = 2;

  TabMenu();
  TabMenu(const TabMenu&) = delete;
  TabMenu& operator=(const TabMenu&) = delete;

  // Adds a tab (style 1, captioned ItemText) or a menu button (style 2, no
  // caption) at the right-hand end of the bar; any other style does
  // nothing. Throws std::overflow_error, and adds nothing, when the new
  // element's number or place does not fit in 16 bits.
  void AddButton(std::int16_t Style_1_Tab_2_Menu, const std::string& ItemText);
  // Clicks the n-th added tab (element n + 1), as the mouse would. A number
  // without an element does nothing.
  void SetTabFocus(std::int16_t n);
  // RemoveFocus on every tab but element i.
  void RemoveTabFocus(std::int16_t i);
  // MoveMouseOff on every tab and every menu button whose element number is
  // not i.
  void MoveMouseOff(std::int16_t i);

  // What the last click selected: the tab's ButtonText, or for a menu
  // button its element number less 1 in decimal.
  const std::string& SelectedItem() const { return selectedItem_; }

  // Upper bounds of the two collections (1: only the template).
  std::int16_t TabButtonUBound() const { return static_cast<std::int16_t>(tabs_.size()); }
  std::int16_t TabButtonMenuUBound() const { return static_cast<std::int16_t>(menus_.size()); }
  // Elements by number, 1 to the upper bound; std::out_of_range otherwise.
  TabButton& Tab(std::int16_t index);
  TabButtonMenu& MenuButton(std::int16_t index);

  // The bar's width is free, its height always that of the strip.
  void Resize(int width);
  int Width() const { return width_; }
  int Height() const { return kStripHeight; }
  TwipRect ImgBG() const { return {0, 0, width_, kStripHeight}; }

  Events events;
  // Called with each element that AddButton creates, so that a view can
  // show it (the Win32 bar listens here; the templates, made with the bar,
  // are not reported).
  std::function<void(TabElement&)> ElementCreated;

 private:
  void TabButton_Click(std::int16_t index);
  void TabButtonMenu_Click(std::int16_t index);
  // Creates the next element of a collection, its events wired to the bar.
  template <typename Element>
  Element& Create(std::vector<std::unique_ptr<Element>>& elements, void (TabMenu::*onClick)(std::int16_t));

  std::vector<std::unique_ptr<TabButton>> tabs_;  // element n at n - 1
  std::vector<std::unique_ptr<TabButtonMenu>> menus_;
  std::string selectedItem_;
  int width_ = 0;
};

}  // namespace qm
