#include "core/core_state.h"

namespace VCore {

namespace {

// A stretch of addresses in which mode and kind do not change.
struct SPAN {
  U32 End = 0;
  bool bData = false;
  U32 Mode = VCORE_MODE_THUMB;
};

SPAN SpanAt(const SNAPSHOT& Snapshot, U32 Addr) {
  SPAN Span;
  {
    CORE_STATE& Core = State();
    const std::shared_lock Lock(Core.Mutex);
    Span.End = Core.Program.NextRegionStart(Addr);
    Span.bData = Core.Program.IsData(Addr);
  }
  if (!Span.bData) Span.Mode = ExecModeAt(Snapshot, Addr);
  return Span;
}

bool Decode(const SNAPSHOT& Core, U32 Addr, U32 Mode, const U8* pBytes, U32 NumBytes, VCORE_INST& Inst) {
  DISASM_CONTEXT& Context = PrepareDecoder(Core, DECODER_FLAGS, Addr, Mode);
  DISASM_INFO Info;
  const int Length = Context.pfDecode(Context, Addr, pBytes, NumBytes, nullptr, 0, &Info);
  if (Length <= 0 || Info.Length == 0) {
    SetNextDecodeAddr(DECODER_FLAGS, Addr + Core.Info.MinInstLen);
    return false;
  }
  Inst = {Mode, Info.Length, Info.Target, Info.Flags};
  SetNextDecodeAddr(DECODER_FLAGS, Addr + Info.Length);
  return true;
}

using INST_AT = std::pair<U32, VCORE_INST>;

// Nothing when the program or the core has changed since the snapshot. False then.
bool StoreAll(const SNAPSHOT& Snapshot, const std::vector<INST_AT>& aInst) {
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  if (Core.Generation != Snapshot.Generation) return false;
  for (const auto& [Addr, Inst] : aInst) Core.Cache.Store(Addr, Inst);
  Core.InstCounts.clear();
  return true;
}

// Decodes [Start, End) from pData, or from memory where that is null.
void DecodeRange(const SNAPSHOT& Core, U32 Start, U32 End, const U8* pData, std::vector<INST_AT>& aInst) {
  SPAN Span = SpanAt(Core, Start);
  U32 Addr = Start;
  while (Addr < End) {
    if (Addr >= Span.End) Span = SpanAt(Core, Addr);
    if (Span.bData) {
      Addr = Span.End;
      continue;
    }
    U8 aByte[4];
    U32 NumBytes = std::min<U32>(sizeof(aByte), End - Addr);
    const U8* pBytes = pData != nullptr ? pData + (Addr - Start) : aByte;
    if (pData == nullptr) NumBytes = ReadInstBytes(Core, Addr, aByte);
    VCORE_INST Inst;
    const bool bDecoded = NumBytes >= Core.Info.MinInstLen && Decode(Core, Addr, Span.Mode, pBytes, NumBytes, Inst);
    if (bDecoded) aInst.emplace_back(Addr, Inst);
    const U32 Step = bDecoded ? std::max(Inst.Length, Core.Info.InstAlign) : Core.Info.InstAlign;
    if (Step > End - Addr) break;
    Addr += Step;
  }
}

U32 AlignedDown(const SNAPSHOT& Core, U64 Addr) {
  return static_cast<U32>(Addr) & ~(Core.Info.InstAlign - 1);
}

}  // namespace

U32 AnalyzeAdd(U64 Start, U64 End, const U8* pData) {
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr) return 0;
  if (Start >= End) {
    LogError(Core, QStringLiteral("Invalid address range input to function Core::AnalyzeAdd"));
    return 0;
  }
  if (Start >= INVALID_ADDR || End >= INVALID_ADDR) {
    LogError(Core, QStringLiteral("Cannot add to instruction cache outside 32-bit address range"));
    return 0;
  }
  const U32 First = AlignedDown(Core, Start);
  std::vector<INST_AT> aInst;
  DecodeRange(Core, First, static_cast<U32>(End), pData, aInst);
  StoreAll(Core, aInst);
  return static_cast<U32>(End) - First;
}

U32 AnalyzeProgram() {
  const SNAPSHOT Snapshot = TakeSnapshot();
  if (Snapshot.pAPI == nullptr) return 0;
  struct CODE {
    U32 Addr;
    QByteArray Bytes;
  };
  std::vector<CODE> aCode;
  {
    CORE_STATE& Core = State();
    const std::shared_lock Lock(Core.Mutex);
    for (const CProgramView::FUNC& Func : Core.Program.Funcs()) {
      const U32 Addr = AlignedDown(Snapshot, Func.Addr);
      const U8* pBytes = Func.Size > 0 ? Core.Program.Image(Addr, Func.Size) : nullptr;
      if (pBytes != nullptr) aCode.push_back({Addr, QByteArray(reinterpret_cast<const char*>(pBytes), Func.Size)});
    }
  }
  U32 NumBytes = 0;
  for (const CODE& Code : aCode) {
    const U64 End = static_cast<U64>(Code.Addr) + static_cast<U64>(Code.Bytes.size());
    if (End >= INVALID_ADDR) continue;
    std::vector<INST_AT> aInst;
    DecodeRange(Snapshot, Code.Addr, static_cast<U32>(End), reinterpret_cast<const U8*>(Code.Bytes.constData()), aInst);
    if (!StoreAll(Snapshot, aInst)) break;
    NumBytes += static_cast<U32>(End) - Code.Addr;
  }
  return NumBytes;
}

int Analyze(U32 Addr, VCORE_INST& Inst) {
  const SNAPSHOT Core = TakeSnapshot();
  Inst = {};
  U8 aByte[4];
  const U32 NumBytes = ReadInstBytes(Core, Addr, aByte);
  if (NumBytes == 0) return -1;
  const U32 Mode = ExecModeAt(Core, Addr);
  if (!Decode(Core, Addr, Mode, aByte, NumBytes, Inst)) {
    Inst = {Mode, InstSizeAt(Core, Addr), 0, 0};
  }
  return 0;
}

}  // namespace VCore
