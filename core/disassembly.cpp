#include "base/endian.h"
#include "core/core_state.h"

namespace VCore {

namespace {

constexpr U32 TEXT_SIZE = 128;  // characters of one instruction's text
constexpr U32 ARM_INST_SIZE = 4;

QString Format(const char* sFormat, U32 High, U32 Low) {
  return QString::asprintf(sFormat, High, Low);
}

// Operands at the column behind the mnemonic, one blank before a comment.
QString InColumns(QString sText, U32 MaxMnemonicLen) {
  const qsizetype Tab = sText.indexOf(QLatin1Char('\t'));
  if (Tab >= 0) {
    const qsizetype NumBlanks = std::max<qsizetype>(static_cast<qsizetype>(MaxMnemonicLen) - Tab, 1);
    sText.replace(Tab, 1, QString(NumBlanks, QLatin1Char(' ')));
  }
  sText.replace(QLatin1Char('\t'), QLatin1Char(' '));
  while (sText.endsWith(QLatin1Char(' '))) sText.chop(1);
  return sText;
}

// The number of bytes that an item may have so that it runs over no region, segment or anchor.
U32 Clipped(U32 Addr, U32 Length) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  const U32 aLimit[] = {Core.Program.NextRegionStart(Addr), Core.Program.NextSegmentStart(Addr), Core.Anchor};
  for (const U32 Limit : aLimit) {
    if (Limit > Addr && Limit != INVALID_ADDR) Length = std::min(Length, Limit - Addr);
  }
  return Length;
}

// Sizes that have a directive are powers of two; of another size the item takes the part that leaves the rest aligned.
U32 DirectiveSize(U32 Size) {
  return Size & (0u - Size);
}

bool ReadItem(U32 Addr, U32 Size, U64& Value) {
  U8 aByte[8] = {};
  if (Size > sizeof(aByte) || ReadData(Addr, Size, aByte) != 0) return false;
  Value = LoadInt<U64>(aByte, false);
  return true;
}

int DataDirective(U32 Addr, U32 Size, QString& sText) {
  Size = DirectiveSize(Size);
  U64 Value = 0;
  if (!ReadItem(Addr, Size, Value)) {
    sText = QStringLiteral("?");
    return static_cast<int>(Size);
  }
  const U32 Low = static_cast<U32>(Value);
  switch (Size) {
    case 1:
      sText = QString::asprintf("DC8\t0x%02X", Low);
      break;
    case 2:
      sText = QString::asprintf("DC16\t0x%04X", Low);
      break;
    case 4:
      sText = QString::asprintf("DC32\t0x%08X", Low);
      break;
    case 8:
      sText = Format("DC64\t0x%08X%08X", static_cast<U32>(Value >> 32), Low);
      break;
    default:
      return -1;
  }
  return static_cast<int>(Size);
}

bool FindText(U32 Addr, const CTextCache::KEY& Key, CTextCache::ENTRY& Entry) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  const CTextCache::ENTRY* pEntry = Core.Texts.Find(Addr, Key);
  if (pEntry == nullptr) return false;
  Entry = *pEntry;
  return true;
}

void StoreText(U32 Addr, const CTextCache::ENTRY& Entry, U32 Generation) {
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  if (Core.Generation == Generation) Core.Texts.Store(Addr, Entry);
}

CTextCache::ENTRY DecodeText(const SNAPSHOT& Core, DISASM_CONTEXT& Context, U32 Addr, const U8* pBytes,
                             const CTextCache::KEY& Key) {
  CTextCache::ENTRY Entry;
  Entry.Key = Key;
  char sText[TEXT_SIZE];
  const int Length = Context.pfDecode(Context, Addr, pBytes, Key.NumBytes, sText, sizeof(sText), nullptr);
  if (Length > 0) {
    Entry.Length = static_cast<U32>(Length);
    Entry.sText = InColumns(QString::fromUtf8(sText), Core.Info.MaxMnemonicLen);
  } else {
    Entry.Length = Key.Mode == VCORE_MODE_ARM ? ARM_INST_SIZE : InstSizeAt(Core, Addr);
    Entry.sText = QStringLiteral("?");
  }
  Entry.NextITState = Context.ITState;
  return Entry;
}

// Text of an instruction by cache or decoder; the length in bytes.
int InstText(const SNAPSHOT& Core, U32 Addr, QString& sText) {
  const U32 Mode = ExecModeAt(Core, Addr);
  U8 aByte[4] = {};
  const U32 NumBytes = ReadInstBytes(Core, Addr, aByte);
  if (NumBytes == 0) {
    sText = QStringLiteral("?");
    return static_cast<int>(Mode == VCORE_MODE_ARM ? ARM_INST_SIZE : Core.Info.MinInstLen);
  }
  DISASM_CONTEXT& Context = PrepareDecoder(Core, DECODER_TEXT, Addr, Mode);
  const CTextCache::KEY Key = {LoadInt<U32>(aByte, false), static_cast<U8>(NumBytes), static_cast<U8>(Mode),
                               Context.ITState};
  CTextCache::ENTRY Entry;
  if (FindText(Addr, Key, Entry)) {
    Context.ITState = Entry.NextITState;
  } else {
    Entry = DecodeText(Core, Context, Addr, aByte, Key);
    StoreText(Addr, Entry, Core.Generation);
  }
  SetNextDecodeAddr(DECODER_TEXT, Addr + Entry.Length);
  sText = Entry.sText;
  return static_cast<int>(Entry.Length);
}

QString HexOfItem(U32 Addr, U32 Size) {
  U64 Value = 0;
  if (!ReadItem(Addr, Size, Value)) return QString(2 * Size, QLatin1Char('-'));
  return QString::number(Value, 16).toUpper().rightJustified(2 * Size, QLatin1Char('0'));
}

}  // namespace

int Disassemble(U32 Addr, QString& sText) {
  sText.clear();
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr) return -1;
  int Length = static_cast<int>(GetDataItemSize(Addr));
  const bool bData = Length > 0;
  if (!bData) Length = InstText(Core, Addr, sText);
  const U32 Size = Clipped(Addr, static_cast<U32>(Length));
  if (!bData && Size == static_cast<U32>(Length)) return Length;
  Length = DataDirective(Addr, Size, sText);
  sText = InColumns(sText, Core.Info.MaxMnemonicLen);
  return Length;
}

int GetCodeHex(U32 Addr, QString& sText) {
  sText.clear();
  const SNAPSHOT Core = TakeSnapshot();
  if (Core.pAPI == nullptr) return -1;
  U32 Size = GetDataItemSize(Addr);
  const bool bData = Size > 0;
  // As the text has it: a call is one instruction of two halfwords on Thumb-1 cores, too.
  VCORE_INST Inst;
  if (!bData) Size = GetInst(Addr, Inst) ? Inst.Length : InstSizeAt(Core, Addr);
  const U32 Kept = Clipped(Addr, Size);
  if (bData || Kept != Size) {
    Size = DirectiveSize(Kept);
    sText = HexOfItem(Addr, Size);
    return static_cast<int>(Size);
  }
  const I64 Word = ReadInst(Addr, Size);
  if (Word < 0) {
    sText = QString(2 * Size, QLatin1Char('-'));
  } else if (Size == 2) {
    sText = QString::asprintf("%04X", static_cast<U32>(Word));
  } else if (ExecModeAt(Core, Addr) == VCORE_MODE_ARM) {
    sText = QString::asprintf("%08X", static_cast<U32>(Word));
  } else {
    sText = Format("%04X %04X", static_cast<U32>(Word & 0xFFFF), static_cast<U32>(Word >> 16));
  }
  return static_cast<int>(Size);
}

void SetAnchor(U32 Addr) {
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  Core.Anchor = Addr;
}

}  // namespace VCore
