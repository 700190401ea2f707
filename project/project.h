#pragma once

#include <functional>
#include <optional>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include "base/types.h"
#include "project/project_edits.h"

// What the project asks of the layers above it; the shell sets it once.
struct PROJECT_HOST {
  // Whether the open project has to stay for now: its program is being read.
  std::function<bool()> IsBusy;
  // A file of that description as the file finder sees it.
  std::function<QString(const QString& sPath)> ResolvePath;
  // Whether the processor's registers are described, or a description could be named for the device's core.
  std::function<bool()> HasCpuRegisters;
  // Takes a register description file in or out of use.
  std::function<void(const QString& sPath)> AddSvdFile;
  std::function<void()> ClearSvdFiles;
  // Forgets the paths that the project had given to the file finder, and learns the path of the new one, without
  // symbolic links.
  std::function<void(const QString& sProjectPath)> ResetFileFinder;
  // Forgets by how much the project had moved symbols.
  std::function<void()> ClearRelocations;
  // Forgets where the project had the probe look for terminal buffers.
  std::function<void()> ClearRTTSearchRanges;
  // The project was saved: what it names relative to itself is found from there.
  std::function<void(const QString& sProjectPath)> SetProjectPath;
  // The device as the project's text names it: device, host interface with its identifier, target interface, speed.
  std::function<QStringList()> DeviceCommands;
};

// The project: one file that is a script, the program file that it names, and its settings, which are the commands that
// the script's OnProjectLoad runs. One instance, main thread.
class CProject : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool Modified READ IsModified NOTIFY ModifiedChanged)
  Q_PROPERTY(QString FileName READ GetFileName)

public:
  static CProject& Get();
  void SetHost(PROJECT_HOST Host) { m_Host = std::move(Host); }

  // Asks running script functions to end; the file is loaded by the event loop once they have. Returns at once.
  void Open(const QString& sPath);
  // Whether an Open has not been carried out yet.
  bool IsOpening() const { return !m_sPendingPath.isEmpty(); }
  // Whether the file is being loaded now: opened again from its own OnProjectLoad it would be loaded for ever, so that
  // Open does nothing then.
  bool IsLoading(const QString& sPath) const { return m_bLoading && sPath == m_sPendingPath; }
  void Close();
  // A project without file from commands, which are executed.
  void Create(const QStringList& Commands);
  // False when the file could not be written; the project stays modified then.
  bool Save(const QString& sPath);

  bool IsModified() const { return m_bModified; }
  bool IsOpen() const { return m_bOpen; }
  // Path of the project file; empty for a new project.
  QString GetFileName() const;

  const QString& GetProgramFile() const { return m_sProgramFile; }
  void SetProgramFile(const QString& sPath);
  // Modification time of the program file when it was taken, invalid if it didn't exist.
  const QDateTime& GetProgramFileTime() const { return m_ProgramFileTime; }
  void SetProgramFileTime(const QDateTime& Time) { m_ProgramFileTime = Time; }

  void AddSvdFile(const QString& sPath);
  void ClearSvdFiles();
  // A device was asked for, which takes a while: if it is another one, the files named so far are those of the device
  // before it.
  void ExpectDevice(const QString& sDevice);
  // The device is another one: sPath takes the place of the files of the device before it, which are all files where
  // no device was expected. bMoreExpected keeps apart what was added since, for the device that comes next.
  void SetSvdFileOfDevice(const QString& sPath, bool bMoreExpected);
  const QStringList& GetSvdFiles() const { return m_SvdFiles; }

  // What is wrong with the project's settings: one line for each file that is missing.
  QStringList GetProjectErrors() const;
  // The settings as commands, for a project file that is made anew.
  QStringList GetCommands() const;

  // Edits of a saved project file, sPath, that leave the user's own text alone; see project_text.h. The loaded script
  // follows when it is that file's and no hook runs. False, with a console line, when nothing was written.
  bool AddCommands(const QString& sPath, const QStringList& Commands);
  bool AppendCommands(const QString& sPath, const QStringList& Commands);
  bool UpdateVNodeCommands(const QString& sPath, const QStringList& Commands);
  bool UpdateTraceCommands(const QString& sPath, const QStringList& Commands);
  // Whether the saved project file's OnProjectLoad calls that command.
  bool HasCommand(const QString& sName) const;

  // Path of the user file beside a project file; empty for a path without a ".".
  static QString GetUserFileName(const QString& sProjectPath);
  // The project file's path without symbolic links, by which others know the project; the path itself while there is no
  // such file. Cached until the project is opened, closed or saved.
  QString GetProjectId() const;
  // Key of a pair of project and program, under which windows keep what belongs to both.
  U32 GetProjectHash() const;

Q_SIGNALS:
  void ModifiedChanged(bool Modified);
  void AboutToOpen(QString sPath);
  void Opened(QString sPath);
  void Closed(QString sPath);

private Q_SLOTS:
  void OnOpenTimeout();

private:
  CProject();
  void DoOpen(const QString& sPath);
  void SetModified(bool Modified);
  bool Edit(const QString& sPath, const PROJECT_EDIT& Edit);

  PROJECT_HOST m_Host;
  bool m_bModified = false;
  bool m_bOpen = false;
  bool m_bLoading = false;
  QTimer m_OpenTimer;
  QString m_sPendingPath;
  QStringList m_SvdFiles;
  QString m_sExpectedDevice;
  std::optional<qsizetype> m_NumFormerSvdFiles;
  QString m_sProgramFile;
  QDateTime m_ProgramFileTime;
  mutable QHash<QString, QString> m_ProjectIds;  // by path
};
