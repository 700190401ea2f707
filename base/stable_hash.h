#pragma once

#include <QString>

#include "base/types.h"

// FNV-1a over the UTF-8 form of a text: the same number in every run and on every host, never 0 or 0xFFFFFFFF. Used
// wherever a hash is stored or compared.
U32 StableHash32(QStringView sText);
U32 StableHash32(const char* pData, size_t NumBytes);
