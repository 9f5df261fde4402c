#include "platform/common_dialog.h"

#include <gtest/gtest.h>

namespace qm {
namespace {

using namespace choose_font;

const DialogFont kTenPoint{"Arial", 10, false, false, false, false, 400};

TEST(FontChooserRequest, TheProgramsCallAsksForScreenFontsFromTheFontRecordOnly) {
  ChooseFontArgs args;
  args.flags = 1;
  const ChooseFontRequest r = PrepareChooseFont(kTenPoint, args, 15);
  EXPECT_EQ(r.record.flags, 0x41u);
  EXPECT_FALSE(r.record.hook);
  EXPECT_FALSE(r.record.hasOwner);
  EXPECT_FALSE(r.record.printerDc);
  // 200 / 15 = 13.33: 13 pixels; tenths of a point.
  EXPECT_EQ(r.record.pointSize, 100);
  EXPECT_EQ(r.logFont, (LogFontFields{-13, 400, false, false, false, "Arial"}));
  // 12 points at 144 dpi (10 twips a pixel): 24; 9.75 points at 96: -13 (13.0).
  EXPECT_EQ(PrepareChooseFont({"Arial", 12}, args, 10).logFont.height, -24);
  EXPECT_EQ(PrepareChooseFont({"Arial", 9.75}, args, 15).logFont.height, -13);
  EXPECT_EQ(PrepareChooseFont({"Arial", 9.75}, args, 15).record.pointSize, 98);  // 97.5, half to even
  // A name from the settings file longer than the face name field is cut.
  EXPECT_EQ(PrepareChooseFont({std::string(40, 'F'), 10}, args, 15).logFont.faceName, std::string(31, 'F'));
}

// Arguments the program itself never passes: one check of their flags and
// of the owner.
TEST(FontChooserRequest, EffectsLimitsAndHookFollowTheArguments) {
  ChooseFontArgs args;
  args.minSize = 8;
  args.color = 255;
  args.hook = true;
  args.owner = 77;
  const ChooseFontFields r = PrepareChooseFont(kTenPoint, args, 15).record;
  EXPECT_EQ(r.flags, kScreenFonts | kInitToLogFontStruct | kLimitSize | kEffects | kEnableHook);
  EXPECT_TRUE(r.hasOwner);
}

TEST(FontChooserResult, OnlyAConfirmationCopiesBackAndAFailureRaisesTheWrappersError) {
  EXPECT_EQ(DialogOutcomeOf(1), DialogOutcome::Confirmed);
  EXPECT_EQ(DialogOutcomeOf(0), DialogOutcome::Cancelled);
  EXPECT_EQ(DialogOutcomeOf(-1), DialogOutcome::Failed);

  DialogFont font = kTenPoint;
  std::uint32_t flags = 0x41, color = 0;
  ApplyChooseFontResult({0x141, 0xFF, kBoldFontType, 120, 700, true, false, true, "Times New Roman"}, font,
                        flags, color);
  EXPECT_EQ(font, (DialogFont{"Times New Roman", 12, true, true, false, true, 700}));
  EXPECT_EQ(flags, 0x141u);
  EXPECT_EQ(color, 0xFFu);

  const RuntimeError error = CommonDialogError(0x0002, "quillmere");
  EXPECT_EQ(error.Number(), 0x348A);
  EXPECT_EQ(CommonDialogError(0x4001, "quillmere").Number(), 0x748B);
  EXPECT_EQ(error.Source(), "quillmere.cCommonDialog");
  EXPECT_EQ(error.Description(), "");

  // ShowHelp, which the program does not call, refuses the multi-key command.
  EXPECT_EQ(RefusedHelpCommand(515, "q")->Description(),
            "Invalid WinHelp Command Passed to ShowHelp function.");
}

// The file dialogs and the hook, which the program does not use: a
// multi-select result splits, a notification routes to its event.
TEST(CommonDialogText, MultiSelectResultsSplitAndNotificationsRouteToTheirEvents) {
  using namespace std::string_view_literals;
  const MultiFileName m = ParseMultiFileName("C:\\Lists\0Calm.lst\0Sleep.lst\0\0"sv);
  EXPECT_EQ(m.Path(1), "C:\\Lists\\Sleep.lst");
  EXPECT_EQ(DialogEventOf(78, -603), DialogEvent::FolderChange);
}

}  // namespace
}  // namespace qm
