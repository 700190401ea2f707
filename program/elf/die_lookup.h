#pragma once

#include <optional>
#include <string>

#include "program/elf/dwarf_constants.h"
#include "program/elf/dwarf_info.h"

// Answers about one entry that also take its specification, abstract origin and definition into account. Entries are
// numbers of the index, 0 being none.
class CDieLookup {
public:
  explicit CDieLookup(const DWARF_INFO& Info) : Info(Info) {}

  // The entry whose own attribute answers, 0 if there is none.
  U32 OwnerOf(U32 Entry, U32 Attr) const;
  std::optional<I64> Integer(U32 Entry, U32 Attr) const;
  U32 Reference(U32 Entry, U32 Attr) const;
  // The entry's own name or the inherited one; null when unknown.
  const char* Name(U32 Entry) const;
  // The name by which the linker knows an entry; null if it has none.
  const char* LinkageName(U32 Entry) const;
  U32 AbstractOrigin(U32 Entry) const { return OwnReference(Entry, DW_AT_abstract_origin); }
  U32 Definition(U32 Entry) const;
  // Byte size of the entry's type, 0 if it has none.
  U32 TypeSize(U32 Entry) const;

  U32 ContainingClass(U32 Entry) const;
  U32 ContainingFunc(U32 Entry) const;
  U32 ContainingNamespace(U32 Entry) const;
  U32 ContainingScope(U32 Entry) const;

  // Path of the file of declaration or call, the unit's name where it is unknown; may be null.
  const char* DeclFile(U32 Entry) const;

private:
  const DWARF_INFO& Info;

  U32 OwnReference(U32 Entry, U32 Attr) const;
  U32 OwnerOfLevel(U32 Entry, U32 Attr, U32 Level) const;
  // The last one of the abstract origins, the entry itself without any.
  U32 LastOrigin(U32 Entry) const;
  // The entry that the index has as its definition, or the type that a type unit describes for it.
  U32 DefinerOf(U32 Entry) const;
  bool HasOwn(U32 Entry, U32 Attr) const;
  template <typename PREDICATE>
  U32 Around(U32 Entry, PREDICATE Wanted) const;
  // The same of the entry or of its specification.
  template <typename PREDICATE>
  U32 AroundDeclared(U32 Entry, PREDICATE Wanted) const;
};
