#include "device/event_ring.h"

#include <gtest/gtest.h>

TEST(TextRing, CutsLongTextsBetweenCharacters) {
  CTextRing Texts;
  const std::tuple<size_t, std::string, size_t> aCase[] = {
      {1000, "", 1000}, {1001, "", 1000}, {998, "€", 998}, {997, "€b", 1000}, {0, "", 0}};
  for (const auto& [NumFirst, sRest, Length] : aCase) {
    const std::string sText = std::string(NumFirst, 'a') + sRest;
    EXPECT_EQ(Texts.Get(Texts.Add(sText)), sText.substr(0, Length));
  }
  EXPECT_EQ(Texts.Get(~0ull), "");
}
