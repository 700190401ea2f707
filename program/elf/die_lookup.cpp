#include "program/elf/die_lookup.h"

#include "program/elf/collectors.h"
#include "program/elf/die_types.h"

namespace {

constexpr U32 MAX_ATTR_LEVELS = 6;
constexpr U32 MAX_NAME_LEVELS = 21;
constexpr U32 MAX_SCOPE_LEVELS = 64;  // abstract origins of abstract origins: only damaged files come here

bool IsInheritable(U32 Attr) {
  return Attr != DW_AT_specification && Attr != DW_AT_abstract_origin && Attr != DW_AT_declaration &&
         Attr != DW_AT_extension;
}

}  // namespace

bool CDieLookup::HasOwn(U32 Entry, U32 Attr) const {
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
  return Die && Info.Reader.Has(Die, Attr);
}

U32 CDieLookup::OwnReference(U32 Entry, U32 Attr) const {
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
  if (!Die) return 0;
  if (const std::optional<DIE_REF> Ref = Info.Reader.Reference(Die, Attr)) return Info.Index.Find(*Ref);
  const std::optional<U64> Signature = Info.Reader.Signature(Die, Attr);
  return Signature ? Info.Index.FindType(*Signature) : 0;
}

U32 CDieLookup::DefinerOf(U32 Entry) const {
  const U32 Definition = Info.Index.Definition(Entry);
  return Definition ? Definition : OwnReference(Entry, DW_AT_signature);
}

U32 CDieLookup::OwnerOf(U32 Entry, U32 Attr) const {
  return OwnerOfLevel(Entry, Attr, 0);
}

U32 CDieLookup::OwnerOfLevel(U32 Entry, U32 Attr, U32 Level) const {
  if (Level == MAX_ATTR_LEVELS || Entry == 0) return 0;
  if (HasOwn(Entry, Attr)) return Entry;
  if (!IsInheritable(Attr)) return 0;
  if (Info.Index.Get(Entry).Tag == DW_TAG_namespace) {
    const U32 Original = OwnReference(Entry, DW_AT_extension);
    if (Original && HasOwn(Original, Attr)) return Original;
  }
  const U32 Specification = Info.Index.Specification(Entry);
  if (Specification && HasOwn(Specification, Attr)) return Specification;
  const U32 Origin = AbstractOrigin(Entry);
  const U32 Found = Origin != Entry ? OwnerOfLevel(Origin, Attr, Level + 1) : 0;
  const U32 Definer = Found == 0 ? DefinerOf(Entry) : 0;
  return Definer && HasOwn(Definer, Attr) ? Definer : Found;
}

std::optional<I64> CDieLookup::Integer(U32 Entry, U32 Attr) const {
  const U32 Owner = OwnerOf(Entry, Attr);
  if (Owner == 0) return std::nullopt;
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Owner));
  if (!Die) return std::nullopt;
  const std::optional<U64> Signature = Info.Reader.Signature(Die, Attr);
  const U32 Type = Signature ? Info.Index.FindType(*Signature) : 0;
  return Type ? std::optional<I64>(Info.Index.Get(Type).Offset) : Info.Reader.Integer(Die, Attr);
}

U32 CDieLookup::Reference(U32 Entry, U32 Attr) const {
  const U32 Owner = OwnerOf(Entry, Attr);
  return Owner ? OwnReference(Owner, Attr) : 0;
}

const char* CDieLookup::Name(U32 First) const {
  U32 Entry = First;
  for (U32 Level = 0; Level < MAX_NAME_LEVELS && Entry != 0; ++Level) {
    const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
    if (!Die) return nullptr;
    if (const char* sName = Info.Reader.Text(Die, DW_AT_name)) return sName;
    U32 Next = AbstractOrigin(Entry);
    if (Next == 0) Next = Info.Index.Specification(Entry);
    if (Next == 0) Next = DefinerOf(Entry);
    Entry = Next != Entry ? Next : 0;
  }
  // Functions that a compiler makes up have no other: thunks, the constructors of globals.
  return IsFunctionTag(Info.Index.Get(First).Tag) ? LinkageName(First) : nullptr;
}

const char* CDieLookup::LinkageName(U32 Entry) const {
  const CDie Die = Info.Reader.Load(Info.Index.Ref(Entry));
  const char* sName = Die ? Info.Reader.Text(Die, DW_AT_linkage_name) : nullptr;
  return !Die || sName ? sName : Info.Reader.Text(Die, DW_AT_MIPS_linkage_name);
}

U32 CDieLookup::Definition(U32 Entry) const {
  const U32 Definer = DefinerOf(Entry);
  if (Definer == 0) return HasOwn(Entry, DW_AT_byte_size) ? Entry : 0;
  return Definer != Entry ? Definer : 0;
}

U32 CDieLookup::TypeSize(U32 Entry) const {
  U64 Factor = 1;
  for (U32 Step = 0; Step < MAX_TYPE_STEPS && Entry != 0; ++Step) {
    const U32 Tag = Info.Index.Get(Entry).Tag;
    if (IsReferenceTag(Tag)) return static_cast<U32>(Factor * Info.Index.UnitOf(Entry).AddrSize);
    if (Tag == DW_TAG_array_type) {
      Factor = static_cast<U32>(Factor * ElementCount(Dimensions(Info, Entry)));
    } else if (const I64 Size = Integer(Entry, DW_AT_byte_size).value_or(0)) {
      return static_cast<U32>(Factor * static_cast<U64>(Size));
    }
    const U32 Target = Reference(Entry, DW_AT_type);
    if (Tag == DW_TAG_ptr_to_member_type) {  // a function's has its address and what is added to "this"
      const bool bFunction = Target != 0 && Info.Index.Get(Target).Tag == DW_TAG_subroutine_type;
      return static_cast<U32>(Factor * Info.Index.UnitOf(Entry).AddrSize * (bFunction ? 2 : 1));
    }
    Entry = Target;
  }
  return 0;
}

template <typename PREDICATE>
U32 CDieLookup::Around(U32 Entry, PREDICATE Wanted) const {
  for (U32 Parent = Info.Index.Get(Entry).Parent; Parent != 0; Parent = Info.Index.Get(Parent).Parent) {
    if (Wanted(Info.Index.Get(Parent).Tag)) return Parent;
  }
  return 0;
}

template <typename PREDICATE>
U32 CDieLookup::AroundDeclared(U32 Entry, PREDICATE Wanted) const {
  if (const U32 Found = Around(Entry, Wanted)) return Found;
  const U32 Specification = Info.Index.Specification(Entry);
  return Specification ? Around(Specification, Wanted) : 0;
}

U32 CDieLookup::LastOrigin(U32 Entry) const {
  for (U32 Level = 0; Level < MAX_SCOPE_LEVELS; ++Level) {
    const U32 Origin = AbstractOrigin(Entry);
    if (Origin == 0 || Origin == Entry) break;
    Entry = Origin;
  }
  return Entry;
}

// Around the place to which a function was inlined stand the scopes of another one.
U32 CDieLookup::ContainingClass(U32 Entry) const {
  return AroundDeclared(LastOrigin(Entry), IsClassTag);
}

U32 CDieLookup::ContainingNamespace(U32 Entry) const {
  return AroundDeclared(LastOrigin(Entry), [](U32 Tag) { return Tag == DW_TAG_namespace; });
}

U32 CDieLookup::ContainingFunc(U32 Entry) const {
  for (U32 Level = 0; Level < MAX_SCOPE_LEVELS && Entry != 0; ++Level) {
    if (const U32 Found = AroundDeclared(Entry, IsFunctionTag)) return Found;
    const U32 Origin = AbstractOrigin(Entry);
    Entry = Origin != Entry ? Origin : 0;
  }
  return 0;
}

U32 CDieLookup::ContainingScope(U32 Entry) const {
  return Around(Entry, [](U32 Tag) {
    return IsFunctionTag(Tag) || Tag == DW_TAG_subroutine_type || Tag == DW_TAG_lexical_block;
  });
}

const char* CDieLookup::DeclFile(U32 Entry) const {
  const bool bCall = Info.Index.Get(Entry).Tag == DW_TAG_inlined_subroutine;
  const U32 Attr = bCall ? DW_AT_call_file : DW_AT_decl_file;
  const U32 Owner = OwnerOf(Entry, Attr);
  const DWARF_UNIT& Unit = Info.Index.UnitOf(Owner ? Owner : Entry);
  if (Owner) {
    const CDie Die = Info.Reader.Load(Info.Index.Ref(Owner));
    const std::optional<I64> Number = Die ? Info.Reader.Integer(Die, Attr) : std::nullopt;
    const I32 File = Number ? Info.Sources.FileOf(Unit.FileTable, *Number) : -1;
    if (File >= 0) return Info.Sources.Path(static_cast<U32>(File));
  }
  return Name(Unit.TopEntry);
}
