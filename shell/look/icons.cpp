#include <QFile>
#include <QHash>

#include "shell/look/look.h"

static void InitIconResource() {
  Q_INIT_RESOURCE(icons);
}

QIcon GetIcon(const QString& sName) {
  static QHash<QString, QIcon> Cache;
  static const bool bInitialised = (InitIconResource(), true);
  Q_UNUSED(bInitialised);
  const auto It = Cache.constFind(sName);
  if (It != Cache.constEnd()) return *It;
  const QString sPath = QStringLiteral(":/icons/") + sName;
  return *Cache.insert(sName, QFile::exists(sPath) ? QIcon(sPath) : QIcon());
}
