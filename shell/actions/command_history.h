#pragma once

#include <QString>
#include <QStringList>

// The commands entered in a console, newest first and each only once. Going past either end comes round to the other.
class CCommandHistory {
public:
  // Puts a command in front unless it stands there already, anywhere, and ends the browsing.
  void Add(const QString& sCommand);
  // The entry that the up or down key brings; a null text when there is none.
  QString Up();
  QString Down();
  const QStringList& Entries() const { return m_Entries; }

private:
  QStringList m_Entries;
  int m_Index = -1;
};
