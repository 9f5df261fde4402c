// A checked list on the screen: a list-view control with a check box per
// item, one column and no header, that mirrors a CheckedList. The model is
// the truth: every change of the model is applied to the control as it is
// told; the user's clicks go to the model (a click on an item highlights it
// there, a click on a check box sets its mark there) and then to the
// window's handlers. Items are Windows-1252 text in the model and UTF-16 on
// the screen.
#pragma once

#include <windows.h>
// After windows.h:
#include <commctrl.h>

#include <functional>

#include "library/checked_list.h"

namespace qm::win32 {

class CheckedListView final : private CheckedListObserver {
 public:
  explicit CheckedListView(CheckedList& model);
  ~CheckedListView();
  CheckedListView(const CheckedListView&) = delete;
  CheckedListView& operator=(const CheckedListView&) = delete;

  // Creates the control as a child of `parent` (pixels, client
  // coordinates), with the font (not owned), and shows the model's items.
  bool Create(HWND parent, const RECT& bounds, HFONT font, int id);
  HWND Hwnd() const { return hwnd_; }
  int Id() const { return id_; }
  // Moves the control to `bounds` (pixels) in the font (not owned), its
  // column as wide as the control.
  void Place(const RECT& bounds, HFONT font);

  // The user changed an item's mark; the model holds it already.
  std::function<void()> ItemCheck;

  // The parent hands over its WM_NOTIFY messages; true when the message was
  // this control's.
  bool HandleNotify(const NMHDR& header);
  // Shows the model's highlighted item again (after the control lost its
  // selection on its own; the control posts kResyncMessage to its parent
  // with its id in wParam).
  void ShowModelHighlight();
  static constexpr UINT kResyncMessage = WM_APP + 1;

 private:
  void OnListChanged(const CheckedList& list, const ListChange& change) override;
  void Rebuild();
  void Insert(int index);
  void Update(int index);
  void ShowHighlight();
  void FitColumn();

  CheckedList& model_;
  HWND hwnd_ = nullptr;
  int id_ = 0;
  bool updating_ = false;  // the control is being changed to match the model
};

}  // namespace qm::win32
