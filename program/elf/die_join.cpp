#include "program/elf/die_join.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "program/elf/collectors.h"
#include "program/elf/die_lookup.h"
#include "program/elf/die_types.h"

namespace {

constexpr U32 MAX_SCOPES = 64;  // classes and namespaces around a class; only damaged files have as many
constexpr U64 ROOT_KEY = 1;     // of what stands in no scope

using KEYED_ENTRY = CMemberDefinitions::KEYED_ENTRY;

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

bool IsTemplateTag(U32 Tag) {
  return Tag == DW_TAG_template_type_parameter || Tag == DW_TAG_template_value_parameter ||
         Tag == DW_TAG_GNU_template_template_param || Tag == DW_TAG_GNU_template_parameter_pack;
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
    const U64 Scope = Info.Index.Get(Entry).Parent ? OfScope(Entry) : 0;
    return Scope ? Scope + (Tag == DW_TAG_class_type ? U32{DW_TAG_structure_type} : Tag) : 0;
  }
  // Of a member among those of its class.
  U64 OfMember(U32 Class, U32 Member) {
    const CDie Die = Info.Reader.Load(Info.Index.Ref(Member));
    if (!Die || Die.Has(DW_AT_data_member_location)) return 0;
    const bool bFunction = IsFunctionTag(Info.Index.Get(Member).Tag);
    const char* sLinkage = bFunction ? Lookup.LinkageName(Member) : nullptr;
    if (sLinkage) return Mixed(Class, HashOf(sLinkage));
    const char* sName = Info.Reader.Text(Die, DW_AT_name);
    if (!sName) return 0;
    const U64 Name = Mixed(Class, HashOf(sName));
    return bFunction ? WithParameters(Name, Member) : Name;
  }

private:
  const DWARF_INFO& Info;
  const CDieLookup Lookup;
  std::unordered_map<U32, U64> Scopes;  // classes and namespaces
  U32 Level = 0;

  U32 ScopeAround(U32 Entry) const {
    const U32 Declared = Info.Index.Specification(Entry);
    return Info.Index.Get(Declared ? Declared : Entry).Parent;
  }

  U64 OfScope(U32 Scope) {
    if (Scope == 0) return 0;
    if (Info.Index.Get(Scope).Parent == 0) return ROOT_KEY;
    const auto [At, bNew] = Scopes.emplace(Scope, 0);  // a class around itself has none
    if (!bNew || Level >= MAX_SCOPES) return At->second;
    ++Level;
    const U64 Key = NewScopeKey(Scope);
    --Level;
    return Scopes[Scope] = Key;
  }

  U64 NewScopeKey(U32 Scope) {
    const U32 Tag = Info.Index.Get(Scope).Tag;
    if (Tag != DW_TAG_namespace && !IsClassTag(Tag)) return 0;
    const U64 Outer = OfScope(ScopeAround(Scope));
    if (Outer == 0) return 0;
    const char* sName = Lookup.Name(Scope);
    // What stands in a namespace without name belongs to the unit.
    if (!sName) return Tag == DW_TAG_namespace ? Mixed(Outer, Info.Index.UnitOf(Scope).TopEntry) : 0;
    const U64 Key = Mixed(Outer, HashOf(sName));
    return Tag == DW_TAG_namespace || std::strchr(sName, '<') ? Key : WithArguments(Key, Scope);
  }

  // The arguments of a template, which some compilers leave out of its name, stand in front of the members.
  U64 WithArguments(U64 Key, U32 Class) {
    const U32 Described = Lookup.Definition(Class) ? Lookup.Definition(Class) : Class;
    const U32 Depth = Info.Index.Get(Described).Depth;
    for (U32 Child = Described + 1; Child <= Info.Index.Count(); ++Child) {
      const DIE_ENTRY& Argument = Info.Index.Get(Child);
      if (Argument.Depth <= Depth || !IsTemplateTag(Argument.Tag)) break;
      const CDie Die = Info.Reader.Load(Info.Index.Ref(Child));
      const char* sTemplate = Die ? Info.Reader.Text(Die, DW_AT_GNU_template_name) : nullptr;
      Key = Mixed(Key, sTemplate ? HashOf(sTemplate) : OfType(Child));
      Key = Mixed(Key, static_cast<U64>(Lookup.Integer(Child, DW_AT_const_value).value_or(0)));
    }
    return Key;
  }

  U64 WithParameters(U64 Key, U32 Func) {
    Key = Mixed(Key, HashOf(TypeText(Info, Func).c_str()));
    for (U32 Child = Info.Index.FirstChild(Func); Child; Child = Info.Index.NextSibling(Child)) {
      if (Info.Index.Get(Child).Tag == DW_TAG_formal_parameter) Key = Mixed(Key, OfType(Child));
    }
    return Key;
  }

  // Of the type of the entry; its text has no namespaces.
  U64 OfType(U32 Entry) {
    const U64 Text = HashOf(TypeText(Info, Entry).c_str());
    U32 Type = Entry;
    for (U32 Step = 0; Step < MAX_TYPE_STEPS && Type != 0; ++Step) {
      if (IsClassTag(Info.Index.Get(Type).Tag)) return Mixed(Text, OfClass(Type));
      Type = Lookup.Reference(Type, DW_AT_type);
    }
    return Text;
  }
};

void JoinClasses(DWARF_INFO& Info, CNameKeys& Keys) {
  if (Info.Lists.aDeclaredTypes.empty()) return;
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

// Of what every unit that describes the class agrees about.
U64 KeyAmongMembers(CNameKeys& Keys, U32 Class, U32 Member) {
  const U64 Key = Keys.OfClass(Class);
  return Keys.OfMember(Key ? Key : Class, Member);
}

}  // namespace

void JoinDeclarations(DWARF_INFO& Info) {
  CNameKeys Keys(Info);
  JoinClasses(Info, Keys);
  Info.Lists.aDeclaredTypes = {};
}

CMemberDefinitions::CMemberDefinitions(const DWARF_INFO& Info) : Info(Info) {
  std::unordered_map<U32, U64> KeyOf;  // by declaration: a damaged file may name one of many parameters often
  CNameKeys Keys(Info);
  const CDieLookup Lookup(Info);
  for (const DIE_LINK& Link : Info.Index.Specifications()) {
    const U32 Declared = Info.Index.Get(Link.To).Parent;
    if (Declared == 0 || !IsClassTag(Info.Index.Get(Declared).Tag)) continue;
    const auto [At, bNew] = KeyOf.emplace(Link.To, 0);
    const U32 Class = bNew ? Lookup.Definition(Declared) : 0;
    if (bNew) At->second = KeyAmongMembers(Keys, Class ? Class : Declared, Link.To);
    if (At->second != 0) aDefined.push_back({At->second, Link.From});
  }
  std::sort(aDefined.begin(), aDefined.end(), KeyThenEntry);
}

// Of a function with code in several units the linker keeps the first.
U32 CMemberDefinitions::Find(const DIE_OWNED& Member) const {
  CNameKeys Keys(Info);
  const U64 Key = KeyAmongMembers(Keys, Member.Owner, Member.Entry);
  const KEYED_ENTRY* pDefined = Key ? FirstFrom(aDefined, Key, 0) : nullptr;
  return pDefined ? pDefined->Entry : 0;
}
