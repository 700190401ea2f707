#include <cstring>

#include "base/endian.h"
#include "core/core_state.h"
#include "core/core_table.h"

namespace VCore {

namespace {

constexpr U32 VTOR = 0xE000ED08;  // vector table offset register
constexpr U32 VECTOR_SIZE = 4;    // bytes
constexpr U32 PROBE_CPSR = 8;     // on cores with banked registers
constexpr U32 PROBE_PC = 9;
constexpr U32 CPSR_MODE_MASK = 0x1F;

enum CPU_MODE : U32 {
  MODE_USR = 16,
  MODE_FIQ = 17,
  MODE_IRQ = 18,
  MODE_SVC = 19,
  MODE_ABT = 23,
  MODE_UND = 27,
  MODE_SYS = 31,
};

struct MODE_ROW {
  U32 Mode;
  const char* sName;
  U32 OffsetR13;  // added to 13 and 14
  U32 ProbeSPSR;
};

constexpr MODE_ROW aMode[] = {
    {MODE_USR, "User Mode", 2, INVALID_REG_INDEX},
    {MODE_FIQ, "Fast Interrupt Mode", 10, 17},
    {MODE_IRQ, "Interrupt Mode", 19, 31},
    {MODE_SVC, "Supervisor Mode", 13, 25},
    {MODE_ABT, "Abort Mode", 16, 28},
    {MODE_UND, "Undefined Mode", 22, 34},
    {MODE_SYS, "System Mode", 2, INVALID_REG_INDEX},
};

const MODE_ROW& RowOfMode(U32 Mode) {
  for (const MODE_ROW& Row : aMode) {
    if (Row.Mode == Mode) return Row;
  }
  return RowOfMode(MODE_UND);
}

U32 BankedIndex(U32 Index, const MODE_ROW& Mode) {
  if (Index < 8) return Index;
  if (Index <= 12) return Index + (Mode.Mode == MODE_FIQ ? 10 : 2);
  switch (Index) {
    case VCORE_REG_SP:
    case VCORE_REG_LR:
      return Index + Mode.OffsetR13;
    case VCORE_REG_PC:
      return PROBE_PC;
    case VCORE_REG_PSR:
      return PROBE_CPSR;
    case VCORE_REG_SPSR:
      return Mode.ProbeSPSR;
    default:
      return INVALID_REG_INDEX;
  }
}

// Registers that a mode may have of its own.
bool IsBanked(U32 Index) {
  return Index >= 8 && Index != VCORE_REG_PC && Index != VCORE_REG_PSR;
}

U32 CurrentMode(const SNAPSHOT& Core) {
  U32 Value = 0;
  U8 Status = 1;
  if (Core.pAPI == nullptr || !Core.pAPI->pfReadProbeRegs) return MODE_UND;
  if (Core.pAPI->pfReadProbeRegs(&PROBE_CPSR, &Value, &Status, 1) < 0 || Status != 0) return MODE_UND;
  return Value & CPSR_MODE_MASK;
}

// Numbers of the first Count logic registers.
std::vector<U32> MapAll(const SNAPSHOT& Core, U32 First, U32 Count) {
  std::vector<U32> aIndex(Count);
  const bool bBanked = HasBankedRegs(Core.Cpu.CoreId);
  bool bNeedsMode = false;
  for (U32 i = 0; bBanked && i < Count; ++i) bNeedsMode = bNeedsMode || IsBanked(First + i);
  const MODE_ROW& Mode = RowOfMode(bNeedsMode ? CurrentMode(Core) : U32(MODE_SYS));
  for (U32 i = 0; i < Count; ++i) {
    const U32 Logic = First + i;
    aIndex[i] = Logic >= Core.Info.NumRegs ? INVALID_REG_INDEX : bBanked ? BankedIndex(Logic, Mode) : Logic;
  }
  return aIndex;
}

bool WriteReg(const SNAPSHOT& Core, U32 LogicIndex, U32 Value) {
  const U32 Index = MapRegIndex(LogicIndex);
  return Index != INVALID_REG_INDEX && Core.pAPI->pfWriteReg && Core.pAPI->pfWriteReg(Index, Value) == 0;
}

int SetResetStateFromVectors(const SNAPSHOT& Core) {
  U32 Base = 0;
  if (Core.Cpu.CoreId != CORE_ID_CORTEX_M0 && ReadData(VTOR, sizeof(Base), &Base) != 0) return -1;
  int Result = 0;
  U32 Value = 0;
  if (ReadData(Base, VECTOR_SIZE, &Value) == 0 && !WriteReg(Core, VCORE_REG_SP, Value)) Result = -1;
  if (ReadData(Base + VECTOR_SIZE, VECTOR_SIZE, &Value) != 0) return -1;
  return WriteReg(Core, VCORE_REG_PC, Value & ~(Core.Info.InstAlign - 1)) ? Result : -1;
}

}  // namespace

const char* GetModeName(U32 Mode) {
  return RowOfMode(Mode).sName;
}

U32 MapRegIndex(U32 Index) {
  return MapAll(TakeSnapshot(), Index, 1)[0];
}

int ReadRegs(U32 Count, U32 BufferSize, void* pValues, U8* paStatus) {
  constexpr U32 PROBE_VALUE_SIZE = 4;  // bytes
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr || !Core.pAPI->pfReadProbeRegs || Count == 0 || BufferSize / Count < PROBE_VALUE_SIZE)
    return -1;
  const U32 Width = BufferSize / Count;
  std::memset(pValues, 0, BufferSize);
  std::memset(paStatus, 1, Count);
  Count = std::min(Count, Core.Info.NumRegs);

  std::vector<U32> aProbeIndex;
  std::vector<U32> aPlace;
  const std::vector<U32> aIndex = MapAll(Core, 0, Count);
  for (U32 i = 0; i < Count; ++i) {
    if (aIndex[i] == INVALID_REG_INDEX) continue;
    aProbeIndex.push_back(aIndex[i]);
    aPlace.push_back(i);
  }
  const U32 NumRead = static_cast<U32>(aProbeIndex.size());
  std::vector<U32> aValue(NumRead);
  std::vector<U8> aStatus(NumRead, 1);
  if (NumRead == 0 || Core.pAPI->pfReadProbeRegs(aProbeIndex.data(), aValue.data(), aStatus.data(), NumRead) < 0)
    return -1;
  for (U32 i = 0; i < NumRead; ++i) {
    StoreInt<U32>(static_cast<U8*>(pValues) + aPlace[i] * static_cast<size_t>(Width), aValue[i], false);
    paStatus[aPlace[i]] = aStatus[i];
  }
  return 0;
}

int SetResetState() {
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr) return -1;
  if (IsCortexM(Core.Cpu.CoreId)) return SetResetStateFromVectors(Core);
  return WriteReg(Core, VCORE_REG_PC, 0) ? 0 : -1;
}

int ParseCPReg(const QString& sText, CP_REG& Reg) {
  constexpr qsizetype NUM_NUMBERS = 5;
  constexpr qsizetype MAX_NUMBER_LENGTH = 10;  // characters
  constexpr U32 aMax[NUM_NUMBERS] = {15, 16, 16, 8, 8};
  const QStringList Numbers = sText.split(QLatin1Char(','));
  if (Numbers.size() != NUM_NUMBERS) return -1;
  U8 aNumber[NUM_NUMBERS];
  for (qsizetype i = 0; i < NUM_NUMBERS; ++i) {
    const QString sNumber = Numbers[i].trimmed();
    bool bOk = false;
    const U32 Value = sNumber.toUInt(&bOk, 0);
    if (!bOk || sNumber.size() > MAX_NUMBER_LENGTH || Value > aMax[i]) return -1;
    aNumber[i] = static_cast<U8>(Value);
  }
  Reg = {aNumber[0], aNumber[1], aNumber[2], aNumber[3], aNumber[4]};
  return 0;
}

}  // namespace VCore
