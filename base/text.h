#pragma once
// Texts of numbers, sizes and paths as every window writes them.

#include <QString>

#include "base/types.h"

// The thin blank between groups of digits on screen.
inline constexpr QChar GROUP_BLANK(0x2008);

// 8 hexadecimal capital digits without prefix; with bGrouped a thin blank in the middle.
QString AddrText(U32 Addr, bool bGrouped = false);
// "0x" and 8 hexadecimal capital digits.
QString HexText(U32 Value);
// Decimal number with the separator between groups of three digits.
QString GroupedText(U64 Value, QChar Separator = GROUP_BLANK);
// Backslashes to slashes, double slashes to one, then QDir::cleanPath.
QString NormalisedPath(QString sPath);
// Removes one leading and one trailing double quote, if present, and trims white space.
QString Unquoted(QString sText);
// CR+LF and CR become LF.
QString WithUnixLineEnds(QString sText);
// As the text of a menu entry: an "&" is shown and is no mnemonic.
QString MenuText(QString sText);
// Wildcards of file and name patterns: "*" any run, "?" one character, the rest literal; anchored at both ends.
QString WildcardToRegExp(QStringView sPattern);
