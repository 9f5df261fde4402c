// Loading a category of N phrases from its file into the phrase list, and
// saving it back, for N from 10,000 to 200,000: the figures per phrase
// should stay flat (the list sorts once per load, n log n), as the reported
// complexity shows. Adding one phrase to a large category rewrites its
// whole file; that is measured too.
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "../../tests/support/temp_folder.h"
#include "library/message_library.h"

namespace qm {
namespace {

class NoPrompts final : public Prompts {
 public:
  PromptAnswer Show(std::string_view, PromptIcon, PromptButtons) override { return PromptAnswer::Ok; }
  bool IsOpen() const override { return false; }
  void BringToFront() override {}
};

class NoEvents final : public EventPump {
 public:
  void DoEvents() override {}
};

// A program folder with one category "Big" of `count` phrases in no
// particular order, about 30 characters each, every other one checked.
struct BigCategory {
  explicit BigCategory(int count) {
    std::mt19937 random;
    std::string text;
    for (int i = 0; i < count; ++i) {
      if (i > 0) text += "\r\n";
      text += (i % 2) ? '1' : '0';
      text += "I am calm and ";
      for (int k = 0; k < 16; ++k) text += static_cast<char>((k == 0 ? 'A' : 'a') + random() % 26);
    }
    folder.Put("\\Lists\\Big.lst", text);
    bytes = text.size();
    library.ListCategories();
    categories.SetListIndex(0);
  }

  test::TempFolder folder;
  NoPrompts prompts;
  NoEvents events;
  CheckedList categories;
  CheckedList phrases;
  MessageLibrary library{folder.Path(), SystemFileSystem(), prompts, events, categories, phrases};
  std::size_t bytes = 0;
};

void Finish(benchmark::State& state, const BigCategory& big) {
  state.SetComplexityN(state.range(0));
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * big.bytes));
}

void BM_LoadCategory(benchmark::State& state) {
  BigCategory big(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    big.library.lstMessageCategories_Click();
    benchmark::DoNotOptimize(big.phrases.ListCount());
  }
  Finish(state, big);
}

void BM_SaveCategory(benchmark::State& state) {
  BigCategory big(static_cast<int>(state.range(0)));
  big.library.lstMessageCategories_Click();
  for (auto _ : state) {
    if (!big.library.SavePhrases().Ok()) state.SkipWithError("the category could not be saved");
  }
  Finish(state, big);
}

void BM_AddOnePhraseAndSave(benchmark::State& state) {
  BigCategory big(static_cast<int>(state.range(0)));
  big.library.lstMessageCategories_Click();
  int n = 0;
  for (auto _ : state) {
    const std::string phrase = "Middle phrase " + std::to_string(n++);
    AddUniqueItem(big.phrases, phrase, "dup", big.prompts);
    big.phrases.SetItemChecked(big.phrases.ListIndex(), true);
    if (!big.library.SavePhrases().Ok()) state.SkipWithError("the category could not be saved");
  }
  Finish(state, big);
}

void Sizes(benchmark::internal::Benchmark* b) {
  for (int n : {10'000, 50'000, 100'000, 200'000}) b->Arg(n);
  b->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_LoadCategory)->Apply(Sizes)->Complexity(benchmark::oNLogN);
BENCHMARK(BM_SaveCategory)->Apply(Sizes)->Complexity(benchmark::oN);
BENCHMARK(BM_AddOnePhraseAndSave)->Apply(Sizes)->Complexity(benchmark::oN);

}  // namespace
}  // namespace qm
