// The property store: keys without regard to case, defaults for unusable
// values and the plain conversions. (Missing keys and writes that leave
// out defaults are seen through the image button's stored properties.)
#include "controls/property_store.h"

#include <gtest/gtest.h>

namespace qm {
namespace {

TEST(PropertyStore, KeysMatchWithoutRegardToCaseAndKeepTheirFirstSpelling) {
  PropertyStore store{{"USeCustomColors", true}, {"Style", 10}};
  EXPECT_TRUE(store.Has("usecustomcolors"));
  EXPECT_TRUE(store.ReadBool("USECUSTOMCOLORS", false));
  EXPECT_EQ(store.ReadLong("sTyLe", 3), 10);

  store.Set("usecustomcolors", false);
  EXPECT_EQ(store.Size(), 2u);
  EXPECT_FALSE(store.ReadBool("UseCustomColors", true));
  EXPECT_EQ(store.Keys(), (std::vector<std::string>{"Style", "USeCustomColors"}));
}

TEST(PropertyStore, MissingAndUnusableValuesReadAsTheDefault) {
  PropertyStore store{
      {"Style", "ten"}, {"MousePointer", 70000}, {"IconAlign", -70000}, {"Caption", FontSpec{}}, {"Icon", 5}};
  EXPECT_EQ(store.ReadString("Caption", "isButton"), "isButton");
  EXPECT_EQ(store.ReadLong("Style", 3), 3);
  EXPECT_EQ(store.ReadInteger("MousePointer", 0), 0);  // beyond 16 bits
  EXPECT_EQ(store.ReadInteger("IconAlign", 1), 1);
  EXPECT_EQ(store.ReadPicture("Icon", {}), Picture{});
}

TEST(PropertyStore, ReadsTextNumbersAndBooleansAsTheKindAsked) {
  PropertyStore store{{"Enabled", "False"},      {"Value", "true"},          {"Style", "10"},
                      {"BackColor", "&HB36A36"}, {"FontColor", -2147483633}, {"ShowFocus", 1},
                      {"bRTLText", true},        {"Tooltiptitle", 42},       {"MaskColor", "&H8000000F&"},
                      {"IconSize", "32767"},     {"IconAlign", "-32768"},    {"HoverColor", "&hff00"}};
  EXPECT_FALSE(store.ReadBool("Enabled", true));
  EXPECT_TRUE(store.ReadBool("Value", false));
  EXPECT_TRUE(store.ReadBool("ShowFocus", false));
  EXPECT_EQ(store.ReadLong("Style", 3), 10);
  EXPECT_EQ(store.ReadColor("BackColor", 0), 0x00B36A36u);
  EXPECT_EQ(store.ReadColor("FontColor", 0), 0x8000000Fu);  // a colour kept as a signed number
  EXPECT_EQ(store.ReadLong("bRTLText", 0), -1);
  EXPECT_EQ(store.ReadString("Tooltiptitle", ""), "42");
  // A hexadecimal Long with its "&", a signed number, and the ends of 16 bits.
  EXPECT_EQ(store.ReadColor("MaskColor", 0), 0x8000000Fu);
  EXPECT_EQ(store.ReadInteger("IconSize", 16), 32767);
  EXPECT_EQ(store.ReadInteger("IconAlign", 0), -32768);
  EXPECT_EQ(store.ReadColor("HoverColor", 0), 0xFF00u) << "a lower-case &h";
}

}  // namespace
}  // namespace qm
