#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

class CMainWindow;

// A session as a text file: runs console commands line by line, prints what the console prints, and ends the process
// with 0, or with 1 at the first command that fails. Lines beginning with "@" drive the session itself.
class CBatchSession : public QObject {
  Q_OBJECT

public:
  // The file behind -batch in an argument list ("-": standard input); empty when there is none.
  static QString FileOf(const QStringList& Arguments);
  // The argument list without -batch and its file.
  static QStringList WithoutFile(QStringList Arguments);
  // Called by main before anything else; windows and dialogs ask whether a user is there.
  static void SetActive(bool bOn);
  static bool IsActive();

  // Reads the whole input. False when it can't be read; the reason goes to standard error.
  bool Load(const QString& sFile);
  // Begins with the first line once the window has started.
  void Run(CMainWindow& Window);
  int ExitCode() const { return m_ExitCode; }

private:
  enum WAIT_FOR { WAIT_NONE, WAIT_HALTED, WAIT_RUNNING, WAIT_CONNECTED, WAIT_DISCONNECTED, WAIT_IDLE };

  void Step();
  void RunLine(QString sLine);
  void RunDirective(const QString& sLine);
  void RunCommand(const QString& sCommand, bool bMayFail);
  bool StartWait(const QStringList& Words);
  bool IsWaitOver() const;
  bool IsProjectMissing() const;
  bool TakeScreenshot(const QStringList& Words);
  void PrintMessages();
  void Fail(const QString& sText);
  void Finish(int ExitCode);
  int Answer(const QString& sTitle, const QString& sText, int DefaultResult);

  CMainWindow* m_pWindow = nullptr;
  QStringList m_Lines;
  qsizetype m_Line = 0;
  QTimer m_Timer;
  WAIT_FOR m_Wait = WAIT_NONE;
  QElapsedTimer m_WaitTime;
  int m_WaitLimitMS = 0;
  int m_NextAnswer = -1;
  int m_ExitCode = 0;
  bool m_bFinished = false;
  bool m_bInStep = false;
};
