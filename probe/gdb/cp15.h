#pragma once

#include <string>

#include "probe/gdb/registers.h"

// A register of the system control coprocessor, as an MRC or MCR instruction names it.
struct CP15_REGISTER {
  U8 CRn, CRm, Op1, Op2;
};

// Its name in lower case, null when there is no row for it.
const char* Cp15Name(const CP15_REGISTER& Register);

// Access to the coprocessor: by the registers that the server's description names, or by the server's commands.
// False with the reason in *psError.
bool ReadCp15(CGdbServer& Server, CGdbRegisters& Registers, const CP15_REGISTER& Register, U32* pValue,
              std::string* psError);
bool WriteCp15(CGdbServer& Server, CGdbRegisters& Registers, const CP15_REGISTER& Register, U32 Value,
               std::string* psError);
