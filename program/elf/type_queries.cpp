// Queries about the types and values of entries.
#include <algorithm>

#include "base/integer_bits.h"
#include "program/elf/bit_field.h"
#include "program/elf/collectors.h"
#include "program/elf/die_lookup.h"
#include "program/elf/die_types.h"
#include "program/elf/elf_file.h"
#include "program/elf/elf_types.h"
#include "program/elf/handle.h"

namespace {

constexpr U32 MAX_CONST_SIZE = 256;  // bytes
constexpr U32 CONST_NUMBER_SIZE = 4, WIDE_CONST_NUMBER_SIZE = 8;
constexpr U32 MAX_ORIGINS = 6;

// The lookup's answer for the handle's entry, the neutral value for every other handle.
template <typename RESULT, typename LOOKUP>
RESULT Ask(ELF_SYM_HANDLE hSym, RESULT Neutral, LOOKUP Lookup) {
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  return pFile ? static_cast<RESULT>(Lookup(*pFile->pDwarf, Entry)) : Neutral;
}

U32 NumberOf(ELF_SYM_HANDLE hSym, U32 Attr) {
  return Ask(hSym, 0u, [=](const DWARF_INFO& Info, U32 Entry) {
    return static_cast<U32>(CDieLookup(Info).Integer(Entry, Attr).value_or(0));
  });
}

// The class whose member the entry, its declaration or its origin is; 0 if there is none.
U32 ClassOf(const DWARF_INFO& Info, U32 Entry) {
  const auto ClassAbove = [&](U32 Member) {
    const U32 Parent = Member ? Info.Index.Get(Member).Parent : 0;
    return Parent && IsClassTag(Info.Index.Get(Parent).Tag) ? Parent : 0;
  };
  for (U32 Level = 0; Level < MAX_ORIGINS && Entry != 0; ++Level) {
    if (const U32 Class = ClassAbove(Entry)) return Class;
    if (const U32 Class = ClassAbove(Info.Index.Specification(Entry))) return Class;
    Entry = CDieLookup(Info).AbstractOrigin(Entry);
  }
  return 0;
}

U32 AccessOf(const DWARF_INFO& Info, U32 Entry) {
  if (const std::optional<I64> Access = CDieLookup(Info).Integer(Entry, DW_AT_accessibility))
    return static_cast<U32>(*Access);
  const U32 Class = ClassOf(Info, Entry);
  switch (Class ? Info.Index.Get(Class).Tag : 0) {
    case DW_TAG_structure_type:
    case DW_TAG_union_type:
      return ELF_ACCESS_PUBLIC;
    case DW_TAG_class_type:
      return ELF_ACCESS_PRIVATE;
    default:
      return ELF_ACCESS_NONE;
  }
}

// Bytes of a constant that is written as a number. The type of an enumerator is the enumeration around it.
U32 ConstNumberSize(const DWARF_INFO& Info, U32 Entry) {
  const DIE_ENTRY& Known = Info.Index.Get(Entry);
  const U32 TypeSize = CDieLookup(Info).TypeSize(Known.Tag == DW_TAG_enumerator ? Known.Parent : Entry);
  return TypeSize > CONST_NUMBER_SIZE ? WIDE_CONST_NUMBER_SIZE : CONST_NUMBER_SIZE;
}

// Of one number, as floating ones are written in a block.
bool IsNumber(const DWARF_INFO& Info, U32 Entry) {
  const U32 Type = ResolvedType(Info, Entry);
  if (Type == 0 || Info.Index.Get(Type).Tag != DW_TAG_base_type) return false;
  return CDieLookup(Info).Integer(Type, DW_AT_encoding).value_or(0) != DW_ATE_complex_float;
}

std::vector<U8> ConstValue(const DWARF_INFO& Info, U32 Entry) {
  const CDieLookup Lookup(Info);
  const U32 Owner = Lookup.OwnerOf(Entry, DW_AT_const_value);
  if (Owner == 0) return {};
  if (const std::optional<I64> Number = Lookup.Integer(Owner, DW_AT_const_value)) {
    const U8* pBytes = reinterpret_cast<const U8*>(&*Number);
    return std::vector<U8>(pBytes, pBytes + ConstNumberSize(Info, Entry));
  }
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Owner));
  std::vector<U8> aBytes = Die ? BlockOf(Info, Die, DW_AT_const_value) : std::vector<U8>();
  if (aBytes.size() > MAX_CONST_SIZE) aBytes.resize(MAX_CONST_SIZE);
  if (Info.Sections.IsBigEndian() && IsNumber(Info, Entry)) std::reverse(aBytes.begin(), aBytes.end());
  return aBytes;
}

}  // namespace

ELF_SYM_HANDLE ELF_GetType(ELF_SYM_HANDLE hSym, bool bFollow) {
  return Ask(hSym, ELF_SYM_HANDLE{0}, [=](const DWARF_INFO& Info, U32 Entry) {
    return DieHandle(bFollow ? ResolvedType(Info, Entry) : CDieLookup(Info).Reference(Entry, DW_AT_type));
  });
}

const char* ELF_GetTypeName(ELF_SYM_HANDLE hSym) {
  thread_local std::string sText;
  U32 Entry;
  const ELF_FILE* pFile = FileOfDie(hSym, Entry);
  if (!pFile) return nullptr;
  sText = TypeText(*pFile->pDwarf, Entry);
  return sText.c_str();
}

int ELF_GetArrayInfo(ELF_SYM_HANDLE hSym, ELF_ARRAY_INFO* pOut) {
  return Ask(hSym, -1, [=](const DWARF_INFO& Info, U32 Entry) {
    const U32 Array = ResolvedType(Info, Entry);
    if (Array == 0 || Info.Index.Get(Array).Tag != DW_TAG_array_type) return -1;
    const CDieLookup Lookup(Info);
    const std::vector<U32> aCounts = Dimensions(Info, Array);
    *pOut = ELF_ARRAY_INFO();
    pOut->ElementSize = Lookup.TypeSize(Lookup.Reference(Array, DW_AT_type));
    pOut->TotalCount = ElementCount(aCounts);
    pOut->TotalSize = pOut->ElementSize * pOut->TotalCount;
    pOut->NumDimensions = static_cast<U32>(aCounts.size());
    std::copy_n(aCounts.begin(), std::min<size_t>(aCounts.size(), ELF_MAX_ARRAY_DIMENSIONS), pOut->aCounts);
    return 0;
  });
}

U32 ELF_GetBitOffset(ELF_SYM_HANDLE hSym) {
  return Ask(hSym, 0u, [](const DWARF_INFO& Info, U32 Entry) { return PlaceOfBits(Info, Entry).Position; });
}
U32 ELF_GetBitSize(ELF_SYM_HANDLE hSym) {
  return NumberOf(hSym, DW_AT_bit_size);
}
bool ELF_IsSigned(ELF_SYM_HANDLE hSym) {
  return Ask(hSym, false, IsSignedEntry);
}
bool ELF_IsStatic(ELF_SYM_HANDLE hSym) {
  return Ask(hSym, false, IsStaticEntry);
}
U32 ELF_GetAccess(ELF_SYM_HANDLE hSym) {
  return Ask(hSym, 0u, AccessOf);
}
U32 ELF_GetVirtuality(ELF_SYM_HANDLE hSym) {
  return NumberOf(hSym, DW_AT_virtuality);
}

U32 ELF_GetConstValue(ELF_SYM_HANDLE hSym, U8* pOut, U32 NumBytes) {
  return Ask(hSym, 0u, [=](const DWARF_INFO& Info, U32 Entry) {
    const std::vector<U8> aBytes = ConstValue(Info, Entry);
    const U32 Size = std::min(static_cast<U32>(aBytes.size()), NumBytes);
    std::copy_n(aBytes.begin(), Size, pOut);
    return Size;
  });
}

int ELF_GetEnumeratorValue(ELF_SYM_HANDLE hSym, I64* pValue, bool* pbUnsigned) {
  return Ask(hSym, -1, [=](const DWARF_INFO& Info, U32 Entry) {
    const CDieLookup Lookup(Info);
    const std::optional<I64> Value = Lookup.Integer(Entry, DW_AT_const_value);
    const U32 Enumeration = Info.Index.Get(Entry).Parent;
    if (!Value || Info.Index.Get(Entry).Tag != DW_TAG_enumerator) return -1;
    const bool bTyped = Lookup.Reference(Enumeration, DW_AT_type) != 0;
    const bool bSigned = !bTyped || IsSignedEntry(Info, Enumeration);
    *pValue = bTyped ? IntegerOfBits(static_cast<U64>(*Value), Lookup.TypeSize(Enumeration), bSigned) : *Value;
    *pbUnsigned = !bSigned;
    return 0;
  });
}

ELF_SYM_HANDLE ELF_GetObjectPointer(ELF_SYM_HANDLE hSym) {
  return Ask(hSym, ELF_SYM_HANDLE{0},
             [](const DWARF_INFO& Info, U32 Entry) { return DieHandle(ObjectPointer(Info, Entry)); });
}
