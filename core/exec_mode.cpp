#include "base/endian.h"
#include "core/core_state.h"
#include "core/core_table.h"

namespace VCore {

namespace {

constexpr U32 CPSR_T = 1u << 5;
constexpr U32 DEFAULT_ARCH = 7;  // of an identifier that is not in the core table
constexpr U32 THUMB2_ARCH = 7;   // first version with all of Thumb-2
constexpr int THUMB_ONLY_ARCH = 6;
constexpr int FIRST_THUMB_ARCH = 4;

// Cores that never leave Thumb, whatever their status register says.
bool IsThumbOnly(U32 CoreId) {
  return IsCortexM(CoreId) || GetFamily(CoreId) == CORE_FAMILY_M1;
}

U32 ModeOfProcessor(const SNAPSHOT& Core) {
  if (IsThumbOnly(Core.Cpu.CoreId)) return VCORE_MODE_THUMB;
  VCORE_REGS Regs;
  if (Core.pAPI->pfGetRegs(Regs) != 0 || Regs.aStatus[VCORE_REG_PSR] != 0) return VCORE_MODE_THUMB;
  return (Regs.aValue[VCORE_REG_PSR] & CPSR_T) != 0 ? VCORE_MODE_THUMB : VCORE_MODE_ARM;
}

U32 ModeOfMappingSymbol(const SNAPSHOT& Core, U32 Addr) {
  QString sName;
  U32 Start = 0;
  U32 End = 0;
  if (Core.pAPI->pfGetMappingSymbol(Addr, sName, Start, End) != 0) return VCORE_MODE_NONE;
  if (sName.startsWith(QLatin1String("$a"))) return VCORE_MODE_ARM;
  return sName.startsWith(QLatin1String("$t")) ? U32(VCORE_MODE_THUMB) : U32(VCORE_MODE_NONE);
}

// In the code that runs now the processor's state is right even where the mapping symbols are not.
bool IsInRunningCode(const SNAPSHOT& Core, U32 Addr) {
  if (IsThumbOnly(Core.Cpu.CoreId)) return false;
  VCORE_REGS Regs;
  return Core.pAPI->pfGetRegs(Regs) == 0 && Regs.aStatus[VCORE_REG_PSR] == 0 && Addr >= Regs.FuncStart &&
         Addr < Regs.FuncEnd;
}

// The decoder gates by version number alone. Version 4 with Thumb has BX, which the number gives to version 5; a
// Thumb-2 core of version 6 that is not Thumb-only has all of Thumb-2; and what a core of version 3 has is part of
// version 4.
U32 DecoderArch(U32 CoreId) {
  const int Version = GetArchVersion(CoreId);
  const int ThumbLevel = GetThumbLevel(CoreId);
  if (Version < 0) return DEFAULT_ARCH;
  if (Version == FIRST_THUMB_ARCH && ThumbLevel > 0) return FIRST_THUMB_ARCH + 1;
  if (Version == THUMB_ONLY_ARCH && ThumbLevel == 2 && !IsThumbOnly(CoreId)) return THUMB2_ARCH;
  return static_cast<U32>(std::max(Version, FIRST_THUMB_ARCH));
}

struct THREAD_DECODER {
  DISASM_CONTEXT Context;
  API_PTR pAPI;  // keeps Context.pAPI alive
  U32 Generation = 0;
  U32 NextAddr = INVALID_ADDR;
};

thread_local THREAD_DECODER aDecoder[NUM_DECODER_USES];

}  // namespace

DISASM_CONTEXT& PrepareDecoder(const SNAPSHOT& Core, DECODER_USE Use, U32 Addr, U32 Mode) {
  if (Mode != VCORE_MODE_ARM && Mode != VCORE_MODE_THUMB) {
    LogError(Core, QStringLiteral("Execution mode not supported. Reverting to Thumb"));
    Mode = VCORE_MODE_THUMB;
  }
  THREAD_DECODER& Decoder = aDecoder[Use];
  DISASM_CONTEXT& Context = Decoder.Context;
  const U32 DecoderMode = Mode == VCORE_MODE_ARM ? DISASM_ARM : DISASM_THUMB;
  if (Decoder.Generation != Core.Generation || Decoder.pAPI != Core.pAPI || Context.Mode != DecoderMode ||
      Context.pfDecode == nullptr) {
    Decoder.Generation = Core.Generation;
    Decoder.pAPI = Core.pAPI;
    Context.pAPI = Core.pAPI.get();
    Context.ArchVersion = DecoderArch(Core.Cpu.CoreId);
    Context.BigEndian = Core.Info.InstEndianness;
    Context.BigEndianData = Core.Info.DataEndianness;
    Context.bMProfile = IsThumbOnly(Core.Cpu.CoreId);
    DISASM_SetMode(Context, DecoderMode);
  }
  if (Addr != Decoder.NextAddr) Context.ITState = 0;
  return Context;
}

void SetNextDecodeAddr(DECODER_USE Use, U32 Addr) {
  aDecoder[Use].NextAddr = Addr;
}

U32 ExecModeAt(const SNAPSHOT& Core, U32 Addr) {
  if (Core.pAPI == nullptr) return VCORE_MODE_THUMB;
  if (GetThumbLevel(Core.Cpu.CoreId) == 0) return VCORE_MODE_ARM;
  const U32 Mode = ModeOfMappingSymbol(Core, Addr);
  return Mode != VCORE_MODE_NONE ? Mode : ModeOfProcessor(Core);
}

U32 InstSizeAt(const SNAPSHOT& Core, U32 Addr) {
  constexpr U32 ARM_INST_SIZE = 4;
  constexpr U32 THUMB_INST_SIZE = 2;
  if (Core.pAPI == nullptr) return THUMB_INST_SIZE;
  const U32 Level = GetThumbLevel(Core.Cpu.CoreId);
  if (Level == 0) return ARM_INST_SIZE;
  const U32 Mode = IsInRunningCode(Core, Addr) ? ModeOfProcessor(Core) : ExecModeAt(Core, Addr);
  if (Mode == VCORE_MODE_ARM) return ARM_INST_SIZE;
  if (Level == 1) return THUMB_INST_SIZE;
  U8 aByte[2];
  if (Core.pAPI->pfGetMemData(Addr, sizeof(aByte), aByte) != 0) return THUMB_INST_SIZE;
  const U32 Halfword = LoadInt<U16>(aByte, Core.Info.InstEndianness != 0);
  return (Halfword & 0xE000) == 0xE000 && (Halfword & 0x1800) != 0 ? 4 : THUMB_INST_SIZE;
}

U32 GetExecMode(U32 Addr) {
  return ExecModeAt(TakeSnapshot(), Addr);
}

bool IsArm(U32 Addr) {
  return GetExecMode(Addr) == VCORE_MODE_ARM;
}

U32 GetInstSize(U32 Addr) {
  return InstSizeAt(TakeSnapshot(), Addr);
}

}  // namespace VCore
