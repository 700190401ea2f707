#pragma once
// What the operations on the target ask the core model and the program database. An interface, so that they can be
// tested without a program; CProgramAccess is the real one.

#include <functional>

#include <QString>

#include "base/addr_range.h"
#include "base/elf_sym.h"
#include "base/src_loc.h"
#include "base/types.h"

// What an instruction does, as far as resuming and halting care.
struct INST_INFO {
  U32 Size = 0;               // in bytes
  bool bBreakpoint = false;   // BKPT
  bool bSemihosting = false;  // semihosting request
};

// Coprocessor register of the system control coprocessor.
struct CP15_REG {
  U8 CRn = 0;
  U8 CRm = 0;
  U8 Op1 = 0;
  U8 Op2 = 0;
};

class IProgramAccess {
public:
  virtual ~IProgramAccess() = default;

  // Smallest instruction size of the core in bytes, a power of two.
  virtual U32 InstAlign() = 0;
  // False when nothing can be read or decoded at the address.
  virtual bool GetInst(U32 Addr, INST_INFO& Info) = 0;
  // Instruction set for the probe's breakpoint flags, VNODE_BP_ARM or VNODE_BP_THUMB, from the program's symbols.
  virtual U32 InstSetAt(U32 Addr) = 0;
  // Register in DWARF numbering to the probe's; INVALID_REG_INDEX if there is none.
  virtual U32 MapRegIndex(U32 LogicReg) = 0;
  // "15, CRn, op1, CRm, op2"; false for any other text or coprocessor.
  virtual bool ParseCPReg(const char* sReg, CP15_REG& Reg) = 0;
  // Writes PC and SP as the core has them after a reset; 0 or -1.
  virtual int SetResetState() = 0;
  // Tells the core model which core and byte orders the target has.
  virtual void SetCpuInfo(U32 Core, U32 DataEndian, U32 InstEndian) = 0;
  // "Cortex-M4" from a core identifier; empty when unknown.
  virtual QString CoreVariant(U32 Core) = 0;
  // Last source location of the address; invalid when it has none.
  virtual CSrcLoc SrcLocAt(U32 Addr) = 0;
  // The innermost function at the address and its first range, of one program; 0 and none where there is none.
  virtual ELF_SYM_HANDLE FuncAt(U32 Addr, CAddrRange& Range) = 0;
  // Value of a register (DWARF numbering) in the frame that the user has selected; false without such a frame.
  virtual bool FrameReg(U32 LogicReg, U64& Value) = 0;
};

// Answers from VCore and ELFAPI.
class CProgramAccess : public IProgramAccess {
public:
  U32 InstAlign() override;
  bool GetInst(U32 Addr, INST_INFO& Info) override;
  U32 InstSetAt(U32 Addr) override;
  U32 MapRegIndex(U32 LogicReg) override;
  bool ParseCPReg(const char* sReg, CP15_REG& Reg) override;
  int SetResetState() override;
  void SetCpuInfo(U32 Core, U32 DataEndian, U32 InstEndian) override;
  QString CoreVariant(U32 Core) override;
  CSrcLoc SrcLocAt(U32 Addr) override;
  ELF_SYM_HANDLE FuncAt(U32 Addr, CAddrRange& Range) override;
  bool FrameReg(U32 LogicReg, U64& Value) override;

  // Register of the selected stack frame; plugged in by the call stack. Empty: no frame is selected.
  std::function<bool(U32 LogicReg, U64& Value)> pfFrameReg;
};
