#pragma once

#include <optional>

#include <QString>

#include "ui/windows/source_types.h"

// Position of the next match at or behind From, or with SEARCH_BACKWARD of the last one that ends at or ahead of it;
// around the ends of the text. Nothing where there is none.
std::optional<int> FindText(const QString& sText, const QString& sWhat, int From, SEARCH_FLAGS Flags);
