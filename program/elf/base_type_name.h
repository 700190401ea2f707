#pragma once

#include <string>

// The short form of a base type's name: "long unsigned int" reads "ulong".
std::string ShortBaseTypeName(std::string sName);
