#pragma once

#include <optional>
#include <utility>

#include "program/elf/dwarf_session.h"

// Owner of one loaded debug information entry.
class CDie {
public:
  CDie() = default;
  explicit CDie(Dwarf_Die pDie) : pDie(pDie) {}
  CDie(CDie&& Other) noexcept : pDie(std::exchange(Other.pDie, nullptr)) {}
  CDie& operator=(CDie&& Other) noexcept {
    std::swap(pDie, Other.pDie);
    return *this;
  }
  ~CDie() {
    if (pDie) dwarf_dealloc_die(pDie);
  }

  explicit operator bool() const { return pDie != nullptr; }
  Dwarf_Die Get() const { return pDie; }

private:
  Dwarf_Die pDie = nullptr;
};

// An offset of an entry together with the section it counts in.
struct DIE_REF {
  U32 Offset = 0;
  bool bTypes = false;
};

// Reads entries and their own attributes; what cannot be read is reported once and answers as absent.
class CDieReader {
public:
  explicit CDieReader(const CDwarfSession& Session) : Session(Session) {}

  CDie Load(DIE_REF Ref) const;
  U32 Offset(const CDie& Die) const;
  U32 Tag(const CDie& Die) const;
  bool Has(const CDie& Die, U32 Attr) const;
  // Null where the entry has no such text. It lies in the file and lives as long.
  const char* Text(const CDie& Die, U32 Attr) const;
  // Numbers of every form; addresses as they are, flags as 0 or 1, references as section offsets.
  std::optional<I64> Integer(const CDie& Die, U32 Attr) const;
  // A reference within the section of the entry, or to .debug_info.
  std::optional<DIE_REF> Reference(const CDie& Die, U32 Attr) const;
  // Signature of a type unit, where the attribute refers to one.
  std::optional<U64> Signature(const CDie& Die, U32 Attr) const;

  const CDwarfSession& Libdwarf() const { return Session; }

private:
  const CDwarfSession& Session;
};

// Owner of one attribute.
class CAttribute {
public:
  CAttribute(const CDwarfSession& Session, const CDie& Die, U32 Attr);
  ~CAttribute() {
    if (pAttr) dwarf_dealloc_attribute(pAttr);
  }
  CAttribute(const CAttribute&) = delete;
  CAttribute& operator=(const CAttribute&) = delete;

  explicit operator bool() const { return pAttr != nullptr; }
  Dwarf_Attribute Get() const { return pAttr; }
  U32 Form() const { return AttrForm; }
  bool IsAddress() const;
  bool IsReference() const;
  std::optional<I64> Integer(const CDwarfSession& Session) const;

private:
  Dwarf_Attribute pAttr = nullptr;
  U32 AttrForm = 0;
};

// The byte order independent value of an 8-byte signature.
U64 SignatureValue(const Dwarf_Sig8& Signature);
