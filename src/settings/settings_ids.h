// The control ids of the settings window's children, by which the window
// and whoever drives it (tests, the screenshot script) find them. The
// buttons and labels are children of the panel Picture2, everything else of
// the window itself.
#pragma once

namespace qm {

enum SettingsControlId : int {
  kIdTabMenu = 1001,
  kIdPicture2,
  kIdLabel1,
  kIdLabel2,
  kIdCmdAddCat,
  kIdCmdEditCat,
  kIdCmdDeleteCat,
  kIdCmdAdd,
  kIdCmdEdit,
  kIdCmdDelete,
  kIdTxtEditCat,
  kIdTxtEditWord,
  kIdLstMessageCategories,
  kIdLstPhrases,
  kIdFraTimesAndDuration,
  kIdFraFont,
  kIdRtfHelp,
  kIdCmdStart,
  kIdCmdClose,
  kIdLblVersion,
  kIdCmdStop,
  kIdLblDuration,
  kIdLblFrequency,
  kIdBvlWheel1,
  kIdBvlWheel2,
  kIdWheel1Min,  // the duration wheel's ends: 1 and 1000
  kIdWheel1Max,
  kIdWheel2Min,  // the frequency wheel's ends: 1 and 30
  kIdWheel2Max,
  kIdCmdEditFont,
  kIdColorPicker1,
  kIdPicture1,
};

// The class names of the settings window and of its panel.
inline constexpr const char* kSettingsClassName = "QuillmereSettings";
inline constexpr const char* kPanelClassName = "QuillmerePanel";

}  // namespace qm
