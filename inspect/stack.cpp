// vexor-inspect stack: how much of the stack each function takes with everything that it calls.
#include <cstdio>

#include "core/decoder/inst_flags.h"
#include "core/vcore.h"
#include "inspect/call_depth.h"
#include "inspect/core_setup.h"
#include "inspect/function_rows.h"
#include "inspect/stack_pointer.h"
#include "program/elf/elf.h"
#include "program/elf/elf_frames.h"

namespace {

constexpr U32 MAX_WAY = 64;  // names of one row

class CStackUse {
public:
  explicit CStackUse(const ELF_FILE* pFile) : aRows(FunctionRows(pFile)), aFunctions(aRows.size()) {
    for (U32 i = 0; i < aRows.size(); ++i) Read(pFile, i);
    ComputeCallDepths(aFunctions);
  }

  void Print(const INSPECT_OPTIONS& Options) const {
    for (U32 i = 0; i < aRows.size(); ++i) {
      const STACK_FUNCTION& Function = aFunctions[i];
      if (!Options.Covers(aRows[i].Low)) continue;
      const std::string sFrame = Function.bUnknown ? "?" : std::to_string(Function.Frame);
      std::printf("0x%08x\t%s\t%u\t%s%s%s\t%s\t%s\n", aRows[i].Low, sFrame.c_str(), Function.Depth,
                  Function.bRecursiveBelow ? "R" : "", Function.bIndirectBelow ? "I" : "",
                  Function.bUnknownBelow ? "U" : "", aRows[i].sName.c_str(), WayFrom(i).c_str());
    }
  }

private:
  std::vector<FUNCTION_ROW> aRows;
  std::vector<STACK_FUNCTION> aFunctions;

  // The function whose range covers the address, -1 if there is none.
  I32 FunctionAt(U32 Addr) const {
    auto pRow = std::upper_bound(aRows.begin(), aRows.end(), Addr, [](U32 A, const auto& Row) { return A < Row.Low; });
    while (pRow != aRows.begin()) {
      --pRow;
      if (Addr < pRow->High) return static_cast<I32>(pRow - aRows.begin());
      if (pRow->High > pRow->Low) break;
    }
    return -1;
  }

  void Read(const ELF_FILE* pFile, U32 Index) {
    STACK_FUNCTION& Function = aFunctions[Index];
    const FUNCTION_ROW& Row = aRows[Index];
    if (Row.Low >= Row.High) return;  // a function without code stands where the next one begins
    const I32 Frame = ELF_GetFrameSize(pFile, Row.Low);
    Function.bUnknown = Frame < 0;
    Function.Frame = Frame < 0 ? 0 : static_cast<U32>(Frame);
    for (U32 Addr = Row.Low; Addr < Row.High;) {
      U32 Length = VCore::GetDataItemSize(Addr);
      if (Length == 0) {
        Length = ReadInst(Function, Index, Addr);
        if (!Function.bUnknown) AddHiddenPart(pFile, Function, Addr, Length);
      }
      Addr += std::max(Length, VCore::GetInfo().MinInstLen);
    }
  }

  // Where the canonical frame address hangs on a frame pointer, the debug information does not tell what is taken from
  // the stack behind it.
  static void AddHiddenPart(const ELF_FILE* pFile, STACK_FUNCTION& Function, U32 Addr, U32 Length) {
    QString sText;
    if (VCore::Disassemble(Addr, sText) <= 0) return;
    const SP_CHANGE Change = ChangeOfStackPointer(sText);
    if (Change.NumBytes == 0 && !Change.bUnknown && Change.Source < 0) return;
    const ELF_SYM_LOC Cfa = ELF_GetCfa(pFile, Addr + Length);
    if (Cfa.Reg == ELF_CFI_SP) return;
    Function.Frame += Change.NumBytes;
    Function.bUnbounded |= Change.bUnknown || (Change.Source >= 0 && Change.Source != static_cast<I32>(Cfa.Reg));
  }

  U32 ReadInst(STACK_FUNCTION& Function, U32 Index, U32 Addr) {
    VCORE_INST Inst;
    if (VCore::Analyze(Addr, Inst) < 0 || Inst.Length == 0 || !(Inst.Flags & IF_BRANCH)) return Inst.Length;
    const bool bCall = Inst.Flags & IF_CALL;
    if (!(Inst.Flags & IF_TARGET)) {
      Function.bIndirect |= bCall;
      return Inst.Length;
    }
    const I32 Callee = FunctionAt(static_cast<U32>(Inst.Target) & ~1u);
    if (Callee < 0) {
      Function.bUnbounded |= bCall;
    } else if (bCall) {
      Function.aCalls.push_back(static_cast<U32>(Callee));
    } else if (static_cast<U32>(Callee) != Index && (Inst.Flags & IF_DIRECT_BRANCH)) {
      Function.aTailCalls.push_back(static_cast<U32>(Callee));
    }
    return Inst.Length;
  }

  std::string WayFrom(U32 Index) const {
    std::string sWay;
    I32 Next = aFunctions[Index].Deepest;
    for (U32 i = 0; Next >= 0 && i < MAX_WAY; ++i) {
      if (!sWay.empty()) sWay += " > ";
      sWay += aRows[static_cast<U32>(Next)].sName;
      Next = aFunctions[static_cast<U32>(Next)].Deepest;
    }
    return sWay;
  }
};

}  // namespace

const char* InspectStack(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  if (const char* sError = AttachCore(Options, File.Get())) return sError;
  CStackUse(File.Get()).Print(Options);
  VCore::Exit();
  return nullptr;
}
