#include "controls/tab_menu.h"

#include <limits>
#include <stdexcept>

namespace qm {
namespace {

// Places of the dividers and of the hidden templates.
constexpr int kSeparatorTop = 100;
constexpr int kTabTemplateLeft = 840;
constexpr int kMenuTemplateLeft = 120;
constexpr int kTemplateTop = 720;

// The bar's arithmetic is 16-bit; a result beyond it is the caller's error.
std::int16_t Fit16(long value) {
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
    throw std::overflow_error("Overflow");
  return static_cast<std::int16_t>(value);
}

}  // namespace

// ---- TabElement

TabElement::TabElement(std::int16_t index, int width, int height, int separatorLeft)
    : index_(index), width_(width), height_(height), separator_(separatorLeft, kSeparatorTop) {}

void TabElement::Move(int left, int top) {
  if (left == left_ && top == top_) return;
  left_ = left;
  top_ = top;
  NotifyChanged();
}

void TabElement::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  NotifyChanged();
}

void TabElement::ShowPicture(TabPicture picture) {
  if (picture == picture_) return;
  picture_ = picture;
  NotifyChanged();
}

void TabElement::NotifyChanged() const {
  Raise(Changed);
}

void TabElement::Raise(const std::function<void()>& event) {
  // A copy, so that a receiver may replace the handler while it runs.
  if (auto handler = event) handler();
}

// ---- TabButton

TabButton::TabButton(std::int16_t index) : TabElement(index, kTabWidth, kTabHeight, kTabPictureWidth) {}

bool TabButton::Hits(int x, int y) const {
  return ImgButtonRect().Contains(x, y) || LblTextRect().Contains(x, y);
}

void TabButton::Click() {
  Raise(events.Click);
  SetFocus();
}

void TabButton::SetFocus() {
  hasFocus_ = true;
  ShowPicture(TabPicture::Down);
  SetCaptionColor(kFocusedTabCaptionColor);
}

void TabButton::RemoveFocus() {
  hasFocus_ = false;
  ShowPicture(TabPicture::Normal);
  SetCaptionColor(kTabCaptionColor);
}

void TabButton::MoveMouseOff() {
  if (!hasFocus_) ShowPicture(TabPicture::Normal);
}

void TabButton::SetText(const std::string& NewCaption) {
  buttonText_ = NewCaption;
  if (lblText_ == NewCaption) return;
  lblText_ = NewCaption;
  NotifyChanged();
}

void TabButton::ImgButton_MouseMove() {
  Raise(events.MouseMove);
  if (!hasFocus_) ShowPicture(TabPicture::Over);
}

void TabButton::SetCaptionColor(OleColor color) {
  if (color == lblTextColor_) return;
  lblTextColor_ = color;
  NotifyChanged();
}

// ---- TabButtonMenu

TabButtonMenu::TabButtonMenu(std::int16_t index)
    : TabElement(index, kMenuButtonWidth, kMenuButtonHeight, kMenuPictureWidth) {}

void TabButtonMenu::ImgButton_MouseMove() {
  Raise(events.MouseMove);
  ShowPicture(TabPicture::Over);
}

// ---- TabMenu

TabMenu::TabMenu() {
  Create(tabs_, &TabMenu::TabButton_Click).Move(kTabTemplateLeft, kTemplateTop);
  Create(menus_, &TabMenu::TabButtonMenu_Click).Move(kMenuTemplateLeft, kTemplateTop);
}

template <typename Element>
Element& TabMenu::Create(std::vector<std::unique_ptr<Element>>& elements,
                         void (TabMenu::*onClick)(std::int16_t)) {
  const auto index = static_cast<std::int16_t>(elements.size() + 1);
  auto& element = *elements.emplace_back(std::make_unique<Element>(index));
  element.events.Click = [this, index, onClick] { (this->*onClick)(index); };
  // A mouse move over any button takes the hover from the others.
  element.events.MouseMove = [this, index] { MoveMouseOff(index); };
  return element;
}

void TabMenu::AddButton(std::int16_t Style_1_Tab_2_Menu, const std::string& ItemText) {
  // Each place is worked out with the upper bounds as they are once the new
  // element exists, and checked before it is made.
  const long tabs = TabButtonUBound();
  const long menus = TabButtonMenuUBound();
  if (Style_1_Tab_2_Menu == kTabStyle) {
    const long newTabs = Fit16(tabs + 1);
    const std::int16_t left = Fit16(kTabWidth * (newTabs - 2) + kMenuButtonWidth * (menus - 1));
    TabButton& tab = Create(tabs_, &TabMenu::TabButton_Click);
    tab.Move(left, 0);
    tab.SetText(ItemText);
    tab.SetVisible(true);
    if (auto created = ElementCreated) created(tab);
  } else if (Style_1_Tab_2_Menu == kMenuStyle) {
    const long newMenus = Fit16(menus + 1);
    const std::int16_t left = Fit16(kMenuButtonWidth * (newMenus - 2) + kTabWidth * (tabs - 1));
    TabButtonMenu& menu = Create(menus_, &TabMenu::TabButtonMenu_Click);
    menu.Move(left, 0);
    menu.SetVisible(true);
    if (auto created = ElementCreated) created(menu);
  }
}

void TabMenu::SetTabFocus(std::int16_t n) {
  const long index = long{n} + 1;
  if (index >= 1 && index <= TabButtonUBound()) Tab(static_cast<std::int16_t>(index)).Click();
}

void TabMenu::RemoveTabFocus(std::int16_t i) {
  for (auto& tab : tabs_)
    if (tab->Index() != i) tab->RemoveFocus();
}

void TabMenu::MoveMouseOff(std::int16_t i) {
  for (auto& tab : tabs_)
    if (tab->Index() != i) tab->MoveMouseOff();
  for (auto& menu : menus_)
    if (menu->Index() != i) menu->MoveMouseOff();
}

TabButton& TabMenu::Tab(std::int16_t index) {
  if (index < 1 || index > TabButtonUBound()) throw std::out_of_range("no such tab");
  return *tabs_[static_cast<std::size_t>(index - 1)];
}

TabButtonMenu& TabMenu::MenuButton(std::int16_t index) {
  if (index < 1 || index > TabButtonMenuUBound()) throw std::out_of_range("no such menu button");
  return *menus_[static_cast<std::size_t>(index - 1)];
}

void TabMenu::Resize(int width) {
  width_ = width;
}

void TabMenu::TabButton_Click(std::int16_t index) {
  RemoveTabFocus(index);
  selectedItem_ = Tab(index).ButtonText();
  if (auto handler = events.ItemClick) handler();
}

void TabMenu::TabButtonMenu_Click(std::int16_t index) {
  selectedItem_ = std::to_string(index - 1);
  if (auto handler = events.ItemMenuClick) handler();
}

}  // namespace qm
