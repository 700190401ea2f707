#pragma once
// Saving what a user has written.

#include <QByteArray>
#include <QString>

// Replaces the contents of a file, or makes it: written beside it and renamed, through links, with the permissions of
// the old one. Where the directory takes no other file, written in place, and what stood there is put back if that
// fails. False with the reason, and the old file whole, when the new one is not.
bool SaveFile(const QString& sPath, const QByteArray& Bytes, QString* psReason);
