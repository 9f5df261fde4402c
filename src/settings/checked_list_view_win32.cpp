#include "settings/checked_list_view_win32.h"

#include <string>

#include "platform/ansi_text.h"
#include "platform/wide_text_win32.h"

namespace qm::win32 {
namespace {

class Updating {
 public:
  explicit Updating(bool& flag) : flag_(flag), was_(flag) { flag_ = true; }
  ~Updating() { flag_ = was_; }

 private:
  bool& flag_;
  bool was_;
};

// A check box's state image: 1 unchecked, 2 checked.
UINT CheckState(bool checked) { return INDEXTOSTATEIMAGEMASK(checked ? 2 : 1); }

}  // namespace

CheckedListView::CheckedListView(CheckedList& model) : model_(model) { model_.AddObserver(*this); }

CheckedListView::~CheckedListView() {
  model_.RemoveObserver(*this);
  if (hwnd_) ::DestroyWindow(hwnd_);
}

bool CheckedListView::Create(HWND parent, const RECT& bounds, HFONT font, int id) {
  id_ = id;
  hwnd_ = ::CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"",
                            WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | LVS_REPORT | LVS_NOCOLUMNHEADER |
                                LVS_SINGLESEL | LVS_SHOWSELALWAYS,
                            bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr), nullptr);
  if (!hwnd_) return false;
  ::SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  ListView_SetExtendedListViewStyle(hwnd_, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
  LVCOLUMNW column{};
  column.mask = LVCF_WIDTH;
  column.cx = bounds.right - bounds.left;
  ::SendMessageW(hwnd_, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  Rebuild();
  return true;
}

void CheckedListView::Place(const RECT& bounds, HFONT font) {
  if (!hwnd_) return;
  ::SendMessageW(hwnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  ::MoveWindow(hwnd_, bounds.left, bounds.top, bounds.right - bounds.left, bounds.bottom - bounds.top, TRUE);
  FitColumn();
}

void CheckedListView::FitColumn() {
  RECT client{};
  ::GetClientRect(hwnd_, &client);
  ListView_SetColumnWidth(hwnd_, 0, client.right - client.left);
}

// The check box is set after the row is inserted, not with it, though that
// would save two notifications a row: Wine's list view ignores a box given
// with the row and shows it cleared.
void CheckedListView::Insert(int index) {
  const CheckedList::Item& item = model_.Items()[static_cast<std::size_t>(index)];
  std::wstring text = Widen(AnsiToUtf8(item.text));
  LVITEMW row{};
  row.mask = LVIF_TEXT;
  row.iItem = index;
  row.pszText = text.data();
  ::SendMessageW(hwnd_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&row));
  ListView_SetItemState(hwnd_, index, CheckState(item.checked), LVIS_STATEIMAGEMASK);
}

void CheckedListView::Update(int index) {
  const CheckedList::Item& item = model_.Items()[static_cast<std::size_t>(index)];
  std::wstring text = Widen(AnsiToUtf8(item.text));
  LVITEMW row{};
  row.iSubItem = 0;
  row.pszText = text.data();
  ::SendMessageW(hwnd_, LVM_SETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&row));
  ListView_SetItemState(hwnd_, index, CheckState(item.checked), LVIS_STATEIMAGEMASK);
}

void CheckedListView::Rebuild() {
  ::SendMessageW(hwnd_, WM_SETREDRAW, FALSE, 0);
  ListView_DeleteAllItems(hwnd_);
  for (int i = 0; i < model_.ListCount(); ++i) Insert(i);
  ::SendMessageW(hwnd_, WM_SETREDRAW, TRUE, 0);
  FitColumn();
  ::InvalidateRect(hwnd_, nullptr, TRUE);
}

void CheckedListView::ShowHighlight() {
  const int index = model_.ListIndex();
  const int shown = ListView_GetNextItem(hwnd_, -1, LVNI_SELECTED);
  if (shown == index) return;
  if (shown >= 0) ListView_SetItemState(hwnd_, shown, 0, LVIS_SELECTED | LVIS_FOCUSED);
  if (index >= 0) {
    ListView_SetItemState(hwnd_, index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(hwnd_, index, FALSE);
  }
}

void CheckedListView::ShowModelHighlight() {
  if (!hwnd_) return;
  Updating guard(updating_);
  ShowHighlight();
}

void CheckedListView::OnListChanged(const CheckedList&, const ListChange& change) {
  if (!hwnd_) return;
  Updating guard(updating_);
  switch (change.kind) {
    case ListChange::Kind::Reset:
      Rebuild();
      break;
    case ListChange::Kind::Inserted:
      Insert(change.index);
      FitColumn();
      break;
    case ListChange::Kind::Removed:
      ListView_DeleteItem(hwnd_, change.index);
      FitColumn();
      break;
    case ListChange::Kind::Changed:
      Update(change.index);
      break;
    case ListChange::Kind::Highlighted:
      break;
  }
  ShowHighlight();
}

bool CheckedListView::HandleNotify(const NMHDR& header) {
  if (!hwnd_ || header.hwndFrom != hwnd_) return false;
  if (header.code != LVN_ITEMCHANGED || updating_) return true;
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
  if (change.iItem < 0 || change.iItem >= model_.ListCount() || !(change.uChanged & LVIF_STATE)) return true;

  const UINT oldImage = change.uOldState & LVIS_STATEIMAGEMASK;
  const UINT newImage = change.uNewState & LVIS_STATEIMAGEMASK;
  if (oldImage != 0 && newImage != 0 && oldImage != newImage) {
    const bool checked = newImage == CheckState(true);
    if (model_.ItemChecked(change.iItem) != checked) {
      {
        Updating guard(updating_);
        model_.SetItemChecked(change.iItem, checked);
      }
      if (ItemCheck) ItemCheck();
    }
  }
  const bool wasSelected = (change.uOldState & LVIS_SELECTED) != 0;
  const bool isSelected = (change.uNewState & LVIS_SELECTED) != 0;
  if (isSelected && !wasSelected) {
    if (model_.ListIndex() != change.iItem) model_.SetListIndex(change.iItem);
  } else if (wasSelected && !isSelected && change.iItem == model_.ListIndex()) {
    // A click on the empty part of the list takes the highlight away on the
    // screen only: the model keeps its item, so the screen shows it again.
    ::PostMessageW(::GetParent(hwnd_), kResyncMessage, static_cast<WPARAM>(id_), 0);
  }
  return true;
}

}  // namespace qm::win32
