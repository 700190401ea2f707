#include "probe_fixture.h"

#include <cstring>

CFirmware::CFirmware(U32 Base, U32 StackTop) : m_Base(Base) {
  Word(0, StackTop);
  Word(4, Base + ENTRY + 1);
}

CFirmware& CFirmware::Code(U32 Offset, std::initializer_list<U16> Halfwords) {
  const size_t End = Offset + Halfwords.size() * 2;
  if (m_Bytes.size() < End) m_Bytes.resize(End);
  std::memcpy(m_Bytes.data() + Offset, Halfwords.begin(), Halfwords.size() * 2);
  return *this;
}

CFirmware& CFirmware::Word(U32 Offset, U32 Value) {
  return Code(Offset, {static_cast<U16>(Value), static_cast<U16>(Value >> 16)});
}

CFirmware CFirmware::Counter(U32 Base) {
  CFirmware Firmware(Base);
  // LDR R0, =COUNTER; MOVS R1, #0; ADDS R1, #1; STR R1, [R0]; B ADDS
  Firmware.Code(ENTRY, {0x4803, 0x2100, 0x3101, 0x6001, 0xE7FC});
  return Firmware.Word(ENTRY + 0x10, COUNTER);
}

CFirmware CFirmware::Ticker(U32 Base, U32 ReloadCycles) {
  constexpr U32 HANDLER = 0x180;
  CFirmware Firmware(Base);
  Firmware.Word(15 * 4, Base + HANDLER + 1);
  // LDR R0, =SysTick; LDR R1, =ReloadCycles; STR R1, [R0, #4]; MOVS R1, #0; STR R1, [R0, #8]; MOVS R1, #7; STR R1,
  // [R0]; WFI; B WFI
  Firmware.Code(ENTRY, {0x4807, 0x4908, 0x6041, 0x2100, 0x6081, 0x2107, 0x6001, 0xBF30, 0xE7FD});
  Firmware.Word(ENTRY + 0x20, 0xE000E010).Word(ENTRY + 0x24, ReloadCycles);
  // LDR R2, =COUNTER; LDR R3, [R2]; ADDS R3, #1; STR R3, [R2]; BX LR
  Firmware.Code(HANDLER, {0x4A02, 0x6813, 0x3301, 0x6013, 0x4770});
  return Firmware.Word(HANDLER + 0x0C, COUNTER);
}

void CProbeTest::TearDown() {
  if (!API.VNODEARM_Open) return;
  EXPECT_EQ(Exec("sim.clear-faults"), "");
  EXPECT_EQ(Exec("sim.power-cycle"), "");
  API.VNODEARM_Close();
  API.VNODEARM_SetCoreIndex(0);
}

std::string CProbeTest::Exec(const std::string& sCommand) {
  char acReply[256] = "";
  const int Result = API.VNODEARM_ExecCommand(sCommand.c_str(), acReply, sizeof(acReply));
  EXPECT_EQ(Result == 0, acReply[0] == 0);
  return acReply;
}

void CProbeTest::Connect(const char* sDevice) {
  ASSERT_EQ(API.VNODEARM_SelectUSB(0), 0);
  ASSERT_EQ(API.VNODEARM_Open(), nullptr);
  ASSERT_EQ(Exec(std::string("device=") + sDevice), "");
  ASSERT_EQ(API.VNODEARM_Connect(), 0);
  API.VNODEARM_EnableSoftBPs(1);
  ASSERT_EQ(API.VNODEARM_Reset(), 0);
}

void CProbeTest::Load(const CFirmware& Firmware) {
  Load(Firmware.Base(), Firmware.Bytes().data(), Firmware.Bytes().size());
  ASSERT_EQ(PC(), Firmware.Base() + CFirmware::ENTRY);
}

void CProbeTest::Load(U32 Addr, const U8* paImage, size_t NumBytes) {
  API.VNODEARM_BeginDownload(0);
  ASSERT_EQ(API.VNODEARM_WriteMem(Addr, static_cast<U32>(NumBytes), paImage), 0);
  ASSERT_EQ(API.VNODEARM_EndDownload(), 0);
  ASSERT_EQ(API.VNODEARM_Reset(), 0);
}
