#pragma once
// What stands on which page of the preference dialog, as data.

#include <span>

#include "base/types.h"

// A page holds either variables, or fonts and colours.
struct PREFERENCE_PAGE {
  const char* sGroup;  // top item of the tree
  const char* sTitle;
  std::span<const U32> Variables;
  std::span<const U32> Fonts;
  std::span<const U32> Colors;
};

// In the order of the tree. The pages of a group stand together.
std::span<const PREFERENCE_PAGE> PreferencePages();
