#pragma once
// The loaded probe library, and firmware that is written by hand, for the tests of this folder.

#include <initializer_list>

#include "tests/common/probe_library.h"

// Thumb firmware with its vector table, to be placed at the start of flash.
class CFirmware {
public:
  explicit CFirmware(U32 Base, U32 StackTop = 0x20001000);
  CFirmware& Code(U32 Offset, std::initializer_list<U16> Halfwords);
  CFirmware& Word(U32 Offset, U32 Value);
  const std::vector<U8>& Bytes() const { return m_Bytes; }
  U32 Base() const { return m_Base; }

  static constexpr U32 ENTRY = 0x100;         // offset of the first instruction
  static constexpr U32 COUNTER = 0x20000000;  // what Counter and Ticker count in

  // Increments a word of RAM for ever: LDR R0, MOVS R1, then the loop of ADDS R1 (ENTRY + 4), STR (ENTRY + 6), B.
  static CFirmware Counter(U32 Base);
  // Sleeps in WFI and counts SysTick interrupts, one every ReloadCycles + 1 cycles.
  static CFirmware Ticker(U32 Base, U32 ReloadCycles);

private:
  U32 m_Base;
  std::vector<U8> m_Bytes;
};

class CProbeTest : public CProbeLibraryTest {
protected:
  void TearDown() override;

  // Empty, or the error reply.
  std::string Exec(const std::string& sCommand);
  // A fresh board of the device, connected, halted in reset.
  void Connect(const char* sDevice);
  // Programs flash, resets, and leaves the core halted at the entry.
  void Load(const CFirmware& Firmware);
  void Load(U32 Addr, const U8* paImage, size_t NumBytes);
  U32 PC() { return API.VNODEARM_ReadReg(VNODE_REG_PC); }
};
