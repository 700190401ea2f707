#pragma once

#include <string>

// True for a path from the root or from a drive, of either kind of host.
bool IsAbsoluteSourcePath(const std::string& sPath);
// The name in its include directory in the compilation directory; each part may be empty, an absolute one stands alone.
std::string JoinSourcePath(const std::string& sCompDir, const std::string& sIncludeDir, const std::string& sName);
