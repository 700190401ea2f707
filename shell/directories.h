#pragma once

#include <QString>

// Canonical directory of the executable, and what lies beneath it.
QString ApplicationDir();
QString ConfigDir();
QString PeripheralsDir();
QString LibDir();
QString DocDir();
QString PluginsDir();
// The file's own directory if it exists, otherwise where files of its class are kept.
QString DefaultDirFor(const QString& sPath);

// "Vexor", with the subtitle and the version on request.
QString ProductTitle(bool bSubtitle, bool bVersion);
// "V1.02a"
QString VersionText(int Major, int Minor, int Revision);
QString ProgramVersionText();
// Day on which the executable was made, ISO form.
QString BuildDate();
