#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/types.h"

struct GDB_REGISTER {
  std::string sName;  // in lower case
  U32 Number = 0;     // in the protocol
  U32 NumBits = 0;
};

// What a server says of its target's registers, ordered by number. Numbers are unique.
struct TARGET_DESCRIPTION {
  std::vector<GDB_REGISTER> Registers;

  // Null when there is none.
  const GDB_REGISTER* Find(std::string_view sName) const;
};

// Gives the text of one of the server's documents; false when the server has none of that name.
using DOCUMENT_SOURCE = std::function<bool(const std::string& sName, std::string* psText)>;

// Reads "target.xml" and what it includes. False with the reason in *psError.
bool ReadTargetDescription(const DOCUMENT_SOURCE& Source, TARGET_DESCRIPTION* pDescription, std::string* psError);
// For a server without a description: R0 to R15, eight floating point registers of 96 bits, their status, CPSR.
TARGET_DESCRIPTION LegacyArmDescription();
