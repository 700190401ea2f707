#pragma once
// The core model for the sub-commands that look at instructions.

#include "inspect/inspect.h"

inline constexpr char NO_SUCH_CORE[] = "there is no core of that name";

// Makes the core that the options name or that fits them; false for an unknown name. VCore::Exit ends it. Byte orders
// are ELF_ENCODING values.
bool InitCore(const INSPECT_OPTIONS& Options, U32 DataEncoding, U32 CodeEncoding);
// The same for an open file, which is attached with its mapping symbols. Null, or what went wrong.
const char* AttachCore(const INSPECT_OPTIONS& Options, const ELF_FILE* pFile);
