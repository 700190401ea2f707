#pragma once
// The place of a script error as the console shows it.

#include <QByteArray>
#include <QStringList>

struct CTRANS_ERROR;

// "FILE:LINE:COLUMN" (columns count characters), then the lines from the start of the failing statement to the error,
// the middle of a long statement left out, and a line with "^" under the error. For a fixed-pitch font.
QStringList MakeErrorExcerpt(const QString& sFile, const QByteArray& Text, const CTRANS_ERROR& Error);
