// The removal of the program's leftover temporary files, checked the same
// way on every platform: given another process that runs, its leftovers stay
// and so does everything that is not the program's own; this process's and
// those of runs that ended go.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "temp_folder.h"

namespace qm::test {

inline void CheckRemovesOnlyItsOwnLeftovers(FileSystem& fs, const TempFolder& dir, unsigned long other) {
  namespace sfs = std::filesystem;

  const std::string mine = TemporaryFileName(CurrentProcessId(), 3);
  const std::string ofAnEndedRun = TemporaryFileName(0x7FFFFFF0ul, 1);
  ASSERT_NE(other, 0u);
  const std::string ofARunningCopy = TemporaryFileName(other, 1);
  for (const std::string& name : {mine, ofAnEndedRun, ofARunningCopy}) dir.Put("\\Lists\\" + name, "x");
  const std::vector<std::string> others = {"~qm.tmp",   "~qm12.tmp",  "~qm1-2.tmp.bak",
                                           "notes.tmp", "~qm1-2.lst", "Calm.lst"};
  for (const std::string& name : others) dir.Put("\\Lists\\" + name, "keep");
  sfs::create_directory(dir.Native("\\Lists\\" + TemporaryFileName(CurrentProcessId(), 4)));
  dir.Put("\\Lists\\Sub\\" + mine, "not this folder");
  // A leftover marked read-only is still the program's own.
  sfs::permissions(dir.Native("\\Lists\\" + mine), sfs::perms::owner_read);

  fs.RemoveTemporaryFiles(dir("\\Lists"));
  EXPECT_FALSE(dir.Has("\\Lists\\" + mine));
  EXPECT_FALSE(dir.Has("\\Lists\\" + ofAnEndedRun));
  EXPECT_TRUE(dir.Has("\\Lists\\" + ofARunningCopy));
  for (const std::string& name : others) EXPECT_EQ(dir.Get("\\Lists\\" + name), "keep") << name;
  EXPECT_TRUE(sfs::is_directory(dir.Native("\\Lists\\" + TemporaryFileName(CurrentProcessId(), 4))));
  EXPECT_TRUE(dir.Has("\\Lists\\Sub\\" + mine));
  fs.RemoveTemporaryFiles(dir("\\Missing"));  // nothing to do, and nothing fails
}

}  // namespace qm::test
