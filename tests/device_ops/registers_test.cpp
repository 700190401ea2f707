#include "device_fixture.h"
#include "tests/common/symbol_place.h"

namespace {

using CRegistersTest = CDeviceOpsTest;

TEST_F(CRegistersTest, Failures) {
  U64 aValue[2];
  U8 aStatus[2];
  const auto Failures = [&](U32 Index) {
    Forget();
    const U32 aReg[] = {0, Index};
    EXPECT_EQ(Ops.Registers.ReadReg(Index, aValue), -1);
    EXPECT_EQ(Ops.Registers.WriteReg(Index, 1), -1);
    EXPECT_EQ(Ops.Registers.ReadRegs(2, aReg, aValue, aStatus), -1);
    EXPECT_EQ(aStatus[0], 0xFF);
    return Sink.TakeLogs();
  };
  EXPECT_EQ(Failures(0), "ReadReg: not connected; WriteReg: Not connected; ReadRegs: invalid halt status");
  Connect();
  EXPECT_EQ(Failures(0), "ReadReg: not halted; WriteReg: Not halted; ReadRegs: not halted");
  HaltAt(0x8000100);
  EXPECT_EQ(Failures(0xFFFFFFFF),
            "ReadReg: invalid register index; WriteReg: invalid register index; ReadRegs: Invalid register index");
  Probe.Failing["IsHalted"] = 0;
  const U32 Reg = 0;
  EXPECT_EQ(Ops.Registers.ReadRegs(1, &Reg, aValue, aStatus), -1);
  EXPECT_EQ(Sink.TakeLogs(), "Invalid connection status received; ReadRegs: invalid halt status");
  EXPECT_EQ(Sink.TakeEvents(), "cancel; lost");
}

TEST_F(CRegistersTest, CoprocessorRegisters) {
  U64 Value = 0;
  const auto Access = [&](const char* sReg) {
    Forget();
    const int Read = Ops.Registers.ReadCPReg(sReg, &Value);
    EXPECT_EQ(Ops.Registers.WriteCPReg(sReg, 0x55), Read);
    return Sink.TakeLogs();
  };
  constexpr const char* GOOD = "15,1,3,2,4";
  EXPECT_EQ(Access("14,1,3,2,4"), "ReadCPReg: invalid register identifier; WriteCPReg: invalid register identifier");
  EXPECT_EQ(Access(GOOD), "ReadCPReg: not connected; WriteCPReg: not connected");
  Connect();
  EXPECT_EQ(Access(GOOD), "ReadCPReg: not halted; WriteCPReg: not halted");
  HaltAt(0x8000100);
  EXPECT_EQ(Access(GOOD), "");
  EXPECT_EQ(Probe.CallText(), "CP15_ReadEx 1 2 3 4, CP15_WriteEx 1 2 3 4 55");
  EXPECT_EQ(Value, 0x41u);
}

TEST_F(CRegistersTest, LocationsOfEveryKind) {
  ConnectHalted();
  constexpr U32 MEM = CFakeProbe::MEM_START;
  for (U32 i = 0; i < 16; ++i) Probe.Mem[i] = static_cast<U8>(i);
  Probe.Regs[4] = 0x11223344;
  Probe.Regs[5] = 5;
  Program.FrameRegs[5] = 0x55;  // saved value of an outer frame
  // place, bytes, value; -1: cannot be read
  const std::tuple<ELF_SYM_LOC, U32, I64> aCase[] = {
      {Loc(ELF_LOC_CONST, 0x1234567890), 8, 0x1234567890ll},
      {Loc(ELF_LOC_CONST, 0x1234567890), 2, 0x7890},
      {Loc(ELF_LOC_MEM, MEM + 8), 4, 0x0B0A0908},
      {Loc(ELF_LOC_MEM_OFFSET, MEM + 1), 2, 0x0201},
      {Loc(ELF_LOC_REG, 4), 4, 0x11223344},
      {Loc(ELF_LOC_REG, 4), 1, 0x44},
      {Loc(ELF_LOC_REG_OFFSET, 5), 4, 0x55},
      {Loc(ELF_LOC_REG, ELF_REG_UNSPECIFIED), 4, -1},
      {Loc(ELF_LOC_MEM, 0x100), 4, -1},
      {Loc(ELF_LOC_REG, 200), 4, -1},
      {Loc(ELF_LOC_SP_INDIRECT, 0), 4, -1},
      {Loc(ELF_LOC_NONE, 0), 4, -1},
      {Loc(99, 0), 4, -1},
      {Loc(ELF_LOC_MEM, MEM), 9, -1},
  };
  for (const auto& [Place, NumBytes, Expected] : aCase) {
    U64 Value = 0;
    EXPECT_EQ(Ops.Locations.ReadLoc(Place, NumBytes, reinterpret_cast<U8*>(&Value)), Expected < 0 ? -1 : 0)
        << Place.Type;
    EXPECT_EQ(Value, Expected < 0 ? 0u : static_cast<U64>(Expected)) << Place.Type;
  }
  const ELF_SYM_LOC aLoc[] = {Loc(ELF_LOC_REG, 4), Loc(ELF_LOC_MEM, 0x100)};
  std::vector<U64> aValue(2);
  std::vector<U8> aStatus(2);
  EXPECT_EQ(Ops.Locations.ReadLocs(2, aLoc, aValue.data(), aStatus.data()), 0);
  EXPECT_EQ(aValue, (std::vector<U64>{0x11223344, ~0ull}));
  EXPECT_EQ(aStatus, (std::vector<U8>{0, 1}));
}

}  // namespace
