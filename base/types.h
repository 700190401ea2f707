#pragma once
// The program's own vocabulary of fixed-width integers. U64 and I64 are the same types as Qt's quint64 and qint64.

#include <cstdint>

using U8 = std::uint8_t;
using U16 = std::uint16_t;
using U32 = std::uint32_t;
using U64 = unsigned long long;
using I8 = std::int8_t;
using I16 = std::int16_t;
using I32 = std::int32_t;
using I64 = long long;

// The address that no query answers with: none, unknown, past the end.
inline constexpr U32 INVALID_ADDR = 0xFFFFFFFFu;
