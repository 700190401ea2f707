#pragma once

#include <functional>
#include <future>

#include <QElapsedTimer>
#include <QObject>
#include <QWidget>

#include "base/types.h"
#include "program/database/program_build.h"

class CSessionController;

// The error of what has to wait for a program that is being read.
inline constexpr const char* PROGRAM_IS_BEING_OPENED = "another program is being opened";

// Opens program and data files: reads them, tells everybody, and starts the download where a session is running. Main
// thread.
class CProgramLoader : public QObject {
  Q_OBJECT

public:
  // pMainWindow: what the user sees while a program is read.
  CProgramLoader(CSessionController& Session, QWidget* pMainWindow);

  // Opens a program or data file, or with an empty path unloads the program. Returns when that is done; a program that
  // takes long is read while events are delivered. Cancelled by the user, or called meanwhile, it changes nothing.
  void OpenDataFile(const QString& sPath);
  // A program is being read.
  bool IsReading() const { return m_bReading; }
  // Times the next OpenDataFile from now on, as File.Open does.
  void StartClock() { m_Clock.start(); }
  // The file was chosen by the user, so a download during a session is asked for; it is a reload of a changed file.
  void SetUserChosen(bool bOn) { m_bUserChosen = bOn; }
  void SetReload(bool bOn) { m_bReload = bOn; }
  // What was set ahead of a File.Open that has ended, with a program or without, is over; one that is being read keeps
  // it.
  void EndOpen();
  // The program file that was opened last.
  const QString& GetProgramPath() const { return m_sProgramPath; }
  // Asks for the base address of a binary file; false when the user gave none. Set by the shell.
  void SetAddressQuestion(std::function<bool(const QString& sPath, U32* pAddr)> Ask) { m_AskAddress = std::move(Ask); }

Q_SIGNALS:
  // A file is about to be opened; empty: the program is about to be unloaded.
  void Opening(const QString& sPath);
  // The program's views are about to lose their contents.
  void AboutToChange();
  // The user went back while a program was read.
  void Cancelled();
  // Everything is read; an empty path: the program was unloaded. bSame: the file was open before.
  void DataFileOpened(const QString& sPath, bool bSame);

private:
  void OpenElfDataFile(const QString& sPath);
  PROGRAM_BUILD_RESULT Read(CProgramBuild& Build, const QString& sPath);
  void OnCancelled(const QString& sPath);
  void Free(std::unique_ptr<CProgramBuild> pProgram);
  void OpenBinDataFile(const QString& sPath);
  void OpenOtherDataFile(const QString& sPath);
  void StoreProgramData(const QString& sPath);
  void ClearProgramViews();
  void OnDataFileOpened(const QString& sPath);
  void ContinueSession(const QString& sPath);
  bool WantsDownload(const QString& sPath);
  void ConfigTargetEndianess();

  CSessionController& m_Session;
  QWidget* m_pMainWindow;
  bool m_bReading = false;
  std::future<void> m_Freeing;
  QString m_sProgramPath;
  bool m_bUserChosen = false;
  bool m_bReload = false;
  QElapsedTimer m_Clock;
  std::function<bool(const QString&, U32*)> m_AskAddress;
};
