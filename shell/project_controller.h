#pragma once

#include <functional>

#include <QObject>

#include "base/types.h"
#include "project/recent_list.h"

class CProgramLoader;
class CSessionController;

// What the projects' comings and goings ask of the window around them.
class IProjectView {
public:
  virtual ~IProjectView() = default;
  virtual void OnProjectStateChanged() = 0;  // title, enable rules
  virtual void OpenSourceFile(const QString& sPath) = 0;
  // Closes the open documents; false when the user refuses.
  virtual bool CloseDocuments() = 0;
  virtual bool SaveDocuments() = 0;
  virtual void FocusConsole() = 0;  // shows it, with what waits to be printed
  virtual void LoadUserFile(const QString& sPath) = 0;
  // The project's own layout is not used, and stays as it is.
  virtual void KeepUserFile(const QString& sPath) = 0;
  virtual void SaveUserFile(const QString& sPath) = 0;
};

// Opens files by their kind, opens, closes and saves projects, and keeps the recent lists. Main thread.
class CProjectController : public QObject {
  Q_OBJECT

public:
  CProjectController(IProjectView& View, CSessionController& Session, CProgramLoader& Loader);

  void OpenFile(const QString& sPath);     // an existing file of any kind
  void OpenProject(const QString& sPath);  // may be refused by the user
  void NewProject();
  void CreateProject(const QString& sFilePath, const QStringList& Commands);
  // 0 not modified or saved, otherwise the answer of the question: 2 aborts.
  int SaveProjectIfModified();
  bool SaveProject(const QString& sPath);
  // Saves the open documents; false when one could not be written.
  bool SaveDocuments() { return m_View.SaveDocuments(); }

  CRecentList& RecentProjects() { return m_RecentProjects; }
  CRecentList& RecentPrograms() { return m_RecentPrograms; }
  // Title of the main window as it is now.
  QString MakeTitle() const;

  // Start directories of the file dialogs.
  QString sDefaultDirOpen;
  QString sDefaultDirSave;

private:
  // The three questions before a project goes; false: it stays. Refused, as an error of the action, while a program is
  // read: events are delivered meanwhile, so that a hook may ask for another project.
  bool LeaveProject(U32 ActionID);
  // The probe script beside a project, "x.vnode" of "x.vdebug", goes to the device.
  void SetCompanionScript(const QString& sProject);
  void OnProjectFileOpened(const QString& sPath);
  void OnProjectFileClosed(const QString& sPath);
  void LoadDefaultRegisterFile();
  void ResetSymbolSettings();

  IProjectView& m_View;
  CSessionController& m_Session;
  CProgramLoader& m_Loader;
  CRecentList m_RecentProjects;
  CRecentList m_RecentPrograms;
};
