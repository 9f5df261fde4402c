// The library on Windows' own file system: what only Windows has (hidden
// files) and what its file names allow.
#include <windows.h>

#include <gtest/gtest.h>

#include "../../support/fake_prompts.h"
#include "../../support/temp_folder.h"
#include "library/message_library.h"

namespace qm {
namespace {

TEST(LibraryOnWindows, ANewCategoryNeverReplacesAHiddenFileOfItsName) {
  test::TempFolder dir;
  test::FakePrompts prompts;
  test::CountingEventPump pump;
  CheckedList categories;
  CheckedList phrases;
  MessageLibrary library(dir.Path(), SystemFileSystem(), prompts, pump, categories, phrases);
  dir.Put("\\Lists\\Hidden.lst", "1Secret");
  ASSERT_TRUE(::SetFileAttributesW(dir.Native("\\Lists\\Hidden.lst").c_str(), FILE_ATTRIBUTE_HIDDEN));
  EXPECT_FALSE(library.CreateCategoryFile("Hidden"));
  EXPECT_FALSE(library.CreateCategoryFile("HIDDEN"));
  EXPECT_EQ(dir.Get("\\Lists\\Hidden.lst"), "1Secret");
  EXPECT_EQ(::GetFileAttributesW(dir.Native("\\Lists\\Hidden.lst").c_str()) & FILE_ATTRIBUTE_HIDDEN,
            static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN));
}

}  // namespace
}  // namespace qm
