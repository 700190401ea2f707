#pragma once

#include <QLibrary>
#include <QString>

#include "device/probe_api/probe_api.h"

// The probe library, loaded at run time. Before a successful Load, and after a failed one, every function of Api()
// can be called all the same: it does nothing and answers with its failure value, so that callers need no check.
class CVNodeLibrary {
public:
  CVNodeLibrary();
  CVNodeLibrary(const CVNodeLibrary&) = delete;
  CVNodeLibrary& operator=(const CVNodeLibrary&) = delete;

  // Loads libvnode.so from sFolder, the application's own folder when empty. Returns 0, or -1 with ErrorText() naming
  // the file and the cause: a missing library or the first missing function. Call before other threads use Api().
  int Load(const QString& sFolder = QString());
  bool IsLoaded() const { return bLoaded; }
  // Why the last Load failed; empty after a success.
  const QString& ErrorText() const { return sError; }
  // Path of the library with forward slashes; the path tried when loading failed.
  const QString& Path() const { return sPath; }

  const VNODE_API& Api() const { return Functions; }
  // Table of functions that all answer with their failure value.
  static VNODE_API MissingApi();

private:
  int Fail(const QString& sText);

  QLibrary Library;  // stays in the process: its threads may outlive this object
  bool bLoaded = false;
  VNODE_API Functions;
  QString sPath;
  QString sError;
};
