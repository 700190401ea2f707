#include "inspect/stack_pointer.h"

#include <gtest/gtest.h>

namespace {

TEST(StackPointer, ReadsInstructionsThatMoveIt) {
  const std::tuple<const char*, U32, bool, I32> aCases[] = {
      {"PUSH        {R4-R7, LR}", 20, false, -1},     {"PUSH.W      {R8-R9, R11}", 12, false, -1},
      {"VPUSH       {D8-D10}", 24, false, -1},        {"VPUSH       {S16-S17}", 8, false, -1},
      {"SUB         SP, SP, #0x48", 0x48, false, -1}, {"SUBW        SP, SP, #0x404", 0x404, false, -1},
      {"SUB.W       SP, SP, R3", 0, true, -1},        {"MOV         SP, R7", 0, false, 7},
      {"MOV         R7, SP", 0, false, -1},           {"ADD         SP, SP, #0x08", 0, false, -1},
      {"SUB         R0, SP, #0x08", 0, false, -1},    {"STR         R0, [SP, #0x04]", 0, false, -1},
  };
  for (const auto& [sText, NumBytes, bUnknown, Source] : aCases) {
    SCOPED_TRACE(sText);
    const SP_CHANGE Change = ChangeOfStackPointer(QString::fromLatin1(sText));
    EXPECT_EQ(NumBytes, Change.NumBytes);
    EXPECT_EQ(bUnknown, Change.bUnknown);
    EXPECT_EQ(Source, Change.Source);
  }
}

}  // namespace
