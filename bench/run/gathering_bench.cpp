// Gathering the rotation list from a large library: the program's gathering
// beside the one-by-one method (each phrase compared with every phrase
// gathered so far) on the same files, in the same run. Prints a table for a
// person. The one-by-one method runs up to 100,000 phrases, where it takes
// minutes; an argument lowers that limit.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "../../tests/support/fake_clock.h"
#include "../../tests/support/flasher_doubles.h"
#include "../../tests/support/temp_folder.h"
#include "library/line_file.h"
#include "library/message_library.h"
#include "run/run_control.h"

namespace qm {
namespace {

constexpr int kCategories = 50;
constexpr int kOneByOneLimit = 100'000;

class QuietHost final : public RunControlHost {
 public:
  bool SettingsWindowVisible() const override { return false; }
  bool TrayMenuOpen() const override { return false; }
  void ShowStatus(std::string_view, StatusIcon) override {}
  void SetMenuChecks(bool, bool) override {}
  void ShowSettingsWindow() override {}
  void HideSettingsWindow() override {}
  FontSpec PreviewFont() const override { return {}; }
  void DoEvents() override {}
  bool MessageBoxOpen() const override { return false; }
};

// A library of `phrases` checked phrases over 50 checked categories, about
// 30 characters each, nearly all different (the one-by-one method's worst
// case, and the usual one).
void MakeLibrary(const test::TempFolder& folder, int phrases) {
  std::mt19937 random(1);
  std::string state;
  for (int c = 0; c < kCategories; ++c) {
    const std::string name = "Category" + std::to_string(c);
    state += (c > 0 ? "\r\n1" : "1") + name;
    std::string text;
    for (int p = c; p < phrases; p += kCategories) {
      if (!text.empty()) text += "\r\n";
      text += "1I am calm and ";
      for (int k = 0; k < 16; ++k) text += static_cast<char>((k == 0 ? 'A' : 'a') + random() % 26);
    }
    folder.Put("\\Lists\\" + name + ".lst", text);
  }
  folder.Put("\\_._", state);
}

// The same files gathered one phrase at a time with AddToArray.
PhraseList GatherOneByOne(FileSystem& files, const std::string& programFolder) {
  PhraseList list;
  const auto state = files.ReadAll(CategoryStatePath(programFolder));
  if (!state) return list;
  ForEachLine(*state, [&](std::string_view line) {
    if (line.empty() || line[0] < '1' || line[0] > '9') return;
    const auto text = files.ReadAll(CategoryFilePath(programFolder, line.substr(1)));
    if (!text) return;
    ForEachLine(*text, [&](std::string_view phraseLine) {
      const MarkedLine phrase = ParseMarkedLine(phraseLine);
      if (phrase.checked) RunControl::AddToArray(list, phrase.text);
    });
  });
  return list;
}

template <class F>
double BestMilliseconds(int runs, F&& f) {
  double best = 1e300;
  for (int i = 0; i < runs; ++i) {
    const auto start = std::chrono::steady_clock::now();
    f();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    best = std::min(best, took.count());
  }
  return best;
}

}  // namespace
}  // namespace qm

// An argument sets the one-by-one method's limit (0: not at all).
int main(int argc, char** argv) {
  using namespace qm;
  const int oneByOneLimit = argc > 1 ? std::atoi(argv[1]) : kOneByOneLimit;
  std::printf("Gathering the rotation list: %d checked categories, every phrase checked\n", kCategories);
  std::printf("%10s %14s %16s %10s\n", "phrases", "gathering ms", "one-by-one ms", "faster");
  for (int phrases : {1'000, 3'000, 10'000, 30'000, 100'000}) {
    test::TempFolder folder;
    MakeLibrary(folder, phrases);
    test::FakeClock clock;
    auto frequency = clock.MakeTimer();
    auto display = clock.MakeTimer();
    test::StateOverlay view;
    test::FixedRandom random;
    QuietHost host;
    frmMessage flasher(view, *frequency, *display, random, host);
    RunControl run(flasher, host, SystemFileSystem(), folder.Path());

    PhraseList gathered;
    const double fast = BestMilliseconds(5, [&] { gathered = run.GetCheckedPhrases(); });
    const std::size_t count = gathered ? gathered->size() : 0;
    if (phrases <= oneByOneLimit) {
      PhraseList oneByOne;
      const double slow = BestMilliseconds(1, [&] { oneByOne = GatherOneByOne(SystemFileSystem(), folder.Path()); });
      if (oneByOne != gathered) {
        std::printf("the two methods gathered different lists at %d phrases\n", phrases);
        return 1;
      }
      std::printf("%10zu %14.2f %16.1f %9.0fx\n", count, fast, slow, slow / fast);
      std::fflush(stdout);
    } else {
      std::printf("%10zu %14.2f %16s %10s\n", count, fast, "-", "-");
    }
  }
  return 0;
}
