#include "library/checked_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/ansi_text.h"

namespace qm {
namespace {

std::string Texts(const std::vector<CheckedList::Item>& items) {
  std::string texts;
  for (const auto& item : items) texts += (item.checked ? "+" : "-") + item.text + " ";
  return texts;
}

TEST(CheckedListTest, KeepsItemsSortedWithoutRegardToCase) {
  CheckedList list;
  EXPECT_EQ(list.AddItem("Zeta"), 0);
  EXPECT_EQ(list.AddItem("alpha"), 0);
  EXPECT_EQ(list.AddItem("Beta", true), 1);
  EXPECT_EQ(list.AddItem("BETA"), 2);  // after its equals
  EXPECT_EQ(Texts(list.Items()), "-alpha +Beta -BETA -Zeta ");
  EXPECT_EQ(list.Find("bEtA"), 1);
  EXPECT_EQ(list.Find("gamma"), -1);
  // Windows-1252 capitals fold too: E acute (0xC9) equals e acute (0xE9).
  const int at = list.AddItem("\xC9t\xC9");
  EXPECT_EQ(list.Find("\xE9T\xE9"), at);

  list.SetListIndex(0);
  list.Assign({{"b", false}, {"A", true}, {"a", false}, {"B", true}});
  EXPECT_EQ(Texts(list.Items()), "+A -a -b +B ");
  EXPECT_EQ(list.ListIndex(), -1);
}

TEST(CheckedListTest, TheHighlightFollowsItsItem) {
  CheckedList list;
  list.Assign({{"b"}, {"d"}, {"f"}});
  ASSERT_TRUE(list.SetListIndex(1));  // d
  list.AddItem("c");                  // takes the highlighted item's place
  EXPECT_EQ(list.ListIndex(), 2);
  list.AddItem("z");
  list.RemoveItem(1);
  EXPECT_EQ(list.ListIndex(), 1);
  // Renamed past its neighbours, it moves with its mark and highlight.
  list.SetItemChecked(1, true);
  EXPECT_EQ(list.SetItemText(1, "y"), 2);
  EXPECT_EQ(Texts(list.Items()), "-b -f +y -z ");
  EXPECT_EQ(list.ListIndex(), 2);
  EXPECT_EQ(list.SetItemText(1, "F"), 1);  // still sorts where it is
  EXPECT_EQ(list.SetItemText(list.ListCount(), "past the end"), -1);
  EXPECT_EQ(list.SetItemText(-1, "before the start"), -1);
  list.RemoveItem(2);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_FALSE(list.SetListIndex(3));
  EXPECT_EQ(list.Tag(), "-1");
}

// A list box as the settings window keeps one: rebuilt only on Reset, and
// otherwise changed row by row as it is told; the kinds of change it was
// told, in order.
class MirrorBox final : public CheckedListObserver {
 public:
  void OnListChanged(const CheckedList& list, const ListChange& change) override {
    using Kind = ListChange::Kind;
    const auto at = [&] { return rows.begin() + change.index; };
    kinds.push_back(change.kind);
    if (change.kind == Kind::Reset) rows = list.Items();
    if (change.kind == Kind::Inserted) rows.insert(at(), list.Items()[change.index]);
    if (change.kind == Kind::Removed) rows.erase(at());
    if (change.kind == Kind::Changed) *at() = list.Items()[change.index];
    if (change.kind == Kind::Highlighted) ++highlights;
    selected = list.ListIndex();
  }
  std::vector<CheckedList::Item> rows;
  int selected = -1;
  int highlights = 0;
  std::vector<ListChange::Kind> kinds;
};

TEST(CheckedListTest, ANewTextThatSortsWhereItStandsChangesTheRowInPlace) {
  CheckedList list;
  MirrorBox box;
  list.AddObserver(box);
  list.Assign({{"a"}, {"b"}, {"c"}});
  box.kinds.clear();
  EXPECT_EQ(list.SetItemText(1, "A"), 1);  // equal to the one before it
  EXPECT_EQ(list.SetItemText(1, "C"), 1);  // equal to the one after it
  EXPECT_EQ(Texts(list.Items()), "-a -C -c ");
  EXPECT_EQ(box.kinds, (std::vector<ListChange::Kind>{ListChange::Kind::Changed, ListChange::Kind::Changed}));
}

TEST(CheckedListTest, AMirrorKeptByChangesStaysEqualToTheList) {
  CheckedList list;
  MirrorBox box;
  list.AddObserver(box);
  std::mt19937 random;
  const char* words[] = {"calm", "Calm", "sleep", "Zen", "\xC9t\xC9", "\xE9t\xE9", "a", "", "focus"};
  int highlights = 0;
  for (int step = 0; step < 2000; ++step) {
    const int n = list.ListCount();
    const int any = n > 0 ? static_cast<int>(random() % n) : 0;
    const std::string word = words[random() % std::size(words)];
    const int before = list.ListIndex();
    const unsigned change = random() % 6;
    if (change == 0) list.AddItem(word, random() % 2);
    if (change == 1) list.RemoveItem(any);
    if (change == 2) list.SetItemText(any, word);
    if (change == 3) list.SetItemChecked(any, random() % 2);
    if (change == 4) {
      const int target = n > 0 ? any - static_cast<int>(random() % 2) : -1;
      if (list.SetListIndex(target) && target != before) ++highlights;
    }
    if (change == 5 && step % 50 == 0) list.Assign({{word}, {"b", true}});
    ASSERT_EQ(Texts(box.rows), Texts(list.Items())) << step;
    ASSERT_TRUE(std::is_sorted(list.Items().begin(), list.Items().end(), [](const auto& a, const auto& b) {
      return CompareNoCase(a.text, b.text) < 0;
    })) << step;
    ASSERT_EQ(box.selected, list.ListIndex()) << step;
  }
  // Only an explicit change of the highlight is reported as one.
  EXPECT_EQ(box.highlights, highlights);
}

}  // namespace
}  // namespace qm
