#include "program/elf/frame_program.h"

#include <algorithm>

namespace {

constexpr size_t MAX_REMEMBERED = 64;         // states; compilers need one or two
constexpr U64 MAX_PROGRAM_BYTES = 64 * 1024;  // of one function
constexpr U64 MAX_OFFSET = 0x7FFFFFFF;        // bytes

CByteCursor ProgramBytes(const FRAME_SECTION& Section, const FRAME_BYTES& Program) {
  CByteCursor Bytes = Section.Bytes();
  Bytes.Skip(Program.Offset);
  return Bytes.Take(std::min<U64>(Program.Size, MAX_PROGRAM_BYTES));
}

// Wraps, as addresses do.
I64 Times(I64 Offset, I64 Align) {
  return static_cast<I64>(static_cast<U64>(Offset) * static_cast<U64>(Align));
}

class CFrameRunner {
public:
  CFrameRunner(const FRAME_SECTION& Section, const FRAME_CIE& Cie, U32 PC, FRAME_ROW& Row)
      : Section(Section), Cie(Cie), PC(PC), Row(Row) {}

  bool Run(const FRAME_FDE& Fde) {
    CByteCursor Common = ProgramBytes(Section, Cie.Program);
    while (Common.More()) Execute(ReadFrameInst(Common), Common);
    Initial = State();
    bInitial = false;
    Location = Fde.Low;
    CByteCursor Program = ProgramBytes(Section, Fde.Program);
    while (Program.More() && Location <= PC) {
      const FRAME_INST Inst = ReadFrameInst(Program);
      if (Program.Ok()) Execute(Inst, Program);
    }
    return Common.Ok() && Program.Ok();
  }

private:
  struct STATE {
    CFA_RULE Cfa;
    std::vector<FRAME_RULE> aRules;
  };

  const FRAME_SECTION& Section;
  const FRAME_CIE& Cie;
  U64 PC;
  FRAME_ROW& Row;
  STATE Initial;  // as the common program leaves it
  std::vector<STATE> aRemembered;
  U64 Location = 0;
  bool bInitial = true;

  STATE State() const { return {Row.Cfa, {Row.aRules, Row.aRules + Row.NumRules}}; }

  void SetState(const STATE& State) {
    Row.Cfa = State.Cfa;
    Row.NumRules = static_cast<U32>(State.aRules.size());
    std::copy(State.aRules.begin(), State.aRules.end(), Row.aRules);
  }

  void SetRule(U64 Reg, FRAME_RULE_KIND Kind, I64 Value = 0) {
    if (Reg >= NUM_FRAME_REGS) return;
    for (; Row.NumRules <= Reg; ++Row.NumRules) Row.aRules[Row.NumRules] = {};
    Row.aRules[Reg] = {Kind, static_cast<I32>(Value)};
  }

  void RestoreRule(U64 Reg) {
    if (bInitial) return;
    const FRAME_RULE Rule = Reg < Initial.aRules.size() ? Initial.aRules[Reg] : FRAME_RULE();
    SetRule(Reg, Rule.Kind, Rule.Value);
  }

  void SetCfa(U64 Reg, I64 Offset) { Row.Cfa = {CFA_KIND::RegOffset, static_cast<U32>(Reg), Offset}; }
  void SetCfaOffset(I64 Offset) {
    if (Row.Cfa.Kind == CFA_KIND::RegOffset) Row.Cfa.Offset = Offset;
  }

  void Execute(const FRAME_INST& Inst, CByteCursor& Program) {
    switch (Inst.Op) {
      case CFA_ADVANCE_LOC:
      case CFA_ADVANCE_LOC1:
      case CFA_ADVANCE_LOC2:
      case CFA_ADVANCE_LOC4:
      case CFA_ADVANCE_LOC8:
        Location += Inst.First * Cie.CodeAlign;
        return;
      case CFA_SET_LOC:
        if (const std::optional<U64> Addr = ReadEncodedAddress(Program, Cie.Encoding, Cie.AddrSize, Section)) {
          Location = *Addr;
        } else {
          Program.Spoil();
        }
        return;
      case CFA_REMEMBER_STATE:
        if (aRemembered.size() < MAX_REMEMBERED) aRemembered.push_back(State());
        return;
      case CFA_RESTORE_STATE:
        if (aRemembered.empty()) return;
        SetState(aRemembered.back());
        aRemembered.pop_back();
        return;
      default:
        if (!ExecuteOnCfa(Inst)) ExecuteOnRule(Inst);
    }
  }

  bool ExecuteOnCfa(const FRAME_INST& Inst) {
    switch (Inst.Op) {
      case CFA_DEF_CFA:
        SetCfa(Inst.First, Inst.Second);
        return true;
      case CFA_DEF_CFA_SF:
        SetCfa(Inst.First, Times(Inst.Second, Cie.DataAlign));
        return true;
      case CFA_DEF_CFA_REGISTER:
        SetCfa(Inst.First, Row.Cfa.Offset);
        return true;
      case CFA_DEF_CFA_OFFSET:
        SetCfaOffset(static_cast<I64>(Inst.First));
        return true;
      case CFA_DEF_CFA_OFFSET_SF:
        SetCfaOffset(Times(Inst.Second, Cie.DataAlign));
        return true;
      case CFA_DEF_CFA_EXPRESSION:
        Row.Cfa = {CFA_KIND::Expression, 0, 0};
        return true;
      default:
        return false;
    }
  }

  void ExecuteOnRule(const FRAME_INST& Inst) {
    const I64 Offset = Times(Inst.Second, Cie.DataAlign);
    switch (Inst.Op) {
      case CFA_OFFSET:
      case CFA_OFFSET_EXTENDED:
      case CFA_OFFSET_EXTENDED_SF:
        return SetRule(Inst.First, FRAME_RULE_KIND::Offset, Offset);
      case CFA_GNU_NEGATIVE_OFFSET_EXTENDED:
        return SetRule(Inst.First, FRAME_RULE_KIND::Offset, Times(Offset, -1));
      case CFA_VAL_OFFSET:
      case CFA_VAL_OFFSET_SF:
        return SetRule(Inst.First, FRAME_RULE_KIND::ValOffset, Offset);
      case CFA_REGISTER:
        return SetRule(Inst.First, FRAME_RULE_KIND::Register, Inst.Second);
      case CFA_EXPRESSION:
        return SetRule(Inst.First, FRAME_RULE_KIND::Expression);
      case CFA_VAL_EXPRESSION:
        return SetRule(Inst.First, FRAME_RULE_KIND::ValExpression);
      case CFA_UNDEFINED:
        return SetRule(Inst.First, FRAME_RULE_KIND::Undefined);
      case CFA_SAME_VALUE:
        return SetRule(Inst.First, FRAME_RULE_KIND::SameValue);
      case CFA_RESTORE:
      case CFA_RESTORE_EXTENDED:
        return RestoreRule(Inst.First);
      default:  // nop, GNU_window_save, GNU_args_size
        return;
    }
  }
};

}  // namespace

bool RunFrameProgram(const FRAME_SECTION& Section, const FRAME_CIE& Cie, const FRAME_FDE& Fde, U32 PC, FRAME_ROW& Row) {
  return CFrameRunner(Section, Cie, PC, Row).Run(Fde);
}

U32 GreatestCfaOffset(const FRAME_SECTION& Section, const FRAME_CIE& Cie, const FRAME_FDE& Fde) {
  const I64 Align = Cie.DataAlign ? Cie.DataAlign : 1;
  U64 Greatest = 0;
  CByteCursor Program = ProgramBytes(Section, Fde.Program);
  while (Program.More()) {
    const FRAME_INST Inst = ReadFrameInst(Program);
    I64 Offset = 0;
    if (Inst.Op == CFA_SET_LOC) ReadEncodedAddress(Program, Cie.Encoding, Cie.AddrSize, Section);
    if (Inst.Op == CFA_DEF_CFA) Offset = Inst.Second;
    if (Inst.Op == CFA_DEF_CFA_OFFSET) Offset = static_cast<I64>(Inst.First);
    if (Inst.Op == CFA_DEF_CFA_SF || Inst.Op == CFA_DEF_CFA_OFFSET_SF) Offset = Times(Inst.Second, Align);
    if (Program.Ok())
      Greatest = std::max(Greatest, Offset < 0 ? 0 - static_cast<U64>(Offset) : static_cast<U64>(Offset));
  }
  return static_cast<U32>(std::min(Greatest, MAX_OFFSET));
}
