// Breakpoints in the user file.

#include <gtest/gtest.h>

#include "device/breakpoints/breakpoint_store.h"

namespace {

TEST(Store, PassesOverWhatIsNoBreakpoint) {
  // line, whether it is one, and then its state, type and skip count
  const std::tuple<const char*, bool, U32, U32, U32> aCases[] = {
      {"", false, 0, 0, 0},
      {"Breakpoint", false, 0, 0, 0},
      {"Breakpoint=\"main.c\"", false, 0, 0, 0},
      {"Breakpoint=\"\", Line=3", false, 0, 0, 0},
      {"Breakpoint=\"main.c\", Line=0", false, 0, 0, 0},
      {"Breakpoint=\"main.c\", Line=-1", false, 0, 0, 0},
      {"Breakpoint=\"main.c\", Line=99999999999", false, 0, 0, 0},
      {"Breakpoint=main.c, Line=3", true, BP_STATE_ENABLED, BP_TYPE_ANY, 0},
      {"Breakpoint=\"main.c\", Line=3, State=3, Type=2, SkipCount=5", true, BP_STATE_DISABLED, BP_TYPE_SOFT, 5},
      {"Breakpoint=\"main.c\", Line=3, State=2, Type=9, SkipCount=x", true, BP_STATE_ENABLED, BP_TYPE_ANY, 0},
      {"AddressBreakpoint=0x100, State=3", true, BP_STATE_DISABLED, BP_TYPE_ANY, 0},
      {"AddressBreakpoint=0x1FFFFFFFF", false, 0, 0, 0},
      {"DerivedBreakpoint=1, State=3", false, 0, 0, 0},
  };
  for (const auto& [sLine, bIsOne, State, Type, SkipCount] : aCases) {
    const QList<STORED_BREAKPOINT> Read = ParseBreakpointText(QLatin1String(sLine));
    ASSERT_EQ(Read.size(), bIsOne ? 1 : 0) << sLine;
    if (!bIsOne) continue;
    EXPECT_EQ(Read[0].Settings[0].State, State) << sLine;
    EXPECT_EQ(Read[0].Settings[0].Type, Type) << sLine;
    EXPECT_EQ(Read[0].Settings[0].Props.SkipCount, SkipCount) << sLine;
  }
  const QString sMany = QStringLiteral("Breakpoint=\"m.c\", Line=3\n").repeated(300);
  EXPECT_LE(ParseBreakpointText(sMany).size(), 256) << "no more than the device's list holds";
}

}  // namespace
