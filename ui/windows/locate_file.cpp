#include "ui/windows/locate_file.h"

#include <QFileDialog>
#include <QFileInfo>

#include "program/database/file_finder.h"
#include "project/project.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/log/console_print.h"

namespace {

// Of a path of any system.
QString NameOf(QString sPath) {
  return sPath.replace(QLatin1Char('\\'), QLatin1Char('/')).section(QLatin1Char('/'), -1);
}

void PerformRule(const MOVED_TREE& Tree, const QString& sMissing, const QString& sChosen) {
  switch (Tree.Rule) {
    case MOVED_TREE_SUBSTITUTE:
      PerformAction(ACTION_PROJ_ADD_PATH_SUBSTITUTE, Tree.sOld, Tree.sNew);
      break;
    case MOVED_TREE_ROOT:
      PerformAction(ACTION_PROJ_ADD_ROOT_PATH, Tree.sNew);
      break;
    case MOVED_TREE_NONE:
      PrintConsole(QStringLiteral("Only this file was located: ") + Tree.sProblem);
      PerformAction(ACTION_PROJ_ADD_FILE_ALIAS, sMissing, sChosen);
      break;
  }
}

}  // namespace

bool TakeLocatedFile(const QString& sMissing, const QString& sChosen) {
  if (NameOf(sMissing).compare(NameOf(sChosen), Qt::CaseInsensitive) != 0) {
    PrintConsoleError(QStringLiteral("\"%1\": file names do not match").arg(sChosen));
    return false;
  }
  if (!QFileInfo(sChosen).isFile()) {
    PrintConsoleError(QStringLiteral("\"%1\": file not found").arg(sChosen));
    return false;
  }
  PerformRule(CFileFinder::Get()->AddMovedFile(sMissing, sChosen), sMissing, sChosen);
  return true;
}

void LocateFile(QWidget* pParent, const QString& sMissing) {
  const QString sDir = QFileInfo(CProject::Get().GetProgramFile()).absolutePath();
  const QString sSuffix = QFileInfo(NameOf(sMissing)).suffix();
  QString sFilter = QStringLiteral("All Files (*)");
  if (!sSuffix.isEmpty()) sFilter.prepend(QStringLiteral("Source Files (*.%1);;").arg(sSuffix));
  const QString sChosen = QFileDialog::getOpenFileName(pParent, QStringLiteral("Locate File"), sDir, sFilter);
  if (!sChosen.isEmpty()) TakeLocatedFile(sMissing, sChosen);
}
