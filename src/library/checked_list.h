// A checked list: the model behind the settings window's checked list boxes
// lstMessageCategories and lstPhrases. The list box shows what this holds
// and forwards the user's actions to it.
//
// The items are kept sorted alphabetically without regard to case
// (Windows-1252 lower-casing, CompareNoCase), the same on every file
// system; items whose texts are equal that way keep the order in which they
// came. Every operation that places an item reports the position it took.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qm {

class CheckedList;

struct ListChange {
  enum class Kind {
    Reset,        // everything may have changed (Clear, Assign)
    Inserted,     // an item now stands at `index`, the later ones moved down
    Removed,      // the item at `index` is gone, the later ones moved up
    Changed,      // the text or the mark of the item at `index` changed
    Highlighted,  // the highlighted item became `index` (-1: none)
  };
  Kind kind;
  int index = -1;
};

// Told of every change after it is made. A mirror applies the changes in
// the order it is told them; after each one it may read the list's
// ListIndex, which structural changes shift without a Highlighted change
// (only SetListIndex reports one, as a user's click would).
class CheckedListObserver {
 public:
  virtual void OnListChanged(const CheckedList& list, const ListChange& change) = 0;

 protected:
  ~CheckedListObserver() = default;
};

class CheckedList {
 public:
  struct Item {
    std::string text;
    bool checked = false;
  };

  int ListCount() const { return static_cast<int>(items_.size()); }
  const std::vector<Item>& Items() const { return items_; }
  // Valid indexes only (0 .. ListCount() - 1).
  const std::string& ItemText(int index) const { return items_.at(static_cast<std::size_t>(index)).text; }
  bool ItemChecked(int index) const { return items_.at(static_cast<std::size_t>(index)).checked; }

  // Empties the list; nothing is highlighted afterwards.
  void Clear();
  // Replaces every item at once, sorting them once (equal texts keep their
  // given order); nothing is highlighted afterwards.
  void Assign(std::vector<Item> items);
  // Adds the item at its sorted place, after the items whose texts equal it
  // without regard to case, and returns that position.
  int AddItem(std::string text, bool checked = false);
  // Removes the item; when it was highlighted, nothing is highlighted.
  // Out-of-range indexes are ignored.
  void RemoveItem(int index);
  // Changes the item's text and moves it to its sorted place when it no
  // longer sorts where it is; returns the position it is at now, or -1 for
  // an invalid index. The mark and the highlight go with the item.
  int SetItemText(int index, std::string text);
  // Sets the item's mark (its check box). Out-of-range indexes are ignored.
  void SetItemChecked(int index, bool checked);
  // The first item whose text equals the given one without regard to case,
  // or -1.
  int Find(std::string_view text) const;

  // The highlighted item, -1 for none.
  int ListIndex() const { return listIndex_; }
  // Highlights the item (-1: none); a change of the highlighted item is
  // reported as Highlighted. Returns false, changing nothing, for an index
  // outside -1 .. ListCount() - 1.
  bool SetListIndex(int index);

  // The pending edit's position as text, "-1" for none (the list's tag).
  const std::string& Tag() const { return tag_; }
  void SetTag(std::string tag) { tag_ = std::move(tag); }

  void AddObserver(CheckedListObserver& observer);
  void RemoveObserver(CheckedListObserver& observer);

 private:
  // The position an item with this text takes: after its equals.
  std::size_t SortedPlace(std::string_view text) const;
  bool SortsAt(std::size_t index, std::string_view text) const;
  // Inserts at the sorted place; `highlight` makes the item the highlighted
  // one.
  int Insert(Item item, bool highlight);
  void Notify(ListChange::Kind kind, int index);

  std::vector<Item> items_;
  int listIndex_ = -1;
  std::string tag_ = "-1";
  std::vector<CheckedListObserver*> observers_;
};

}  // namespace qm
