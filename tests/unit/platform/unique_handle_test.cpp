#include "platform/unique_handle.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace qm {
namespace {

// Handles are numbers, -1 is none, and every close is written down.
struct CountedTraits {
  using Handle = int;
  static Handle Invalid() noexcept { return -1; }
  static bool Close(Handle h) noexcept {
    closed.push_back(h);
    return h != 13;  // 13 refuses to close cleanly
  }
  static inline std::vector<int> closed;
};
using Counted = UniqueHandle<CountedTraits>;

TEST(UniqueHandle, ClosesWhatItHoldsExactlyOnce) {
  auto& closed = CountedTraits::closed;
  closed.clear();
  { Counted none; }
  { Counted zero(0); }  // 0 is a handle for this kind
  EXPECT_EQ(closed, std::vector<int>{0});
  {
    Counted a(1);
    a.Reset(2);
    EXPECT_EQ(closed, (std::vector<int>{0, 1}));
    EXPECT_TRUE(a.Close());
    EXPECT_FALSE(a.Valid());
    EXPECT_TRUE(a.Close());  // nothing left to close
  }
  EXPECT_EQ(closed, (std::vector<int>{0, 1, 2}));
  Counted bad(13);
  EXPECT_FALSE(bad.Close());
  EXPECT_EQ(closed.size(), 4u);
}

// (Moving out of an owner, and closing at the end of its scope, are
// checked with the system's own handles in the shell tests.)
TEST(UniqueHandle, MoveAssignmentClosesTheOldHandleAndReleaseGivesItAway) {
  auto& closed = CountedTraits::closed;
  closed.clear();
  {
    Counted a(1);
    Counted c(3);
    c = std::move(a);  // c's own handle is closed, 1 moves in
    EXPECT_EQ(closed, std::vector<int>{3});
    EXPECT_FALSE(a.Valid());
    c = std::move(c);
    EXPECT_EQ(c.Release(), 1);
    EXPECT_FALSE(c);
  }
  EXPECT_EQ(closed, std::vector<int>{3});  // the released one is the caller's
}

}  // namespace
}  // namespace qm
