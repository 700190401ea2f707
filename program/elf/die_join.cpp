#include "program/elf/die_join.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "program/elf/collectors.h"
#include "program/elf/die_lookup.h"

namespace {

constexpr U32 MAX_SCOPES = 64;  // classes and namespaces around a class; only damaged files have as many
constexpr U64 ROOT_KEY = 1;     // of what stands in no scope

struct KEYED_ENTRY {
  U64 Key;
  U32 Entry;
};

bool KeyThenEntry(const KEYED_ENTRY& A, const KEYED_ENTRY& B) {
  return A.Key != B.Key ? A.Key < B.Key : A.Entry < B.Entry;
}

// The first one of the key from that entry on; null if there is none.
const KEYED_ENTRY* FirstFrom(const std::vector<KEYED_ENTRY>& aSorted, U64 Key, U32 Entry) {
  const auto At = std::lower_bound(aSorted.begin(), aSorted.end(), KEYED_ENTRY{Key, Entry}, KeyThenEntry);
  return At != aSorted.end() && At->Key == Key ? &*At : nullptr;
}

U64 HashOf(const char* sName) {
  return std::hash<std::string_view>()(sName);
}

U64 Mixed(U64 Outer, U64 Inner) {
  constexpr U64 GOLDEN_RATIO = 0x9E3779B97F4A7C15ull;
  return (Outer ^ (Outer >> 29)) * GOLDEN_RATIO + Inner;
}

// Keys of qualified names. 0 for classes that other units cannot name: in a function or a class without name.
class CNameKeys {
public:
  explicit CNameKeys(const DWARF_INFO& Info) : Info(Info), Lookup(Info) {}

  // Of the name alone.
  U64 Bare(U32 Entry) const {
    const char* sName = Lookup.Name(Entry);
    return sName ? HashOf(sName) : 0;
  }
  // A structure and a class are the same.
  U64 OfClass(U32 Entry) {
    const U32 Tag = Info.Index.Get(Entry).Tag;
    const U64 Scope = OfScope(ScopeAround(Entry), 0), Name = Bare(Entry);
    return Scope && Name ? Mixed(Scope, Name + (Tag == DW_TAG_class_type ? U32{DW_TAG_structure_type} : Tag)) : 0;
  }

private:
  const DWARF_INFO& Info;
  const CDieLookup Lookup;
  std::unordered_map<U32, U64> Scopes;

  U32 ScopeAround(U32 Entry) const {
    const U32 Declared = Info.Index.Specification(Entry);
    return Info.Index.Get(Declared ? Declared : Entry).Parent;
  }

  U64 OfScope(U32 Scope, U32 Level) {
    if (Scope == 0 || Level >= MAX_SCOPES) return 0;
    if (Info.Index.Get(Scope).Parent == 0) return ROOT_KEY;
    const auto At = Scopes.find(Scope);
    if (At != Scopes.end()) return At->second;
    const U64 Key = NewScopeKey(Scope, Level);
    Scopes.emplace(Scope, Key);
    return Key;
  }

  U64 NewScopeKey(U32 Scope, U32 Level) {
    const U32 Tag = Info.Index.Get(Scope).Tag;
    if (Tag != DW_TAG_namespace && !IsClassTag(Tag)) return 0;
    const U64 Outer = OfScope(ScopeAround(Scope), Level + 1);
    U64 Name = Bare(Scope);
    // What stands in a namespace without name belongs to the unit.
    if (Name == 0 && Tag == DW_TAG_namespace) Name = Info.Index.UnitOf(Scope).TopEntry;
    return Outer && Name ? Mixed(Outer, Name) : 0;
  }
};

void JoinClasses(DWARF_INFO& Info) {
  if (Info.Lists.aDeclaredTypes.empty()) return;
  CNameKeys Keys(Info);
  std::vector<U64> aWanted;
  for (const U32 Entry : Info.Lists.aDeclaredTypes) aWanted.push_back(Keys.Bare(Entry));
  std::sort(aWanted.begin(), aWanted.end());
  std::vector<KEYED_ENTRY> aDefinitions;
  for (const U32 Entry : Info.Lists.aTypes) {
    if (!IsClassTag(Info.Index.Get(Entry).Tag)) continue;
    if (!std::binary_search(aWanted.begin(), aWanted.end(), Keys.Bare(Entry))) continue;
    if (const U64 Key = Keys.OfClass(Entry)) aDefinitions.push_back({Key, Entry});
  }
  std::sort(aDefinitions.begin(), aDefinitions.end(), KeyThenEntry);
  std::vector<DIE_LINK> aLinks;
  for (const U32 Entry : Info.Lists.aDeclaredTypes) {
    const U64 Key = Info.Index.Definition(Entry) == 0 ? Keys.OfClass(Entry) : 0;
    const KEYED_ENTRY* pAny = Key ? FirstFrom(aDefinitions, Key, 0) : nullptr;
    if (!pAny) continue;
    const DWARF_UNIT& Unit = Info.Index.UnitOf(Entry);
    const KEYED_ENTRY* pOwn = FirstFrom(aDefinitions, Key, Unit.TopEntry);
    const bool bOwn = pOwn && &Info.Index.UnitOf(pOwn->Entry) == &Unit;
    aLinks.push_back({Entry, bOwn ? pOwn->Entry : pAny->Entry});
  }
  Info.Index.AddDefinitions(aLinks);
}

// Of a member among those of its class.
U64 MemberKey(const DWARF_INFO& Info, U32 Class, U32 Member) {
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Member));
  const char* sName = Die ? Info.Reader.Text(Die, DW_AT_linkage_name) : nullptr;
  if (Die && !sName) sName = Info.Reader.Text(Die, DW_AT_MIPS_linkage_name);
  if (Die && !sName) sName = Info.Reader.Text(Die, DW_AT_name);
  return sName ? Mixed(Class, HashOf(sName) + Info.Index.Get(Member).Tag) : 0;
}

// What other entries define of the members of classes that are described somewhere else: the keys of the members.
std::vector<KEYED_ENTRY> MembersDefinedElsewhere(const DWARF_INFO& Info, std::vector<U32>& aClasses) {
  const CDieLookup Lookup(Info);
  std::vector<KEYED_ENTRY> aFound;
  for (const DIE_LINK& Link : Info.Index.Specifications()) {
    const U32 Declared = Info.Index.Get(Link.To).Parent;
    if (Declared == 0 || !IsClassTag(Info.Index.Get(Declared).Tag)) continue;
    const U32 Class = Lookup.Definition(Declared);
    const U64 Key = Class != 0 && Class != Declared ? MemberKey(Info, Class, Link.To) : 0;
    if (Key == 0) continue;
    aFound.push_back({Key, Link.From});
    aClasses.push_back(Class);
  }
  std::sort(aFound.begin(), aFound.end(), KeyThenEntry);
  std::sort(aClasses.begin(), aClasses.end());
  return aFound;
}

void JoinMembers(DWARF_INFO& Info) {
  std::vector<U32> aClasses;
  const std::vector<KEYED_ENTRY> aDefined = MembersDefinedElsewhere(Info, aClasses);
  if (aDefined.empty()) return;
  std::vector<DIE_LINK> aLinks;
  for (const DIE_OWNED& Owned : Info.Lists.aMembers) {
    if (!std::binary_search(aClasses.begin(), aClasses.end(), Owned.Owner)) continue;
    if (Info.Index.Definition(Owned.Entry) != 0) continue;
    const U64 Key = MemberKey(Info, Owned.Owner, Owned.Entry);
    // Of a function with code in several units the linker keeps the first.
    const KEYED_ENTRY* pDefined = Key ? FirstFrom(aDefined, Key, 0) : nullptr;
    if (pDefined) aLinks.push_back({Owned.Entry, pDefined->Entry});
  }
  Info.Index.AddDefinitions(aLinks);
}

}  // namespace

void JoinDeclarations(DWARF_INFO& Info) {
  if (Info.Lists.aDeclaredTypes.empty() && Info.NumTypeUnits == 0) return;
  JoinClasses(Info);
  Info.Lists.aDeclaredTypes = {};
  JoinMembers(Info);
}
