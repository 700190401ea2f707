#include "tests/sim/random_code.h"

#include <bit>
#include <cstring>
#include <iterator>
#include <map>

#include "tests/sim/fp_patterns.h"
#include "tests/sim/instruction_patterns.h"

namespace sim_test {

namespace {

struct ENCODING {
  U32 Value = 0;
  U32 NumBits = 0;
  std::map<char, U32> Fields;  // the value of each letter
};

// Register numbers as characters from 'A'.
const char* LegalRegs(char Letter, U32 NumBits) {
  const bool bLow = NumBits == 3;
  if (Letter == 'b') return bLow ? "H" : "HJ";
  if (Letter == 'x') return "G";
  if (Letter == 'h') return "ACDEG";  // of R8, R10, R11, R12, R14
  if (std::strchr("nma", Letter)) return bLow ? "ABCDEFGH" : "ABCDEFGHIJKLMO";
  return bLow ? "ABCDEF" : "ABCDEFIKLMO";
}

template <class RANDOM>
ENCODING Draw(const char* sBits, RANDOM Random) {
  ENCODING Result;
  std::map<char, U32> Widths;
  for (const char* p = sBits; *p; p++) Widths[*p]++;
  if (Widths['m'] > 4) Widths['m'] = 4;
  for (const auto& [Letter, Width] : Widths) {
    if (std::strchr(" 01.", Letter)) continue;
    if (Letter == 'l') {
      Result.Fields[Letter] = Random() & ((1u << Width) - 1);
      continue;
    }
    do {
      const char* sRegs = LegalRegs(Letter, Width);
      Result.Fields[Letter] = static_cast<U32>(sRegs[Random() % std::strlen(sRegs)] - 'A');
    } while (Letter == 'e' && Result.Fields['e'] == Result.Fields['d']);
  }
  std::map<char, U32> Left = Widths;
  for (const char* p = sBits; *p; p++) {
    if (*p == ' ') continue;
    U32 Bit = *p == '1';
    if (*p == '.') Bit = Random() & 1;
    if (Result.Fields.count(*p)) {
      Bit = Result.Fields[*p] >> --Left[*p] & 1;
      if (!Left[*p]) Left[*p] = Widths[*p];  // the field may occur twice
    }
    Result.Value = Result.Value << 1 | Bit;
    Result.NumBits++;
  }
  return Result;
}

bool Keeps(RULE Rule, const ENCODING& E) {
  const U32 Low = (E.Value >> 12 & 7) << 2 | (E.Value >> 6 & 3);
  const U32 Field = E.Value & 31;
  if (Rule == FIELD_FITS) return Low + Field + 1 <= 32;
  if (Rule == FIELD_ORDER) return Field >= Low;
  if (Rule == LIST_OF_TWO) return std::popcount(E.Fields.at('l')) >= 2;
  if (Rule == EXPANDABLE) return (E.Value & 0x04007000) == 0 || (E.Value & 0x04004000) || (E.Value & 0xFF);
  const U32 Single = (E.Value >> 12 & 15) << 1 | (E.Value >> 22 & 1);
  const U32 Num = E.Value & 0xFF;
  if (Rule == FIXED_FITS) return E.Value & 0x80 || (E.Value & 15) < 8 || (E.Value & 0x2F) == 8;
  if (Rule == PAIR_FITS) return (E.Value & 0x2F) != 0x2F;
  if (Rule == FP_LIST) return Num && Single + Num <= 32;
  if (Rule == FP_LIST_D) return Num && (E.Value >> 12 & 15) * 2 + Num <= 32;
  return Rule != SHIFT_NOT_0 || Low != 0;
}

}  // namespace

CRandomCode::CRandomCode(sim::ARCH Arch, sim::FPU Fpu, U32 Seed, bool bForLibrary)
    : m_Arch(Arch), m_bFpu(Fpu != sim::FPU::NONE), m_Random(Seed) {
  const auto IsWanted = [=](const PATTERN& Pattern) {
    if (Pattern.Needs > Arch || Pattern.NeedsFpu > Fpu) return false;
    if (!bForLibrary || Pattern.PeerRule == PEER_RULE::SAME) return true;
    return Pattern.PeerRule == PEER_RULE::PROFILE && Fpu != sim::FPU::V5_DOUBLE;
  };
  for (const PATTERN& Pattern : PATTERNS) {
    if (IsWanted(Pattern)) m_Patterns.push_back(&Pattern);
  }
  const size_t NumCore = m_Patterns.size();
  while (m_bFpu && m_Patterns.size() < 2 * NumCore) {
    for (const PATTERN& Pattern : FP_PATTERNS) {
      if (IsWanted(Pattern)) m_Patterns.push_back(&Pattern);
    }
  }
}

void CRandomCode::AddInst(PLACE Place) {
  for (;;) {
    const PATTERN& Pattern = *m_Patterns[Pick(static_cast<U32>(m_Patterns.size()))];
    if (Pattern.ItRule == NOT_IN_BLOCK && Place == PLACE::IN_BLOCK) continue;
    const ENCODING E = Draw(Pattern.sBits, [this] { return m_Random(); });
    if (!Keeps(Pattern.Rule, E) || (Place == PLACE::SKIPPED && E.NumBits != 16)) continue;
    if (E.NumBits == 32) m_Code.push_back(static_cast<U16>(E.Value >> 16));
    m_Code.push_back(static_cast<U16>(E.Value));
    m_Names.push_back(Pattern.sName);
    return;
  }
}

void CRandomCode::AddBlock() {
  const U32 Cond = Pick(14);
  const U32 Mask = 1 + Pick(15);
  m_Code.push_back(static_cast<U16>(0xBF00 | Cond << 4 | Mask));
  m_Names.push_back("IT");
  for (int i = 4 - std::countr_zero(Mask); i > 0; i--) AddInst(PLACE::IN_BLOCK);
}

// FPSCR from R0, its reserved bits cleared.
void CRandomCode::AddModeChange() {
  m_Names.push_back("VMSR");
  constexpr U16 CODE[] = {0xF020, 0x6000, 0xF420, 0x107C, 0xF420, 0x407F, 0xF020, 0x0060, 0xEEE1, 0x0A10};
  m_Code.insert(m_Code.end(), std::begin(CODE), std::end(CODE));
}

// A branch over one instruction.
void CRandomCode::AddSkip() {
  m_Names.push_back("skip");
  const U32 Kind = Pick(m_Arch == sim::ARCH::ARMV6M ? 2 : 4);
  if (Kind == 0) m_Code.push_back(static_cast<U16>(0xD000 | Pick(14) << 8));
  if (Kind == 1) m_Code.push_back(0xE000);
  if (Kind == 2) m_Code.push_back(static_cast<U16>(0xB100 | Pick(2) << 11 | Pick(8)));
  if (Kind == 3) m_Code.insert(m_Code.end(), {static_cast<U16>(0xF000 | Pick(14) << 6), U16{0x8001}});
  AddInst(PLACE::SKIPPED);
}

std::vector<U16> CRandomCode::Make(U32 NumInsts) {
  m_Code.clear();
  m_Names.clear();
  while (m_Names.size() < NumInsts) {
    const U32 Kind = Pick(16);
    if (Kind == 4 && m_bFpu && Pick(3) == 0) AddModeChange();
    if (Kind == 0)
      AddSkip();
    else if (Kind < 4 && m_Arch != sim::ARCH::ARMV6M)
      AddBlock();
    else
      AddInst(PLACE::ANYWHERE);
  }
  return m_Code;
}

}  // namespace sim_test
