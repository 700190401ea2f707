#include "program/elf/frame_section.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr U64 HIGHEST_ADDR = 0xFFFFFFFFu;
constexpr U64 CIE_ID_32 = 0xFFFFFFFFu;
constexpr U64 CIE_ID_64 = ~0ull;

U64 ReadFormat(CByteCursor& Bytes, U8 Encoding, U8 AddrSize) {
  switch (Encoding & PE_FORMAT) {
    case PE_ABSPTR:
      return Bytes.UInt(AddrSize);
    case PE_ULEB128:
      return Bytes.Leb();
    case PE_UDATA2:
      return Bytes.Int<U16>();
    case PE_UDATA4:
      return Bytes.Int<U32>();
    case PE_UDATA8:
    case PE_SDATA8:
      return Bytes.Int<U64>();
    case PE_SLEB128:
      return static_cast<U64>(Bytes.Sleb());
    case PE_SDATA2:
      return static_cast<U64>(Bytes.SInt(2));
    case PE_SDATA4:
      return static_cast<U64>(Bytes.SInt(4));
    default:
      Bytes.Spoil();
      return 0;
  }
}

// What the letters of the augmentation say. Data of letters that are not known stands last.
void ReadAugmentation(const char* sLetters, CByteCursor& Data, FRAME_CIE& Cie) {
  for (; *sLetters; ++sLetters) {
    switch (*sLetters) {
      case 'R':
        Cie.Encoding = static_cast<U8>(Data.Int<U8>());
        break;
      case 'L':
        Data.Skip(1);
        break;
      case 'P': {
        const U8 Encoding = static_cast<U8>(Data.Int<U8>());
        ReadFormat(Data, Encoding, Cie.AddrSize);
        break;
      }
      case 'S':
        Cie.bSignal = true;
        break;
      default:
        return;
    }
  }
}

FRAME_BYTES RestOf(const CByteCursor& Bytes, const FRAME_SECTION& Section) {
  return {static_cast<U32>(Bytes.Bytes() - Section.pData), static_cast<U32>(Bytes.Left())};
}

// False where it is damaged or of a version that is not known. Entry begins behind the identifier.
bool ReadCie(const FRAME_SECTION& Section, CByteCursor Entry, FRAME_CIE& Cie) {
  Cie.bEh = Section.bEh;
  const U64 Version = Entry.Int<U8>();
  const char* sAugmentation = Entry.Text();
  if (!sAugmentation || Version < 1 || Version > 4 || Version == 2) return false;
  if (std::strncmp(sAugmentation, "eh", 2) == 0) Entry.Skip(Cie.AddrSize);  // a pointer that old compilers left
  if (Version >= 4) {
    Cie.AddrSize = static_cast<U8>(Entry.Int<U8>());
    Cie.SegmentSize = static_cast<U8>(Entry.Int<U8>());
  }
  Cie.CodeAlign = Entry.Leb();
  Cie.DataAlign = Entry.Sleb();
  Cie.ReturnReg = static_cast<U32>(Version == 1 ? Entry.Int<U8>() : Entry.Leb());
  if (*sAugmentation == 'z') {
    CByteCursor Data = Entry.Take(Entry.Leb());
    Cie.bSizedData = true;
    ReadAugmentation(sAugmentation + 1, Data, Cie);
    if (!Data.Ok()) return false;
  }
  if (!Entry.Ok() || (Cie.AddrSize != 4 && Cie.AddrSize != 8)) return false;
  Cie.Program = RestOf(Entry, Section);
  return true;
}

}  // namespace

std::optional<U64> ReadEncodedAddress(CByteCursor& Bytes, U8 Encoding, U8 AddrSize, const FRAME_SECTION& Section) {
  if (Encoding == PE_OMIT) return std::nullopt;
  const U8 Relation = Encoding & PE_RELATION;
  const U64 Here = Section.Addr + static_cast<U64>(Bytes.Bytes() - Section.pData);
  if (Relation == PE_ALIGNED) {
    const U64 Padding = (AddrSize - Here % AddrSize) % AddrSize;
    Bytes.Skip(Padding);
    Encoding = PE_ABSPTR;
  }
  U64 Addr = ReadFormat(Bytes, Encoding, AddrSize);
  if (!Bytes.Ok()) return std::nullopt;
  if (Relation == PE_PCREL) Addr += Here;
  if (Relation != PE_ABSPTR && Relation != PE_PCREL && Relation != PE_ALIGNED) return std::nullopt;
  if (AddrSize == sizeof(U32)) Addr = static_cast<U32>(Addr);
  if (!(Encoding & PE_INDIRECT)) return Addr;
  const std::optional<U32> Word =
      Addr <= HIGHEST_ADDR && Section.ReadWord ? Section.ReadWord(static_cast<U32>(Addr)) : std::nullopt;
  return Word ? std::optional<U64>(*Word) : std::nullopt;
}

void CFrameSectionReader::Read(const FRAME_SECTION& Section) {
  CieAt.clear();
  bComplained = false;
  CByteCursor Bytes = Section.Bytes();
  while (Bytes.More() && ReadEntry(Section, Bytes)) {
  }
}

void CFrameSectionReader::Damage(const char* sWhat, U64 Offset) {
  if (!bComplained) Complain(sWhat, "offset", Offset);
  bComplained = true;
}

// The length and identifier of an entry. CieOffset is that of its common information entry, none if it is one itself.
bool CFrameSectionReader::ReadHead(const FRAME_SECTION& Section, CByteCursor& Bytes, CByteCursor& Entry,
                                   std::optional<U64>& CieOffset) {
  bool b64 = false;
  const U64 Length = Bytes.UnitLength(b64);
  const U64 IdAt = Bytes.Position();
  Entry = Bytes.Take(Length);
  if (!Entry.Ok()) return false;
  CieOffset.reset();
  if (Length == 0) return true;
  const U64 Id = Section.bEh || !b64 ? Entry.Int<U32>() : Entry.Int<U64>();
  if (Id == (Section.bEh ? 0 : b64 ? CIE_ID_64 : CIE_ID_32)) return Entry.Ok();
  CieOffset = Section.bEh ? IdAt - Id : Id;
  return Entry.Ok();
}

bool CFrameSectionReader::ReadEntry(const FRAME_SECTION& Section, CByteCursor& Bytes) {
  const U64 Offset = Bytes.Position();
  CByteCursor Entry;
  std::optional<U64> CieOffset;
  if (!ReadHead(Section, Bytes, Entry, CieOffset)) {
    Damage("frame entry outside its section", Offset);
    return false;
  }
  if (CieOffset) {
    ReadFde(Section, Entry, Offset, *CieOffset);
  } else if (Entry.More()) {
    FindCie(Section, Offset);
  }
  return true;
}

I64 CFrameSectionReader::FindCie(const FRAME_SECTION& Section, U64 Offset) {
  const auto [At, bNew] = CieAt.emplace(Offset, -1);
  if (!bNew) return At->second;
  CByteCursor Bytes = Section.Bytes();
  Bytes.Skip(Offset);
  CByteCursor Entry;
  std::optional<U64> CieOffset;
  FRAME_CIE Cie;
  if (!Bytes.Ok() || !ReadHead(Section, Bytes, Entry, CieOffset) || CieOffset || !ReadCie(Section, Entry, Cie)) {
    Damage("common information entry is damaged or of an unknown version", Offset);
    return -1;
  }
  aCies.push_back(Cie);
  At->second = static_cast<I64>(aCies.size()) - 1;
  return At->second;
}

void CFrameSectionReader::ReadFde(const FRAME_SECTION& Section, CByteCursor Entry, U64 Offset, U64 CieOffset) {
  const I64 CieIndex = FindCie(Section, CieOffset);
  if (CieIndex < 0) return;
  const FRAME_CIE& Cie = aCies[static_cast<size_t>(CieIndex)];
  Entry.Skip(Cie.SegmentSize);
  const std::optional<U64> Low = ReadEncodedAddress(Entry, Cie.Encoding, Cie.AddrSize, Section);
  const U64 NumBytes = ReadFormat(Entry, Cie.Encoding & PE_FORMAT, Cie.AddrSize);
  if (Cie.bSizedData) Entry.Skip(Entry.Leb());
  if (!Entry.Ok() || !Low || *Low > HIGHEST_ADDR) {
    Damage("frame description entry is damaged", Offset);
    return;
  }
  const U64 High = NumBytes > HIGHEST_ADDR ? HIGHEST_ADDR : std::min(*Low + NumBytes, HIGHEST_ADDR);
  aFdes.push_back({static_cast<U32>(*Low), static_cast<U32>(High), static_cast<U32>(CieIndex), RestOf(Entry, Section)});
}
