// vexor-inspect types: the types with a name and what they consist of.
#include <cstdio>

#include "inspect/inspect.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_types.h"

namespace {

constexpr U32 BITS_PER_BYTE = 8;
constexpr U32 MAX_UNNAMED_LEVELS = 16;  // records without a name inside each other

const char* KindOf(U32 Tag) {
  switch (Tag) {
    case ELF_TAG_CLASS:
      return "class";
    case ELF_TAG_STRUCT:
      return "struct";
    case ELF_TAG_UNION:
      return "union";
    case ELF_TAG_ENUM:
      return "enum";
    case ELF_TAG_TYPEDEF:
      return "typedef";
    case ELF_TAG_FUNC:
      return "function";
    case ELF_TAG_MEMBER:
      return "member";
    case ELF_TAG_VARIABLE:
      return "static";
    default:
      return "other";
  }
}

bool IsRecord(U32 Tag) {
  return Tag == ELF_TAG_CLASS || Tag == ELF_TAG_STRUCT || Tag == ELF_TAG_UNION;
}

std::string OwnName(ELF_SYM_HANDLE hSym) {
  const char* sName = ELF_GetName(hSym);
  return sName ? sName : "";
}

std::string TypeNameOf(ELF_SYM_HANDLE hSym) {
  const char* sName = ELF_GetTypeName(hSym);
  return sName ? sName : "";
}

void PrintMembers(ELF_SYM_HANDLE hType, const std::string& sOwner, I64 Base, U32 Level);

void PrintEnumerator(ELF_SYM_HANDLE hMember, const std::string& sOwner) {
  I64 Value = 0;
  bool bUnsigned = false;
  ELF_GetEnumeratorValue(hMember, &Value, &bUnsigned);
  const std::string sValue = bUnsigned ? std::to_string(static_cast<U64>(Value)) : std::to_string(Value);
  std::printf("enumerator\t%s%s\t\t\t%s\n", sOwner.c_str(), OwnName(hMember).c_str(), sValue.c_str());
}

// The first bit behind the member's offset, in the order in which the file counts the bits of a record: from the least
// significant bit of the first byte, in big-endian files from the most significant one.
I64 FirstBit(ELF_SYM_HANDLE hPart, U32 Width) {
  const I64 Position = ELF_GetBitOffset(hPart);
  return ELF_IsTargetBigEndian() ? I64{BITS_PER_BYTE} * ELF_GetSize(hPart) - Position - Width : Position;
}

// A member or base at its place in the whole type.
void PrintPart(const char* sKind, ELF_SYM_HANDLE hPart, const std::string& sName, I64 Offset) {
  std::printf("%s\t%s\t%u\t%s\t%lld", sKind, sName.c_str(), ELF_GetSize(hPart), TypeNameOf(hPart).c_str(), Offset);
  const U32 Width = ELF_GetBitSize(hPart);
  if (Width) std::printf("\t%lld\t%u", FirstBit(hPart, Width), Width);
  std::printf("\n");
}

void PrintMember(ELF_SYM_HANDLE hMember, const std::string& sOwner, I64 Base, U32 Level) {
  const U32 Tag = ELF_GetTag(hMember);
  if (Tag == ELF_TAG_ENUMERATOR) return PrintEnumerator(hMember, sOwner);
  const std::string sName = sOwner + OwnName(hMember);
  const ELF_SYM_LOC Place = ELF_GetLocation(hMember, 0);
  if (Tag != ELF_TAG_MEMBER || (Place.Type != ELF_LOC_PARENT_LOC && Place.Type != ELF_LOC_PARENT_VALUE)) {
    std::printf("%s\t%s\t%u\t%s\n", Tag == ELF_TAG_MEMBER ? "static" : KindOf(Tag), sName.c_str(),
                Tag == ELF_TAG_FUNC ? 0 : ELF_GetSize(hMember), TypeNameOf(hMember).c_str());
    return;
  }
  PrintPart("member", hMember, sName, Base + Place.Offset);
  const ELF_SYM_HANDLE hType = ELF_GetType(hMember, true);
  if (Level < MAX_UNNAMED_LEVELS && IsRecord(ELF_GetTag(hType)) && !ELF_GetName(hType)) {
    PrintMembers(hType, OwnName(hMember).empty() ? sOwner : sName + ".", Base + Place.Offset, Level + 1);
  }
}

void PrintMembers(ELF_SYM_HANDLE hType, const std::string& sOwner, I64 Base, U32 Level) {
  for (U32 i = 0; i < ELF_GetNumBases(hType); ++i) {
    const ELF_SYM_HANDLE hBase = ELF_GetBase(hType, i);
    PrintPart("base", hBase, sOwner + OwnName(ELF_GetType(hBase, true)), Base + ELF_GetLocation(hBase, 0).Offset);
  }
  for (U32 i = 0; i < ELF_GetNumMembers(hType); ++i) PrintMember(ELF_GetMember(hType, i), sOwner, Base, Level);
}

void PrintType(ELF_SYM_HANDLE hType) {
  const U32 Tag = ELF_GetTag(hType);
  if (!ELF_GetName(hType)) return;  // stands where it is used
  const std::string sName = QualifiedName(hType);
  const ELF_SYM_HANDLE hTarget = Tag == ELF_TAG_TYPEDEF ? ELF_GetType(hType, true) : hType;
  const bool bOwnMembers = Tag != ELF_TAG_TYPEDEF || (hTarget && !ELF_GetName(hTarget));
  std::printf("%s\t%s\t%u\t%s\n", KindOf(Tag), sName.c_str(), ELF_GetSize(hType),
              Tag == ELF_TAG_TYPEDEF ? TypeNameOf(hType).c_str() : "");
  const U32 TargetTag = ELF_GetTag(hTarget);
  if (bOwnMembers && (IsRecord(TargetTag) || TargetTag == ELF_TAG_ENUM)) PrintMembers(hTarget, sName + "::", 0, 0);
}

}  // namespace

const char* InspectTypes(const INSPECT_OPTIONS& Options) {
  const CInspectedFile File(Options);
  if (!File.Get()) return FILE_NOT_READ;
  for (U32 i = 0; i < ELF_GetNumTypes(File.Get()); ++i) PrintType(ELF_GetTypeEntry(File.Get(), i));
  return nullptr;
}
