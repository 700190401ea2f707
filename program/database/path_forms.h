#pragma once
// Forms in which programs name paths, whatever host they were built on.

#include <QString>

// Backslashes to slashes, and runs of slashes to one.
QString SingleSlashes(QString sPath);
// What stands behind the last slash or backslash.
QString FileNameOf(const QString& sPath);
// Without regard to case.
bool IsSamePath(const QString& sA, const QString& sB);
// Begins with a drive letter and a colon.
bool HasDrive(const QString& sPath);
// Neither absolute on this host nor with a drive letter.
bool IsRelativePath(const QString& sPath);
