#pragma once

#include "program/elf/dwarf_info.h"

// Compilers describe a class whole in some units and only declare it in others. Leads each declaration to a definition
// with the same qualified name, one of its own unit if there is one; and the members of a definition, as those of a
// type unit, to the entries that are linked to the members of its declaration. Call once when specifications are
// resolved and the owned entries in order.
void JoinDeclarations(DWARF_INFO& Info);
