#include "shell/actions/command_history.h"

void CCommandHistory::Add(const QString& sCommand) {
  m_Index = -1;
  if (!m_Entries.contains(sCommand)) m_Entries.prepend(sCommand);
}

QString CCommandHistory::Up() {
  if (m_Entries.isEmpty()) return {};
  m_Index = m_Index >= 0 && m_Index <= m_Entries.size() - 2 ? m_Index + 1 : 0;
  return m_Entries.at(m_Index);
}

QString CCommandHistory::Down() {
  if (m_Entries.isEmpty()) return {};
  m_Index = m_Index < 1 || m_Index > m_Entries.size() ? static_cast<int>(m_Entries.size()) - 1 : m_Index - 1;
  return m_Entries.at(m_Index);
}
