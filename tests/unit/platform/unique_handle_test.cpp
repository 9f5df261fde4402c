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

class UniqueHandleTest : public ::testing::Test {
 protected:
  void SetUp() override { CountedTraits::closed.clear(); }
  static const std::vector<int>& Closed() { return CountedTraits::closed; }
};

TEST_F(UniqueHandleTest, ClosesWhatItHoldsExactlyOnce) {
  { Counted none; }
  { Counted zero(0); }  // 0 is a handle for this kind
  EXPECT_EQ(Closed(), std::vector<int>{0});
  {
    Counted a(1);
    a.Reset(2);
    EXPECT_EQ(Closed(), (std::vector<int>{0, 1}));
    EXPECT_TRUE(a.Close());
    EXPECT_FALSE(a.Valid());
    EXPECT_TRUE(a.Close());  // nothing left to close
  }
  EXPECT_EQ(Closed(), (std::vector<int>{0, 1, 2}));
  Counted bad(13);
  EXPECT_FALSE(bad.Close());
  EXPECT_EQ(Closed().size(), 4u);
}

TEST_F(UniqueHandleTest, MovingHandsOverWithoutClosing) {
  {
    Counted a(1);
    Counted b(std::move(a));
    EXPECT_FALSE(a.Valid());
    EXPECT_EQ(b.Get(), 1);
    Counted c(3);
    c = std::move(b);  // c's own handle is closed, 1 moves in
    EXPECT_EQ(Closed(), std::vector<int>{3});
    EXPECT_FALSE(b.Valid());
    EXPECT_EQ(c.Get(), 1);
    c = std::move(c);
    EXPECT_EQ(c.Get(), 1);
    const int given = c.Release();
    EXPECT_EQ(given, 1);
    EXPECT_FALSE(c);
  }
  EXPECT_EQ(Closed(), std::vector<int>{3});  // the released one is the caller's
}


}  // namespace
}  // namespace qm
