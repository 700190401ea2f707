#pragma once
// Project and user files as text.

#include <QString>

// The whole file as text: UTF-8, what a byte order mark says, or Latin-1 when it is neither. *pOk is false when it
// can't be read.
QString ReadTextFile(const QString& sPath, bool* pOk);
// Writes a text as UTF-8 with CR+LF line ends, whatever it had. The old file stays whole until the new one is written.
// False, with a console line, when that fails.
bool WriteTextFile(const QString& sPath, QString sText);
