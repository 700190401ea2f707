#include "probe/gdb/registers.h"

#include <algorithm>

#include "device/probe_api/register_index.h"
#include "probe/gdb/hex.h"
#include "probe/text.h"

namespace {

constexpr U32 MAX_VALUE_SIZE = sizeof(U64);
constexpr U32 XPSR_THUMB = 1u << 24;
constexpr U32 XPSR_IPSR = 0x1FF;
constexpr U32 XPSR_EPSR = 0x0700FC00;
constexpr U32 XPSR_APSR = 0xF80F0000;

U32 SizeOf(const GDB_REGISTER& Register) {
  return (Register.NumBits + 7) / 8;
}

bool IsMode(U32 Mode) {
  constexpr U32 MODES[] = {CPU_MODE_USR, CPU_MODE_FIQ,     CPU_MODE_IRQ,
                           CPU_MODE_SVC, CPU_MODE_ABT,     CPU_MODE_UND,
                           CPU_MODE_SYS, 22 /* monitor */, 26 /* hypervisor */};
  return std::find(std::begin(MODES), std::end(MODES), Mode) != std::end(MODES);
}

// The register that makes up CONTROL, FAULTMASK, BASEPRI and PRIMASK from the low byte up.
constexpr U32 CFBP_PARTS[] = {VNODE_REG_PRIMASK, VNODE_REG_BASEPRI, VNODE_REG_FAULTMASK, VNODE_REG_CONTROL};

}  // namespace

U64 CGdbRegisters::ValueOf(const RAW& Raw) const {
  U64 Value = 0;
  const size_t Size = Raw.size();
  for (size_t i = 0; i < Size; ++i) Value |= static_cast<U64>(Raw[m_bBigEndian ? Size - 1 - i : i]) << (8 * i);
  return Value;
}

// The registers that come first, in the order of their numbers: how many of them, the server decides.
void CGdbRegisters::FetchAll() {
  std::string sReply;
  if (!m_Server.Request("g", &sReply) || sReply.starts_with('E')) return;
  const std::string_view sAll = sReply;
  size_t Pos = 0;
  for (const GDB_REGISTER& Register : m_Server.Description().Registers) {
    const size_t NumDigits = SizeOf(Register) * 2;
    if (sAll.size() - Pos < NumDigits) break;
    RAW Raw;
    ParseHexBytes(sAll.substr(Pos, NumDigits), &Raw);  // 'x' for digits: not available
    m_Known[Register.Number] = std::move(Raw);
    Pos += NumDigits;
  }
}

const CGdbRegisters::RAW& CGdbRegisters::Fetch(const GDB_REGISTER& Register) {
  if (m_Known.empty()) FetchAll();
  const auto Known = m_Known.find(Register.Number);
  if (Known != m_Known.end()) return Known->second;
  RAW& Raw = m_Known[Register.Number];
  std::string sReply;
  if (m_Server.Request(FormatText("p%x", Register.Number), &sReply)) ParseHexBytes(sReply, &Raw);
  if (Raw.size() != SizeOf(Register)) Raw.clear();
  return Raw;
}

void CGdbRegisters::FindByteOrder(bool bConfiguredBig) {
  m_bBigEndian = bConfiguredBig;
  const REGISTER_PLACE Place = FindStatusRegister(m_Server.Description());
  const auto IsPlausible = [&] {
    U32 Value = 0;
    if (!ReadPlace(Place, &Value)) return false;
    return m_bCortexM ? (Value & XPSR_THUMB) != 0 : IsMode(Value & CPU_MODE_MASK);
  };
  if (IsPlausible()) return;
  m_bBigEndian = !bConfiguredBig;
  if (!IsPlausible()) m_bBigEndian = bConfiguredBig;
}

REGISTER_PLACE CGdbRegisters::Find(U32 Index) {
  if (m_bCortexM) return FindCortexMRegister(m_Server.Description(), Index);
  U32 Status = 0;
  if (IsBankedRegister(Index) && !ReadStatus(&Status)) return {};
  return FindBankedRegister(m_Server.Description(), Index, Status & CPU_MODE_MASK);
}

bool CGdbRegisters::ReadPlace(const REGISTER_PLACE& Place, U32* pValue) {
  if (!Place.pRegister || SizeOf(*Place.pRegister) > MAX_VALUE_SIZE) return false;
  const RAW& Raw = Fetch(*Place.pRegister);
  if (Raw.empty()) return false;
  *pValue = static_cast<U32>(ValueOf(Raw) >> Place.FirstBit);
  return true;
}

bool CGdbRegisters::WriteRaw(const GDB_REGISTER& Register, const RAW& Raw) {
  std::string sRequest = FormatText("P%x=", Register.Number);
  AppendHex(&sRequest, Raw.data(), Raw.size());
  std::string sReply;
  if (m_Server.Command(sRequest, &sReply)) {
    Invalidate();
    return true;
  }
  if (!sReply.empty()) return false;
  // The server does not write single registers: all of them, then.
  Invalidate();
  FetchAll();
  sRequest = "G";
  for (const GDB_REGISTER& Item : m_Server.Description().Registers) {
    const auto Known = m_Known.find(Item.Number);
    if (Known == m_Known.end()) break;
    const RAW& Value = Item.Number == Register.Number ? Raw : Known->second;
    if (Value.empty()) {
      sRequest.append(SizeOf(Item) * 2, 'x');
    } else {
      AppendHex(&sRequest, Value.data(), Value.size());
    }
  }
  const bool bWritten = m_Known.contains(Register.Number) && m_Server.Command(sRequest);
  Invalidate();
  return bWritten;
}

bool CGdbRegisters::WritePlace(const REGISTER_PLACE& Place, U32 Value) {
  if (!Place.pRegister || SizeOf(*Place.pRegister) > MAX_VALUE_SIZE) return false;
  RAW Raw = Fetch(*Place.pRegister);
  if (Raw.empty()) return false;
  U64 All = Value;
  if (Place.NumBits < Place.pRegister->NumBits) {
    const U64 Mask = (1ull << Place.NumBits) - 1;
    All = (ValueOf(Raw) & ~(Mask << Place.FirstBit)) | (U64{Value} & Mask) << Place.FirstBit;
  }
  const size_t Size = Raw.size();
  for (size_t i = 0; i < Size; ++i) Raw[m_bBigEndian ? Size - 1 - i : i] = static_cast<U8>(All >> (8 * i));
  return WriteRaw(*Place.pRegister, Raw);
}

bool CGdbRegisters::ReadDerived(U32 Index, U32* pValue) {
  U32 Status = 0;
  *pValue = 0;
  switch (Index) {
    case VNODE_REG_RAZ:
      return true;
    case VNODE_REG_CFBP:
      for (U32 i = 0; i < std::size(CFBP_PARTS); ++i) {
        U32 Part = 0;
        if (!Read(CFBP_PARTS[i], &Part)) return false;
        *pValue |= (Part & 0xFF) << (8 * i);
      }
      return true;
    case VNODE_REG_APSR:
    case VNODE_REG_EPSR:
    case VNODE_REG_IPSR:
      if (!ReadStatus(&Status)) return false;
      *pValue = Status & (Index == VNODE_REG_APSR ? XPSR_APSR : Index == VNODE_REG_EPSR ? XPSR_EPSR : XPSR_IPSR);
      return true;
    default:
      return false;
  }
}

bool CGdbRegisters::WriteDerived(U32 Index, U32 Value) {
  U32 Status = 0;
  if (Index == VNODE_REG_APSR) {
    return ReadStatus(&Status) && Write(VNODE_REG_XPSR, (Status & ~XPSR_APSR) | (Value & XPSR_APSR));
  }
  if (Index != VNODE_REG_CFBP) return false;
  for (U32 i = 0; i < std::size(CFBP_PARTS); ++i) {
    if (!Write(CFBP_PARTS[i], Value >> (8 * i) & 0xFF)) return false;
  }
  return true;
}

bool CGdbRegisters::Read(U32 Index, U32* pValue) {
  const REGISTER_PLACE Place = Find(Index);
  if (Place.pRegister) return ReadPlace(Place, pValue);
  return m_bCortexM && ReadDerived(Index, pValue);
}

bool CGdbRegisters::Write(U32 Index, U32 Value) {
  const REGISTER_PLACE Place = Find(Index);
  if (Place.pRegister) return WritePlace(Place, Value);
  return m_bCortexM && WriteDerived(Index, Value);
}

bool CGdbRegisters::ReadNamed(const std::string& sName, U32* pValue) {
  const GDB_REGISTER* pRegister = m_Server.Description().Find(sName);
  return pRegister && ReadPlace({pRegister, 0, pRegister->NumBits}, pValue);
}

bool CGdbRegisters::WriteNamed(const std::string& sName, U32 Value) {
  const GDB_REGISTER* pRegister = m_Server.Description().Find(sName);
  return pRegister && WritePlace({pRegister, 0, pRegister->NumBits}, Value);
}

bool CGdbRegisters::ReadStatus(U32* pValue) {
  return ReadPlace(FindStatusRegister(m_Server.Description()), pValue);
}

bool CGdbRegisters::ReadCore(U32 Reg, U32* pValue) {
  return ReadPlace(FindCoreRegister(m_Server.Description(), Reg), pValue);
}

void CGdbRegisters::EnterThumbState() {
  U32 Status = 0;
  if (ReadStatus(&Status) && !(Status & XPSR_THUMB)) Write(VNODE_REG_XPSR, Status | XPSR_THUMB);
}
