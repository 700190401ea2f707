#include "device_fixture.h"

namespace {

using CRegistersTest = CDeviceOpsTest;

TEST_F(CRegistersTest, FailuresOfSingleRegisters) {
  U64 Value = 0;
  EXPECT_EQ(Ops.Registers.ReadReg(0, &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteReg(0, 1), -1);
  EXPECT_EQ(Ops.Registers.ReadCPReg("15,1,2,3,4", &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteCPReg("15,1,2,3,4", 1), -1);
  Connect();
  EXPECT_EQ(Ops.Registers.ReadReg(0, &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteReg(0, 1), -1);
  EXPECT_EQ(Ops.Registers.ReadCPReg("15,1,2,3,4", &Value), -1);
  Ops.Connection.Disconnect();
  U8 Status = 0;
  const U32 Reg = 0;
  EXPECT_EQ(Ops.Registers.ReadRegs(1, &Reg, &Value, &Status), -1);
  EXPECT_EQ(Ops.Registers.ReadReg(0, &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteReg(0, 1), -1);
  EXPECT_EQ(Ops.Registers.ReadCPReg("15,1,2,3,4", &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteCPReg("15,1,2,3,4", 1), -1);
  for (const char* sText :
       {"ReadReg: not connected", "WriteReg: Not connected", "ReadCPReg: not connected", "WriteCPReg: not connected"}) {
    EXPECT_TRUE(HasLog(sText)) << sText;
  }
  Connect();
  EXPECT_EQ(Ops.Registers.ReadReg(0, &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteReg(0, 1), -1);
  EXPECT_EQ(Ops.Registers.ReadCPReg("15,1,2,3,4", &Value), -1);
  HaltAt(0x8000100);
  EXPECT_EQ(Ops.Registers.ReadReg(0xFFFFFFFF, &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteReg(0xFFFFFFFF, 1), -1);
  EXPECT_EQ(Ops.Registers.ReadCPReg("14,1,2,3,4", &Value), -1);
  Probe.Failing = {{"WriteReg", 0}, {"CP15_ReadEx", 0}, {"CP15_WriteEx", 0}};
  EXPECT_EQ(Ops.Registers.WriteReg(0, 1), -1);
  EXPECT_EQ(Ops.Registers.ReadCPReg("15,1,2,3,4", &Value), -1);
  EXPECT_EQ(Ops.Registers.WriteCPReg("15,1,2,3,4", 1), -1);
  for (const char* sText : {"ReadReg: not halted", "WriteReg: Not halted", "ReadReg: invalid register index",
                            "WriteReg: invalid register index", "WriteReg: VNODE API call failed",
                            "ReadCPReg: not halted", "ReadCPReg: invalid register identifier",
                            "ReadCPReg: VNODE API call failed", "WriteCPReg: VNODE API call failed"}) {
    EXPECT_TRUE(HasLog(sText)) << sText;
  }
}

TEST_F(CRegistersTest, ValuesAndAlignmentOfThePC) {
  ConnectHalted();
  Probe.Regs[15] = 0x8000101;
  Probe.Regs[14] = 0x8000101;
  U64 Value = 0;
  EXPECT_EQ(Ops.Registers.ReadReg(15, &Value), 0);
  EXPECT_EQ(Value, 0x8000100u);
  EXPECT_EQ(Ops.Registers.ReadReg(14, &Value), 0);
  EXPECT_EQ(Value, 0x8000101u);
  const U32 aReg[] = {14, 15, 40};
  U64 aValue[3];
  U8 aStatus[3];
  EXPECT_EQ(Ops.Registers.ReadRegs(3, aReg, aValue, aStatus), 0);
  EXPECT_EQ(aValue[0], 0x8000101u);
  EXPECT_EQ(aValue[1], 0x8000100u);
  EXPECT_EQ(aStatus[1], 0);
  EXPECT_EQ(aValue[2], ~0ull) << "register 40 does not exist";
  EXPECT_EQ(aStatus[2], 1);
  Forget();
  EXPECT_EQ(Ops.Registers.ReadCPReg("15,1,2,3,4", &Value), 0);
  EXPECT_EQ(Value, 0x410FC241u);
  EXPECT_EQ(Ops.Registers.WriteCPReg("15,1,2,3,4", 0xABC), 0);
  EXPECT_EQ(Probe.CallText(), "CP15_ReadEx 1 2 3 4, CP15_WriteEx 1 2 3 4 abc");
}

TEST_F(CRegistersTest, FailuresOfManyRegisters) {
  ConnectHalted();
  U32 aReg[] = {0, 0xFFFFFFFF};
  U64 aValue[2];
  U8 aStatus[2];
  EXPECT_EQ(Ops.Registers.ReadRegs(2, aReg, aValue, aStatus), -1);
  EXPECT_TRUE(HasLog("ReadRegs: Invalid register index"));
  aReg[1] = 1;
  Probe.Failing["ReadRegs"] = 0;
  EXPECT_EQ(Ops.Registers.ReadRegs(2, aReg, aValue, aStatus), -1);
  EXPECT_TRUE(HasLog("ReadRegs: VNODE API call failed"));
  EXPECT_EQ(aStatus[0], 0xFF);
  Probe.Halted = 0;
  EXPECT_EQ(Ops.Registers.ReadRegs(2, aReg, aValue, aStatus), -1);
  EXPECT_TRUE(HasLog("ReadRegs: not halted"));
  Probe.Failing["IsHalted"] = 0;
  EXPECT_EQ(Ops.Registers.ReadRegs(2, aReg, aValue, aStatus), -1);
  EXPECT_TRUE(HasLog("ReadRegs: invalid halt status"));
  EXPECT_EQ(Sink.TakeEvents(), "cancel; lost");
}

ELF_SYM_LOC Loc(U32 Type, U32 Addr, U32 Reg = 0, U64 Value = 0) {
  ELF_SYM_LOC Result;
  Result.Type = Type;
  Result.Addr = Addr;
  Result.Reg = Reg;
  Result.Offset = 4;  // never counts here
  Result.Value = Value;
  return Result;
}

TEST_F(CRegistersTest, LocationsOfEveryKind) {
  ConnectHalted();
  constexpr U32 MEM = CFakeProbe::MEM_START;
  for (U32 i = 0; i < 16; ++i) Probe.Mem[i] = static_cast<U8>(i);
  Probe.Regs[4] = 0x11223344;
  Probe.Regs[5] = 5;
  Program.FrameRegs[5] = 0x55;  // saved value of an outer frame
  struct CASE {
    ELF_SYM_LOC Place;
    U32 NumBytes;
    I64 Value;  // -1: cannot be read
  };
  const CASE aCase[] = {
      {Loc(ELF_LOC_CONST, 0, 0, 0x1234567890ull), 8, 0x1234567890ll},
      {Loc(ELF_LOC_CONST, 0, 0, 0x1234567890ull), 2, 0x7890},
      {Loc(ELF_LOC_MEM, MEM + 8), 4, 0x0B0A0908},
      {Loc(ELF_LOC_MEM_OFFSET, MEM + 1), 2, 0x0201},
      {Loc(ELF_LOC_REG, 0, 4), 4, 0x11223344},
      {Loc(ELF_LOC_REG, 0, 4), 1, 0x44},
      {Loc(ELF_LOC_REG_OFFSET, 0, 5), 4, 0x55},
      {Loc(ELF_LOC_REG, 0, ELF_REG_UNSPECIFIED), 4, -1},
      {Loc(ELF_LOC_MEM, 0x100), 4, -1},
      {Loc(ELF_LOC_REG, 0, 200), 4, -1},
      {Loc(ELF_LOC_SP_INDIRECT, 0), 4, -1},
      {Loc(ELF_LOC_NONE, 0), 4, -1},
      {Loc(99, 0), 4, -1},
      {Loc(ELF_LOC_MEM, MEM), 9, -1},
  };
  for (const CASE& Case : aCase) {
    U64 Value = 0;
    const int Result = Ops.Locations.ReadLoc(Case.Place, Case.NumBytes, reinterpret_cast<U8*>(&Value));
    EXPECT_EQ(Result, Case.Value < 0 ? -1 : 0) << Case.Place.Type;
    EXPECT_EQ(Value, Case.Value < 0 ? 0u : static_cast<U64>(Case.Value)) << Case.Place.Type;
  }
  const ELF_SYM_LOC aLoc[] = {Loc(ELF_LOC_REG, 0, 4), Loc(ELF_LOC_MEM, 0x100)};
  U64 aValue[2];
  U8 aStatus[2];
  EXPECT_EQ(Ops.Locations.ReadLocs(2, aLoc, aValue, aStatus), 0);
  EXPECT_EQ(aValue[0], 0x11223344u);
  EXPECT_EQ(aStatus[0], 0);
  EXPECT_EQ(aValue[1], ~0ull);
  EXPECT_EQ(aStatus[1], 1);
}

TEST_F(CRegistersTest, WritingLocations) {
  ConnectHalted();
  const U8 aData[8] = {0x78, 0x56, 0x34, 0x12};
  EXPECT_EQ(Ops.Locations.WriteLoc(Loc(ELF_LOC_MEM, CFakeProbe::MEM_START + 4), 4, aData), 0);
  EXPECT_EQ(Probe.CallText(), "BeginDownload 0, WriteU32 20000004, EndDownload, IsHalted");
  Forget();
  EXPECT_EQ(Ops.Locations.WriteLoc(Loc(ELF_LOC_REG, 0, 4), 2, aData), 0);
  EXPECT_EQ(Probe.CallText(), "WriteReg 4 5678");
  EXPECT_EQ(Ops.Locations.WriteLoc(Loc(ELF_LOC_CONST, 0), 4, aData), -1);
  EXPECT_EQ(Ops.Locations.WriteLoc(Loc(ELF_LOC_REG, 0, 4), 9, aData), -1);
}

}  // namespace
