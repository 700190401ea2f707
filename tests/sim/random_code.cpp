#include "tests/sim/random_code.h"

#include <bit>
#include <cstring>
#include <iterator>
#include <map>

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
  return Rule != SHIFT_NOT_0 || Low != 0;
}

}  // namespace

void CRandomCode::AddInst(bool bNarrowOnly) {
  for (;;) {
    const PATTERN& Pattern = PATTERNS[Pick(std::size(PATTERNS))];
    if (Pattern.Needs > m_Arch) continue;
    const ENCODING E = Draw(Pattern.sBits, [this] { return m_Random(); });
    if (!Keeps(Pattern.Rule, E) || (bNarrowOnly && E.NumBits != 16)) continue;
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
  for (int i = 4 - std::countr_zero(Mask); i > 0; i--) AddInst(false);
}

// A branch over one instruction.
void CRandomCode::AddSkip() {
  m_Names.push_back("skip");
  const U32 Kind = Pick(m_Arch == sim::ARCH::ARMV6M ? 2 : 4);
  if (Kind == 0) m_Code.push_back(static_cast<U16>(0xD000 | Pick(14) << 8));
  if (Kind == 1) m_Code.push_back(0xE000);
  if (Kind == 2) m_Code.push_back(static_cast<U16>(0xB100 | Pick(2) << 11 | Pick(8)));
  if (Kind == 3) m_Code.insert(m_Code.end(), {static_cast<U16>(0xF000 | Pick(14) << 6), U16{0x8001}});
  AddInst(true);
}

std::vector<U16> CRandomCode::Make(U32 NumInsts) {
  m_Code.clear();
  m_Names.clear();
  while (m_Names.size() < NumInsts) {
    const U32 Kind = Pick(16);
    if (Kind == 0)
      AddSkip();
    else if (Kind < 4 && m_Arch != sim::ARCH::ARMV6M)
      AddBlock();
    else
      AddInst(false);
  }
  return m_Code;
}

}  // namespace sim_test
