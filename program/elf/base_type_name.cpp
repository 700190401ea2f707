#include "program/elf/base_type_name.h"

namespace {

constexpr size_t MAX_NAME_SIZE = 512;  // a replacement that would make the text reach this size is left out

struct REPLACEMENT {
  const char* sPattern;
  const char* sShort;
};

constexpr REPLACEMENT aReplacements[] = {
    {"unsigned char", "uchar"},
    {"short unsigned int", "ushort"},
    {"unsigned short int", "ushort"},
    {"unsigned short", "ushort"},
    {"unsigned int", "uint"},
    {"long unsigned int", "ulong"},
    {"long uint", "ulong"},
    {"unsigned long int", "ulong"},
    {"unsigned long", "ulong"},
    {"long long unsigned int", "long ulong"},
    {"unsigned long long int", "long ulong"},
    {"unsigned long long", "long ulong"},
    {"signed char", "char"},
    {"short signed int", "short"},
    {"signed short int", "short"},
    {"signed short", "short"},
    {"short int", "short"},
    {"signed int", "int"},
    {"long signed int", "long"},
    {"signed long int", "long"},
    {"signed long", "long"},
    {"long int", "long"},
    {"long long signed int", "long long"},
    {"signed long long int", "long long"},
    {"signed long long", "long long"},
    {"long long int", "long long"},
};

}  // namespace

std::string ShortBaseTypeName(std::string sName) {
  for (const REPLACEMENT& Replacement : aReplacements) {
    const std::string sPattern = Replacement.sPattern, sShort = Replacement.sShort;
    const size_t At = sName.find(sPattern);
    if (At == std::string::npos || sName.size() - sPattern.size() + sShort.size() >= MAX_NAME_SIZE) continue;
    sName.replace(At, sPattern.size(), sShort);
  }
  return sName;
}
