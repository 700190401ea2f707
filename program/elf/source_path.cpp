#include "program/elf/source_path.h"

#include <cctype>

namespace {

bool IsSeparator(char Char) {
  return Char == '/' || Char == '\\';
}

std::string Join(const std::string& sDir, const std::string& sName) {
  if (sDir.empty() || IsAbsoluteSourcePath(sName)) return sName;
  if (sName.empty()) return sDir;
  return IsSeparator(sDir.back()) ? sDir + sName : sDir + "/" + sName;
}

}  // namespace

bool IsAbsoluteSourcePath(const std::string& sPath) {
  if (!sPath.empty() && IsSeparator(sPath[0])) return true;
  return sPath.size() >= 3 && std::isalpha(static_cast<unsigned char>(sPath[0])) && sPath[1] == ':' &&
         IsSeparator(sPath[2]);
}

std::string JoinSourcePath(const std::string& sCompDir, const std::string& sIncludeDir, const std::string& sName) {
  return Join(sCompDir, Join(sIncludeDir, sName));
}
