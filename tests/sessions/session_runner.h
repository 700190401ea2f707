#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tests/common/files.h"
#include "tests/common/symbol_address.h"

using namespace Qt::StringLiterals;

using TEXTS = std::initializer_list<const char*>;

// What a run of the program printed and how it ended.
struct SESSION_RESULT {
  int ExitCode = -1;
  bool bTimedOut = false;
  QString sOutput;
  QStringList Lines;

  // Value of the n-th "=> 0x..." line, -1 if there is none.
  qint64 Value(int Index) const;
  // Fails with the whole output where it is not so.
  void Expect(int WantedCode, TEXTS Printed = {}, TEXTS NotPrinted = {}) const;
};

// Runs a batch session from a text, in the source directory. Options go in front of -batch. Waits of the text without a
// limit of their own last as long as the session may: a slow machine is no failure.
SESSION_RESULT RunSession(QString sText, const QStringList& Options = {}, int LimitMS = 60'000);
// Opens a file, waits, and logs "still here".
SESSION_RESULT RunWithFile(const QString& sFile, int WaitMS = 10'000);
// Runs any of our programs.
SESSION_RESULT RunProgram(const QString& sProgram, const QStringList& Arguments, const QByteArray& Input = {},
                          int LimitMS = 60'000);

// A project of a program on the simulator, with more statements of OnProjectLoad and more functions.
inline QByteArray ProjectText(const QString& sElf, const QString& sLoad, const QString& sFunctions) {
  return u"void OnProjectLoad (void) {\n  Project.SetDevice (\"nRF52840_xxAA\"); Project.SetHostIF (\"USB\", \"\");\n"
         "  Project.SetTargetIF (\"SWD\"); File.Open (\"%1\"); %2\n}\n%3\n"_s.arg(sElf, sLoad, sFunctions)
             .toUtf8();
}

// A session with a folder for its files.
class SessionTest : public testing::Test {
protected:
  QString Path(const char* sName) const { return m_Dir.filePath(QLatin1String(sName)); }
  QString Write(const char* sName, const QByteArray& Text) const { return WriteBytes(Path(sName), Text); }
  QTemporaryDir m_Dir;
};
