// The image button's model: stored properties, lets, the state machine,
// layout arithmetic, Style 10's fixed colours and the grey icon. (The
// regions' shapes and Style 10's art are checked on the screen.)
#include "controls/is_button.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace qm {
namespace {

// A window of 15 twips a pixel whose caption measures 7 pixels a shown
// character and 16 high, and whose system colour n is RGB(n, 100, 200).
class FakeSurface final : public ButtonSurface {
 public:
  ButtonSize SizeTwips() const override { return size; }
  void SetSizeTwips(ButtonSize s) override {
    ++calls;
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
    ++calls;
    region = r;
  }
  void Repaint() override {
    ++calls;
    ++repaints;
  }
  void PaintPending() override {
    ++calls;
    ++paintedNow;
  }
  void TrackMouseLeave() override {
    ++calls;
    ++tracked;
  }
  void ShowTooltip(const TooltipSpec& t) override {
    ++calls;
    tooltip = t;
    tooltipShown = true;
  }
  void HideTooltip() override {
    ++calls;
    tooltipShown = false;
  }
  void EnableSurface(bool e) override { enabled = e; }
  void ApplyFont(const FontSpec& f) override { font = f; }
  void ApplyMousePointer(std::int16_t p) override { pointer = p; }

  ButtonSize size{975, 435};  // 65 x 29 pixels, as the settings window's "Add"
  bool visualStyles = false;
  mutable int measures = 0;
  mutable unsigned measureFlags = 0;
  ButtonRegion region;
  int calls = 0;  // everything that acts on the window
  int repaints = 0;
  int paintedNow = 0;
  int tracked = 0;
  TooltipSpec tooltip;
  bool tooltipShown = false;
  bool enabled = true;
  FontSpec font;
  std::int16_t pointer = -1;
};

constexpr OleColor Sys(int index) {
  return Rgb(index, 100, 200);
}

class IsButtonTest : public ::testing::Test {
 protected:
  // The settings window's "&Start": stored with Style 10 and little else.
  void LoadStart(bool tracking = true) {
    button.ReadProperties({{"Style", 10},
                           {"iNonThemeStyle", 0},
                           {"Caption", "&Start"},
                           {"ToolTipType", 0},
                           {"Tooltiptitle", ""},
                           {"ToolTipIcon", 0},
                           {"ttForeColor", 0}});
    Watch();
    button.Start(tracking);
  }
  void Watch() {
    button.events.Click = [this] { raised.push_back("Click"); };
    button.events.MouseEnter = [this] { raised.push_back("MouseEnter"); };
    button.events.MouseLeave = [this] { raised.push_back("MouseLeave"); };
    button.PropertyChanged = [this](std::string_view name) { changed.emplace_back(name); };
  }
  void ClickInside() {
    button.MouseMove(true);
    button.MouseDown(MouseButton::Left);
    button.MouseUp(MouseButton::Left, true);
  }

  FakeSurface surface;
  isButton button{surface};
  std::vector<std::string> raised;
  std::vector<std::string> changed;
};

using Strings = std::vector<std::string>;

// --- Stored properties -----------------------------------------------------

TEST_F(IsButtonTest, StoredButtonTakesItsValuesAndTheReadDefaultsForTheRest) {
  LoadStart();
  EXPECT_EQ(button.Style(), 10);
  EXPECT_EQ(button.NonThemeStyle(), 0);
  EXPECT_EQ(button.Caption(), "&Start");
  EXPECT_EQ(button.ToolTipType(), 0);
  EXPECT_EQ(button.ToolTipForeColor(), 0u);
  EXPECT_EQ(button.IconSize(), 16);
  EXPECT_EQ(button.IconAlign(), 1);
  EXPECT_TRUE(button.Enabled());
  EXPECT_TRUE(button.RoundedBordersByTheme());
  EXPECT_EQ(button.MaskColor(), 0x00C0C0C0u);
  EXPECT_EQ(button.BackColor(), Sys(15));
  EXPECT_EQ(button.HighlightColor(), Sys(13));
  EXPECT_EQ(button.FontHighlightColor(), Sys(18));
  EXPECT_EQ(button.ToolTipBackColor(), Sys(24));
  EXPECT_EQ(button.Font(), surface.CurrentFont());
  EXPECT_EQ(button.Version(), "3.6.2");
  EXPECT_EQ(button.Margin(), 7);
}

TEST_F(IsButtonTest, CaptionMissingOrSavedEmptyReadsAsIsButton) {
  button.ReadProperties({{"Style", 10}});
  EXPECT_EQ(button.Caption(), "isButton");
  EXPECT_EQ(button.ToolTipForeColor(), Sys(23));  // the system's tooltip text colour

  button.SetCaption("");
  PropertyStore saved;
  button.WriteProperties(saved);
  EXPECT_FALSE(saved.Has("Caption"));

  isButton reloaded(surface);
  reloaded.ReadProperties(saved);
  EXPECT_EQ(reloaded.Caption(), "isButton");
}

TEST_F(IsButtonTest, NewControlIsWrittenUnderItsKeysAndReadsBackTheSame) {
  button.InitProperties("cmdAdd");
  EXPECT_EQ(button.Caption(), "cmdAdd");
  EXPECT_EQ(button.Style(), 0);
  EXPECT_EQ(button.ToolTipBackColor(), 0u);
  EXPECT_FALSE(button.RoundedBordersByTheme());
  button.SetUseCustomColors(true);
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
  EXPECT_EQ(reloaded.BackColor(), 0x00FF8080u);
  EXPECT_TRUE(reloaded.UseCustomColors());
  EXPECT_TRUE(reloaded.RightToLeft());
  EXPECT_FALSE(reloaded.RoundedBordersByTheme());
  EXPECT_EQ(reloaded.ToolTipType(), 1);
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

  const int repaints = surface.repaints;
  button.SetMousePointer(2);
  EXPECT_EQ(surface.repaints, repaints);
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
  button.events.Click = [&] { paintedBeforeClick = surface.paintedNow; };
  button.MouseMove(true);
  EXPECT_EQ(raised, Strings{"MouseEnter"});
  EXPECT_EQ(button.State(), ButtonState::Hover);
  EXPECT_EQ(surface.tracked, 1);
  button.MouseDown(MouseButton::Left);
  EXPECT_EQ(button.Look().gloss, GlossVariant::Pressed);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(paintedBeforeClick, 1);
  EXPECT_EQ(button.State(), ButtonState::Hover);
  EXPECT_EQ(surface.tracked, 2);  // tracking restarted
}

TEST_F(IsButtonTest, PressedMovedOffAndReleasedRaisesNoClick) {
  LoadStart();
  button.MouseMove(true);
  button.MouseDown(MouseButton::Left);
  button.MouseMove(false);
  button.MouseLeft();  // the platform's own notice, after the captured move
  button.MouseUp(MouseButton::Left, false);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave"}));
  EXPECT_EQ(button.State(), ButtonState::Normal);
  EXPECT_EQ(button.Look().gloss, GlossVariant::Normal);

  // Only the left button clicks.
  button.MouseMove(true);
  button.MouseDown(MouseButton::Right);
  button.MouseUp(MouseButton::Right, true);
  EXPECT_EQ(raised.back(), "MouseEnter");
}

TEST_F(IsButtonTest, OnlyAPressAndAReleaseBothOnTheButtonClick) {
  LoadStart();
  // The press began on the window behind and was dragged onto the button.
  button.MouseMove(true);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, Strings{"MouseEnter"});
  EXPECT_EQ(button.State(), ButtonState::Hover);

  // Pressed on the button and released elsewhere with no move between:
  // no Click, and the pointer has left.
  button.MouseDown(MouseButton::Left);
  button.MouseUp(MouseButton::Left, false);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave"}));
  EXPECT_EQ(button.State(), ButtonState::Normal);
  EXPECT_FALSE(surface.tooltipShown);

  // A press is used up by its release: a second release does not click.
  button.MouseMove(true);
  button.MouseDown(MouseButton::Left);
  button.MouseUp(MouseButton::Left, true);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave", "MouseEnter", "Click"}));

  // A toggle button is not flipped by a release it did not see pressed.
  button.SetButtonType(1);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_FALSE(button.Value());
  button.MouseDown(MouseButton::Left);
  button.MouseUp(MouseButton::Left, false);
  EXPECT_FALSE(button.Value());
}

TEST_F(IsButtonTest, PressedLookFollowsThePointerWhileTheButtonIsHeld) {
  LoadStart();
  button.MouseMove(true);
  button.MouseDown(MouseButton::Left);
  button.MouseMove(false);  // held, dragged off
  EXPECT_EQ(button.Look().gloss, GlossVariant::Normal);
  EXPECT_TRUE(button.PressInProgress());
  button.MouseMove(true);  // and back
  EXPECT_EQ(button.State(), ButtonState::Pressed);
  EXPECT_EQ(button.Look().gloss, GlossVariant::Pressed);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave", "MouseEnter", "Click"}));
  EXPECT_EQ(button.State(), ButtonState::Hover);
  EXPECT_FALSE(button.PressInProgress());
}

TEST_F(IsButtonTest, LosingTheCaptureOrTheFocusWhilePressedDropsThePress) {
  LoadStart();
  button.GotFocus();
  button.MouseMove(true);
  button.MouseDown(MouseButton::Left);
  button.CancelPress();  // the capture went elsewhere
  EXPECT_EQ(button.State(), ButtonState::Hover);
  EXPECT_NE(button.Look().gloss, GlossVariant::Pressed);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, Strings{"MouseEnter"});

  button.MouseDown(MouseButton::Left);
  button.LostFocus();
  EXPECT_EQ(button.Look().gloss, GlossVariant::Hover);
  button.MouseUp(MouseButton::Left, true);
  EXPECT_EQ(raised, Strings{"MouseEnter"});

  button.GotFocus();
  button.KeyDown(ButtonKey::Space, false);
  button.LostFocus();
  EXPECT_NE(button.Look().gloss, GlossVariant::Pressed);
  button.KeyUp(ButtonKey::Space);
  EXPECT_EQ(raised, Strings{"MouseEnter"});

  // Space that came up without going down here (it went down on the
  // control that had the focus before) does not click either.
  button.GotFocus();
  button.KeyUp(ButtonKey::Space);
  EXPECT_EQ(raised, Strings{"MouseEnter"});
}

// A Click handler may close the window and the button with it: nothing
// may act on the gone window afterwards (a repaint with no window would
// repaint the whole screen).
TEST_F(IsButtonTest, ClickThatDestroysTheWindowIsTheLastThingTheButtonDoes) {
  for (int path = 0; path < 4; ++path) {
    SCOPED_TRACE(path);
    FakeSurface gone;
    isButton b(gone);
    b.ReadProperties(
        {{"Style", 10}, {"Caption", "E&xit"}, {"ButtonType", path == 3 ? 1 : 0}, {"Value", path == 3}});
    b.Start(true);
    int callsAtClick = -1;
    int clicks = 0;
    std::vector<std::string> changes;
    b.PropertyChanged = [&](std::string_view name) { changes.emplace_back(name); };
    b.events.Click = [&] {
      ++clicks;
      b.SurfaceDetached();
      callsAtClick = gone.calls;
    };
    const auto alive = b.LifeToken();
    b.MouseMove(true);
    switch (path) {
      case 0:
      case 3:  // a toggle button that is down comes up with Click
        b.MouseDown(MouseButton::Left);
        b.MouseUp(MouseButton::Left, true);
        break;
      case 1:
        b.KeyDown(ButtonKey::Space, false);
        b.KeyUp(ButtonKey::Space);
        break;
      case 2:
        b.AccessKeyPress();
        break;
    }
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(gone.calls, callsAtClick);
    EXPECT_FALSE(*alive);
    EXPECT_TRUE(changes.empty());
    // Later input finds nothing to act on either.
    b.Refresh();
    b.MouseLeft();
    EXPECT_EQ(gone.calls, callsAtClick);
  }
}

TEST_F(IsButtonTest, ClickHandlerMayFreeTheButtonItself) {
  FakeSurface alone;
  auto owned = std::make_unique<isButton>(alone);
  owned->ReadProperties({{"Style", 10}});
  owned->Start(true);
  int clicks = 0;
  owned->events.Click = [&] {
    ++clicks;
    owned.reset();
  };
  const auto alive = owned->LifeToken();
  owned->MouseMove(true);
  owned->MouseDown(MouseButton::Left);
  const int calls = alone.calls;
  owned->MouseUp(MouseButton::Left, true);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(owned, nullptr);
  EXPECT_FALSE(*alive);
  EXPECT_LE(alone.calls, calls + 2);  // the hover painted and tracking restarted before Click, nothing after
}

TEST_F(IsButtonTest, ToggleButtonGoesDownOnOneClickAndUpWithClickOnTheNext) {
  LoadStart();
  button.SetButtonType(1);
  ClickInside();
  EXPECT_TRUE(button.Value());
  EXPECT_EQ(button.State(), ButtonState::Hover);
  EXPECT_EQ(button.Look().state, ButtonState::Pressed);
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
  EXPECT_EQ(surface.tracked, 0);

  EXPECT_EQ(button.KeyDown(ButtonKey::Space, false), FocusMove::None);
  EXPECT_EQ(button.Look().gloss, GlossVariant::Pressed);
  button.KeyUp(ButtonKey::Space);
  EXPECT_EQ(raised, Strings{"Click"});
  EXPECT_EQ(button.State(), ButtonState::Normal);

  button.AccessKeyPress();
  EXPECT_EQ(raised, (Strings{"Click", "Click"}));
  EXPECT_EQ(button.State(), ButtonState::Normal);
}

TEST_F(IsButtonTest, ArrowsMoveTheFocusAndTabAlsoRaisesMouseLeave) {
  LoadStart();
  EXPECT_EQ(button.KeyDown(ButtonKey::Right, false), FocusMove::Next);
  EXPECT_EQ(button.KeyDown(ButtonKey::Down, false), FocusMove::Next);
  EXPECT_EQ(button.KeyDown(ButtonKey::Left, false), FocusMove::Previous);
  EXPECT_EQ(button.KeyDown(ButtonKey::Up, false), FocusMove::Previous);
  EXPECT_TRUE(raised.empty());
  EXPECT_EQ(button.KeyDown(ButtonKey::Tab, true), FocusMove::Previous);
  EXPECT_EQ(raised, Strings{"MouseLeave"});
}

TEST_F(IsButtonTest, FocusShowsTheHoverGlossAndTheDefaultThemeState) {
  LoadStart();
  EXPECT_EQ(button.Look().gloss, GlossVariant::Normal);
  button.GotFocus();
  EXPECT_EQ(button.Look().gloss, GlossVariant::Hover);
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
  EXPECT_EQ(button.Style(), 6);
  const ButtonLook look = button.Look();
  EXPECT_EQ(look.style, 8);
  EXPECT_EQ(button.Style(), 8);
  EXPECT_EQ(changed, Strings{"Style"});
  EXPECT_EQ(surface.region.points.front(), (ButtonPoint{0, 2}));

  surface.visualStyles = true;
  button.SetStyle(6);
  EXPECT_EQ(button.Look().style, 6);
  EXPECT_EQ(surface.region.kind, ButtonRegion::Kind::Theme);
}

TEST_F(IsButtonTest, TooltipTakesTheContainersTextWhileTheMouseIsOver) {
  button.ReadProperties({{"ToolTipText", "Starts the messages"},
                         {"Tooltiptitle", "Start"},
                         {"ToolTipIcon", 1},
                         {"ttForeColor", static_cast<std::int64_t>(0x80000008)}});
  button.Start(true);
  EXPECT_EQ(button.ContainerToolTipText(), "Starts the messages");

  button.MouseMove(true);
  ASSERT_TRUE(surface.tooltipShown);
  EXPECT_EQ(surface.tooltip.text, "Starts the messages");
  EXPECT_EQ(surface.tooltip.title, "Start");
  EXPECT_EQ(surface.tooltip.icon, 1);
  EXPECT_TRUE(surface.tooltip.balloon);
  EXPECT_EQ(surface.tooltip.foreColor, Sys(8));
  EXPECT_EQ(surface.tooltip.backColor, Sys(24));
  EXPECT_EQ(button.ContainerToolTipText(), "");

  button.SetToolTipText("Go");
  EXPECT_EQ(surface.tooltip.text, "Go");
  button.MouseLeft();
  EXPECT_FALSE(surface.tooltipShown);
  EXPECT_EQ(button.ContainerToolTipText(), "Go");
}

TEST_F(IsButtonTest, TooltipTextSurvivesSavingAndReloading) {
  button.ReadProperties({{"Style", 10}});
  button.Start(true);
  button.SetToolTipText("Starts the messages");
  PropertyStore saved;
  button.WriteProperties(saved);
  EXPECT_EQ(saved.ReadString("tooltiptext", ""), "Starts the messages");

  FakeSurface again;
  isButton reloaded(again);
  reloaded.ReadProperties(saved);
  reloaded.Start(true);
  EXPECT_EQ(reloaded.ToolTipText(), "Starts the messages");
  reloaded.MouseMove(true);
  EXPECT_EQ(again.tooltip.text, "Starts the messages");

  // Saved while the tooltip shows (the control holds the text then), and
  // saved with no text: the key goes.
  PropertyStore whileOver;
  reloaded.WriteProperties(whileOver);
  EXPECT_EQ(whileOver.ReadString("ToolTipText", ""), "Starts the messages");
  reloaded.SetToolTipText("");
  reloaded.MouseLeft();
  reloaded.WriteProperties(whileOver);
  EXPECT_FALSE(whileOver.Has("ToolTipText"));
}

// --- Layout ----------------------------------------------------------------

TEST_F(IsButtonTest, SmallButtonGrowsToThreeHundredTwipsEachWay) {
  surface.size = {200, 100};
  LoadStart();
  EXPECT_EQ(surface.size, (ButtonSize{300, 300}));
  surface.size = {975, 299};
  button.Layout();
  EXPECT_EQ(surface.size, (ButtonSize{975, 300}));
  surface.size = {975, 435};
  button.Layout();
  EXPECT_EQ(surface.size, (ButtonSize{975, 435}));
}

TEST_F(IsButtonTest, CentredCaptionLiesInTheMiddleOfTheButton) {
  button.ReadProperties({{"Style", 10}, {"Caption", "Add"}});
  button.Start(true);
  // 65 x 29 pixels, "Add" 21 x 16: 22 + 21 + 22 across, 6.5 above rounds to 6.
  EXPECT_EQ(button.CaptionRectangle(), (ButtonRect{22, 6, 43, 22}));
  EXPECT_EQ(button.CaptionDrawFlags(), 21u);
  EXPECT_EQ(surface.measureFlags, 0x410u);

  // Halves go to the even neighbour and the width is kept: 37 / 2 and 93 / 2.
  button.SetCaption("Edit");
  EXPECT_EQ(button.CaptionRectangle(), (ButtonRect{18, 6, 46, 22}));

  // Halves that round apart would lose a pixel and break the caption in
  // two: 43 / 2 and 225 / 2 across, 13 / 2 and 45 / 2 down.
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
  EXPECT_EQ(GreyColor(Rgb(255, 0, 0)), Rgb(84, 84, 84));         // 84.15
  EXPECT_EQ(GreyColor(Rgb(0, 255, 0)), Rgb(150, 150, 150));      // 150.45
  EXPECT_EQ(GreyColor(Rgb(0, 0, 50)), Rgb(6, 6, 6));             // 5.5
  EXPECT_EQ(GreyColor(Rgb(0, 0, 150)), Rgb(16, 16, 16));         // 16.5
  EXPECT_EQ(GreyColor(Rgb(255, 255, 254)), Rgb(255, 255, 255));  // 262.54, at most 255
}

TEST(IsButtonArt, GradientRunsLinearlyFromFirstToLastLine) {
  EXPECT_EQ(GradientStep(Rgb(0, 100, 200), Rgb(100, 0, 250), 0, 11), Rgb(0, 100, 200));
  EXPECT_EQ(GradientStep(Rgb(0, 100, 200), Rgb(100, 0, 250), 5, 11), Rgb(50, 50, 225));
  EXPECT_EQ(GradientStep(Rgb(0, 100, 200), Rgb(100, 0, 250), 10, 11), Rgb(100, 0, 250));
}

TEST(IsButtonCaption, AccessKeyIsTheLetterAfterTheAmpersand) {
  const AccessKeyCaption start = ParseAccessKey("&Start");
  EXPECT_EQ(start.text, "Start");
  EXPECT_EQ(start.underlined, 0);
  EXPECT_EQ(start.key, 'S');
  const AccessKeyCaption exit = ParseAccessKey("E&xit");
  EXPECT_EQ(exit.text, "Exit");
  EXPECT_EQ(exit.underlined, 1);
  EXPECT_EQ(exit.key, 'X');
  EXPECT_EQ(ParseAccessKey("Save && Go").text, "Save & Go");
  EXPECT_EQ(ParseAccessKey("Save && Go").key, 0);
  EXPECT_EQ(ParseAccessKey("Add").underlined, -1);
}

}  // namespace
}  // namespace qm
