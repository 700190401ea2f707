#pragma once
// The parsed command line.

#include <QString>
#include <QStringList>

// Fields are empty when the option was not given. Paths are normalised.
struct CMD_LINE_ARGS {
  QString sDevice;       // target device
  QString sHostIF;       // "USB" or "IP"
  QString sHostIFIdent;  // serial number, IP address or host name of the probe; may stay empty
  QString sTargetIF;     // target interface
  QString sTIFSpeed;     // target interface speed as text
  QString sProgramFile;
  QString sProjectFile;
  QString sLogFile;          // application log
  QString sLogInterval;      // write-out interval of the application log in bytes, as text
  QString sVNodeScriptFile;  // probe script
  QString sJTAGConfig;       // "DRPre,IRLen"
  bool DebugMode = false;
};

// Reads an argument list, the program's name included. Unknown options and options whose value is missing are skipped.
CMD_LINE_ARGS ParseCmdLine(QStringList Arguments);

// The process's command line, set once by main before any window exists.
void SetCmdLineArgs(const CMD_LINE_ARGS& Args);
const CMD_LINE_ARGS& GetCmdLineArgs();
