#include "shell/settings/settings_cache.h"

#include <QFile>
#include <QSettings>

#include "shell/log/log.h"

namespace {

struct SETTINGS_STATE {
  QMap<QString, QVariant> Values;
  bool InMemory = false;
};

SETTINGS_STATE& State() {
  static SETTINGS_STATE TheState;
  return TheState;
}

std::unique_ptr<QSettings> OpenStore() {
  auto pStore = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Morvek"),
                                            QStringLiteral("Vexor"));
  pStore->setFallbacksEnabled(false);
  return pStore;
}

// A store that was cut off or overwritten: raw zero bytes are never written, they are escaped.
bool IsDamaged(const QSettings& Store) {
  QFile File(Store.fileName());
  const bool bZeros = File.open(QIODevice::ReadOnly) && File.readAll().contains('\0');
  return bZeros || Store.status() == QSettings::FormatError;
}

// Renames the store, so that nothing of it is lost, and tells where it is.
void PutAside(const QString& sFile) {
  const QString sAside = sFile + QLatin1String(".damaged");
  QFile::remove(sAside);
  const bool bMoved = QFile::rename(sFile, sAside);
  LogMsg(QStringLiteral("The settings in %1 are damaged: defaults apply. %2")
             .arg(sFile, bMoved ? QStringLiteral("The file was kept as ") + sAside
                                : QStringLiteral("The file could not be put aside.")),
         MSG_WARNING | MSG_TO_ALL);
}

// Stored values come back as text, so that a conversion has to refuse what is no value of the wanted type.
QVariant ConvertedTo(QMetaType Type, const QVariant& Value, const QVariant& Default) {
  if (Value.metaType() == Type) return Value;
  if (Type.id() == QMetaType::Bool) {
    const QString sText = Value.toString().toLower();
    if (sText == u"true" || sText == u"1") return true;
    if (sText == u"false" || sText == u"0") return false;
    return Default;
  }
  QVariant Result = Value;
  return Result.convert(Type) ? Result : Default;
}

}  // namespace

void SetSettingsInMemory(bool On) {
  State().InMemory = On;
}

bool AreSettingsInMemory() {
  return State().InMemory;
}

int LoadSettings() {
  if (State().InMemory) return 0;
  State().Values.clear();
  const std::unique_ptr<QSettings> pStore = OpenStore();
  const QStringList Keys = pStore->allKeys();
  if (IsDamaged(*pStore)) {
    PutAside(pStore->fileName());
    return -1;
  }
  for (const QString& sKey : Keys) State().Values.insert(sKey, pStore->value(sKey));
  if (pStore->status() == QSettings::NoError) return 0;
  LogMsg(QStringLiteral("Settings could not be read: ") + pStore->fileName(), MSG_WARNING | MSG_TO_ALL);
  return -1;
}

// The store is written beside the old one and renamed, so that a run that is cut off leaves the old one whole.
int SaveSettings() {
  if (State().InMemory) return 0;
  const std::unique_ptr<QSettings> pStore = OpenStore();
  pStore->setAtomicSyncRequired(true);
  pStore->clear();
  const QMap<QString, QVariant>& Values = State().Values;
  for (auto it = Values.cbegin(); it != Values.cend(); ++it) pStore->setValue(it.key(), it.value());
  pStore->sync();
  if (pStore->status() == QSettings::NoError) return 0;
  LogMsg(QStringLiteral("Settings could not be written: ") + pStore->fileName(), MSG_WARNING | MSG_TO_ALL);
  return -1;
}

QString SettingPath(const SETTING_GROUP& Group, const QString& sKey) {
  QString sPath = Group.join(u'/') + u'/' + sKey;
  while (sPath.contains(u"//")) sPath.replace(QLatin1String("//"), QLatin1String("/"));
  return sPath.startsWith(u'/') ? sPath.mid(1) : sPath;
}

QVariant GetSetting(const SETTING_GROUP& Group, const QString& sKey, const QVariant& Default) {
  const auto it = State().Values.constFind(SettingPath(Group, sKey));
  if (it == State().Values.constEnd() || !it->isValid()) return Default;
  return Default.isValid() ? ConvertedTo(Default.metaType(), *it, Default) : *it;
}

void SetSetting(const SETTING_GROUP& Group, const QString& sKey, const QVariant& Value) {
  State().Values.insert(SettingPath(Group, sKey), Value);
}

bool HasSetting(const SETTING_GROUP& Group, const QString& sKey) {
  return State().Values.contains(SettingPath(Group, sKey));
}

QStringList GetSettingKeys(const SETTING_GROUP& Group) {
  const QString sPrefix = SettingPath(Group, QString());
  QStringList Keys;
  const QMap<QString, QVariant>& Values = State().Values;
  for (auto it = Values.lowerBound(sPrefix); it != Values.cend() && it.key().startsWith(sPrefix); ++it) {
    const QString sKey = it.key().mid(sPrefix.size());
    if (!sKey.contains(u'/')) Keys.append(sKey);
  }
  return Keys;
}

void RemoveSetting(const QString& sFullKey) {
  State().Values.remove(SettingPath({}, sFullKey));
}
