#include "program/database/elfapi_types.h"

#include <QSet>
#include <QStringList>
#include <algorithm>

#include "program/database/database.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_frames.h"

namespace {

constexpr qsizetype MAX_MEMBER_DEPTH = 32;  // base classes and members without a name inside each other
constexpr int MAX_INLINE_DEPTH = 256;
constexpr U32 MAX_CONST_BYTES = 256;
constexpr U32 MAX_CFI_REGS = 512;
constexpr qsizetype MAX_CACHED_PLACES = 1 << 16;  // places are remembered for each PC
const char* const ACCESS_TEXTS[] = {"", "public", "protected", "private"};

using COUNT = U32 (*)(ELF_SYM_HANDLE);
using ENTRY = ELF_SYM_HANDLE (*)(ELF_SYM_HANDLE, U32);

ELF_SYM_LIST ListOf(ELF_SYM_HANDLE Sym, COUNT Count, ENTRY Entry) {
  ELF_SYM_LIST List;
  const U32 NumEntries = Count(Sym);
  for (U32 i = 0; i < NumEntries; ++i) List.append(Entry(Sym, i));
  return List;
}

// Members of a class by name; of several with one name the first.
const QHash<QString, I32>& MemberNames(const CDatabaseLock& Db, ELF_SYM_HANDLE Class) {
  const auto it = Db->Caches.MemberNames.constFind(Class);
  if (it != Db->Caches.MemberNames.cend()) return it.value();
  QHash<QString, I32>& Names = Db->Caches.MemberNames[Class];
  const ELF_SYM_LIST Members = ELFAPI_GetMembers(Class);
  for (qsizetype i = Members.size(); i-- > 0;) Names.insert(ELFAPI_GetName(Members[i]), static_cast<I32>(i));
  return Names;
}

bool IsRecord(ELF_SYM_HANDLE Type) {
  const U32 Tag = ELF_GetTag(Type);
  return Tag == ELF_TAG_CLASS || Tag == ELF_TAG_STRUCT || Tag == ELF_TAG_UNION;
}

// A search for a member by name. Each class is searched once: those of a damaged file may hold each other many times.
class CMemberSearch {
public:
  CMemberSearch(const CDatabaseLock& Db, const QString& sName) : m_Db(Db), m_sName(sName) {}

  MEMBER_PLACE In(ELF_SYM_HANDLE Class) {
    if (Class == 0 || m_Way.size() >= MAX_MEMBER_DEPTH || m_Searched.contains(Class)) return {};
    m_Searched.insert(Class);
    const QHash<QString, I32> Names = MemberNames(m_Db, Class);
    if (const I32 Index = Names.value(m_sName, -1); Index >= 0) return {Index, -1, Class, m_Way};
    MEMBER_PLACE Place;
    // The names in a member without one are those of the class.
    const ELF_SYM_LIST Members = Names.contains(QString()) ? ELFAPI_GetMembers(Class) : ELF_SYM_LIST();
    for (qsizetype i = 0; i < Members.size() && Place.Member < 0; ++i) {
      const bool bNameless = ELFAPI_GetName(Members[i]).isEmpty() && IsRecord(ELFAPI_GetType(Members[i]));
      if (bNameless) Place = Through(Members[i]);
      Place.Base = -1;
    }
    const ELF_SYM_LIST Bases = Place.Member < 0 ? ELFAPI_GetBases(Class) : ELF_SYM_LIST();
    for (qsizetype i = 0; i < Bases.size() && Place.Member < 0; ++i) {
      Place = Through(Bases[i]);
      Place.Base = static_cast<I32>(i);
    }
    return Place.Member < 0 ? MEMBER_PLACE() : Place;
  }

private:
  MEMBER_PLACE Through(ELF_SYM_HANDLE Part) {
    m_Way.append(Part);
    const MEMBER_PLACE Place = In(ELFAPI_GetType(Part));
    m_Way.removeLast();
    return Place;
  }

  const CDatabaseLock& m_Db;
  QString m_sName;
  ELF_SYM_LIST m_Way;
  QSet<ELF_SYM_HANDLE> m_Searched;
};

bool NeedsInner(U32 Type) {
  return Type == ELF_LOC_REG_INDIRECT || Type == ELF_LOC_ENTRY_VALUE || Type == ELF_LOC_STACK_VALUE;
}

}  // namespace

ELF_SYM_HANDLE ELFAPI_GetType(ELF_SYM_HANDLE Sym, bool bFollow) {
  const CDatabaseLock Db;
  return ELF_GetType(Sym, bFollow);
}

QString ELFAPI_GetTypeName(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  const auto it = Db->Caches.TypeNames.constFind(Sym);
  if (it != Db->Caches.TypeNames.cend()) return it.value();
  return *Db->Caches.TypeNames.insert(Sym, QString::fromUtf8(ELF_GetTypeName(Sym)));
}

bool ELFAPI_IsSigned(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_IsSigned(Sym);
}

U32 ELFAPI_GetBaseEncoding(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  I64 Encoding = 0;
  if (ELF_GetTag(Sym) == ELF_TAG_BASE_TYPE) ELF_GetAttrValue(Sym, ELF_ATTR_ENCODING, &Encoding);
  return static_cast<U32>(Encoding);
}

bool ELFAPI_IsStatic(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_IsStatic(Sym);
}

bool ELFAPI_GetArrayInfo(ELF_SYM_HANDLE Sym, ELF_ARRAY_INFO& Info) {
  const CDatabaseLock Db;
  return ELF_GetArrayInfo(Sym, &Info) == 0;
}

QByteArray ELFAPI_GetConstValue(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  U8 aBytes[MAX_CONST_BYTES];
  const U32 NumBytes = ELF_GetConstValue(Sym, aBytes, MAX_CONST_BYTES);
  return QByteArray(reinterpret_cast<const char*>(aBytes), std::min(NumBytes, MAX_CONST_BYTES));
}

bool ELFAPI_GetEnumeratorValue(ELF_SYM_HANDLE Sym, I64& Value, bool& bUnsigned) {
  const CDatabaseLock Db;
  return ELF_GetEnumeratorValue(Sym, &Value, &bUnsigned) == 0;
}

ELF_SYM_LIST ELFAPI_GetMembers(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ListOf(Sym, ELF_GetNumMembers, ELF_GetMember);
}

ELF_SYM_HANDLE ELFAPI_GetMember(ELF_SYM_HANDLE Sym, U32 Index) {
  const CDatabaseLock Db;
  return ELF_GetMember(Sym, Index);
}

ELF_SYM_LIST ELFAPI_GetBases(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ListOf(Sym, ELF_GetNumBases, ELF_GetBase);
}

QString ELFAPI_GetBaseNames(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  QStringList Names;
  for (const ELF_SYM_HANDLE Base : ELFAPI_GetBases(Sym)) Names.append(ELFAPI_GetName(ELFAPI_GetType(Base)));
  return Names.join(QStringLiteral(", "));
}

MEMBER_PLACE ELFAPI_FindMember(ELF_SYM_HANDLE Sym, const QString& sName) {
  const CDatabaseLock Db;
  return sName.isEmpty() ? MEMBER_PLACE() : CMemberSearch(Db, sName).In(ELFAPI_GetType(Sym));
}

U32 ELFAPI_GetAccess(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_GetAccess(Sym);
}

QString ELFAPI_GetAccessText(ELF_SYM_HANDLE Sym) {
  const U32 Access = ELFAPI_GetAccess(Sym);
  return QString::fromLatin1(Access < std::size(ACCESS_TEXTS) ? ACCESS_TEXTS[Access] : "");
}

U32 ELFAPI_GetBitOffset(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_GetBitOffset(Sym);
}

U32 ELFAPI_GetBitSize(ELF_SYM_HANDLE Sym) {
  const CDatabaseLock Db;
  return ELF_GetBitSize(Sym);
}

ELF_SYM_LOC ELFAPI_GetLocation(ELF_SYM_HANDLE Sym, U32 PC) {
  const CDatabaseLock Db;
  auto& Places = Db->Caches.Places;
  const auto it = Places.constFind({Sym, PC});
  if (it != Places.cend()) return it.value();
  if (Places.size() >= MAX_CACHED_PLACES) Places.clear();
  return *Places.insert({Sym, PC}, ELF_GetLocation(Sym, PC));
}

ELF_SYM_LOC ELFAPI_GetFrameBase(ELF_SYM_HANDLE Sym, U32 PC) {
  const CDatabaseLock Db;
  ELF_SYM_HANDLE Func = ELFAPI_IsFunction(Sym) ? Sym : ELFAPI_GetFunctionOf(Sym);
  // What is inlined lives in the frame of the function around it.
  for (int Depth = 0; ELFAPI_IsInlined(Func) && Depth < MAX_INLINE_DEPTH; ++Depth) Func = ELFAPI_GetFunctionOf(Func);
  return ELFAPI_GetLocation(Func, PC);
}

bool ELFAPI_IsLocValid(const ELF_SYM_LOC& Loc) {
  if (Loc.Type == ELF_LOC_NONE || Loc.Type > ELF_LOC_STACK_VALUE) return false;
  const bool bRegister = Loc.Type == ELF_LOC_REG || Loc.Type == ELF_LOC_REG_OFFSET;
  if (bRegister && Loc.Reg == ELF_REG_UNSPECIFIED) return false;
  return !NeedsInner(Loc.Type) || (Loc.BaseType != ELF_LOC_NONE && Loc.BaseReg != ELF_REG_UNSPECIFIED);
}

ELF_SYM_HANDLE ELFAPI_GetRttBlock() {
  const CDatabaseLock Db;
  return Db->RttBlockSym;
}

ELF_SYM_LOCS ELFAPI_GetCfiRegs(U32 PC, U32 NumRegs) {
  const CDatabaseLock Db;
  ELF_SYM_LOCS Rules(std::min(NumRegs, MAX_CFI_REGS));
  Rules.resize(ELF_GetCfiRegs(Db->pElf, PC, static_cast<U32>(Rules.size()), Rules.data()));
  return Rules;
}

ELF_SYM_LOC ELFAPI_GetCfa(U32 PC) {
  const CDatabaseLock Db;
  return ELF_GetCfa(Db->pElf, PC);
}

I32 ELFAPI_GetFrameSize(U32 PC) {
  const CDatabaseLock Db;
  return ELF_GetFrameSize(Db->pElf, PC);
}

QByteArray ELFAPI_ReadImage(U32 Start, U32 End) {
  const CDatabaseLock Db;
  const U8* pBytes = ELF_ReadImage(Db->pElf, Start, End);
  return pBytes ? QByteArray(reinterpret_cast<const char*>(pBytes), End - Start) : QByteArray();
}
