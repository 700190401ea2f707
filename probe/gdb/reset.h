#pragma once

#include <string>

#include "probe/gdb/server.h"

// Resets the target by one of the server's own commands and leaves it halted. False with the reason in *psError.
bool ResetByServer(CGdbServer& Server, std::string* psError);
