#include "program/database/moved_tree.h"

#include <algorithm>

#include "program/database/path_forms.h"

namespace {

qsizetype NumCommonAtEnd(const QStringList& A, const QStringList& B) {
  qsizetype Count = 0;
  const qsizetype Limit = std::min(A.size(), B.size());
  while (Count < Limit && IsSamePath(A[A.size() - 1 - Count], B[B.size() - 1 - Count])) ++Count;
  return Count;
}

MOVED_TREE Refused(const QString& sProblem) {
  MOVED_TREE Tree;
  Tree.sProblem = sProblem;
  return Tree;
}

// The parts ahead of the common end, with the slash that keeps "/a/b" from being found in "/a/bc".
QString StartOf(const QStringList& Parts, qsizetype NumCommon) {
  return Parts.mid(0, Parts.size() - NumCommon).join(u'/') + u'/';
}

bool ChangesAnother(const QString& sOld, const QStringList& KnownPaths) {
  for (const QString& sPath : KnownPaths) {
    // At its start the path belongs to the tree, elsewhere it only looks so.
    if (SingleSlashes(sPath).lastIndexOf(sOld, -1, Qt::CaseInsensitive) > 0) return true;
  }
  return false;
}

}  // namespace

MOVED_TREE FindMovedTree(const QString& sWanted, const QString& sChosen, const QStringList& KnownPaths) {
  QString sFrom = SingleSlashes(sWanted);
  while (sFrom.startsWith(QLatin1String("./"))) sFrom.remove(0, 2);
  const QStringList From = sFrom.split(u'/');
  const QStringList To = SingleSlashes(sChosen).split(u'/');
  const qsizetype NumCommon = NumCommonAtEnd(From, To);
  if (NumCommon == 0 || From.last().isEmpty()) return Refused(QStringLiteral("the file names differ"));
  MOVED_TREE Tree;
  Tree.sNew = StartOf(To, NumCommon);
  if (IsRelativePath(sFrom)) {
    if (NumCommon < From.size()) return Refused(QStringLiteral("the directories differ"));
    Tree.Rule = MOVED_TREE_ROOT;
    return Tree;
  }
  // An absolute path begins with an empty part.
  if (NumCommon >= From.size() - 1 && !HasDrive(sFrom)) {
    return Refused(QStringLiteral("every other path would be changed, too"));
  }
  if (NumCommon == From.size()) return Refused(QStringLiteral("the paths are the same"));
  Tree.sOld = StartOf(From, NumCommon);
  if (Tree.sNew.contains(Tree.sOld, Qt::CaseInsensitive)) {
    return Refused(QStringLiteral("\"%1\" stands in the new path again").arg(Tree.sOld));
  }
  if (ChangesAnother(Tree.sOld, KnownPaths)) {
    return Refused(QStringLiteral("\"%1\" stands in the paths of other files, too").arg(Tree.sOld));
  }
  Tree.Rule = MOVED_TREE_SUBSTITUTE;
  return Tree;
}
