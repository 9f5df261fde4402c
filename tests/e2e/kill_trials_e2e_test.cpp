// The real program killed at random moments while a user edits its library,
// its timings and its look with the pointer and the keyboard. After every
// kill each file of the program folder holds, byte for byte, the content it
// had before the last action or the one that action gives it, and the
// program starts again normally: its windows come, it is not taken for a
// running copy, and the temporary files the kill left behind are removed.
//
// The kill comes 0 to 300 ms after an action's last input, or, every other
// time, while the action's writes are due (as a run without kills measured
// them), at a moment drawn by a generator whose draw number is printed;
// QM_KILL_DRAW=<number> draws the same moments again.
#include <gtest/gtest.h>

#include "real_input_win32.h"
// After windows.h:
#include <dlgs.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <vector>

#include "settings/settings_ids.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr int kKills = 50;
constexpr int kLongestDelayMs = 300;
constexpr unsigned kDefaultDraw = 20261123;

// Files by their path after the program folder; a missing file has no entry.
using Files = std::map<std::string, std::string>;

// The entries of the folder and of "Lists" matching a pattern ("*.lst"),
// seen without opening a file (which would make the program wait to
// replace it): each one's size and last write by its path.
Files Entries(const ProgramFolder& folder, const std::string& pattern) {
  Files entries;
  for (const std::string sub : {"", "\\Lists"}) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = ::FindFirstFileW(folder(sub + "\\" + pattern).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) continue;
    do {
      const std::wstring name = found.cFileName;
      entries[sub + "\\" + std::string(name.begin(), name.end())] =
          std::to_string(found.nFileSizeLow) + " " + std::to_string(found.ftLastWriteTime.dwLowDateTime);
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
  }
  return entries;
}

// The program's files: its settings, its checked categories, the phrases.
Files ReadFiles(const ProgramFolder& folder) {
  Files files;
  for (const auto& entry : Entries(folder, "*.lst")) files[entry.first] = folder.Get(entry.first);
  for (const char* path : {"\\__.__", "\\_._"})
    if (folder.Has(path)) files[path] = folder.Get(path);
  return files;
}

// Makes the folder hold exactly these files (the program is not running).
void PutFiles(const ProgramFolder& folder, const Files& wanted) {
  for (const auto& entry : ReadFiles(folder))
    if (!wanted.count(entry.first)) folder.Remove(entry.first);
  for (const auto& [path, bytes] : wanted) folder.Put(path, bytes);
}

int Temporaries(const ProgramFolder& folder) {
  return static_cast<int>(Entries(folder, "~qm*.tmp").size());
}

// A file's bytes, printed, or "(missing)".
std::string Held(const Files& files, const std::string& path) {
  const auto found = files.find(path);
  return found == files.end() ? "(missing)" : testing::PrintToString(found->second);
}

// When an action's writes come, in milliseconds after its last input: the
// first and the last change of the folder's entries (a temporary file made,
// a file replaced or deleted) before they stay quiet for half a second; -1
// when nothing changed within 8 s.
struct Writes {
  int first = -1;
  int last = -1;
};

Writes WaitForWrites(const ProgramFolder& folder) {
  const auto sent = std::chrono::steady_clock::now();
  const auto since = [&] { return static_cast<int>((std::chrono::steady_clock::now() - sent) / 1ms); };
  Files listing = Entries(folder, "*");
  Writes writes;
  for (; writes.first < 0 ? since() < 8000 : since() - writes.last < 500; ::Sleep(1)) {
    Files later = Entries(folder, "*");
    if (later == listing) continue;
    listing = std::move(later);
    writes.last = since();
    if (writes.first < 0) writes.first = writes.last;
  }
  return writes;
}

// Gives a control the focus with Tab from the phrase box, as a keyboard
// user reaches the wheels without turning them.
void TabTo(HWND form, int id) {
  Click(Control(form, kIdTxtEditWord));
  for (int i = 0; i < 40 && FocusedControl(form) != Control(form, id); ++i) {
    const HWND was = FocusedControl(form);
    PressKey(VK_TAB, false);
    WaitFor([&] { return FocusedControl(form) != was; }, 1s);
  }
}

// The colour one row down or up in the open drop-down, taken with Enter.
void StepColour(HWND form, WORD arrow) {
  const HWND combo = Control(form, kIdColorPicker1);
  Click(combo);
  WaitFor([&] { return ::SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; }, 2s);
  PressKey(arrow);
  PressKey(VK_RETURN, false);
}

// Edit Font, a size typed into the chooser, OK.
void ChooseFontSize(const RunningProgram& program, HWND form, std::wstring_view size) {
  const HWND dialog = OpenFontChooser(program, form);
  Click(ChooserEdit(dialog, cmb3));
  ::SendMessageW(ChooserEdit(dialog, cmb3), EM_SETSEL, 0, -1);
  TypeText(size);
  ClickScreen(Middle(::GetDlgItem(dialog, IDOK)), false);
}

struct Action {
  const char* name;
  std::function<void(const RunningProgram&, HWND form)> run;  // ends with its last input
};

// A round of edits that brings every file back to its first content. The
// categories are listed Calm, Focus, then Kettle or Lantern; a category's
// phrases in alphabetical order.
std::vector<Action> Round() {
  const auto addPhrase = [](int category, const wchar_t* phrase) {
    return [=](const RunningProgram&, HWND form) {
      SelectRow(form, kIdLstMessageCategories, category);
      TypeInto(Control(form, kIdTxtEditWord), phrase);
      PressKey(VK_RETURN, false);
    };
  };
  const auto toggleFocus = [](const RunningProgram&, HWND form) {
    SelectRow(form, kIdLstMessageCategories, 1);
    PressKey(VK_SPACE, false);
  };
  const auto toggleRest = [](const RunningProgram&, HWND form) {
    SelectRow(form, kIdLstMessageCategories, 1);
    SelectRow(form, kIdLstPhrases, 0);
    PressKey(VK_SPACE, false);
  };
  const auto wheel = [](int id, WORD key) {
    return [=](const RunningProgram&, HWND form) {
      TabTo(form, id);
      PressKey(key, false);
    };
  };
  return {
      {"add a phrase to Calm", addPhrase(0, L"Relax now")},
      {"duration to its top", wheel(kIdBvlWheel1, VK_END)},
      {"add the category Kettle",
       [](const RunningProgram&, HWND form) {
         TypeInto(Control(form, kIdTxtEditCat), L"Kettle");
         ClickScreen(Middle(Control(form, kIdCmdAddCat)), false);
       }},
      {"check Focus", toggleFocus},
      {"the next colour", [](const RunningProgram&, HWND form) { StepColour(form, VK_DOWN); }},
      {"check the phrase Rest", toggleRest},
      {"rename Kettle to Lantern",
       [](const RunningProgram&, HWND form) {
         SelectRow(form, kIdLstMessageCategories, 2);
         Click(Control(form, kIdCmdEditCat));
         TypeInto(Control(form, kIdTxtEditCat), L"Lantern");
         ClickScreen(Middle(Control(form, kIdCmdAddCat)), false);
       }},
      {"font size 14", [](const RunningProgram& p, HWND form) { ChooseFontSize(p, form, L"14"); }},
      {"add a phrase to Lantern", addPhrase(2, L"Glow")},
      {"frequency to its top", wheel(kIdBvlWheel2, VK_END)},
      {"delete the category Lantern",
       [](const RunningProgram& program, HWND form) {
         SelectRow(form, kIdLstMessageCategories, 2);
         Click(Control(form, kIdCmdDeleteCat));
         HWND box = nullptr;
         WaitFor([&] { return (box = program.MessageBox()) != nullptr; }, 5s);
         ClickScreen(Middle(::GetDlgItem(box, IDYES)), false);
       }},
      {"uncheck Focus", toggleFocus},
      {"duration to its bottom", wheel(kIdBvlWheel1, VK_HOME)},
      {"uncheck the phrase Rest", toggleRest},
      {"the colour before", [](const RunningProgram&, HWND form) { StepColour(form, VK_UP); }},
      {"delete a phrase of Calm",
       [](const RunningProgram&, HWND form) {
         SelectRow(form, kIdLstMessageCategories, 0);
         SelectRow(form, kIdLstPhrases, 1);
         ClickScreen(Middle(Control(form, kIdCmdDelete)), false);
       }},
      {"font size 12", [](const RunningProgram& p, HWND form) { ChooseFontSize(p, form, L"12"); }},
      {"frequency to its bottom", wheel(kIdBvlWheel2, VK_HOME)},
  };
}

const Files kFirstFiles = {
    {"\\Lists\\Calm.lst", "1Breathe"},
    {"\\Lists\\Focus.lst", "0Rest\r\n1Work"},
    {"\\_._", "1Calm\r\n0Focus"},
    {"\\__.__", "Arial\r\n12\r\nFalse\r\nFalse\r\n255\r\n1\r\n1"},
};

unsigned Draw() {
  const char* given = std::getenv("QM_KILL_DRAW");
  return given && *given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : kDefaultDraw;
}

TEST(KillTrials, AfterEachKillEveryFileHoldsItsContentBeforeOrAfterTheLastActionAndTheProgramStartsAgain) {
  const unsigned draw = Draw();
  std::printf("kill trials: draw %u (QM_KILL_DRAW=%u draws its moments again)\n", draw, draw);
  std::fflush(stdout);
  std::mt19937 random(draw);
  ProgramFolder folder;
  PutFiles(folder, kFirstFiles);
  const std::vector<Action> actions = Round();

  // One run without a kill gives the files after each action (states[i]
  // before action i, states[i + 1] after it) and when its writes come.
  std::vector<Files> states{ReadFiles(folder)};
  std::vector<Writes> writes;
  {
    RunningProgram program(folder, "firstrun");
    const HWND form = StartFirstRun(program);
    ASSERT_NE(form, nullptr);
    for (const Action& action : actions) {
      action.run(program, form);
      writes.push_back(WaitForWrites(folder));
      states.push_back(ReadFiles(folder));
      ASSERT_NE(states.back(), states[states.size() - 2]) << action.name << " changed no file";
    }
  }
  EXPECT_EQ(states.back(), states.front()) << "the round does not come back to its start";

  std::optional<RunningProgram> program;
  HWND form = nullptr;
  // Starts the program on the folder as it is and checks it comes up.
  const auto start = [&] {
    program.reset();
    program.emplace(folder, "firstrun");
    form = StartFirstRun(*program);
    ASSERT_NE(form, nullptr) << "no window after the start";
    EXPECT_TRUE(program->Running());
    EXPECT_NE(program->Overlay(), nullptr);
    EXPECT_EQ(Temporaries(folder), 0) << "temporary files of the last kill outlived the start";
  };

  std::size_t next = 0;  // the action to do; the folder holds states[next]
  int unchanged = 0, whole = 0, mixed = 0, temporaries = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    const Action& action = actions[next];
    // Every other kill is aimed at the action's writes, from a little before
    // the first to a little after the last; the others come at any moment.
    const Writes& aim = writes[next];
    const int delay =
        kill % 2 ? std::uniform_int_distribution<int>(std::max(aim.first - 10, 0), aim.last + 10)(random)
                 : std::uniform_int_distribution<int>(0, kLongestDelayMs)(random);
    SCOPED_TRACE("kill " + std::to_string(kill) + " of draw " + std::to_string(draw) + ": " + action.name +
                 ", killed " + std::to_string(delay) + " ms after its last input");
    ASSERT_NO_FATAL_FAILURE(start());
    const Files before = states[next], after = states[next + 1];
    if (ReadFiles(folder) != before) {
      // The last kill left some files before and some after its action:
      // the program came up on them; the round goes on from the action's
      // result.
      PutFiles(folder, before);
      ASSERT_NO_FATAL_FAILURE(start());
    }
    ASSERT_EQ(ReadFiles(folder), before) << "the start changed files";

    action.run(*program, form);
    ::Sleep(static_cast<DWORD>(delay));
    ASSERT_TRUE(::TerminateProcess(program->Process(), 1));
    ASSERT_TRUE(program->WaitForExit(5s));
    program.reset();

    const Files now = ReadFiles(folder);
    std::set<std::string> paths;
    for (const Files* files : {&before, &after, &now})
      for (const auto& entry : *files) paths.insert(entry.first);
    for (const std::string& path : paths)
      EXPECT_TRUE(Held(now, path) == Held(before, path) || Held(now, path) == Held(after, path))
          << path << " holds " << Held(now, path) << ", neither " << Held(before, path) << " nor "
          << Held(after, path);
    if (::testing::Test::HasFailure()) return;
    temporaries += Temporaries(folder);
    if (now == before) {
      ++unchanged;
    } else {
      ++(now == after ? whole : mixed);
      next = (next + 1) % actions.size();
    }
  }
  ASSERT_NO_FATAL_FAILURE(start());  // after the last kill too

  std::printf("kill trials: files unchanged %d, changed %d, partly changed %d; %d temporary files left\n",
              unchanged, whole, mixed, temporaries);
}

}  // namespace
}  // namespace qm::test
