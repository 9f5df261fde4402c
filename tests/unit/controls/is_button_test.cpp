// The image button's model as the program's buttons use it: Style 10, read
// properties, clicks by mouse, Space and access key, focus, the centred
// caption and Style 10's fixed colours. What the program never uses
// (writing, toggles, disabling, grey icons, themes, tooltip text) has one
// short check each. The window's part is checked by the shell tests.
#include "controls/is_button.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace qm {
namespace {

// A window of 15 twips a pixel whose caption measures 7 pixels a shown
// character and 16 high, and whose system colour n is RGB(n, 100, 200).
// `acts` lists everything that acts on the window.
class FakeSurface final : public ButtonSurface {
 public:
  ButtonSize SizeTwips() const override { return size; }
  void SetSizeTwips(ButtonSize s) override {
    acts.emplace_back("SetSizeTwips");
    size = s;
  }
  ButtonSize InnerPixels() const override { return {size.width / 15, size.height / 15}; }
  ButtonRect MeasureCaption(std::string_view caption, const ButtonRect& bounds,
                            unsigned flags) const override {
    ++measures;
    measureFlags = flags;
    const int width = 7 * static_cast<int>(ParseAccessKey(caption).text.size());
    return {bounds.left, bounds.top, bounds.left + width, bounds.top + 16};
  }
  OleColor SystemColor(int index) const override { return Rgb(index, 100, 200); }
  bool HasVisualStyles() const override { return false; }
  FontSpec CurrentFont() const override { return {"MS Sans Serif", 8.25}; }
  void ApplyRegion(const ButtonRegion&) override { acts.emplace_back("ApplyRegion"); }
  void Repaint() override { acts.emplace_back("Repaint"); }
  void PaintPending() override { acts.emplace_back("PaintPending"); }
  void TrackMouseLeave() override { acts.emplace_back("TrackMouseLeave"); }
  void ShowTooltip(const TooltipSpec& t) override {
    acts.emplace_back("ShowTooltip");
    tooltip = t;
    tooltipShown = true;
  }
  void HideTooltip() override {
    acts.emplace_back("HideTooltip");
    tooltipShown = false;
  }
  long Count(std::string_view act) const { return std::count(acts.begin(), acts.end(), act); }
  void EnableSurface(bool e) override { enabled = e; }
  void ApplyFont(const FontSpec&) override {}
  void ApplyMousePointer(std::int16_t) override {}

  ButtonSize size{975, 435};  // 65 x 29 pixels, as the settings window's "Add"
  mutable int measures = 0;
  mutable unsigned measureFlags = 0;
  std::vector<std::string> acts;
  TooltipSpec tooltip;
  bool tooltipShown = false;
  bool enabled = true;
};

constexpr OleColor Sys(int index) {
  return Rgb(index, 100, 200);
}

using Strings = std::vector<std::string>;

class IsButtonTest : public ::testing::Test {
 protected:
  // The settings window's "&Start": stored with Style 10 and little else.
  void LoadStart(bool tracking = true) {
    button.ReadProperties({{"Style", 10}, {"iNonThemeStyle", 0}, {"Caption", "&Start"}, {"ToolTipType", 0}});
    button.events.Click = [this] { raised.push_back("Click"); };
    button.events.MouseEnter = [this] { raised.push_back("MouseEnter"); };
    button.events.MouseLeave = [this] { raised.push_back("MouseLeave"); };
    button.Start(tracking);
  }
  void ClickInside() {
    button.MouseMove(true);
    button.MouseDown(MouseButton::Left);
    button.MouseUp(MouseButton::Left, true);
  }

  FakeSurface surface;
  isButton button{surface};
  Strings raised;
  Strings changed;
};

// --- Stored properties -----------------------------------------------------

// The program's buttons are read from Style, iNonThemeStyle, Caption,
// ToolTipType and BackColor; every other key takes its read default.
TEST_F(IsButtonTest, ReadPropertiesTakesTheStoredKeysAndTheReadDefaults) {
  button.ReadProperties(
      {{"Style", 10}, {"iNonThemeStyle", 0}, {"Caption", "Edit Font"}, {"BackColor", 0x00B36A36}});
  EXPECT_EQ(button.Caption(), "Edit Font");
  EXPECT_EQ(button.Style(), 10);
  EXPECT_EQ(button.NonThemeStyle(), 0);
  EXPECT_EQ(button.BackColor(), 0x00B36A36u);
  EXPECT_EQ(button.Font(), surface.CurrentFont());
}

// Writing, new controls and telling the container of a let (the program
// does none of them): one round trip.
TEST_F(IsButtonTest, WritePropertiesOfANewControlReadsBackTheSame) {
  button.InitProperties("cmdAdd");
  button.PropertyChanged = [this](std::string_view name) { changed.emplace_back(name); };
  button.SetBackColor(0x00FF8080);
  EXPECT_EQ(changed, Strings{"BackColor"});
  PropertyStore saved;
  button.WriteProperties(saved);
  isButton reloaded(surface);
  reloaded.ReadProperties(saved);
  EXPECT_EQ(reloaded.Caption(), "cmdAdd");
  EXPECT_EQ(reloaded.Style(), 0);
  EXPECT_EQ(reloaded.BackColor(), 0x00FF8080u);
}

// Disabling and the grey icon (the program's buttons stay enabled and have
// no icon): the disabled look greys the icon.
TEST_F(IsButtonTest, DisablingPaintsTheDisabledLookWithAGreyIcon) {
  LoadStart();
  button.SetIcon(Picture{1});
  button.SetEnabled(false);
  EXPECT_FALSE(surface.enabled);
  EXPECT_EQ(button.Look().state, ButtonState::Disabled);
  EXPECT_TRUE(button.Look().greyIcon);
  EXPECT_EQ(GreyColor(Rgb(0, 0, 150)), Rgb(16, 16, 16));
}

// --- State machine ---------------------------------------------------------

TEST_F(IsButtonTest, PressedAndReleasedInsideRaisesClickAfterPaintingHover) {
  LoadStart();
  int paintedBeforeClick = -1;
  button.events.Click = [&] { paintedBeforeClick = surface.Count("PaintPending"); };
  button.MouseMove(true);
  EXPECT_EQ(raised, Strings{"MouseEnter"});
  EXPECT_EQ(surface.Count("TrackMouseLeave"), 1);
  button.MouseDown(MouseButton::Left);
  EXPECT_EQ(button.Look().gloss, GlossVariant::Pressed);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(paintedBeforeClick, 1);
  EXPECT_EQ(button.State(), ButtonState::Hover);
  EXPECT_EQ(surface.Count("TrackMouseLeave"), 2);  // tracking restarted
}

// A click is a left press and a left release both on the button (the
// pressed look following the held pointer is seen on the screen).
TEST_F(IsButtonTest, OnlyALeftPressAndReleaseBothOnTheButtonClick) {
  LoadStart();
  // The press began on the window behind and was dragged onto the button.
  button.MouseMove(true);
  button.MouseUp(MouseButton::Left, true);
  // The right button does not click.
  button.MouseDown(MouseButton::Right);
  button.MouseUp(MouseButton::Right, true);
  // Pressed on it and released elsewhere with no move between: the
  // pointer has left.
  button.MouseDown(MouseButton::Left);
  button.MouseUp(MouseButton::Left, false);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave"}));
  EXPECT_EQ(button.State(), ButtonState::Normal);

  // A press is used up by its release: a second release does not click.
  ClickInside();
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave", "MouseEnter", "Click"}));
}

// A Click handler may close the window and the button with it, or free the
// button object: nothing may act on the gone window afterwards (a repaint
// with no window would repaint the whole screen).
TEST(IsButtonClick, ClickThatDestroysTheWindowIsTheLastThingTheButtonDoes) {
  enum Path { kMouse, kSpace, kAccessKey, kMouseFreeing };
  for (const Path path : {kMouse, kSpace, kAccessKey, kMouseFreeing}) {
    SCOPED_TRACE(path);
    FakeSurface gone;
    auto b = std::make_unique<isButton>(gone);
    b->ReadProperties({{"Style", 10}});
    b->Start(true);
    std::size_t actsAtClick = 0;
    int clicks = 0;
    Strings changes;
    b->PropertyChanged = [&](std::string_view name) { changes.emplace_back(name); };
    b->events.Click = [&] {
      ++clicks;
      if (path == kMouseFreeing) {
        b.reset();
      } else {
        b->SurfaceDetached();
      }
      actsAtClick = gone.acts.size();
    };
    const auto alive = b->LifeToken();
    b->MouseMove(true);
    if (path == kSpace) {
      b->KeyDown(ButtonKey::Space, false);
      b->KeyUp(ButtonKey::Space);
    } else if (path == kAccessKey) {
      b->AccessKeyPress();
    } else {
      b->MouseDown(MouseButton::Left);
      b->MouseUp(MouseButton::Left, true);
    }
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(gone.acts.size(), actsAtClick);
    EXPECT_FALSE(*alive);
    EXPECT_TRUE(changes.empty());
    if (!b) continue;
    // Later input finds nothing to act on either.
    b->Refresh();
    b->MouseLeft();
    EXPECT_EQ(gone.acts.size(), actsAtClick);
  }
}

// Toggle mode (no button of the program's toggles): down on one click, up
// with Click on the next.
TEST_F(IsButtonTest, ToggleButtonGoesDownOnOneClickAndUpWithClickOnTheNext) {
  LoadStart();
  button.SetButtonType(1);
  ClickInside();
  EXPECT_TRUE(button.Value());
  EXPECT_EQ(raised, Strings{"MouseEnter"});
  ClickInside();
  EXPECT_FALSE(button.Value());
  EXPECT_EQ(raised.back(), "Click");
}

// Space clicks; without mouse tracking (no such system runs the program)
// the mouse does not.
TEST_F(IsButtonTest, SpaceClicksAndWithoutMouseTrackingOnlyTheKeyboardClicks) {
  LoadStart(false);
  ClickInside();
  EXPECT_TRUE(raised.empty());

  EXPECT_EQ(button.KeyDown(ButtonKey::Space, false), FocusMove::None);
  button.KeyUp(ButtonKey::Space);
  EXPECT_EQ(raised, Strings{"Click"});
  EXPECT_EQ(button.State(), ButtonState::Normal);
}

TEST_F(IsButtonTest, FocusShowsTheHoverGlossAndItsLossDropsAPress) {
  LoadStart();
  // Losing the focus drops a press in progress.
  button.GotFocus();
  button.MouseMove(true);
  button.MouseDown(MouseButton::Left);
  button.LostFocus();
  EXPECT_EQ(button.Look().gloss, GlossVariant::Hover);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, Strings{"MouseEnter"});
}

// Themed styles (the program's Style 10 has no theme): without visual
// styles Style 6 becomes the non-theme style.
TEST_F(IsButtonTest, ThemedStyleWithoutVisualStylesBecomesTheNonThemeStyle) {
  LoadStart();
  button.SetNonThemeStyle(8);
  button.SetStyle(6);
  EXPECT_EQ(button.Look().style, 8);
}

// The tooltip (the program's buttons show an empty one): what the control
// holds reaches the tooltip in the system's tooltip colours, text 23 on 24.
TEST_F(IsButtonTest, TooltipShowsItsTextWhileTheMouseIsOver) {
  button.ReadProperties({{"ToolTipText", "Starts the messages"}, {"Tooltiptitle", "Start"}});
  button.Start(true);
  button.MouseMove(true);
  ASSERT_TRUE(surface.tooltipShown);
  EXPECT_EQ(surface.tooltip.text, "Starts the messages");
  EXPECT_EQ(surface.tooltip.foreColor, Sys(23));
  EXPECT_EQ(surface.tooltip.backColor, Sys(24));
  button.MouseLeft();
  EXPECT_FALSE(surface.tooltipShown);
}

// --- Layout ----------------------------------------------------------------

TEST_F(IsButtonTest, CentredCaptionLiesInTheMiddleOfTheButton) {
  LoadStart();
  button.SetCaption("Add");
  // 65 x 29 pixels, "Add" 21 x 16: 22 + 21 + 22 across, 6.5 above rounds to 6.
  EXPECT_EQ(button.CaptionRectangle(), (ButtonRect{22, 6, 43, 22}));
  EXPECT_EQ(button.CaptionDrawFlags(), 21u);
  EXPECT_EQ(surface.measureFlags, 0x410u);
  EXPECT_EQ(button.Margin(), 7);

  // Halves go to the even neighbour and the width is kept: 37 / 2 and 93 / 2.
  button.SetCaption("Edit");
  EXPECT_EQ(button.CaptionRectangle(), (ButtonRect{18, 6, 46, 22}));

  // Halves that round apart would lose a pixel and break the caption in
  // two ("Edit Font" at 150 %): 43 / 2 and 225 / 2 across, 13 / 2 and 45 / 2 down.
  EXPECT_EQ(CaptionRect(0, 134, 29, ButtonRect{4, 4, 95, 20}, 3, 16, false, 0), (ButtonRect{22, 6, 113, 22}));
}

// --- Colours and captions --------------------------------------------------

TEST(IsButtonArt, Style10HasItsFixedFacesAndMirroredCaps) {
  EXPECT_EQ(Style10Pixel(GlossVariant::Normal, 30, 15, 65, 29), Rgb(232, 231, 234));
  EXPECT_EQ(Style10Pixel(GlossVariant::Hover, 18, 11, 65, 29), Rgb(106, 166, 226));
  EXPECT_EQ(Style10Pixel(GlossVariant::Pressed, 46, 20, 65, 29), Rgb(106, 155, 204));
  // The rounded caps mirror each other at the two ends, whatever the width.
  for (int x = 0; x < 12; ++x) {
    EXPECT_EQ(Style10Pixel(GlossVariant::Normal, 200 - 1 - x, 0, 200, 40),
              Style10Pixel(GlossVariant::Normal, x, 0, 200, 40));
    EXPECT_EQ(Style10Pixel(GlossVariant::Hover, 93 - 1 - x, 0, 93, 29),
              Style10Pixel(GlossVariant::Hover, x, 0, 93, 29));
  }
}

TEST(IsButtonCaption, AccessKeyIsTheLetterAfterTheAmpersand) {
  const AccessKeyCaption exit = ParseAccessKey("E&xit");
  EXPECT_EQ(exit.text, "Exit");
  EXPECT_EQ(exit.underlined, 1);
  EXPECT_EQ(exit.key, 'X');
  const AccessKeyCaption save = ParseAccessKey("Save && Go");
  EXPECT_EQ(save.text, "Save & Go");
  EXPECT_EQ(save.underlined, -1);
  EXPECT_EQ(save.key, 0);
}

}  // namespace
}  // namespace qm
