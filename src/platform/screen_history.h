// The screen service's drawing history: one list per kind of drawing, each
// record holding the arguments of one call and the four colours that were
// current when it was made, so the whole history can be drawn again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/ole_color.h"

namespace qm {

// The screen service's four colours, as given (a system-colour code stays a
// code until drawn).
struct ScreenColors {
  OleColor backColorScr = 0x00FFFFFF;  // fill of shapes
  OleColor foreColorScr = 0x00000000;  // outlines and lines
  OleColor backColorTxt = 0x00FFFFFF;  // behind text
  OleColor foreColorTxt = 0x00000000;  // text

  friend bool operator==(const ScreenColors&, const ScreenColors&) = default;
};

// Arguments of each drawing call, in the order the call takes them.
// Coordinates are device pixels of the screen.
struct ArcArgs {
  std::int32_t x = 0, y = 0, radius = 0, startX = 0, startY = 0;
  float startAngle = 0, sweepAngle = 0;
  friend bool operator==(const ArcArgs&, const ArcArgs&) = default;
};

struct EllipseArgs {
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  friend bool operator==(const EllipseArgs&, const EllipseArgs&) = default;
};

struct HalfCircleArgs {
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  std::int32_t radial1X = 0, radial1Y = 0, radial2X = 0, radial2Y = 0;
  friend bool operator==(const HalfCircleArgs&, const HalfCircleArgs&) = default;
};

struct LineArgs {
  std::int32_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  friend bool operator==(const LineArgs&, const LineArgs&) = default;
};

struct PictureArgs {
  std::int32_t x = 0, y = 0;
  std::string path;                    // a picture file, or empty
  std::shared_ptr<void> picture;       // a picture object, kept alive by the record
  std::uintptr_t bitmap = 0;           // a bitmap handle, or 0
  std::int32_t width = 0, height = 0;  // 0: the picture's own size
  bool stretch = false;
  friend bool operator==(const PictureArgs&, const PictureArgs&) = default;
};

struct PieArgs {
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  float angle = 0;
  bool explicitRadials = false;
  std::int32_t radial1X = 0, radial1Y = 0, radial2X = 0, radial2Y = 0;
  friend bool operator==(const PieArgs&, const PieArgs&) = default;
};

struct PolygonArgs {
  std::vector<std::int32_t> xs, ys;
  std::int32_t count = 0;
  friend bool operator==(const PolygonArgs&, const PolygonArgs&) = default;
};

struct PolylineArgs {
  std::int32_t startX = 0, startY = 0;
  std::vector<std::int32_t> xs, ys;
  std::int32_t count = 0;
  friend bool operator==(const PolylineArgs&, const PolylineArgs&) = default;
};

struct RectangleArgs {
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  bool filled = false, outlined = false;
  friend bool operator==(const RectangleArgs&, const RectangleArgs&) = default;
};

struct TextArgs {
  std::string text;
  std::int32_t x = 0, y = 0;
  bool wordWrap = false;
  friend bool operator==(const TextArgs&, const TextArgs&) = default;
};

template <typename Args>
struct HistoryRecord {
  Args args;
  ScreenColors colors;
};

template <typename Args>
using HistoryList = std::vector<HistoryRecord<Args>>;

class ScreenHistory {
 public:
  template <typename Args>
  void Add(Args args, const ScreenColors& colors) {
    std::get<HistoryList<Args>>(lists_).push_back({std::move(args), colors});
  }

  template <typename Args>
  const HistoryList<Args>& List() const {
    return std::get<HistoryList<Args>>(lists_);
  }

  // Records in all ten lists together.
  std::size_t Count() const {
    return std::apply([](const auto&... lists) { return (lists.size() + ...); }, lists_);
  }

  void Clear() {
    std::apply([](auto&... lists) { (lists.clear(), ...); }, lists_);
  }

  // Visits the records list by list in the order arcs, ellipses, half
  // circles, lines, pictures, pies, polygons, polylines, rectangles, texts,
  // each list from its first record to its last. visit(record) returns
  // false to end the walk; the result is false then.
  template <typename Visitor>
  bool ForEachRecord(Visitor&& visit) const {
    return std::apply([&](const auto&... lists) { return (VisitList(lists, visit) && ...); }, lists_);
  }

 private:
  template <typename List, typename Visitor>
  static bool VisitList(const List& list, Visitor& visit) {
    for (const auto& record : list) {
      if (!visit(record)) return false;
    }
    return true;
  }

  std::tuple<HistoryList<ArcArgs>, HistoryList<EllipseArgs>, HistoryList<HalfCircleArgs>,
             HistoryList<LineArgs>, HistoryList<PictureArgs>, HistoryList<PieArgs>, HistoryList<PolygonArgs>,
             HistoryList<PolylineArgs>, HistoryList<RectangleArgs>, HistoryList<TextArgs>>
      lists_;
};

}  // namespace qm
