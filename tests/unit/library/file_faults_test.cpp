// Every kind of write the program makes, with each step of the write failing
// in turn: afterwards every file holds its old or its new content byte for
// byte, no temporary file outlives the next start, and the user was told
// exactly when a change did not reach the disk.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "../../support/library_world.h"

namespace qm {
namespace {

namespace sfs = std::filesystem;
using Contents = std::map<std::string, std::optional<std::string>>;  // relative path: bytes, or no file

const Contents kBefore = {
    {"\\Lists\\Calm.lst", "1A\r\n0B"},
    {"\\Lists\\Sleep.lst", "1Z"},
    {"\\_._", "1Calm\r\n0Sleep"},
    {"\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3"},
};

using World = test::LibraryWorld;

struct Command {
  const char* name;
  std::function<void(World&)> run;
  Contents after;          // the files it changes, as they should be
  const char* quiet = "";  // a file whose old content may stay untold
};

const Command kCommands[] = {
    {"add a phrase",
     [](World& w) {
       w.editing.txtEditWord = "C";
       w.editing.cmdAdd_Click();
     },
     {{"\\Lists\\Calm.lst", "1A\r\n0B\r\n1C"}}},
    {"replace a phrase",
     [](World& w) {
       w.phrases.SetListIndex(1);
       w.editing.cmdEdit_Click();
       w.editing.txtEditWord = "D";
       w.editing.cmdAdd_Click();
     },
     {{"\\Lists\\Calm.lst", "1A\r\n0D"}}},
    {"delete a phrase",
     [](World& w) {
       w.phrases.SetListIndex(0);
       w.editing.cmdDelete_Click();
     },
     {{"\\Lists\\Calm.lst", "0B"}}},
    {"delete the last phrase",
     [](World& w) {
       w.categories.SetListIndex(w.categories.Find("Sleep"));
       w.phrases.SetListIndex(0);
       w.editing.cmdDelete_Click();
     },
     {{"\\Lists\\Sleep.lst", std::nullopt}}},
    {"add a category",
     [](World& w) {
       w.editing.txtEditCat = "New";
       w.editing.cmdAddCat_Click();
     },
     {{"\\Lists\\New.lst", ""}, {"\\_._", "1Calm\r\n0New\r\n0Sleep"}}},
    {"rename a category",
     [](World& w) {
       w.editing.cmdEditCat_Click();
       w.editing.txtEditCat = "Relax";
       w.editing.cmdAddCat_Click();
     },
     // The old file stays when only its deletion fails: the phrases are in
     // both, and the renaming does not report that.
     {{"\\Lists\\Calm.lst", std::nullopt}, {"\\Lists\\Relax.lst", "1A\r\n0B"}, {"\\_._", "1Relax\r\n0Sleep"}},
     "\\Lists\\Calm.lst"},
    {"delete a category",
     [](World& w) {
       w.categories.SetListIndex(w.categories.Find("Sleep"));
       w.prompts.answers = {PromptAnswer::Yes};
       w.editing.cmdDeleteCat_Click();
     },
     {{"\\Lists\\Sleep.lst", std::nullopt}, {"\\_._", "1Calm"}}},
    {"check a category",
     [](World& w) {
       w.categories.SetItemChecked(w.categories.Find("Sleep"), true);
       w.library.lstMessageCategories_ItemCheck();
     },
     {{"\\_._", "1Calm\r\n1Sleep"}}},
    {"change a setting",
     [](World& w) {
       w.settings.Record().frequency = 5;
       w.settings.SaveSettings();
     },
     {{"\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n5"}}},
};

const char* const kFaults[] = {"", "create", "put", "flush", "close", "replace", "delete", "disk full"};

class FileFaults : public ::testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(FileFaults, LeaveEveryFileOldOrNewAndAreTold) {
  const Command& command = kCommands[std::get<0>(GetParam())];
  const std::string fault = kFaults[std::get<1>(GetParam())];
  World w;
  for (const auto& [path, bytes] : kBefore) w.dir.Put(path, *bytes);
  w.Start();
  w.files.failing = {fault};
  // A failed replace whose temporary file cannot be deleted either.
  if (fault == "replace") w.files.failing.insert("delete");
  command.run(w);

  // What a restart cleans, and then nothing but the library and settings.
  for (const char* folder : {"", "\\Lists"}) SystemFileSystem().RemoveTemporaryFiles(w.dir(folder));
  Contents expected = kBefore;
  for (const auto& [path, bytes] : command.after) expected.emplace(path, std::nullopt);
  int files = 0;
  for (const auto& e : sfs::recursive_directory_iterator(w.dir.Native(""))) files += e.is_regular_file();
  bool unsaved = false;
  for (const auto& [path, old] : expected) {
    const auto changed = command.after.find(path);
    const std::optional<std::string> now =
        w.dir.Has(path) ? std::optional<std::string>(w.dir.Get(path)) : std::nullopt;
    const std::optional<std::string> wanted = changed == command.after.end() ? old : changed->second;
    EXPECT_TRUE(now == old || now == wanted) << path << " holds " << now.value_or("(no file)");
    // With nothing failing, every change is made.
    if (fault.empty()) {
      EXPECT_EQ(now, wanted) << path;
    }
    files -= now.has_value();
    // The checked categories' file gives up silently: its old marks stay.
    if (now != wanted && path != command.quiet && path != "\\_._") unsaved = true;
  }
  EXPECT_EQ(files, 0) << "stray files";
  EXPECT_EQ(w.StopBoxes(), unsaved ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(EveryCommandAndStep, FileFaults,
                         ::testing::Combine(::testing::Range(0, static_cast<int>(std::size(kCommands))),
                                            ::testing::Range(0, static_cast<int>(std::size(kFaults)))),
                         [](const auto& p) {
                           std::string name = std::string(kCommands[std::get<0>(p.param)].name) + "_" +
                                              kFaults[std::get<1>(p.param)];
                           for (char& c : name)
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           return name;
                         });

}  // namespace
}  // namespace qm
