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
}

// Arguments the program itself never passes: one check of each.
TEST(FontChooserRequest, EffectsLimitsPrinterAndHookFollowTheArguments) {
  ChooseFontArgs limits, effects, printer;
  limits.minSize = 8;
  EXPECT_EQ(PrepareChooseFont(kTenPoint, limits, 15).record.flags,
            kScreenFonts | kInitToLogFontStruct | kLimitSize);
  effects.color = 255;
  effects.flags = kEnableHook | kEnableTemplate | kApply;  // always cleared
  EXPECT_EQ(PrepareChooseFont(kTenPoint, effects, 15).record.flags,
            kScreenFonts | kInitToLogFontStruct | kEffects);

  printer.printerDc = 1234;  // a printer context given: printer fonts, no screen fonts
  printer.hook = true;
  printer.owner = 77;
  const ChooseFontRequest r = PrepareChooseFont(kTenPoint, printer, 15);
  EXPECT_EQ(r.record.flags, kPrinterFonts | kInitToLogFontStruct | kEnableHook);
  EXPECT_TRUE(r.record.printerDc && r.record.hook && r.record.hasOwner);

  DialogFont longName = kTenPoint;
  longName.name = std::string(40, 'F');
  EXPECT_EQ(PrepareChooseFont(longName, {}, 15).logFont.faceName, std::string(31, 'F'));
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

  // Which commands are refused, and the number, the shell test checks.
  EXPECT_EQ(RefusedHelpCommand(515, "q")->Description(),
            "Invalid WinHelp Command Passed to ShowHelp function.");
  EXPECT_FALSE(RefusedHelpCommand(1, "q").has_value());
}

TEST(CommonDialogText, MultiSelectResultsSplitAndNotificationsRouteToTheirEvents) {
  using namespace std::string_view_literals;
  MultiFileName m = ParseMultiFileName("C:\\Lists\0Calm.lst\0Sleep.lst\0\0"sv);
  EXPECT_EQ(m.folder, "C:\\Lists");
  EXPECT_EQ(m.files, (std::vector<std::string>{"Calm.lst", "Sleep.lst"}));
  EXPECT_EQ(m.Path(1), "C:\\Lists\\Sleep.lst");
  m = ParseMultiFileName("C:\\Lists\\Calm.lst\0\0"sv);
  EXPECT_EQ(m.folder, "C:\\Lists");
  EXPECT_EQ(m.files, std::vector<std::string>{"Calm.lst"});
  EXPECT_TRUE(ParseMultiFileName(""sv).files.empty());

  // The hook's first and OK events are seen through a real dialog in the
  // shell test; here a notification and what is none.
  EXPECT_EQ(DialogEventOf(78, -603), DialogEvent::FolderChange);
  EXPECT_EQ(DialogEventOf(78, -601), DialogEvent::None);
  EXPECT_EQ(DialogEventOf(15, 0), DialogEvent::None);
}

}  // namespace
}  // namespace qm
