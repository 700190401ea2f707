#include "project/recent_list.h"

#include <QFileInfo>
#include <algorithm>

void CRecentList::Update(const QString& sOld, const QString& sNew) {
  QStringList Paths = m_Paths;
  if (!sOld.isEmpty() && Paths.contains(sOld)) {
    std::replace(Paths.begin(), Paths.end(), sOld, sNew);
  } else if (!Paths.contains(sNew) && Paths.size() >= m_Cap) {
    Paths.removeLast();
  }
  Paths.removeAll(sNew);
  Paths.prepend(sNew);
  Install(Paths);
}

void CRecentList::Install(QStringList Paths) {
  Paths.removeIf([this](const QString& sPath) { return !m_IsInClass(sPath) || !QFileInfo(sPath).isFile(); });
  m_Paths = Paths.mid(0, m_Cap);
  if (m_Listener) m_Listener();
}
