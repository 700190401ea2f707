#pragma once
// The one instance of the action table, for the files of this folder.

#include <functional>
#include <vector>

#include "shell/actions/action_info.h"

// A row with everything about it that is kept beside the public record.
struct ACTION_ENTRY {
  ACTION_INFO Info;
  QString sName;   // command name, empty for rows that are no commands
  QString sAlias;  // other spelling of the name, mostly empty
  QStringList Params;
  bool HasResult = false;
  U64 Result = 0;                     // last one stored, never cleared
  std::function<void()> Handler;      // registered for rows without a window
  std::unique_ptr<QAction> pHandler;  // the action that runs it
};

class CActionTable {
public:
  static CActionTable& Instance();
  // Null for an unknown identifier.
  ACTION_ENTRY* Find(U32 ID);
  ACTION_ENTRY* FindByObjectName(const QString& sObjectName);
  const std::vector<ACTION_ENTRY>& Rows() const { return m_Rows; }

  // Reverse lookup of linked actions.
  QHash<const QAction*, int> ActionIDs;
  QSet<const QAction*> WatchedActions;  // those whose destruction is noticed
  QStringList UnlinkedActions;

private:
  CActionTable();
  std::vector<ACTION_ENTRY> m_Rows;
  QHash<QString, U32> m_ByObjectName;
};
