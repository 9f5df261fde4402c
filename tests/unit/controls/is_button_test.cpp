// The image button's model: stored properties, lets, the state machine,
// layout arithmetic, Style 10's fixed colours and the grey icon. The
// window's part (messages, focus and keys, regions, pixels on the screen)
// is checked by the shell tests.
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
  bool HasVisualStyles() const override { return visualStyles; }
  FontSpec CurrentFont() const override { return {"MS Sans Serif", 8.25}; }
  void ApplyRegion(const ButtonRegion& r) override {
    acts.emplace_back("ApplyRegion");
    region = r;
  }
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
  void ApplyMousePointer(std::int16_t p) override { pointer = p; }

  ButtonSize size{975, 435};  // 65 x 29 pixels, as the settings window's "Add"
  bool visualStyles = false;
  mutable int measures = 0;
  mutable unsigned measureFlags = 0;
  ButtonRegion region;
  std::vector<std::string> acts;
  TooltipSpec tooltip;
  bool tooltipShown = false;
  bool enabled = true;
  std::int16_t pointer = -1;
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
    button.PropertyChanged = [this](std::string_view name) { changed.emplace_back(name); };
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

// Missing keys take the read defaults, which are also the write defaults:
// a control read from an empty store writes back only the keys that are
// always written, and its caption.
TEST_F(IsButtonTest, ReadPropertiesTakesTheReadDefaultsAndWritePropertiesLeavesThemOut) {
  button.ReadProperties({});
  EXPECT_EQ(button.Caption(), "isButton");
  EXPECT_EQ(button.Style(), 3);
  EXPECT_EQ(button.NonThemeStyle(), 5);
  EXPECT_EQ(button.MaskColor(), 0x00C0C0C0u);
  EXPECT_EQ(button.BackColor(), Sys(15));
  EXPECT_EQ(button.Font(), surface.CurrentFont());

  PropertyStore saved;
  button.WriteProperties(saved);
  EXPECT_EQ(saved.Keys(), (Strings{"Caption", "Font", "Icon", "ToolTipIcon", "Tooltiptitle", "ToolTipType"}));
  // An empty caption is not written, so it reads back as "isButton".
  button.SetCaption("");
  button.WriteProperties(saved);
  EXPECT_FALSE(saved.Has("Caption"));
  isButton reloaded(surface);
  reloaded.ReadProperties(saved);
  EXPECT_EQ(reloaded.Caption(), "isButton");
}

// A control newly placed on a form has values of its own, and a Boolean
// kept as a 32-bit number is written as -1.
TEST_F(IsButtonTest, NewControlIsWrittenUnderItsKeysAndReadsBackTheSame) {
  button.InitProperties("cmdAdd");
  button.SetRightToLeft(true);
  button.SetBackColor(0x00FF8080);
  PropertyStore saved;
  button.WriteProperties(saved);
  EXPECT_EQ(saved.ReadLong("bRTLText", 0), -1);

  isButton reloaded(surface);
  reloaded.ReadProperties(saved);
  EXPECT_EQ(reloaded.Caption(), "cmdAdd");
  EXPECT_EQ(reloaded.Style(), 0);
  EXPECT_EQ(reloaded.NonThemeStyle(), 0);
  EXPECT_TRUE(reloaded.RightToLeft());
  EXPECT_EQ(reloaded.BackColor(), 0x00FF8080u);
  EXPECT_FALSE(reloaded.RoundedBordersByTheme());
  EXPECT_EQ(reloaded.MaskColor(), 0u);
}

// --- Lets ------------------------------------------------------------------

TEST_F(IsButtonTest, LetsTellTheContainerByNameAndLayOutOnlyWhenTheShapeChanges) {
  LoadStart();
  const int measures = surface.measures;
  button.SetBackColor(0x00B36A36);
  button.SetToolTipTitle("Hint");
  button.SetToolTipIcon(1);
  EXPECT_EQ(surface.measures, measures);
  button.SetCaption("E&xit");
  button.SetStyle(7);
  EXPECT_EQ(surface.measures, measures + 2);
  EXPECT_EQ(surface.region.kind, ButtonRegion::Kind::Polygon);

  const int repaints = surface.Count("Repaint");
  button.SetMousePointer(2);
  EXPECT_EQ(surface.Count("Repaint"), repaints);
  EXPECT_EQ(surface.pointer, 2);
  button.SetRightToLeft(true);
  EXPECT_EQ(surface.measureFlags, 0x20410u);
  EXPECT_EQ(changed, (Strings{"BackColor", "TooltipTitle", "TooltipIcon", "Caption", "Style", "MousePointer",
                              "bRTLText"}));
}

TEST_F(IsButtonTest, DisablingResetsTheStateAndPaintsGreyOnTheButtonFace) {
  LoadStart();
  button.SetStyle(0);
  button.SetUseCustomColors(true);
  button.SetIcon(Picture{1});
  button.MouseMove(true);
  button.SetEnabled(false);
  EXPECT_FALSE(surface.enabled);
  EXPECT_EQ(button.State(), ButtonState::Normal);
  const ButtonLook look = button.Look();
  EXPECT_EQ(look.state, ButtonState::Disabled);
  EXPECT_EQ(look.face, Sys(15));
  EXPECT_EQ(look.textColor, Sys(17));
  EXPECT_TRUE(look.greyIcon);
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
  EXPECT_FALSE(surface.tooltipShown);

  // A press is used up by its release: a second release does not click.
  ClickInside();
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave", "MouseEnter", "Click"}));

  // A toggle button is not flipped by a release it did not see pressed.
  button.SetButtonType(1);
  button.MouseUp(MouseButton::Left, true);
  button.MouseDown(MouseButton::Left);
  button.MouseUp(MouseButton::Left, false);
  EXPECT_FALSE(button.Value());
}

// A Click handler may close the window and the button with it, or free the
// button object: nothing may act on the gone window afterwards (a repaint
// with no window would repaint the whole screen).
TEST(IsButtonClick, ClickThatDestroysTheWindowIsTheLastThingTheButtonDoes) {
  enum Path { kMouse, kSpace, kAccessKey, kToggleUp, kMouseFreeing };
  for (const Path path : {kMouse, kSpace, kAccessKey, kToggleUp, kMouseFreeing}) {
    SCOPED_TRACE(path);
    FakeSurface gone;
    auto b = std::make_unique<isButton>(gone);
    b->ReadProperties(
        {{"Style", 10}, {"ButtonType", path == kToggleUp ? 1 : 0}, {"Value", path == kToggleUp}});
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

TEST_F(IsButtonTest, ToggleButtonGoesDownOnOneClickAndUpWithClickOnTheNext) {
  LoadStart();
  button.SetButtonType(1);
  ClickInside();
  EXPECT_TRUE(button.Value());
  EXPECT_EQ(button.State(), ButtonState::Hover);
  EXPECT_EQ(button.Look().gloss, GlossVariant::Pressed);
  EXPECT_EQ(raised, Strings{"MouseEnter"});  // an up toggle going down raises no Click

  button.MouseDown(MouseButton::Left);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_FALSE(button.Value());
  EXPECT_EQ(raised.back(), "Click");
  EXPECT_EQ(button.Look().state, ButtonState::Hover);
}

TEST_F(IsButtonTest, WithoutMouseTrackingOnlyTheKeyboardClicks) {
  LoadStart(false);
  ClickInside();
  EXPECT_TRUE(raised.empty());
  EXPECT_EQ(surface.Count("TrackMouseLeave"), 0);

  EXPECT_EQ(button.KeyDown(ButtonKey::Space, false), FocusMove::None);
  button.KeyUp(ButtonKey::Space);
  EXPECT_EQ(raised, Strings{"Click"});
  EXPECT_EQ(button.State(), ButtonState::Normal);
}

TEST_F(IsButtonTest, FocusShowsTheHoverGlossAndTheDefaultThemeStateAndItsLossDropsAPress) {
  LoadStart();
  // Losing the focus drops a press in progress.
  button.GotFocus();
  button.MouseMove(true);
  button.MouseDown(MouseButton::Left);
  button.LostFocus();
  EXPECT_EQ(button.Look().gloss, GlossVariant::Hover);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, Strings{"MouseEnter"});

  button.GotFocus();
  button.SetEnabled(false);
  EXPECT_EQ(button.Look().gloss, GlossVariant::Hover);  // disabled but focused

  surface.visualStyles = true;
  button.SetEnabled(true);
  button.SetStyle(6);
  EXPECT_EQ(button.Look().themeState, ButtonState::Default);
  button.LostFocus();
  EXPECT_EQ(button.Look().themeState, ButtonState::Normal);
}

TEST_F(IsButtonTest, ThemedStyleWithoutVisualStylesBecomesTheNonThemeStyleAtItsFirstPaint) {
  LoadStart();
  button.SetNonThemeStyle(8);
  button.SetStyle(6);
  changed.clear();
  EXPECT_EQ(button.Look().style, 8);
  EXPECT_EQ(button.Style(), 8);
  EXPECT_EQ(changed, Strings{"Style"});

  surface.visualStyles = true;
  button.SetStyle(6);
  EXPECT_EQ(button.Look().style, 6);
  EXPECT_EQ(surface.region.kind, ButtonRegion::Kind::Theme);
}

// The control holds the container's tooltip text while the mouse is over
// it, and the text is saved whichever of the two holds it. (The program's
// buttons have no tooltip of their own: one short check.)
TEST_F(IsButtonTest, TooltipTakesTheContainersTextWhileTheMouseIsOverAndIsSaved) {
  button.ReadProperties({{"ToolTipText", "Starts the messages"}, {"Tooltiptitle", "Start"}});
  button.Start(true);
  button.MouseMove(true);
  ASSERT_TRUE(surface.tooltipShown);
  EXPECT_EQ(surface.tooltip.text, "Starts the messages");
  EXPECT_EQ(surface.tooltip.title, "Start");
  // Its text is the system's tooltip text colour (23), its ground 24.
  EXPECT_EQ(surface.tooltip.foreColor, Sys(23));
  EXPECT_EQ(surface.tooltip.backColor, Sys(24));
  EXPECT_TRUE(surface.tooltip.balloon);  // ToolTipType's read default
  EXPECT_EQ(button.ContainerToolTipText(), "");
  PropertyStore saved;
  button.WriteProperties(saved);
  EXPECT_EQ(saved.ReadString("ToolTipText", ""), "Starts the messages");

  button.SetToolTipText("Go");
  EXPECT_EQ(surface.tooltip.text, "Go");
  button.MouseLeft();
  EXPECT_FALSE(surface.tooltipShown);
  EXPECT_EQ(button.ContainerToolTipText(), "Go");
  button.WriteProperties(saved);
  EXPECT_EQ(saved.ReadString("ToolTipText", ""), "Go");
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

TEST(IsButtonArt, GreyKeepsTheSixteenStepsAndWhiteAndRoundsHalvesToEven) {
  for (unsigned v = 0; v < 256; v += 16) EXPECT_EQ(GreyColor(Rgb(v, v, v)), Rgb(v, v, v)) << v;
  EXPECT_EQ(GreyColor(0x00FFFFFF), 0x00FFFFFFu);
  EXPECT_EQ(GreyColor(Rgb(17, 17, 17)), Rgb(18, 18, 18));        // 17.51
  EXPECT_EQ(GreyColor(Rgb(0, 0, 50)), Rgb(6, 6, 6));             // 5.5
  EXPECT_EQ(GreyColor(Rgb(0, 0, 150)), Rgb(16, 16, 16));         // 16.5
  EXPECT_EQ(GreyColor(Rgb(255, 255, 254)), Rgb(255, 255, 255));  // 262.54, at most 255
}

TEST(IsButtonArt, GradientRunsLinearlyFromFirstToLastLine) {
  EXPECT_EQ(GradientStep(Rgb(0, 100, 200), Rgb(100, 0, 250), 5, 11), Rgb(50, 50, 225));
  EXPECT_EQ(GradientStep(Rgb(0, 100, 200), Rgb(100, 0, 250), 10, 11), Rgb(100, 0, 250));
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
