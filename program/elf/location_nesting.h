#pragma once

#include "base/elf_sym.h"

// A location of the kinds that have another one inside. ELF_LOC_NONE where the record has no room for the inner one:
// for none at all, and for one with an inner location of its own that follows from nothing.
ELF_SYM_LOC NestLocation(ELF_LOC_TYPE Type, const ELF_SYM_LOC& Inner);
