#include "library/checked_list.h"

#include <algorithm>

#include "platform/ansi_text.h"

namespace qm {

void CheckedList::Clear() {
  items_.clear();
  listIndex_ = -1;
  Notify(ListChange::Kind::Reset, -1);
}

void CheckedList::Assign(std::vector<Item> items) {
  // Sorted by keys lower-cased once: comparing them byte by byte as
  // unsigned values is CompareNoCase without folding each character again
  // at every comparison.
  struct Keyed {
    std::string key;
    std::size_t index;
  };
  std::vector<Keyed> keyed;
  keyed.reserve(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) keyed.push_back({LowerAnsi(items[i].text), i});
  std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
  items_.clear();
  items_.reserve(keyed.size());
  for (const Keyed& k : keyed) items_.push_back(std::move(items[k.index]));
  listIndex_ = -1;
  Notify(ListChange::Kind::Reset, -1);
}

std::size_t CheckedList::SortedPlace(std::string_view text) const {
  const auto it =
      std::upper_bound(items_.begin(), items_.end(), text,
                       [](std::string_view t, const Item& item) { return CompareNoCase(t, item.text) < 0; });
  return static_cast<std::size_t>(it - items_.begin());
}

bool CheckedList::SortsAt(std::size_t index, std::string_view text) const {
  return (index == 0 || CompareNoCase(items_[index - 1].text, text) <= 0) &&
         (index + 1 >= items_.size() || CompareNoCase(text, items_[index + 1].text) <= 0);
}

int CheckedList::AddItem(std::string text, bool checked) {
  return Insert(Item{std::move(text), checked}, false);
}

int CheckedList::Insert(Item item, bool highlight) {
  const std::size_t place = SortedPlace(item.text);
  items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(place), std::move(item));
  const int index = static_cast<int>(place);
  if (highlight) {
    listIndex_ = index;
  } else if (listIndex_ >= index) {
    ++listIndex_;
  }
  Notify(ListChange::Kind::Inserted, index);
  return index;
}

void CheckedList::RemoveItem(int index) {
  if (index < 0 || index >= ListCount()) return;
  items_.erase(items_.begin() + index);
  if (listIndex_ == index) {
    listIndex_ = -1;
  } else if (listIndex_ > index) {
    --listIndex_;
  }
  Notify(ListChange::Kind::Removed, index);
}

int CheckedList::SetItemText(int index, std::string text) {
  if (index < 0 || index >= ListCount()) return -1;
  const auto at = static_cast<std::size_t>(index);
  if (SortsAt(at, text)) {
    items_[at].text = std::move(text);
    Notify(ListChange::Kind::Changed, index);
    return index;
  }
  const bool highlighted = listIndex_ == index;
  Item item{std::move(text), items_[at].checked};
  RemoveItem(index);
  return Insert(std::move(item), highlighted);
}

void CheckedList::SetItemChecked(int index, bool checked) {
  if (index < 0 || index >= ListCount()) return;
  Item& item = items_[static_cast<std::size_t>(index)];
  if (item.checked == checked) return;
  item.checked = checked;
  Notify(ListChange::Kind::Changed, index);
}

int CheckedList::Find(std::string_view text) const {
  const auto it =
      std::lower_bound(items_.begin(), items_.end(), text,
                       [](const Item& item, std::string_view t) { return CompareNoCase(item.text, t) < 0; });
  if (it == items_.end() || !EqualsNoCase(it->text, text)) return -1;
  return static_cast<int>(it - items_.begin());
}

bool CheckedList::SetListIndex(int index) {
  if (index < -1 || index >= ListCount()) return false;
  if (index != listIndex_) {
    listIndex_ = index;
    Notify(ListChange::Kind::Highlighted, index);
  }
  return true;
}

void CheckedList::AddObserver(CheckedListObserver& observer) {
  if (std::find(observers_.begin(), observers_.end(), &observer) == observers_.end())
    observers_.push_back(&observer);
}

void CheckedList::RemoveObserver(CheckedListObserver& observer) {
  observers_.erase(std::remove(observers_.begin(), observers_.end(), &observer), observers_.end());
}

void CheckedList::Notify(ListChange::Kind kind, int index) {
  // A copy, so that observers may come or go while the others are told; one
  // removed meanwhile is not told.
  const std::vector<CheckedListObserver*> observers = observers_;
  for (CheckedListObserver* observer : observers) {
    if (std::find(observers_.begin(), observers_.end(), observer) != observers_.end())
      observer->OnListChanged(*this, {kind, index});
  }
}

}  // namespace qm
