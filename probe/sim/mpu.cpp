#include "probe/sim/mpu.h"

#include <algorithm>

namespace sim {

namespace {

enum MPU_REG : U32 {
  MPU_TYPE = 0xE000ED90,
  MPU_CTRL = 0xE000ED94,
  MPU_RNR = 0xE000ED98,
  MPU_RBAR = 0xE000ED9C,
  MPU_RASR = 0xE000EDA0,
  MPU_RASR_A3 = 0xE000EDB8,  // the last of three aliases of the two registers before
};

inline constexpr U32 TYPE_DREGION_SHIFT = 8;
inline constexpr U32 CTRL_MASK = 7;

inline constexpr U32 RBAR_REGION = 0xF;
inline constexpr U32 RBAR_VALID = 1u << 4;
inline constexpr U32 RBAR_MASK = ~0x1Fu;
inline constexpr U32 RBAR_MASK_V6M = ~0xFFu;

inline constexpr U32 RASR_ENABLE = 1u << 0;
inline constexpr U32 RASR_SIZE_SHIFT = 1;
inline constexpr U32 RASR_SRD_SHIFT = 8;
inline constexpr U32 RASR_AP_SHIFT = 24;
inline constexpr U32 RASR_XN = 1u << 28;
inline constexpr U32 RASR_MASK = 0x173FFF3F;
inline constexpr U32 RASR_MASK_V6M = 0x1707FF3F;  // without TEX

inline constexpr U32 MIN_SIZE_BITS = 5;           // the smallest region has 32 bytes
inline constexpr U32 MIN_SIZE_BITS_WITH_SUB = 8;  // and the smallest one with eight parts 256
inline constexpr U32 MAP_BLOCK_SHIFT = 29;        // the architecture's memory map has eight blocks of 512 MB
inline constexpr U32 MAP_BLOCK_SYSTEM = 7;

// What the field AP permits, code 4 being reserved.
struct ACCESS_ROW {
  bool bRead;
  bool bWrite;
};
constexpr ACCESS_ROW PRIVILEGED[] = {{}, {true, true}, {true, true}, {true, true}, {}, {true}, {true}, {true}};
constexpr ACCESS_ROW UNPRIVILEGED[] = {{}, {}, {true}, {true, true}, {}, {}, {true}, {true}};

void LimitTo(PERMISSION* pPermission, U64 First, U64 End) {
  pPermission->First = std::max(pPermission->First, static_cast<U32>(First));
  pPermission->Last = std::min(pPermission->Last, static_cast<U32>(End - 1));
}

}  // namespace

PERMISSION DefaultPermission(U32 Addr) {
  const U32 Block = Addr >> MAP_BLOCK_SHIFT;
  PERMISSION Result;
  Result.First = Block << MAP_BLOCK_SHIFT;
  Result.Last = Result.First + ((1u << MAP_BLOCK_SHIFT) - 1);
  Result.bExecute = Block != 2 && Block < 5;  // neither peripherals nor devices nor the system's own
  return Result;
}

void CMpu::Reset(U32 NumRegions, bool bV7) {
  *this = CMpu();
  m_NumRegions = std::min(NumRegions, MAX_REGIONS);
  m_bV7 = bV7;
}

PERMISSION CMpu::Find(U32 Addr, bool bPrivileged) const {
  PERMISSION Result = DefaultPermission(Addr);
  if (!bPrivileged || !(m_Control & CTRL_PRIVDEFENA)) Result.bRead = Result.bWrite = Result.bExecute = false;
  for (U32 i = 0; i < m_NumRegions; i++) {
    const U32 RASR = m_aRegions[i].RASR;
    if (!(RASR & RASR_ENABLE)) continue;
    const U32 SizeBits = std::max((RASR >> RASR_SIZE_SHIFT & 0x1F) + 1, MIN_SIZE_BITS);
    const U64 Size = 1ull << SizeBits;
    const U64 Base = m_aRegions[i].RBAR & ~(Size - 1);
    if (Addr < Base) LimitTo(&Result, 0, Base);
    if (Addr >= Base + Size) LimitTo(&Result, Base + Size, 1ull << 32);
    if (Addr - Base >= Size) continue;
    const U32 Disabled = SizeBits < MIN_SIZE_BITS_WITH_SUB ? 0 : RASR >> RASR_SRD_SHIFT & 0xFF;
    const U64 PartSize = Disabled ? Size / 8 : Size;
    const U64 Part = (Addr - Base) / PartSize;
    LimitTo(&Result, Base + Part * PartSize, Base + (Part + 1) * PartSize);
    if (Disabled >> Part & 1) continue;
    const ACCESS_ROW& Access = (bPrivileged ? PRIVILEGED : UNPRIVILEGED)[RASR >> RASR_AP_SHIFT & 7];
    Result.bRead = Access.bRead;
    Result.bWrite = Access.bWrite;
    Result.bExecute = Access.bRead && !(RASR & RASR_XN) && Addr >> MAP_BLOCK_SHIFT != MAP_BLOCK_SYSTEM;
  }
  return Result;
}

bool CMpu::IsRegister(U32 Addr) {
  return Addr >= MPU_TYPE && Addr <= MPU_RASR_A3;
}

U32 CMpu::Read(U32 Addr) const {
  if (!m_NumRegions) return 0;
  if (Addr == MPU_TYPE) return m_NumRegions << TYPE_DREGION_SHIFT;
  if (Addr == MPU_CTRL) return m_Control;
  if (Addr == MPU_RNR) return m_Number;
  if (Addr > MPU_RASR && !m_bV7) return 0;
  const REGION_REGS& Regs = m_aRegions[m_Number];
  return (Addr - MPU_RBAR) % 8 ? Regs.RASR : Regs.RBAR | m_Number;
}

void CMpu::WriteBase(U32 Value) {
  if (Value & RBAR_VALID) {
    if ((Value & RBAR_REGION) >= m_NumRegions) return;
    m_Number = Value & RBAR_REGION;
  }
  m_aRegions[m_Number].RBAR = Value & (m_bV7 ? RBAR_MASK : RBAR_MASK_V6M);
}

void CMpu::Write(U32 Addr, U32 Value, U32 Lanes) {
  if (!m_NumRegions) return;
  if (Addr == MPU_TYPE) return;
  if (Addr == MPU_CTRL) {
    m_Control = Value & CTRL_MASK;
  } else if (Addr == MPU_RNR) {
    if (Value < m_NumRegions) m_Number = Value;
  } else if (Addr <= MPU_RASR || m_bV7) {
    U32& RASR = m_aRegions[m_Number].RASR;
    if ((Addr - MPU_RBAR) % 8) {
      RASR = ((RASR & ~Lanes) | Value) & (m_bV7 ? RASR_MASK : RASR_MASK_V6M);
    } else {
      WriteBase(Value);
    }
  }
}

}  // namespace sim
