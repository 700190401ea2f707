#pragma once
// A source tree that was built in one place and lies in another: the rule for all its files, out of one of them.

#include <QString>
#include <QStringList>

enum MOVED_TREE_RULE {
  MOVED_TREE_NONE,        // no rule that holds for more than the one file: an alias is what is left
  MOVED_TREE_SUBSTITUTE,  // sOld in a path is to be replaced by sNew, as Project.AddPathSubstitute does
  MOVED_TREE_ROOT,        // sNew is to be a root path, as Project.AddRootPath does
};

struct MOVED_TREE {
  MOVED_TREE_RULE Rule = MOVED_TREE_NONE;
  QString sOld;
  QString sNew;
  QString sProblem;  // why there is none, for the user
};

// The rule that leads from the path a program names to the file that the user chose: what both paths have in common at
// their ends is the tree, what they differ in is where it lies. Refused where it would change other paths: KnownPaths
// are those that programs name or that were found already. Touches no file.
MOVED_TREE FindMovedTree(const QString& sWanted, const QString& sChosen, const QStringList& KnownPaths);
