#pragma once

#include <QList>
#include <QString>

#include "base/types.h"

class CDockWindow;
class CWindow;

// The windows of the main window, in the order in which they were made, and their names. Owns none of them.
class CWindowRegistry {
public:
  void Add(CWindow* pWindow);
  const QList<CWindow*>& Windows() const { return m_Windows; }
  QList<CDockWindow*> Docks() const;

  // By name or display name in any case, quotes removed; null if there is none.
  CWindow* Find(QString sName, bool bVisibleOnly) const;
  // Find, and the names of memory windows: "Memory" is the first one that is closed, otherwise the first; "@" and a
  // hexadecimal address behind a name send that window there.
  CWindow* FindToShow(const QString& sName) const;

private:
  CWindow* FindMemoryWindow(const QString& sName) const;

  QList<CWindow*> m_Windows;
};
