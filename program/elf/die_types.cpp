#include "program/elf/die_types.h"

#include "program/elf/collectors.h"
#include "program/elf/die_lookup.h"

namespace {

constexpr size_t MAX_DIMENSIONS = 64;

bool IsResolvedTag(U32 Tag) {
  return IsClassTag(Tag) || IsReferenceTag(Tag) || Tag == DW_TAG_base_type || Tag == DW_TAG_array_type ||
         Tag == DW_TAG_ptr_to_member_type || Tag == DW_TAG_subprogram;
}

// True for a single expression that gives an address. A place at a register can lie on the stack.
bool HasFixedPlace(const DWARF_INFO& Info, U32 Entry) {
  const U32 Owner = CDieLookup(Info).OwnerOf(Entry, DW_AT_location);
  const CDie Die = Owner ? Info.Reader.Load(Info.Index.Ref(Owner)) : CDie();
  const std::vector<U8> aExpr = Die ? BlockOf(Info, Die, DW_AT_location) : std::vector<U8>();
  if (aExpr.empty()) return false;
  const bool bValueOnly = aExpr.back() == DW_OP_stack_value;
  if (aExpr[0] == DW_OP_addr) return !bValueOnly || aExpr.size() == 1u + Info.Index.UnitOf(Owner).AddrSize;
  return !bValueOnly && (aExpr[0] == DW_OP_addrx || aExpr[0] == DW_OP_GNU_addr_index);
}

// A bound that another entry holds is known only while the program runs.
std::optional<I64> FixedBound(const CDieLookup& Lookup, U32 Subrange, U32 Attr) {
  return Lookup.Reference(Subrange, Attr) ? std::nullopt : Lookup.Integer(Subrange, Attr);
}

}  // namespace

bool IsReferenceTag(U32 Tag) {
  return Tag == DW_TAG_pointer_type || Tag == DW_TAG_reference_type || Tag == DW_TAG_rvalue_reference_type;
}

std::vector<U32> Dimensions(const DWARF_INFO& Info, U32 Array) {
  const CDieLookup Lookup(Info);
  std::vector<U32> aCounts;
  for (U32 Child = Info.Index.FirstChild(Array); Child; Child = Info.Index.NextSibling(Child)) {
    if (aCounts.size() == MAX_DIMENSIONS) break;
    if (Info.Index.Get(Child).Tag != DW_TAG_subrange_type) continue;
    const I64 Lower = FixedBound(Lookup, Child, DW_AT_lower_bound).value_or(0);
    const I64 Upper = FixedBound(Lookup, Child, DW_AT_upper_bound).value_or(0);
    const std::optional<I64> Count = FixedBound(Lookup, Child, DW_AT_count);
    // Wraps: "no elements" has the greatest upper bound.
    aCounts.push_back(Count ? static_cast<U32>(*Count) : static_cast<U32>(Upper) - static_cast<U32>(Lower) + 1);
  }
  return aCounts;
}

U32 ElementCount(const std::vector<U32>& aCounts) {
  U32 Total = 0;
  for (const U32 Count : aCounts) Total = Total == 0 ? Count : Total * Count;
  return Total;
}

U32 ResolvedType(const DWARF_INFO& Info, U32 Entry) {
  const CDieLookup Lookup(Info);
  for (U32 Step = 0; Step < MAX_TYPE_STEPS && Entry != 0; ++Step) {
    if (IsResolvedTag(Info.Index.Get(Entry).Tag)) {
      const U32 Definition = Lookup.Definition(Entry);
      return Definition ? Definition : Entry;
    }
    Entry = Lookup.Reference(Entry, DW_AT_type);
  }
  return 0;
}

U32 ObjectPointer(const DWARF_INFO& Info, U32 Entry) {
  const CDieLookup Lookup(Info);
  if (const U32 Pointer = Lookup.Reference(Entry, DW_AT_object_pointer)) return Pointer;
  const U32 Tag = Info.Index.Get(Entry).Tag;
  if (!IsFunctionTag(Tag) && Tag != DW_TAG_subroutine_type) return 0;
  // Some compilers mark only the parameter in declarations.
  for (U32 Child = Info.Index.FirstChild(Entry); Child; Child = Info.Index.NextSibling(Child)) {
    if (Info.Index.Get(Child).Tag != DW_TAG_formal_parameter) continue;
    return Lookup.Integer(Child, DW_AT_artificial).value_or(0) ? Child : 0;
  }
  return 0;
}

bool IsStaticEntry(const DWARF_INFO& Info, U32 Entry) {
  const U32 Tag = Info.Index.Get(Entry).Tag;
  if (IsFunctionTag(Tag) || Tag == DW_TAG_subroutine_type) return ObjectPointer(Info, Entry) == 0;
  return CDieLookup(Info).ContainingFunc(Entry) != 0 && HasFixedPlace(Info, Entry);
}

bool IsSignedEntry(const DWARF_INFO& Info, U32 Entry) {
  const CDieLookup Lookup(Info);
  for (U32 Step = 0; Step < MAX_TYPE_STEPS && Entry != 0; ++Step) {
    const U32 Tag = Info.Index.Get(Entry).Tag;
    if (Tag == DW_TAG_pointer_type) return false;
    if (Tag == DW_TAG_base_type) {
      const I64 Encoding = Lookup.Integer(Entry, DW_AT_encoding).value_or(0);
      return Encoding == DW_ATE_signed || Encoding == DW_ATE_signed_char || Encoding == DW_ATE_signed_fixed;
    }
    Entry = Lookup.Reference(Entry, DW_AT_type);
  }
  return false;
}

std::vector<U8> BlockOf(const DWARF_INFO& Info, const CDie& Die, U32 Attr) {
  const CAttribute Attribute(Info.Sections, Die, Attr);
  const CByteCursor Block = Attribute ? Attribute.Block() : CByteCursor();
  return std::vector<U8>(Block.Bytes(), Block.Bytes() + Block.Left());
}
