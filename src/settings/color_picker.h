// The colour picker's model (ColorPicker1): one OLE colour as its value and
// a change notification that every assignment raises, the program's own
// included, so that the font panel's handler runs when the stored settings
// set the picker. The picker control on the screen mirrors this model and
// sets its value when the user picks a colour.
#pragma once

#include <functional>

#include "platform/ole_color.h"

namespace qm {

class ColorPicker {
 public:
  explicit ColorPicker(OleColor value) : value_(value) {}
  ColorPicker(const ColorPicker&) = delete;
  ColorPicker& operator=(const ColorPicker&) = delete;

  OleColor Value() const { return value_; }
  // Sets the value and raises Change, even when the value stays the same.
  void SetValue(OleColor value) {
    value_ = value;
    if (Change) Change();
  }

  std::function<void()> Change;

 private:
  OleColor value_;
};

}  // namespace qm
